// Where short forms stand.
#include "store/yaml/yamlstandard.h"

#include "store/yaml/yamlkeys.h"
#include "support/accesstype.h"

namespace
{

constexpr bool areSound()
{
    for (const YamlStandardForm &form : YamlStandard::kForms) {
        for (int row = 0; row < form.count; ++row) {
            if (!form.objects.contains(form.rows[row].index))
                return false;
        }
        for (const YamlStandardForm *other = YamlStandard::kForms; other != &form; ++other) {
            if (other->objects.contains(form.objects.first) ||
                other->objects.contains(form.objects.last))
                return false;
        }
    }
    return true;
}
static_assert(areSound(), "the rows are of their form, and each object has one form");

constexpr bool isMappingOf(const YamlStandardForm &form, quint16 index)
{
    return form.shape == YamlStandardShape::Pdos &&
           form.objects.contains(quint32(index) - ObjectRanges::kFromPdoParameterToMapping);
}

QStringList keysOfMapping(const YamlStandardForm &form, quint16 index, std::optional<quint8> sub)
{
    const quint16 parameter = index - ObjectRanges::kFromPdoParameterToMapping;
    QStringList keys{QString::fromLatin1(form.word),
                     QString::number(form.objects.numberOf(parameter)),
                     QString::fromLatin1(YamlKeys::kMap)};
    if (sub && *sub > 0)
        keys << QString::number(*sub - 1);
    return keys;
}

QStringList keysOfRow(const YamlStandardForm &form, quint16 index, std::optional<quint8> sub)
{
    QStringList keys{QString::fromLatin1(form.word)};
    if (form.shape == YamlStandardShape::Members && sub && *sub > 0)
        return keys << QString::number(*sub);
    const bool isNumbered =
        form.shape == YamlStandardShape::Records || form.shape == YamlStandardShape::Pdos;
    if (isNumbered)
        keys << QString::number(form.objects.numberOf(index));
    const bool isVariable = form.shape == YamlStandardShape::Variables;
    for (const YamlStandardRow &row : form) {
        if (row.key && (isVariable ? row.index == index : sub && row.sub == *sub))
            return keys << QString::fromLatin1(row.key);
    }
    return keys;
}

} // namespace

SubIndexData YamlStandard::subIndexOf(const YamlStandardRow &row, int number)
{
    SubIndexData sub;
    sub.name = QString::fromLatin1(row.name).replace(QLatin1String("%1"), QString::number(number));
    sub.dataType = row.type;
    sub.accessType = QString::fromLatin1(row.access);
    sub.defaultValue = QString::fromLatin1(row.value);
    sub.pdoMapping = row.pdo;
    sub.implementation = row.implementation;
    // The first SDO server alone has identifiers that CiA 301 sets.
    if (row.index == ObjectRanges::kSdoServers.first && number > 1 && !row.isOptional) {
        sub.accessType = AccessType::kReadWrite;
        sub.defaultValue = QStringLiteral("0x80000000");
    }
    return sub;
}

ObjectRecord YamlStandard::variableOf(const YamlStandardRow &row)
{
    ObjectRecord object;
    object.data.name = QString::fromLatin1(row.name);
    object.data.dataType = row.type;
    object.subs[0] = subIndexOf(row, 1);
    return object;
}

IndexData YamlStandard::objectOf(const YamlStandardForm &form, int number)
{
    IndexData data;
    data.name =
        QString::fromLatin1(form.name).replace(QLatin1String("%1"), QString::number(number));
    const bool isArray = form.shape == YamlStandardShape::Members;
    data.objectCode = isArray ? CANopen::ObjectCode::Array : CANopen::ObjectCode::Record;
    if (isArray)
        data.dataType = form.rows[0].type;
    return data;
}

const YamlStandardForm *YamlStandard::formOf(quint16 index)
{
    for (const YamlStandardForm &form : kForms) {
        if (form.objects.contains(index) || isMappingOf(form, index))
            return &form;
    }
    return nullptr;
}

QStringList YamlStandard::keysOf(quint16 index, std::optional<quint8> sub)
{
    const YamlStandardForm *form = formOf(index);
    if (!form)
        return {};
    return isMappingOf(*form, index) ? keysOfMapping(*form, index, sub)
                                     : keysOfRow(*form, index, sub);
}
