// The values of the object dictionary: arrays of managed variables, constants, string defaults and
// pointers to application variables, and the structure by which the stack finds them.
#pragma once

#include "generators/objdict/objdictcontext.h"

namespace ObjDict
{

// The sections, in file order.
void defineManagedVariables(Context &context);
void defineAllConsts(Context &context);
void generateStringDefaultValues(Context &context);
void defineApplicationVariables(Context &context);
void initDataTypeStructure(Context &context);
void generateStringDefaultValueFunction(Context &context);

/// C expression for the variable of the application that holds a value.
QString variableName(const ObjectDataBase::SUBINDEX_DATA_T &data, quint16 index, quint8 sub);

/// C expression for the address of a subindex's value; "NULL" for one that does not exist.
QString getObjectAddress(const Context &context, quint8 line, quint16 index, quint8 sub);

/// The `CO_DTYPE_...` tag of a subindex: how the stack treats the entry.
void writeImplementationDataType(TextWriter &out, const ObjectDataBase::SUBINDEX_DATA_T &data,
                                 quint16 index, quint8 sub);

bool isWriteable(const QString &accessType);

/// Are limits recorded for values of this type?
bool takesLimits(quint16 dataType);

/// Fills the positions of constants as defineAllConsts() does, and writes nothing.
void collectConstants(Context &context);

/// The line whose arrays hold the value of a subindex: 0 if \a line shares it with line 0, which
/// must have the same subindex and share it too; else \a line.
quint8 valueLine(const ObjectDataBase &store, quint8 line, quint16 index, quint8 sub,
                 const ObjectDataBase::SUBINDEX_DATA_T &data);

/// " /* 0x2000:1 */", the comment after an entry, in a multi-line form with the line in front.
void writeEntryComment(Context &context, Key key);

} // namespace ObjDict
