// Which virtual subindices have values and descriptions.
#include "generators/virtualobjects.h"

#include "generators/projectlines.h"
#include "generators/subindexrun.h"
#include "support/implementation.h"

#include <QMap>

namespace
{

constexpr int kShortestRunArray = 3; // subindices of an array that may hold a run

bool mayHoldRun(const ObjectDataBase &store, quint8 line, quint16 index, int subs)
{
    ObjectDataBase::INDEX_DATA_T object;
    return store.getIndexData(line, index, object) &&
           object.objectCode == CANopen::ObjectCode::Array && subs >= kShortestRunArray;
}

/// Start of the run of like subindices at the end of the list.
quint8 startOfRun(const ObjectDataBase &store, quint8 line, quint16 index,
                  const QList<quint8> &subs)
{
    ObjectDataBase::SUBINDEX_DATA_T last;
    ObjectDataBase::SUBINDEX_DATA_T data;
    if (!store.getSubIndexData(line, index, subs.last(), last))
        return subs.last();
    quint8 start = subs.last();
    for (int i = subs.size() - 2; i >= 0; --i) {
        const quint8 sub = subs.at(i);
        if (sub + 1 != start || !store.getSubIndexData(line, index, sub, data) ||
            !areDescribedAlike(data, last))
            break;
        start = sub;
    }
    return start;
}

QList<ObjectDataBase::SubAddress> virtualSubs(const ObjectDataBase &store, quint8 line)
{
    return store.getSubsByProperty(line, QStringLiteral("implementation"),
                                   QString::number(Implementation::kVirtualObject));
}

/// The described ones of the virtual subindices of an object.
VirtualObjects::Object describedObject(const ObjectDataBase &store, quint8 line, quint16 index,
                                       const QList<quint8> &subs)
{
    const QList<quint8> all = store.getSubIndices(line, index, 0);
    const quint8 start = VirtualObjects::sameStartSub(store, line, index);
    VirtualObjects::Object object{line, index, {}, false};
    for (const quint8 sub : subs) {
        if (sub <= start)
            object.subs << sub;
    }
    object.endsInRun = object.subs.endsWith(start) && start != all.last() &&
                       mayHoldRun(store, line, index, all.size());
    return object;
}

} // namespace

quint8 VirtualObjects::sameStartSub(const ObjectDataBase &store, quint8 line, quint16 index)
{
    ObjectDataBase::INDEX_DATA_T object;
    const QList<quint8> subs = store.getSubIndices(line, index, 0);
    if (subs.isEmpty() || !store.getIndexData(line, index, object))
        return 0;
    if (mayHoldRun(store, line, index, subs.size()))
        return startOfRun(store, line, index, subs);
    const bool isStructured = object.objectCode == CANopen::ObjectCode::Array ||
                              object.objectCode == CANopen::ObjectCode::Record;
    return isStructured ? subs.last() : 0;
}

QVector<VirtualObjects::Value> VirtualObjects::readValues(const ObjectDataBase &store,
                                                          const QList<quint8> &lines)
{
    QVector<Value> values;
    for (const quint8 line : lines) {
        const QList<ObjectDataBase::SubAddress> subs = virtualSubs(store, line);
        for (const ObjectDataBase::SubAddress &sub : subs) {
            if (ObjectRanges::kAssigned.contains(sub.index))
                values << Value{line, sub.index, sub.subindex,
                                store.getSubIndexDatatype(line, sub.index, sub.subindex)};
        }
    }
    return values;
}

QList<quint8> VirtualObjects::describedLines(const ObjectDataBase &store)
{
    QList<quint8> lines;
    const QList<quint8> existing = readProjectLines(store).numbers;
    for (const quint8 line : existing) {
        if (store.getIndices(line, ObjectRanges::kAll).size() >= 2)
            lines << line;
    }
    return lines;
}

QVector<VirtualObjects::Object> VirtualObjects::readObjects(const ObjectDataBase &store,
                                                            const QList<quint8> &lines)
{
    QVector<Object> objects;
    for (const quint8 line : lines) {
        QMap<quint16, QList<quint8>> subsOf;
        const QList<ObjectDataBase::SubAddress> subs = virtualSubs(store, line);
        for (const ObjectDataBase::SubAddress &sub : subs) {
            if (ObjectRanges::kAll.contains(sub.index))
                subsOf[sub.index] << sub.subindex;
        }
        for (auto it = subsOf.cbegin(); it != subsOf.cend(); ++it) {
            const Object object = describedObject(store, line, it.key(), *it);
            if (!object.subs.isEmpty())
                objects << object;
        }
    }
    return objects;
}
