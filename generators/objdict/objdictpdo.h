// The mapping tables of PDOs whose mapping is fixed at compile time, and the calls that hand them
// to the stack.
#pragma once

#include "generators/objdict/objdictcontext.h"

#include <QHash>

namespace ObjDict
{

/// Writes the tables of all lines; fills Context::rpdoTables unless the project routes PDOs.
void createMappingTables(Context &context);

/// Is the mapping of a PDO fixed? \a pdoIndex is its communication object. A PDO without a mapping
/// object has a fixed one, which is empty.
bool isStaticMapping(const Context &context, quint8 line, quint16 pdoIndex);

/// Finds the TPDO that sends a mapped object. Reads the mapping objects of a line once.
class TpdoLookup
{
public:
    explicit TpdoLookup(const ObjectDataBase &database) : store(database) {}

    /// Number of the last TPDO of \a line that has the entry \a mapping, from 1; 0 for none.
    quint16 getTPDO(quint8 line, quint32 mapping);

private:
    const ObjectDataBase &store;
    QHash<quint8, QHash<quint32, quint16>> numbersByLine;
};

/// \a name becomes the table of an RPDO if equal mappings of its line share one, else it stays.
/// createMappingTables() comes before.
void updatePdoVarName(const Context &context, quint8 line, quint16 pdoIndex, QString &name);

// The call for one PDO; \a index is its communication object. The caller adds the check of the
// result.
void initTpdo(Context &context, quint8 line, quint16 index);
void initRpdo(Context &context, quint8 line, quint16 index);

/// The value of a communication parameter as argument of a call: its place among the constants, or
/// a literal if the subindex is missing (then 0) or of another class than \a valueClass.
QString constantArgument(const Context &context, quint8 line, quint16 index, quint8 sub,
                         ValueClass valueClass);

} // namespace ObjDict
