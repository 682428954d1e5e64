// Variants of a device.
#include "generators/descriptions/edsvariants.h"

#include "store/objectdatabase.h"

#include <QSet>

#include <algorithm>
#include <iterator>

namespace
{

const QString kDefineKey = QStringLiteral("eds_define");

/// Names of variants, each once, in order of first appearance.
class DefineList
{
public:
    void add(const QString &define)
    {
        if (known.contains(define))
            return;
        known.insert(define);
        defines << define;
    }
    void add(const Metadata &metadata)
    {
        const auto found = metadata.constFind(kDefineKey);
        if (found != metadata.constEnd())
            add(*found);
    }
    void addSubIndices(const ObjectDataBase &store, quint8 line, quint16 index)
    {
        store.visitSubIndices(line, index, 0,
                              [this](quint8, const SubIndexData &data) { add(data.metadata); });
    }

    QStringList defines;

private:
    QSet<QString> known;
};

} // namespace

EdsVariants::EdsVariants(const ObjectDataBase &store, quint8 line)
{
    DefineList list;
    list.add(QString());
    const QList<quint16> indices = store.getIndices(line, ObjectRanges::kAll);
    for (const quint16 index : indices) {
        ObjectDataBase::INDEX_DATA_T data;
        (void)store.getIndexData(line, index, data); // what cannot be read belongs to no variant
        const auto define = data.metadata.constFind(kDefineKey);
        (define == data.metadata.constEnd() ? common : own[*define]) << index;
        list.add(data.metadata);
        list.addSubIndices(store, line, index);
    }
    allDefines = list.defines;
}

QList<quint16> EdsVariants::objectsOf(const QString &define) const
{
    const QList<quint16> ofVariant = own.value(define);
    QList<quint16> objects;
    objects.reserve(common.size() + ofVariant.size());
    std::merge(common.cbegin(), common.cend(), ofVariant.cbegin(), ofVariant.cend(),
               std::back_inserter(objects));
    return objects;
}

bool isOfVariant(const Metadata &metadata, const QString &define)
{
    const auto found = metadata.constFind(kDefineKey);
    return found == metadata.constEnd() || *found == define;
}
