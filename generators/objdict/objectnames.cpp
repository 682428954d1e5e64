// Names of objects and of their subindices.
#include "generators/objdict/objectnames.h"

#include "store/objectdatabase.h"
#include "store/projectfeatures.h"
#include "support/helper.h"
#include "support/objectranges.h"

namespace
{

/// An attribute that only few records have.
QString givenName(const Metadata &metadata, const char *key)
{
    return metadata.isEmpty() ? QString() : metadata.value(QLatin1String(key));
}

QString objectName(const IndexData &data, quint16 index)
{
    // Deliberate: the user's own name keeps its runs of "_", and has no "I_" before it unless a
    // digit begins it, which no name of C can; held by tst_golden.
    const QString given =
        DefineNames::onlyNameCharacters(givenName(data.metadata, "objectdefine").toUpper());
    if (!given.isEmpty())
        return given.at(0).isDigit() ? QStringLiteral("I_") + given : given;
    const QString name = data.name.isEmpty() ? IndexData().name : data.name;
    return DefineNames::withKind("I_", Helper::substituteVariables(name, index, 0));
}

QString subIndexName(const SubIndexData &data, quint16 index, quint8 sub)
{
    const QString given = givenName(data.metadata, "subdefine");
    const QString name =
        given.isEmpty() ? Helper::substituteVariables(data.name, index, sub) : given;
    return DefineNames::withKind("S_", name);
}

void addObject(ObjectNames &names, quint16 index, const IndexData &data)
{
    const QString name = objectName(data, index);
    const std::optional<QString> claimed = names.taken.claimCounted(name, index, "");
    names.objects.push_back({index, 0, claimed.has_value(), claimed.value_or(name)});
}

/// Communication objects of a kind have the same subindices.
void addSubIndex(ObjectNames &names, quint16 index, quint8 sub, const SubIndexData &data)
{
    const QString name = subIndexName(data, index, sub);
    std::optional<QString> claimed = index > ObjectRanges::kCommunication.last
                                         ? names.taken.claimCounted(name, sub, "")
                                         : names.taken.claimShared(name, sub);
    const bool hasDefine = claimed.has_value();
    if (!claimed && names.taken.isDefined(name, sub))
        claimed = name;
    names.objects.push_back({index, sub, hasDefine, claimed.value_or(QString())});
}

} // namespace

ObjectNames readObjectNames(const ObjectDataBase &store, quint8 line, bool isMultiLine)
{
    ObjectNames names(prefixOfNames(line, isMultiLine));
    const QList<quint16> indices = store.getIndices(line, ObjectRanges::kAll);
    for (const quint16 index : indices) {
        IndexData data;
        if (!store.getIndexData(line, index, data))
            continue;
        addObject(names, index, data);
        if (!namesSubIndices(data))
            continue;
        store.visitSubIndices(line, index, 1, [&](quint8 sub, const SubIndexData &member) {
            addSubIndex(names, index, sub, member);
        });
    }
    return names;
}

ObjectNamesByLine readObjectNames(const ObjectDataBase &store)
{
    const QList<quint8> lines = store.getNodes();
    const bool isMultiLine = lines.size() > 1 || readProjectFeatures(store).forcesMultiLine();
    ObjectNamesByLine names;
    for (const quint8 line : lines)
        names.emplace(line, readObjectNames(store, line, isMultiLine));
    return names;
}

bool namesSubIndices(const IndexData &data)
{
    return data.objectCode == CANopen::ObjectCode::Array ||
           data.objectCode == CANopen::ObjectCode::Record;
}

QString prefixOfNames(quint8 line, bool isMultiLine)
{
    return isMultiLine ? QStringLiteral("L%1_").arg(line) : QString();
}
