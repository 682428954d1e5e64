// Virtual objects.
#include "generators/defines/virtualobjectdefines.h"

#include "generators/virtualobjects.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace
{

struct TypeRow {
    quint16 dataType;
    Word start;
    bool isNumber;
};

// clang-format off
constexpr TypeRow kTypes[Defines::kVirtualTypeCount] = { // row order is file order
    { 5, {"#define CO_VIRTUAL_U8_CNT \t", "#define CO_VIRTUAL_U8_CNT\t"}, true},
    { 6, {"#define CO_VIRTUAL_U16_CNT\t"}, true},
    { 7, {"#define CO_VIRTUAL_U32_CNT\t"}, true},
    { 2, {"#define CO_VIRTUAL_I8_CNT \t", "#define CO_VIRTUAL_I8_CNT\t"}, true},
    { 3, {"#define CO_VIRTUAL_I16_CNT\t"}, true},
    { 4, {"#define CO_VIRTUAL_I32_CNT\t"}, true},
    { 8, {"#define CO_VIRTUAL_R32_CNT\t"}, true},
    {22, {"#define CO_VIRTUAL_U24_CNT\t"}, true},
    {10, {"#define CO_VIRTUAL_OS_CNT \t"}, false},
    { 9, {"#define CO_VIRTUAL_VS_CNT \t"}, false},
    {15, {"#define CO_VIRTUAL_DOMAIN_CNT\t"}, false},
};
// clang-format on

void countByType(const DefineContext &context, Defines::VirtualCounts *result)
{
    const QList<quint8> lines = context.dialect.virtualsOfFirstLineOnly
                                    ? context.lines.numbers.mid(0, 1)
                                    : context.lines.numbers;
    const QVector<VirtualObjects::Value> values = VirtualObjects::readValues(context.store, lines);
    QHash<quint16, quint16> subs;
    QSet<quint32> objects;
    for (const VirtualObjects::Value &value : values) {
        ++subs[value.dataType];
        objects.insert(quint32(value.line) << 16 | value.index);
    }
    result->objects = static_cast<quint16>(objects.size());
    for (size_t i = 0; i < Defines::kVirtualTypeCount; ++i) {
        if (kTypes[i].isNumber || context.dialect.hasVirtualStrings)
            result->subsByType[i] = subs.value(kTypes[i].dataType);
    }
}

} // namespace

Defines::VirtualCounts Defines::countVirtualObjects(const DefineContext &context)
{
    VirtualCounts result;
    countByType(context, &result);
    const QList<quint8> lines = VirtualObjects::describedLines(context.store);
    for (const quint8 line : lines) {
        const auto objects = VirtualObjects::readObjects(context.store, {line});
        for (const VirtualObjects::Object &object : objects)
            result.descriptions += quint32(object.subs.size());
        result.assignments += quint32(objects.size());
        result.assignmentsByLine.append(quint32(objects.size()));
    }
    return result;
}

void Defines::generateVODDefines(DefineContext &context)
{
    if (context.multiProtocol && !context.dialect.virtualsBesideOtherProtocols)
        return;
    const VirtualCounts objects = countVirtualObjects(context);
    if (std::all_of(objects.subsByType.begin(), objects.subsByType.end(),
                    [](quint16 count) { return count == 0; }))
        return;
    context.raw({"\n"});
    context.define({"#define CO_VIRTUAL_INDEX_CNT "}, objects.objects);
    context.raw({"/* number of virtual objects */\n"});
    for (int i = 0; i < kVirtualTypeCount; ++i) {
        if (kTypes[i].isNumber || context.dialect.hasVirtualStrings)
            context.define(kTypes[i].start, objects.subsByType[size_t(i)]);
    }
    context.raw({"\n"});
    if (objects.assignments != 0) {
        context.define({"#define CO_VOD_ASSIGN_CNT "}, objects.assignments);
        context.define({"#define CO_VOBJ_DESC_CNT "}, objects.descriptions);
    }
    if (context.dialect.listsVirtualsByLine && objects.assignmentsByLine.size() >= 2)
        context.defineList({"#define CO_VIRTUAL_OBJECT_CNT "}, objects.assignmentsByLine);
}
