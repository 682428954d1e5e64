// How values of one class are read from the project and written as an array. The sections of
// values and of virtual objects use it; it knows no section.
#pragma once

#include "generators/objdict/objdictcontext.h"

namespace ObjDict
{

enum class NumberKind { Unsigned, Signed, Real };

/// What the arrays of a class look like. Macros of the dialect fill the declarations.
struct ClassRow {
    ValueClass valueClass;
    NumberKind kind;
    int bits;
    CAN::CANopenDataType byteWiseType; ///< Unknown for a class with a native C type
    const char *start;                 ///< before a value
    const char *end;                   ///< after it
    const char *separator;             ///< between variables; constants have kSeparator
    const char *managed;               ///< declaration, with $storage$
    const char *constants;             ///< declaration, with $const$ and its $storage$
    const char *pointers;              ///< declaration, with those of constants
    const char *managedName;           ///< array's name
    const char *constantName;
};

const ClassRow &rowOf(ValueClass valueClass);

/// The value in the class's width, a signed one sign-extended, a real one as the bits of a float.
/// 0 for a text that is not a number or, for a real, not a finite one.
quint64 parseValue(ValueClass valueClass, const QString &text);

/// As parseValue(), but numbers with a sign are read in decimal only.
quint64 parseLimit(ValueClass valueClass, const QString &text);

/// \a realDigits is the count of decimal places of a real.
void writeElement(TextWriter &out, ValueClass valueClass, quint64 value, int realDigits);

/// Stands between elements, but for the variables of some classes.
constexpr const char *kSeparator = ",\n";

/// Elements and end of an array. write(value) writes one element, and nothing after it.
template <typename List, typename Write>
void writeEntries(TextWriter &out, const List &values, const char *separator, const Write &write)
{
    const char *before = "";
    for (const auto &value : values) {
        out.raw(before);
        write(value);
        before = separator;
    }
    out.raw("};\n");
}

/// The values of one array, by position.
class ValueArray
{
public:
    /// Each gives the position of the value; the second that of an equal one, if there is one.
    int append(quint64 value);
    int find(ValueClass valueClass, quint64 value);

    const QVector<quint64> &all() const { return values; }

private:
    QVector<quint64> values;
    QHash<quint64, int> places;
};

using ValueArrays = std::array<ValueArray, kValueClassCount>;

constexpr std::size_t numberOf(ValueClass valueClass)
{
    return static_cast<std::size_t>(valueClass);
}

/// Decimal places of a real as variable and as constant.
constexpr int kVariableDigits = 7;
constexpr int kConstantDigits = 8;

struct Place {
    quint8 line = 0;
    quint16 index = 0;
    quint8 sub = 0;

    Key key() const { return keyOf(line, index, sub); }
};

/// Calls visit(place, data) for each subindex of the form's lines, ascending.
template <typename Visitor>
void forEachSub(const Context &context, Visitor visit)
{
    for (const quint8 line : context.form.lines) {
        context.store.visitLine(
            line, [&](quint16 index, quint8 sub, const ObjectDataBase::SUBINDEX_DATA_T &data) {
                visit(Place{line, index, sub}, data);
            });
    }
}

/// Notes a position in one of the maps.
void note(Positions &positions, Positions::Map Positions::*map, Key key, int position);

} // namespace ObjDict
