// Description and assignment of objects.
#include "generators/objdict/objdictdescription.h"

#include "generators/objdict/objdictarrays.h"
#include "generators/objdict/objdictservices.h"
#include "generators/objdict/objdictvalues.h"
#include "generators/subindexrun.h"
#include "support/accesstype.h"
#include "support/implementation.h"
#include "support/numbers.h"

namespace
{

using namespace ObjDict;
using SubData = ObjectDataBase::SUBINDEX_DATA_T;

/// The stack looks at objects below by subindex.
constexpr quint16 kFirstCompactable = ObjectRanges::kSdoServers.first;
constexpr int kShortestCompactable = 3; ///< subindices, 0 included

/// Which subindices of an object have a row: those up to the start of a run, if there is one, but
/// for virtual ones.
class DescribedSubs
{
public:
    DescribedSubs(const Context &context, quint8 line, quint16 index)
        : runStart(getSameStartSub(context, line, index))
    {
    }

    bool contains(quint8 sub, const SubData &data) const
    {
        return (runStart < 0 || sub <= runStart) &&
               data.implementation != Implementation::kVirtualObject;
    }

    /// Deliberate: without a run, subindex 255 is marked as one, of itself alone; held by
    /// tst_golden.
    bool isMarkedAsRun(quint8 sub) const { return sub == static_cast<quint8>(runStart); }

private:
    int runStart; ///< -1: no run
};

quint32 countDescribed(const Context &context, quint8 line, quint16 index)
{
    const DescribedSubs described(context, line, index);
    quint32 count = 0;
    context.store.visitSubIndices(line, index, 0, [&](quint8 sub, const SubData &data) {
        count += described.contains(sub, data);
    });
    return count;
}

bool isShared(const Context &context, quint8 line, quint16 index, quint8 sub)
{
    SubData data;
    return line != 0 && context.store.getSubIndexData(line, index, sub, data) &&
           valueLine(context.store, line, index, sub, data) == 0;
}

/// Does an object use the rows of line 0? Rows stand in one piece, so all of its subindices must be
/// shared, and be those of line 0.
bool sharesRows(const Context &context, quint8 line, quint16 index)
{
    // The common case first: most objects share nothing.
    if (!isShared(context, line, index, 0))
        return false;
    const QList<quint8> subs = context.store.getSubIndices(line, index, 0);
    if (subs != context.store.getSubIndices(0, index, 0))
        return false;
    for (const quint8 sub : subs) {
        if (!isShared(context, line, index, sub))
            return false;
    }
    return true;
}

/// The last subindex, the others being those before it.
int startOfRun(const Context &context, quint8 line, quint16 index, const QList<quint8> &subs)
{
    SubData last;
    SubData data;
    (void)context.store.getSubIndexData(line, index, subs.last(), last); // listed, so it exists
    const bool isLastShared = isShared(context, line, index, subs.last());
    int start = -1;
    for (int i = subs.size() - 2; i >= 0; --i) {
        const quint8 sub = subs.at(i);
        // Deliberate: a gap ends the search without a run, held by tst_golden.
        if (sub + 1 != subs.at(i + 1))
            return -1;
        (void)context.store.getSubIndexData(line, index, sub, data); // as above
        // Values of a run stand side by side, so it lies on one line.
        if (!areDescribedAlike(data, last) || isShared(context, line, index, sub) != isLastShared)
            return start;
        start = sub;
    }
    return start;
}

/// "CO_ATTR_NUM | CO_ATTR_READ" and so on.
void writeAttributes(TextWriter &out, const SubData &data, const RowFacts &facts)
{
    const bool isMappable = !data.pdoMapping.isEqualToType(PDOMappingType::No);
    const QString &access = data.accessType;
    const bool isReadOnly = access == AccessType::kConst || access == AccessType::kReadOnly;
    const bool isWriteOnly = access == AccessType::kWriteOnly;
    const bool isNumber = data.dataType <= CAN::typeNumber(CAN::CANopenDataType::Real32) ||
                          data.dataType == CAN::typeNumber(CAN::CANopenDataType::Unsigned24);
    out.raw(isNumber ? "CO_ATTR_NUM | " : "");
    out.raw(isReadOnly    ? "CO_ATTR_READ"
            : isWriteOnly ? "CO_ATTR_WRITE"
                          : "CO_ATTR_READ | CO_ATTR_WRITE");
    if (isMappable && !isWriteOnly && access != AccessType::kReadWriteWrite)
        out.raw(" | CO_ATTR_MAP_TR");
    if (isMappable && !isReadOnly && access != AccessType::kReadWriteRead)
        out.raw(" | CO_ATTR_MAP_REC");
    out.parts(facts.hasDefault ? " | CO_ATTR_DEFVAL" : "", facts.hasLimit ? " | CO_ATTR_LIMIT" : "",
              data.nvStorage ? " | CO_ATTR_STORE" : "",
              facts.isCompact ? " | CO_ATTR_COMPACT" : "");
}

void describeSubObject(Context &context, const Place &place, const SubData &data, bool isCompact)
{
    const Key key = keyOf(place.line, place.index, place.sub);
    const Positions &positions = context.positions;
    const bool isConstant = data.implementation == Implementation::kManagedConst;
    RowFacts facts;
    facts.reference = isConstant
                          ? positions.constants.value(key)
                          : getReferencePosition(context, place.line, place.index, place.sub);
    // Deliberate: no default and no limit where none was recorded, since the position would be that
    // of another object's value. Held by tst_golden.
    facts.hasDefault = data.defaultInEds && positions.constants.contains(key);
    facts.hasLimit =
        data.limitInEds && (context.form.hasLimitCheck ? positions.lowLimits.contains(key)
                                                       : takesLimits(data.dataType));
    facts.isCompact = isCompact;
    writeDescriptionStart(context, place, data, facts);
    context.out.parts(" (UNSIGNED16)", quint32(positions.constants.value(key)));
    if (context.form.hasLimitCheck)
        context.out.parts("u, (UNSIGNED16)", quint32(positions.lowLimits.value(key)),
                          "u, (UNSIGNED16)", quint32(positions.highLimits.value(key)));
    writeDescriptionEnd(context, place.line, place.index, place.sub);
}

quint32 describeObject(Context &context, quint8 line, quint16 index, quint32 firstRow)
{
    if (sharesRows(context, line, index))
        return 0;
    const DescribedSubs described(context, line, index);
    quint32 rows = 0;
    context.store.visitSubIndices(line, index, 0, [&](quint8 sub, const SubData &data) {
        if (!described.contains(sub, data))
            return;
        describeSubObject(context, {line, index, sub}, data, described.isMarkedAsRun(sub));
        ++rows;
    });
    context.positions.descriptionRows.insert(
        keyOf(line, index, 0), {static_cast<quint16>(firstRow), static_cast<quint16>(rows)});
    return rows;
}

bool hasAssignment(const Context &context, quint8 line, quint16 index)
{
    SubData data;
    return !context.store.getSubIndexData(line, index, 0, data) ||
           data.implementation != Implementation::kVirtualObject;
}

void assignIndex(Context &context, quint8 line, quint16 index)
{
    ObjectDataBase::INDEX_DATA_T object;
    (void)context.store.getIndexData(line, index, object); // listed, so it exists
    const QList<quint8> subs = context.store.getSubIndices(line, index, 0);
    const quint8 rowLine = sharesRows(context, line, index) ? 0 : line;
    AssignRow row;
    row.index = index;
    const Positions::RowPlace place =
        context.positions.descriptionRows.value(keyOf(rowLine, index, 0));
    row.rows = place.count;
    row.highestSub = subs.isEmpty() ? 0 : subs.last();
    row.objectType = objectTypeWord(object.objectCode, subs.size());
    row.firstRow = place.count == 0 ? 0 : place.first;
    writeAssignment(context.out, row);
}

/// Calls visit(line, index) for each object of the form's lines until it gives true; gives that.
template <typename Visitor>
bool visitObjects(const Context &context, Visitor visit)
{
    for (const quint8 line : context.form.lines) {
        const QList<quint16> indices = context.store.getIndices(line, ObjectRanges::kAll);
        for (const quint16 index : indices) {
            if (visit(line, index))
                return true;
        }
    }
    return false;
}

/// The declaration of a table. C knows no empty one, so it then gets a row that nothing refers to.
void writeTableStart(Context &context, const char *withRows, const char *withoutRows, bool hasRows)
{
    // Deliberate: the form without rows, held by tst_golden.
    context.out.fill(
        hasRows ? withRows : withoutRows,
        {{"const", context.dialect.constMacro}, {"storage", context.dialect.constStorageMacro}});
}

} // namespace

int ObjDict::getSameStartSub(const Context &context, quint8 line, quint16 index)
{
    if (!context.form.compactArrays || index < kFirstCompactable)
        return -1;
    const QList<quint8> subs = context.store.getSubIndices(line, index, 0);
    if (subs.size() < kShortestCompactable)
        return -1;
    return startOfRun(context, line, index, subs.first() == 0 ? subs.mid(1) : subs);
}

TableRows ObjDict::countRows(const Context &context)
{
    TableRows count;
    visitObjects(context, [&](quint8 line, quint16 index) {
        count.descriptions += countDescribed(context, line, index);
        // Deliberate: an object without subindex 0 counts as well, it has a row; held by
        // tst_generatedc.
        if (hasAssignment(context, line, index))
            ++count.assignments;
        return false;
    });
    return count;
}

void ObjDict::describeObjects(Context &context)
{
    const bool hasRows = visitObjects(context, [&](quint8 line, quint16 index) {
        return countDescribed(context, line, index) > 0;
    });
    context.out.raw("\n/* description of the objects */\n");
    writeTableStart(context,
                    "$const$ CO_OBJECT_DESC_T $storage$ od_description[CO_OBJ_DESC_CNT] = {\n",
                    "$const$ CO_OBJECT_DESC_T $storage$ od_description[1] = {\n\t{ 0 }\n", hasRows);
    quint32 row = 0;
    visitObjects(context, [&](quint8 line, quint16 index) {
        row += describeObject(context, line, index, row);
        return false;
    });
    if (row > 0xFFFF)
        context.positions.isOverfull = true;
    context.out.raw("};\n");
}

void ObjDict::assignObjects(Context &context)
{
    const auto isAssigned = [&](quint8 line, quint16 index) {
        return hasAssignment(context, line, index);
    };
    context.out.raw("\n/* object dictionary assignment */\n");
    writeTableStart(context, "$const$ CO_OD_ASSIGN_T $storage$ od_assign[CO_OD_ASSIGN_CNT] = {\n",
                    "$const$ CO_OD_ASSIGN_T $storage$ od_assign[1] = {\n\t{ 0 }\n",
                    visitObjects(context, isAssigned));
    visitObjects(context, [&](quint8 line, quint16 index) {
        if (isAssigned(line, index))
            assignIndex(context, line, index);
        return false;
    });
    context.out.raw("};\n");
}

quint32 ObjDict::getReferencePosition(const Context &context, quint8 line, quint16 index,
                                      quint8 sub)
{
    const ServiceRow *service = serviceOf(index, sub);
    if (service && service->reference == Reference::Index)
        return index;
    if (service && service->reference == Reference::Number)
        return service->objects.numberOf(index);
    SubData data;
    const bool isSharedPossible =
        line != 0 && context.store.getSubIndexData(line, index, sub, data);
    const quint8 owner = isSharedPossible ? valueLine(context.store, line, index, sub, data) : line;
    return context.positions.managed.value(keyOf(owner, index, sub));
}

const char *ObjDict::objectTypeWord(CANopen::ObjectCode code, int subs)
{
    switch (code) {
    case CANopen::ObjectCode::Domain:
        return "CO_ODTYPE_DOM";
    case CANopen::ObjectCode::Var:
        return "CO_ODTYPE_VAR";
    case CANopen::ObjectCode::Array:
        return "CO_ODTYPE_ARRAY";
    case CANopen::ObjectCode::Record:
        return "CO_ODTYPE_STRUCT";
    default:
        // Deliberate: a row without a word is not C, held by tst_generatedc.
        return subs > 1 ? "CO_ODTYPE_STRUCT" : "CO_ODTYPE_VAR";
    }
}

void ObjDict::writeDescriptionStart(Context &context, const Place &place, const SubData &data,
                                    const RowFacts &facts)
{
    TextWriter &out = context.out;
    out.parts("\t{ (UNSIGNED8)", place.sub, "u, ");
    writeImplementationDataType(out, data, place.index, place.sub);
    out.parts(", (UNSIGNED16)", facts.reference, "u, ");
    writeAttributes(out, data, facts);
    out.raw(", ");
}

void ObjDict::writeDescriptionEnd(Context &context, quint8 line, quint16 index, quint8 sub)
{
    context.out.raw("u},/* ");
    if (context.form.multiLine)
        context.out.parts(line, "-");
    context.out.parts("0x", HexNumber{index, 4}, ":", sub, "*/ \n");
}

void ObjDict::writeAssignment(TextWriter &out, const AssignRow &row)
{
    out.parts("\t{ 0x", HexNumber{row.index, 4}, "u, ", quint32(row.rows), "u, ",
              quint32(row.highestSub), "u, ", row.objectType, ", ", row.firstRow, "u },\n");
}
