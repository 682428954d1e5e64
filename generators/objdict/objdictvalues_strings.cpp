// Default values of strings that are application variables, and the function that sets them.
#include "generators/ctext.h"
#include "generators/objdict/objdictstrings.h"
#include "generators/objdict/objdictvalues.h"
#include "support/implementation.h"

namespace
{

using namespace ObjDict;

constexpr int kColumnsPerByte = 6;
constexpr int kLastColumn = 73;
constexpr int kLongestFill = 0x10000;

bool hasStringDefault(const ObjectDataBase::SUBINDEX_DATA_T &data)
{
    const auto type = static_cast<CAN::CANopenDataType>(data.dataType);
    return data.implementation == Implementation::kApplicationVariable &&
           (type == CAN::CANopenDataType::VisibleString ||
            type == CAN::CANopenDataType::OctetString);
}

void collectObject(Context &context, quint8 line, quint16 index, quint32 &offset)
{
    ObjectDataBase::SUBINDEX_DATA_T data;
    const QList<quint8> subs = context.store.getSubIndices(line, index, 0);
    for (const quint8 sub : subs) {
        if (!context.store.getSubIndexData(line, index, sub, data) || !hasStringDefault(data))
            continue;
        context.positions.strings.insert(keyOf(line, index, sub), {offset, data.size});
        offset += data.size;
    }
}

QString bytesText(const QByteArray &bytes)
{
    QString text;
    int column = 0;
    for (const char byte : bytes) {
        text += QStringLiteral("0x%1, ").arg(quint8(byte), 2, 16, QLatin1Char('0'));
        column += kColumnsPerByte;
        if (column >= kLastColumn) {
            text += QLatin1Char('\n');
            column = 0;
        }
    }
    return text + QLatin1Char('\n');
}

/// \a bytes, cut to the size or filled up with zeros. What would be a long fill is left to a
/// designator of the last byte.
QByteArray fitted(QByteArray bytes, quint32 size, bool *isComplete)
{
    const qint64 missing = qint64(size) - bytes.size();
    *isComplete = missing <= kLongestFill;
    if (missing < 0)
        bytes.truncate(static_cast<int>(size));
    else if (*isComplete)
        bytes += QByteArray(static_cast<int>(missing), '\0');
    return bytes;
}

quint16 indexOf(Key key)
{
    return static_cast<quint16>(key >> 8);
}

quint8 subOf(Key key)
{
    return static_cast<quint8>(key);
}

quint8 lineOf(Key key)
{
    return static_cast<quint8>(key >> 24);
}

} // namespace

void ObjDict::generateStringDefaultValues(Context &context)
{
    TextWriter &out = context.out;
    context.positions.strings.clear();
    quint32 total = 0;
    for (const quint8 line : context.form.servedLines) {
        const QList<quint16> indices = context.store.getIndices(line, ObjectRanges::kAll);
        for (const quint16 index : indices)
            collectObject(context, line, index, total);
    }
    const auto &strings = context.positions.strings;
    if (strings.isEmpty())
        return;
    out.block(R"(

/* definition of string default values for variables */
static $const$ char stringDefaultValues[] = {
)",
              {{"const", context.dialect.constMacro}});
    for (auto string = strings.constBegin(); string != strings.constEnd(); ++string) {
        const Key key = string.key();
        const QString value = context.store.getSubIndexValue(lineOf(key), indexOf(key), subOf(key));
        out.fill("/* $value$ */ \n", {{"value", CText::comment(value)}});
        // Deliberate: each string takes its size, so that the next one begins at its offset; held
        // by tst_golden.
        bool isComplete = true;
        out.raw(bytesText(fitted(stringBytes(value), string->size, &isComplete)));
        if (!isComplete)
            out.fill("[$last$] = 0x00, \n", {{"last", string->offset + string->size - 1}});
    }
    out.raw("0x00}; \n\n");
}

void ObjDict::generateStringDefaultValueFunction(Context &context)
{
    TextWriter &out = context.out;
    out.block(R"(


RET_T userOverwriteStringDefaultvalues(void)
{
)");
    const auto &strings = context.positions.strings;
    for (auto string = strings.constBegin(); string != strings.constEnd(); ++string) {
        const Key key = string.key();
        ObjectDataBase::SUBINDEX_DATA_T data;
        if (!context.store.getSubIndexData(lineOf(key), indexOf(key), subOf(key), data))
            continue;
        // Deliberate: placeholders of the name are filled as in the table of pointers, held by
        // tst_golden.
        out.fill("    /* $line$: $index$ - $sub$ */\n"
                 "    memcpy($variable$, &stringDefaultValues[$offset$], $size$);\n",
                 {{"line", lineOf(key)},
                  {"index", QString::number(indexOf(key), 16).rightJustified(4, QLatin1Char('0'))},
                  {"sub", subOf(key)},
                  {"variable", variableName(data, indexOf(key), subOf(key))},
                  {"offset", string->offset},
                  {"size", string->size}});
    }
    out.block(R"(

    return(RET_OK);
}
)");
}
