// The form of the object dictionary source and its classes of values.
#include "generators/objdict/objdictcontext.h"

#include "generators/codefeatures.h"
#include "generators/projectlines.h"

namespace
{

struct TypeRow {
    CAN::CANopenDataType type;
    ObjDict::ValueClass valueClass;
};

// clang-format off
constexpr TypeRow kTypes[] = {
    {CAN::CANopenDataType::Boolean,    ObjDict::ValueClass::U8},
    {CAN::CANopenDataType::Unsigned8,  ObjDict::ValueClass::U8},
    {CAN::CANopenDataType::Unsigned2,  ObjDict::ValueClass::U8},
    {CAN::CANopenDataType::Unsigned3,  ObjDict::ValueClass::U8},
    {CAN::CANopenDataType::Unsigned4,  ObjDict::ValueClass::U8},
    {CAN::CANopenDataType::Unsigned5,  ObjDict::ValueClass::U8},
    {CAN::CANopenDataType::Unsigned6,  ObjDict::ValueClass::U8},
    {CAN::CANopenDataType::Unsigned7,  ObjDict::ValueClass::U8},
    {CAN::CANopenDataType::Unsigned16, ObjDict::ValueClass::U16},
    {CAN::CANopenDataType::Unsigned24, ObjDict::ValueClass::U24},
    {CAN::CANopenDataType::Unsigned32, ObjDict::ValueClass::U32},
    {CAN::CANopenDataType::Unsigned40, ObjDict::ValueClass::U40},
    {CAN::CANopenDataType::TimeOfDay,  ObjDict::ValueClass::U48},
    {CAN::CANopenDataType::Unsigned48, ObjDict::ValueClass::U48},
    {CAN::CANopenDataType::Unsigned64, ObjDict::ValueClass::U64},
    {CAN::CANopenDataType::Integer8,   ObjDict::ValueClass::I8},
    {CAN::CANopenDataType::Integer16,  ObjDict::ValueClass::I16},
    {CAN::CANopenDataType::Integer24,  ObjDict::ValueClass::I24},
    {CAN::CANopenDataType::Integer32,  ObjDict::ValueClass::I32},
    {CAN::CANopenDataType::Real32,     ObjDict::ValueClass::R32},
};
// clang-format on

} // namespace

ObjDict::Dialect ObjDict::dialectOf(const ObjectDataBase &store)
{
    return readCodeFeatures(store).isForV4() ? v4Dialect() : classicDialect();
}

std::optional<ObjDict::ValueClass> ObjDict::valueClassOf(quint16 dataType)
{
    for (const TypeRow &row : kTypes) {
        if (static_cast<quint16>(row.type) == dataType)
            return row.valueClass;
    }
    return std::nullopt;
}

ObjDict::Form ObjDict::readForm(const ObjectDataBase &store, quint8 activeLine)
{
    Form form;
    const ProjectLines project = readProjectLines(store);
    for (const quint8 line : project.numbers) {
        const int objects = store.getIndices(line, ObjectRanges::kAll).size();
        if (objects > 0)
            form.lines << line;
        if (objects > 1)
            form.servedLines << line;
    }
    form.cobIdLines = project.numbers;
    form.multiLine = project.multiLine;
    form.singleLine = project.numbers.isEmpty() || project.numbers.contains(activeLine)
                          ? activeLine
                          : project.numbers.first();
    const ProjectFeatures features = readCodeFeatures(store);
    form.canFd = features.hasCanFd();
    form.hasLimitCheck = features.hasLimitCheck();
    return form;
}
