// Subindices of the object dictionaries.
#include "store/objectdatabase_p.h"
#include "support/cohelper.h"
#include "support/logging.h"
#include "support/numbers.h"

namespace
{

constexpr quint32 kNoFreeSubIndex = 0xFFFFFFFF;

const QString kWhereSub = QStringLiteral(" where objectindex = ? and subindex = ?");

/// What stands in a statement for the column of a search: a column's name, or a number as it is,
/// which selects all rows or none. Empty for anything else.
QString searchableColumn(const QString &column)
{
    if (column == QLatin1String("objectindex") || column == QLatin1String("subindex"))
        return column;
    if (const Column<SubIndexData> *field = findColumn(kSubIndexColumns, column))
        return QString::fromLatin1(field->name);
    bool isNumber = false;
    const qint64 number = Numbers::toLongLongByPrefix(column, &isNumber);
    return isNumber ? QString::number(number) : QString();
}

/// The searches that generators make, as tests of a record: by implementation, and for all
/// subindices, which callers write as "1" = "1".
using SubTest = std::function<bool(const SubIndexData &)>;

std::optional<SubTest> cachedTest(const QString &column, const QString &value)
{
    bool isNumber = false;
    const quint32 number = Numbers::toUIntDecimal(value, &isNumber);
    if (isNumber && column == QLatin1String("implementation"))
        return [number](const SubIndexData &data) { return data.implementation == number; };
    if (column == QLatin1String("1") && value == QLatin1String("1"))
        return [](const SubIndexData &) { return true; };
    return std::nullopt;
}

/// Ascending; without subindices that have no object.
template <typename Visitor>
void visitCached(const LineCache &cache, const Visitor &visit)
{
    for (auto object = cache.subs.begin(); object != cache.subs.end(); ++object) {
        if (!cache.objects.contains(object.key()))
            continue;
        for (auto sub = object->constBegin(); sub != object->constEnd(); ++sub)
            visit(object.key(), sub.key(), *sub);
    }
}

} // namespace

template <auto Member>
auto ObjectDataBase::subField(quint8 line, quint16 index, quint8 sub, const char *column) const
{
    using Type = typename RowMapping::MemberTraits<Member>::Type;
    if (const SubIndexData *cached = d->cachedSub(line, index, sub))
        return cached->*Member;
    if (d->completeCache(line))
        return Type();
    Statement statement(*d,
                        QStringLiteral("select %1 from %2")
                                .arg(QLatin1String(column), Schema::table("SubObjects", line)) +
                            kWhereSub,
                        {index, sub});
    return statement.next() ? RowMapping::fromCell<Type>(statement.value(0)) : Type();
}

template <auto Member>
bool ObjectDataBase::setSubField(quint8 line, quint16 index, quint8 sub, const char *column,
                                 const QString &value)
{
    if (d->lockWriteAccess)
        return false;
    const Column<SubIndexData> *field = findColumn(kSubIndexColumns, QLatin1String(column));
    SubIndexData carrier;
    carrier.*Member = value;
    const bool done =
        d->exec(QStringLiteral("update %1 set %2=?")
                        .arg(Schema::table("SubObjects", line), QLatin1String(column)) +
                    kWhereSub,
                {d->cellOf(*field, carrier), index, sub});
    if (SubIndexData *cached = d->cachedSub(line, index, sub); done && cached) {
        // All of the copy becomes as the row is, since nothing says after this that it differs.
        if (d->isEscaped(line, index, sub))
            *cached = d->withoutEscapes(line, index, sub, *cached);
        d->cachedSubs[line].escaped.remove(StorePrivate::subKey(index, sub));
        cached->*Member = value;
        d->refreshCachedName(line, index, sub, *cached);
    } else if (done) {
        d->cachedSubNames.remove(StorePrivate::placeKey(line, index, sub));
    }
    return done;
}

bool ObjectDataBase::existSubIndex(quint8 line, quint16 index, quint8 sub) const
{
    if (const LineCache *cache = d->completeCache(line))
        return cache->subs.find(index, sub) != nullptr;
    return Statement(
               *d,
               QStringLiteral("select subindex from %1").arg(Schema::table("SubObjects", line)) +
                   kWhereSub,
               {index, sub})
        .next();
}

bool ObjectDataBase::getSubIndexData(quint8 line, quint16 index, quint8 sub,
                                     SUBINDEX_DATA_T &data) const
{
    if (const SubIndexData *cached = d->cachedSub(line, index, sub)) {
        data = *cached;
        return true;
    }
    if (d->completeCache(line))
        return false;
    Statement statement(
        *d,
        QStringLiteral("select %1 from %2")
                .arg(columnList(kSubIndexColumns), Schema::table("SubObjects", line)) +
            kWhereSub,
        {index, sub});
    if (!statement.next())
        return false;
    int i = 0;
    for (const Column<SubIndexData> &field : kSubIndexColumns)
        d->readColumn(field, data, statement.value(i++));
    return true;
}

bool StorePrivate::writeSub(quint8 line, quint16 index, quint8 sub, const SubIndexData &given)
{
    return isEscaped(line, index, sub)
               ? writePlainSub(line, index, sub, withoutEscapes(line, index, sub, given))
               : writePlainSub(line, index, sub, given);
}

bool StorePrivate::writePlainSub(quint8 line, quint16 index, quint8 sub, const SubIndexData &data)
{
    // Interned in this order, which is the order of the new rows in the table of texts.
    const int description = owner->getStringId(data.description);
    const int name = owner->getStringId(data.name);
    const int denotation = owner->getStringId(data.denotation);
    RowValues cells{index, sub};
    for (const Column<SubIndexData> &field : kSubIndexColumns) {
        const QLatin1String column(field.name);
        if (field.coding != Coding::StringId)
            cells.append(field.value(data));
        else if (column == QLatin1String("name"))
            cells.append(name);
        else
            cells.append(column == QLatin1String("denotation") ? denotation : description);
    }
    if (!inserter(RowKind::SubIndex, line).write(*this, cells))
        return false;
    refreshCachedName(line, index, sub, data);
    cacheWrittenSub(line, index, sub, data);
    return true;
}

void StorePrivate::cacheWrittenSub(quint8 line, quint16 index, quint8 sub, const SubIndexData &data)
{
    const auto cache = cachedSubs.find(line);
    if (cache == cachedSubs.end())
        return;
    const quint32 key = subKey(index, sub);
    if (!cache->complete && !cache->subs.find(index, sub))
        return;
    SubIndexData &record = cache->subs.record(index, sub);
    record = data;
    cache->escaped.remove(key);
    // Deliberate: of a visible string the cached copy keeps its apostrophes doubled, while the row
    // holds the text as given; held by tst_objectdatabase "apostrophes".
    if (data.dataType == static_cast<quint16>(CAN::CANopenDataType::VisibleString)) {
        record.defaultValue = escapedText(record.defaultValue);
        record.currentValue = escapedText(record.currentValue);
        if (record.defaultValue != data.defaultValue || record.currentValue != data.currentValue)
            cache->escaped.insert(key);
    }
}

QString StorePrivate::escapedText(const QString &text)
{
    if (!text.contains(QLatin1Char('\'')))
        return text;
    if (text != lastEscape.first) {
        lastEscape = {text, text};
        owner->prepareQuotationMark(lastEscape.second);
    }
    return lastEscape.second;
}

bool StorePrivate::isEscaped(quint8 line, quint16 index, quint8 sub) const
{
    const auto cache = cachedSubs.constFind(line);
    return cache != cachedSubs.constEnd() && cache->escaped.contains(subKey(index, sub));
}

SubIndexData StorePrivate::withoutEscapes(quint8 line, quint16 index, quint8 sub,
                                          SubIndexData data) const
{
    // Who reads, changes one field and writes back must not double the apostrophes in the row.
    const SubIndexData *copy = cachedSub(line, index, sub);
    for (QString SubIndexData::*field :
         {&SubIndexData::defaultValue, &SubIndexData::currentValue}) {
        if (copy && data.*field == copy->*field)
            (data.*field).replace(QLatin1String("''"), QLatin1String("'"));
    }
    return data;
}

bool ObjectDataBase::addSubIndex(quint8 line, quint16 index, quint8 sub,
                                 const SUBINDEX_DATA_T &data)
{
    if (d->lockWriteAccess)
        return false;
    const bool done = d->writeSub(line, index, sub, data);
    notifySub(ChangeSet::Kind::AddSubIndex, line, index, sub);
    return done;
}

bool ObjectDataBase::addSubIndices(const QList<SubEntry> &entries)
{
    if (d->lockWriteAccess)
        return false;
    bool done = true;
    beginBatch();
    for (const SubEntry &entry : entries)
        done = d->writeSub(entry.line, entry.index, entry.subindex, entry.data) && done;
    commitBatch();
    return done;
}

bool ObjectDataBase::delSubIndex(quint8 line, quint16 index, quint8 sub, bool keepConnections)
{
    if (d->lockWriteAccess)
        return false;
    const bool existed = existSubIndex(line, index, sub);
    const bool done =
        d->exec(QStringLiteral("delete from %1").arg(Schema::table("SubObjects", line)) + kWhereSub,
                {index, sub});
    if (!keepConnections) {
        removeProducerConnections(line, index, sub);
        removeConsumerConnection(line, index, sub);
    }
    const auto cache = d->cachedSubs.find(line);
    if (cache != d->cachedSubs.end()) {
        cache->subs.remove(index, sub);
        cache->escaped.remove(StorePrivate::subKey(index, sub));
    }
    d->cachedSubNames.remove(StorePrivate::placeKey(line, index, sub));
    if (existed)
        notifySub(ChangeSet::Kind::DelSubIndex, line, index, sub);
    return done;
}

void ObjectDataBase::notifySub(ChangeSet::Kind kind, quint8 line, quint16 index, quint8 sub)
{
    ChangeSet change;
    change.kind = kind;
    change.line = line;
    change.index = index;
    change.subindex = sub;
    emit updateNotify(change);
}

bool ObjectDataBase::setSubIndexValue(quint8 line, quint16 index, quint8 sub, const QString &value)
{
    return setSubField<&SubIndexData::defaultValue>(line, index, sub, "defaultvalue", value);
}

bool ObjectDataBase::setSubIndexCurrentValue(quint8 line, quint16 index, quint8 sub,
                                             const QString &value)
{
    const bool done =
        setSubField<&SubIndexData::currentValue>(line, index, sub, "currentvalue", value);
    if (done)
        notifySub(ChangeSet::Kind::AddSubIndex, line, index, sub);
    return done;
}

QString ObjectDataBase::getSubIndexValue(quint8 line, quint16 index, quint8 sub) const
{
    return subField<&SubIndexData::defaultValue>(line, index, sub, "defaultvalue");
}

QString ObjectDataBase::getSubIndexCurrentValue(quint8 line, quint16 index, quint8 sub) const
{
    return subField<&SubIndexData::currentValue>(line, index, sub, "currentvalue");
}

PDOMapping ObjectDataBase::getSubIndexPdoMapping(quint8 line, quint16 index, quint8 sub) const
{
    return subField<&SubIndexData::pdoMapping>(line, index, sub, "pdomapping");
}

quint16 ObjectDataBase::getSubIndexDatatype(quint8 line, quint16 index, quint8 sub) const
{
    return subField<&SubIndexData::dataType>(line, index, sub, "datatype");
}

quint32 ObjectDataBase::getSubIndexBitSize(quint8 line, quint16 index, quint8 sub) const
{
    const auto type = static_cast<CAN::CANopenDataType>(getSubIndexDatatype(line, index, sub));
    if (COHelper::isStringLike(type))
        return subField<&SubIndexData::size>(line, index, sub, "size") * 8;
    return COHelper::getDataLengthBits(type);
}

bool ObjectDataBase::setSubIndexParameterName(quint8 line, quint16 index, quint8 sub,
                                              const QString &name)
{
    return existSubIndex(line, index, sub) &&
           setSubField<&SubIndexData::name>(line, index, sub, "name", name);
}

bool ObjectDataBase::setSubIndexName(quint8 line, quint16 index, quint8 sub,
                                     const QString &denotation)
{
    return existSubIndex(line, index, sub) &&
           setSubField<&SubIndexData::denotation>(line, index, sub, "denotation", denotation);
}

QString ObjectDataBase::getSubIndexName(quint8 line, quint16 index, quint8 sub,
                                        bool withDenotation) const
{
    // Deliberate: a cached name is the display name, whether or not it was asked for; held by
    // tst_objectdatabase.
    const auto cached = d->cachedSubNames.constFind(StorePrivate::placeKey(line, index, sub));
    if (cached != d->cachedSubNames.constEnd())
        return *cached;
    SUBINDEX_DATA_T data;
    if (!getSubIndexData(line, index, sub, data))
        return QString();
    return withDenotation && !data.denotation.isEmpty() ? data.denotation : data.name;
}

QStringList ObjectDataBase::getIndexSubIndexName(quint8 line, quint16 index, quint8 sub) const
{
    QStringList names;
    INDEX_DATA_T object;
    if (getIndexData(line, index, object))
        names << object.name;
    SUBINDEX_DATA_T data;
    if (getSubIndexData(line, index, sub, data))
        names << (data.denotation.isEmpty() ? data.name : data.denotation);
    return names;
}

bool ObjectDataBase::existSubIndexName(quint8, const QString &text) const
{
    return Statement(*d, QStringLiteral("select id from Strings where string = ?"), {text}).next();
}

QList<quint8> ObjectDataBase::selectSubs(quint8 line, quint16 index, quint8 minSub,
                                         bool onlyMappable) const
{
    QList<quint8> subs;
    if (const LineCache *cache = d->completeCache(line)) {
        const ObjectMembers &members = cache->subs.of(index);
        for (auto it = members.lowerBound(minSub); it != members.constEnd(); ++it) {
            if (!onlyMappable || it->pdoMapping.toUInt() != 0)
                subs << it.key();
        }
        return subs;
    }
    Statement statement(*d,
                        QStringLiteral("select subindex from %1 where objectindex = ? and "
                                       "subindex between ? and 255%2 order by subindex")
                            .arg(Schema::table("SubObjects", line),
                                 onlyMappable ? QStringLiteral(" and pdomapping != 0") : QString()),
                        {index, minSub});
    while (statement.next())
        subs << static_cast<quint8>(statement.value(0).toUInt());
    return subs;
}

QList<quint8> ObjectDataBase::getSubIndices(quint8 line, quint16 index, quint8 minSub) const
{
    return selectSubs(line, index, minSub, false);
}

void ObjectDataBase::visitSubIndices(quint8 line, quint16 index, quint8 minSub,
                                     const SubVisitor &visit) const
{
    if (const LineCache *cache = d->completeCache(line)) {
        const ObjectMembers &members = cache->subs.of(index);
        for (auto it = members.lowerBound(minSub); it != members.constEnd(); ++it)
            visit(it.key(), *it);
        return;
    }
    const QList<quint8> subs = getSubIndices(line, index, minSub);
    for (const quint8 sub : subs) {
        SUBINDEX_DATA_T data;
        if (getSubIndexData(line, index, sub, data))
            visit(sub, data);
    }
}

void ObjectDataBase::visitLine(quint8 line, const LineVisitor &visit) const
{
    if (const LineCache *cache = d->completeCache(line)) {
        visitCached(*cache, visit);
        return;
    }
    const QList<quint16> indices = getIndices(line, 0, 0xFFFF);
    for (const quint16 index : indices) {
        visitSubIndices(line, index, 0,
                        [&](quint8 sub, const SUBINDEX_DATA_T &data) { visit(index, sub, data); });
    }
}

QList<quint8> ObjectDataBase::getSubIndicesMappable(quint8 line, quint16 index, quint8 minSub) const
{
    return selectSubs(line, index, minSub, true);
}

quint32 ObjectDataBase::getNextFreeSubIndex(quint8 line, quint16 index, quint8 start) const
{
    const QList<quint8> subs = getSubIndices(line, index, start);
    for (int i = 0; i < subs.size(); ++i) {
        const quint8 next = static_cast<quint8>(subs.at(i) + 1);
        const bool taken = (i + 1 < subs.size() && subs.at(i + 1) == next) ||
                           (next == 0 && existSubIndex(line, index, 0));
        if (!taken)
            return next;
    }
    return kNoFreeSubIndex;
}

QList<SubAddressData> ObjectDataBase::addressesOf(const QString &sql, const Cells &values) const
{
    QList<SubAddress> result;
    Statement statement(*d, sql, values);
    while (statement.next()) {
        result << SubAddress{static_cast<quint16>(statement.value(0).toUInt()),
                             static_cast<quint8>(statement.value(1).toUInt())};
    }
    return result;
}

QList<SubAddressData> ObjectDataBase::getMappableSubs(quint8 line, quint16 minIndex) const
{
    return addressesOf(QStringLiteral("select objectindex,subindex from %1 where pdomapping != 0 "
                                      "and objectindex >= ? order by objectindex,subindex")
                           .arg(Schema::table("SubObjects", line)),
                       {minIndex});
}

QList<SubAddressData> ObjectDataBase::getMappableSubs(quint8 line, quint16 dataType,
                                                      bool tpdo) const
{
    Cells values{static_cast<int>(tpdo ? PDOMappingType::Tpdo : PDOMappingType::Rpdo)};
    QString ofType;
    if (dataType != 0) {
        ofType = QStringLiteral("and datatype = ? ");
        values << dataType;
    }
    return addressesOf(
        QStringLiteral("select objectindex,subindex from %1 "
                       "where pdomapping in (?,2,1) %2and objectindex in "
                       "(select objectindex from %3) order by objectindex,subindex")
            .arg(Schema::table("SubObjects", line), ofType, Schema::table("Objects", line)),
        values);
}

QList<SubAddressData> ObjectDataBase::getSubsByProperty(quint8 line, const QString &column,
                                                        const QString &value) const
{
    if (const LineCache *cache = d->completeCache(line)) {
        if (const auto test = cachedTest(column, value)) {
            QList<SubAddress> result;
            visitCached(*cache, [&](quint16 index, quint8 sub, const SubIndexData &data) {
                if ((*test)(data))
                    result << SubAddress{index, sub};
            });
            return result;
        }
    }
    const QString property = searchableColumn(column);
    if (property.isEmpty()) {
        qCDebug(lcStore) << "no such property" << column;
        return {};
    }
    const QString sql =
        QStringLiteral("select objectindex,subindex from %1 where %2 = ? and "
                       "objectindex in (select objectindex from %3) "
                       "order by objectindex,subindex")
            .arg(Schema::table("SubObjects", line), property, Schema::table("Objects", line));
    // Cells hold numbers or texts; both are looked for, and numbers come first.
    QList<SubAddress> result;
    bool isNumber = false;
    const qint64 number = Numbers::toLongLongByPrefix(value, &isNumber);
    if (isNumber)
        result = addressesOf(sql, {number});
    const QList<SubAddress> texts = addressesOf(sql, {value});
    QSet<quint32> known;
    for (const SubAddress &address : qAsConst(result))
        known.insert(StorePrivate::subKey(address.index, address.subindex));
    for (const SubAddress &address : texts) {
        if (!known.contains(StorePrivate::subKey(address.index, address.subindex)))
            result << address;
    }
    return result;
}
