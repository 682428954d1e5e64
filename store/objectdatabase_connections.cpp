// PDO links between lines.
#include "store/objectdatabase_p.h"

bool ObjectDataBase::removeConnnection(quint8 line)
{
    if (d->lockWriteAccess)
        return false;
    return d->exec(QStringLiteral("delete from Connections where prodnode = ? OR connode = ?"),
                   {line, line});
}

bool ObjectDataBase::removeConnnection(quint8 line, quint16 index)
{
    if (d->lockWriteAccess)
        return false;
    const Cells object{line, index};
    const bool produced = d->exec(
        QStringLiteral("delete from Connections where prodnode = ? and prodindex = ?"), object);
    const bool consumed = d->exec(
        QStringLiteral("delete from Connections where connode = ? and conindex = ?"), object);
    return produced && consumed;
}

bool ObjectDataBase::removeConnnection(quint8 line, quint16 index, quint8 sub)
{
    const bool produced = removeProducerConnections(line, index, sub);
    return removeConsumerConnection(line, index, sub) && produced;
}

bool ObjectDataBase::removeProducerConnections(quint8 line, quint16 index, quint8 sub)
{
    if (d->lockWriteAccess)
        return false;
    return d->exec(QStringLiteral("delete from Connections where prodnode = ? and prodindex = ? "
                                  "and prodsub = ?"),
                   {line, index, sub});
}

bool ObjectDataBase::removeConsumerConnection(quint8 line, quint16 index, quint8 sub)
{
    if (d->lockWriteAccess)
        return false;
    return d->exec(QStringLiteral("delete from Connections where connode = ? and conindex = ? "
                                  "and consub = ?"),
                   {line, index, sub});
}
