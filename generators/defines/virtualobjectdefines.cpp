// Virtual objects.
#include "generators/defines/virtualobjectdefines.h"

#include "generators/defines/definecounts.h"

#include <algorithm>

namespace
{

constexpr quint8 kVirtual = 3; // SubIndexData::implementation
constexpr quint16 kLastCounted = 0xBFFF;

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

struct VirtualSub {
    quint8 sub;
    quint16 dataType;
};

QVector<VirtualSub> virtualSubs(const ObjectDataBase &store, quint8 line, quint16 index)
{
    QVector<VirtualSub> result;
    const QList<quint8> subs = store.getSubIndices(line, index, 0);
    for (const quint8 sub : subs) {
        SubIndexData data;
        if (store.getSubIndexData(line, index, sub, data) && data.implementation == kVirtual)
            result.append({sub, data.dataType});
    }
    return result;
}

void countByType(const DefineContext &context, const QVector<VirtualSub> &subs,
                 Defines::VirtualObjects *result)
{
    ++result->objects;
    for (int i = 0; i < Defines::kVirtualTypeCount; ++i) {
        if (!kTypes[i].isNumber && !context.dialect.hasVirtualStrings)
            continue;
        for (const VirtualSub &sub : subs)
            result->subsByType[size_t(i)] += sub.dataType == kTypes[i].dataType;
    }
}

void countRows(const DefineContext &context, quint8 line, quint16 index,
               const QVector<VirtualSub> &subs, Defines::VirtualObjects *result)
{
    const quint8 start = Defines::getSameStartSub(context.store, line, index);
    const auto rows = std::count_if(subs.begin(), subs.end(),
                                    [start](const VirtualSub &sub) { return sub.sub <= start; });
    if (rows == 0)
        return;
    result->descriptions += quint32(rows);
    ++result->assignments;
    ++result->assignmentsByLine.last();
}

} // namespace

Defines::VirtualObjects Defines::readVirtualObjects(const DefineContext &context)
{
    VirtualObjects result;
    bool countsTypes = true;
    for (const quint8 line : context.lines.numbers) {
        const QList<quint16> indices = context.store.getIndices(line, 0x1000, 0xFFFF);
        const bool hasRows = indices.size() >= 2;
        if (hasRows)
            result.assignmentsByLine.append(0);
        for (const quint16 index : indices) {
            const QVector<VirtualSub> subs = virtualSubs(context.store, line, index);
            if (subs.isEmpty())
                continue;
            if (countsTypes && index <= kLastCounted)
                countByType(context, subs, &result);
            if (hasRows)
                countRows(context, line, index, subs, &result);
        }
        countsTypes = !context.dialect.virtualsOfFirstLineOnly;
    }
    return result;
}

void Defines::generateVODDefines(DefineContext &context)
{
    if (context.multiProtocol && !context.dialect.virtualsBesideOtherProtocols)
        return;
    const VirtualObjects objects = readVirtualObjects(context);
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
