// PDO links between lines.
#include "store/objectdatabase_p.h"
#include "support/logging.h"

#include <QTime>

namespace
{

const QString kOfProducer = QStringLiteral("prodnode = ? and prodindex = ? and prodsub = ?");
const QString kOfConsumer = QStringLiteral("connode = ? and conindex = ? and consub = ?");
const QString kOfBoth = kOfProducer + QStringLiteral(" and ") + kOfConsumer;

constexpr quint32 kAnyPlace = 0xFFFFFF; // index 0xFFFF, subindex 255

bool mayBeLinked(quint8 prodNode, quint16 prodIndex, quint8 conNode, quint16 conIndex)
{
    return prodNode != conNode && prodIndex != 0 && conIndex != 0;
}

bool holdsConnection(StorePrivate &store, const QString &condition, const Cells &values)
{
    return Statement(
               store,
               QStringLiteral("select prodnode from Connections where %1 limit 1").arg(condition),
               values)
        .next();
}

bool deleteConnections(StorePrivate &store, const QString &condition, const Cells &values)
{
    return !store.lockWriteAccess &&
           store.exec(QStringLiteral("delete from Connections where ") + condition, values);
}

} // namespace

bool ObjectDataBase::addConnection(quint8 prodNode, quint16 prodIndex, quint8 prodSub,
                                   quint8 conNode, quint16 conIndex, quint8 conSub, quint8 priority)
{
    if (d->lockWriteAccess)
        return false;
    return d->exec(QStringLiteral("insert into Connections (%1) values(%2)")
                       .arg(columnList(kConnectionColumns),
                            placeHolders(static_cast<int>(std::size(kConnectionColumns)))),
                   {prodNode, prodIndex, prodSub, conNode, conIndex, conSub, priority});
}

bool ObjectDataBase::removeConnnection(quint8 prodNode, quint16 prodIndex, quint8 prodSub,
                                       quint8 conNode, quint16 conIndex, quint8 conSub)
{
    return deleteConnections(*d, kOfBoth,
                             {prodNode, prodIndex, prodSub, conNode, conIndex, conSub});
}

bool ObjectDataBase::removeConnnection(quint8 line)
{
    return deleteConnections(*d, QStringLiteral("prodnode = ? OR connode = ?"), {line, line});
}

bool ObjectDataBase::removeConnnection(quint8 line, quint16 index)
{
    const Cells object{line, index};
    const bool produced =
        deleteConnections(*d, QStringLiteral("prodnode = ? and prodindex = ?"), object);
    return deleteConnections(*d, QStringLiteral("connode = ? and conindex = ?"), object) &&
           produced;
}

bool ObjectDataBase::removeConnnection(quint8 line, quint16 index, quint8 sub)
{
    const bool produced = removeProducerConnections(line, index, sub);
    return removeConsumerConnection(line, index, sub) && produced;
}

bool ObjectDataBase::removeProducerConnections(quint8 line, quint16 index, quint8 sub)
{
    return deleteConnections(*d, kOfProducer, {line, index, sub});
}

bool ObjectDataBase::removeConsumerConnection(quint8 line, quint16 index, quint8 sub)
{
    return deleteConnections(*d, kOfConsumer, {line, index, sub});
}

void ObjectDataBase::clearConnections(quint8 prodNode, quint8 conNode)
{
    if (prodNode == 0 && conNode == 0)
        deleteConnections(*d, QStringLiteral("1"), {});
    else
        deleteConnections(*d, QStringLiteral("prodnode = ? and connode = ?"), {prodNode, conNode});
}

bool ObjectDataBase::updateConnectionPriority(const Connection &link)
{
    return removeConnnection(link.prodNode, link.prodIndex, link.prodSub, link.conNode,
                             link.conIndex, link.conSub) &&
           addConnection(link.prodNode, link.prodIndex, link.prodSub, link.conNode, link.conIndex,
                         link.conSub, link.priority);
}

bool ObjectDataBase::isConnected(quint8 prodNode, quint16 prodIndex, quint8 prodSub, quint8 conNode,
                                 quint16 conIndex, quint8 conSub) const
{
    return holdsConnection(*d, kOfBoth, {prodNode, prodIndex, prodSub, conNode, conIndex, conSub});
}

bool ObjectDataBase::isConsumerConnected(quint8 line, quint16 index, quint8 sub) const
{
    return holdsConnection(*d, kOfConsumer, {line, index, sub});
}

bool ObjectDataBase::isProducerConnected(quint8 line, quint16 index, quint8 sub) const
{
    return holdsConnection(*d, kOfProducer, {line, index, sub});
}

quint8 ObjectDataBase::getProducerNode(quint8 line, quint16 index, quint8 sub) const
{
    Statement statement(
        *d, QStringLiteral("select prodnode from Connections where %1 limit 1").arg(kOfConsumer),
        {line, index, sub});
    return statement.next() ? static_cast<quint8>(statement.value(0).toUInt()) : quint8(0);
}

std::optional<SubAddressData> ObjectDataBase::getProducer(quint8 line, quint16 index,
                                                          quint8 sub) const
{
    const QList<SubAddress> found =
        addressesOf(QStringLiteral("select prodindex,prodsub from Connections where %1 limit 1")
                        .arg(kOfConsumer),
                    {line, index, sub});
    return found.isEmpty() ? std::nullopt : std::make_optional(found.first());
}

std::optional<SubAddressData> ObjectDataBase::getConsumer(quint8 line, quint16 index,
                                                          quint8 sub) const
{
    const QList<SubAddress> found = addressesOf(
        QStringLiteral("select conindex,consub from Connections where %1 limit 1").arg(kOfProducer),
        {line, index, sub});
    return found.isEmpty() ? std::nullopt : std::make_optional(found.first());
}

int ObjectDataBase::getConnectionCount() const
{
    Statement statement(*d, QStringLiteral("select count(*) from Connections"));
    return statement.next() ? statement.value(0).toInt() : 0;
}

QSet<quint32> StorePrivate::mpdoProducers()
{
    QSet<quint32> producers;
    const QList<quint8> lines = owner->getNodes();
    for (const quint8 line : lines) {
        Statement statement(*this,
                            QStringLiteral("select objectindex,subindex from %1 where signalid in "
                                           "(select sigid from Signals "
                                           "where accesstype = 'txmpdo')")
                                .arg(Schema::table("SubObjects", line)));
        while (statement.next())
            producers << placeKey(line, static_cast<quint16>(statement.value(0).toUInt()),
                                  static_cast<quint8>(statement.value(1).toUInt()));
    }
    return producers;
}

QList<ConnectionData> ObjectDataBase::getPDOConnections(bool withMpdo) const
{
    const QSet<quint32> leftOut = withMpdo ? QSet<quint32>() : d->mpdoProducers();
    QList<Connection> result;
    Statement statement(*d, QStringLiteral("select %1 from Connections order by prodnode,rowid")
                                .arg(columnList(kConnectionColumns)));
    while (statement.next()) {
        Connection link;
        int i = 0;
        for (const Column<Connection> &field : kConnectionColumns)
            field.set(link, statement.value(i++));
        if (!leftOut.contains(StorePrivate::placeKey(link.prodNode, link.prodIndex, link.prodSub)))
            result << link;
    }
    return result;
}

QList<ConnectionData> ObjectDataBase::getPDOConnections(quint8, quint8, bool) const
{
    // Deliberate: nothing is ever found between two lines; held by tst_connections "queries".
    return {};
}

bool ObjectDataBase::moveConnections(quint8 from, quint8 to)
{
    if (d->lockWriteAccess)
        return false;
    const bool produced = d->exec(
        QStringLiteral("update Connections set prodnode = ? where prodnode = ?"), {to, from});
    const bool consumed =
        d->exec(QStringLiteral("update Connections set connode = ? where connode = ?"), {to, from});
    emit updateNotify(ChangeSet());
    return produced && consumed;
}

bool ObjectDataBase::updateConnections(quint16 oldIndex, quint16 newIndex)
{
    if (d->lockWriteAccess)
        return false;
    dumpConnections();
    const bool produced =
        d->exec(QStringLiteral("update Connections set prodindex = ? where prodindex = ?"),
                {newIndex, oldIndex});
    const bool consumed =
        d->exec(QStringLiteral("update Connections set conindex = ? where conindex = ?"),
                {newIndex, oldIndex});
    dumpConnections();
    return produced && consumed;
}

void ObjectDataBase::dumpConnections() const
{
    if (!lcStore().isDebugEnabled())
        return;
    qCDebug(lcStore) << "Connections:";
    const QVector<QStringList> rows =
        d->allRows(QStringLiteral("select prodnode, prodindex, prodsub, connode, conindex, consub "
                                  "from Connections order by prodnode"));
    for (const QStringList &row : rows)
        qCDebug(lcStore) << row;
}

QHash<quint32, quint16> StorePrivate::dataTypes(quint8 line)
{
    QHash<quint32, quint16> types;
    Statement statement(
        *this,
        QStringLiteral("SELECT objectindex, subindex, datatype from %1 where %2")
            .arg(Schema::table("SubObjects", line), QLatin1String(Schema::kSubIndexInRange)));
    while (statement.next())
        types.insert(subKey(static_cast<quint16>(statement.value(0).toUInt()),
                            static_cast<quint8>(statement.value(1).toUInt())),
                     static_cast<quint16>(statement.value(2).toUInt()));
    return types;
}

void ObjectDataBase::initPossibleConnectionQuery(quint8 prodNode, quint8 conNode)
{
    qCDebug(lcStore) << "types of possible connections" << QTime::currentTime();
    d->producerTypes = d->dataTypes(prodNode);
    d->consumerTypes = d->dataTypes(conNode);
}

bool ObjectDataBase::isConnectionPossible(quint8 prodNode, quint16 prodIndex, quint8 prodSub,
                                          quint8 conNode, quint16 conIndex, quint8 conSub,
                                          quint16 &dataType) const
{
    if (!mayBeLinked(prodNode, prodIndex, conNode, conIndex))
        return false;
    dataType = d->producerTypes.value(StorePrivate::subKey(prodIndex, prodSub));
    return dataType == d->consumerTypes.value(StorePrivate::subKey(conIndex, conSub));
}

bool ObjectDataBase::isConnectionPossible(quint8 prodNode, quint16 prodIndex, quint8 prodSub,
                                          quint8 conNode, quint16 conIndex, quint8 conSub) const
{
    if (!mayBeLinked(prodNode, prodIndex, conNode, conIndex))
        return false;
    return StorePrivate::subKey(prodIndex, prodSub) == kAnyPlace ||
           StorePrivate::subKey(conIndex, conSub) == kAnyPlace ||
           getSubIndexDatatype(prodNode, prodIndex, prodSub) ==
               getSubIndexDatatype(conNode, conIndex, conSub);
}
