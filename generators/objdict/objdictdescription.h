// The two tables by which the stack finds an object: od_assign has a row an object,
// od_description a row a subindex, or a row a run of like ones.
#pragma once

#include "generators/objdict/objdictarrays.h"

namespace ObjDict
{

// The sections, in file order. They read the positions that the sections of values leave.
void describeObjects(Context &context); ///< fills descriptionRows
void assignObjects(Context &context);

/// Lengths of the tables. The descriptions count what lines share once for each of them, so the
/// table may have room for more than its rows.
struct TableRows {
    quint32 assignments = 0;
    quint32 descriptions = 0;
};
TableRows countRows(const Context &context);

/// First subindex of the run of like subindices that ends an object; -1 if there is none, if a gap
/// lies before the run, or if the form has no compact arrays.
int getSameStartSub(const Context &context, quint8 line, quint16 index);

/// What the reference column of a subindex holds that is not constant.
quint32 getReferencePosition(const Context &context, quint8 line, quint16 index, quint8 sub);

/// "CO_ODTYPE_..." of an object; \a subs is the count of its subindices.
const char *objectTypeWord(CANopen::ObjectCode code, int subs);

/// What a row says of its subindex besides type, access and mapping.
struct RowFacts {
    quint32 reference = 0;
    bool hasDefault = false;
    bool hasLimit = false;
    bool isCompact = false;
};

/// Start of a description row, up to its attributes and what stands between.
void writeDescriptionStart(Context &context, const Place &place,
                           const ObjectDataBase::SUBINDEX_DATA_T &data, const RowFacts &facts);

/// "/* 0x2000:1*/ \n", the end of a description row.
void writeDescriptionEnd(Context &context, quint8 line, quint16 index, quint8 sub);

/// A row of od_assign, or of a table of its kind.
struct AssignRow {
    quint16 index = 0;
    int rows = 0; ///< in the description
    quint8 highestSub = 0;
    const char *objectType = "";
    quint32 firstRow = 0;
};
void writeAssignment(TextWriter &out, const AssignRow &row);

} // namespace ObjDict
