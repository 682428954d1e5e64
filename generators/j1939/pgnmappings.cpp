// The mapping tables: where the signals of a frame lie, how wide they are and of which type.
#include "generators/j1939/pgnmappings.h"

#include "generators/ctext.h"
#include "generators/j1939/pgnsections.h"
#include "generators/j1939/pgntypes.h"
#include "support/cohelper.h"
#include "support/implementation.h"

namespace
{

using namespace Pgn;

// clang-format off
constexpr const char *kReferences[kValueArrayCount] = { // the place is the array
    "&mv_u8[%1]", "&mv_i8[%1]", "&mv_u16[%1]", "&mv_i16[%1]", "&mv_u32[%1]", "&mv_i32[%1]",
    "&mv_u64[%1]", "&mv_r32[%1]",
};
// clang-format on

/// The variable of a signal as a C expression; "NULL" for a signal that has none.
QString variableOf(const Signal &signal)
{
    QString variable;
    if (signal.data.implementation != Implementation::kManagedVariable)
        variable = CText::expression(signal.data.varName.trimmed());
    else if (signal.place)
        variable = QString::fromLatin1(kReferences[static_cast<int>(signal.place->array)])
                       .arg(signal.place->position);
    return variable.isEmpty() ? QStringLiteral("NULL") : variable;
}

/// The address of the variable, where the expression is not one already.
QString addressOf(const Signal &signal)
{
    const QString variable = variableOf(signal);
    // Deliberate: NULL stands bare, held by tst_pgngenerator.
    const bool isAddress = variable.contains(QLatin1Char('&')) ||
                           variable.contains(QLatin1Char('*')) || variable == QLatin1String("NULL");
    return isAddress ? variable : QLatin1Char('&') + variable;
}

quint32 bitsOfType(const Signal &signal)
{
    return COHelper::getDataLengthBits(static_cast<CAN::CANopenDataType>(signal.data.dataType));
}

void writeGroupRow(Context &context, const Signal &signal)
{
    context.out.parts(addressInGroup(signal), ", ", bitsInGroup(signal), "u, ", signal.data.number,
                      "u, ", typeTagOfGroup(signal.data.dataType),
                      context.form.dynamicMapping ? ", 0u" : "");
}

void writeIdentifierRow(Context &context, const Signal &signal)
{
    context.out.parts(addressOf(signal), ", ", bitsOfType(signal), "u, ",
                      typeTagOfIdentifier(signal.data.dataType));
}

const char *mappingName(quint8 direction)
{
    return direction == Direction::kTransmitted ? "tx_mapping_" : "rx_mapping_";
}

/// Storage of constant tables, with its blanks.
QString constStorage(const Context &context)
{
    return QStringLiteral(" %1 ").arg(QLatin1String(context.dialect.constMacro));
}

void writeGroup(Context &context, const Line &line, const Group &group)
{
    const quint32 number = group.data.number;
    context.out.parts("/* PGN ", numberAndName(number, group.data.name), " */\n");
    context.out.parts("static ", context.form.dynamicMapping ? QString() : constStorage(context),
                      "J1939_MAPPING_T ", linePrefix(context, line),
                      mappingName(group.data.direction), number, "[] = {\n");
    writeRows(context, group.mapping, writeGroupRow);
    context.out.raw("\n");
}

void writeIdentifier(Context &context, const Line &line, const Identifier &identifier)
{
    const quint32 id = identifier.data.id;
    context.out.parts("/* canid ", numberAndName(id, identifier.data.name), " */\n");
    context.out.parts("static ", constStorage(context), "CORE_MAPPING_T ",
                      linePrefix(context, line), mappingName(identifier.data.direction), id,
                      "[] = {\n");
    writeRows(context, identifier.mapping, writeIdentifierRow);
}

} // namespace

QString Pgn::addressInGroup(const Signal &signal)
{
    return isTextOfGroup(signal.data.dataType) ? variableOf(signal) : addressOf(signal);
}

quint32 Pgn::bitsInGroup(const Signal &signal)
{
    return isTextOfGroup(signal.data.dataType) ? signal.data.bitSize : bitsOfType(signal);
}

QString Pgn::numberAndName(quint32 number, const QString &name)
{
    return QStringLiteral("%1/0x%2 %3")
        .arg(QString::number(number), Numbers::toHex(number, 4), CText::comment(name));
}

void Pgn::writeRows(Context &context, const QVector<Signal> &mapping, RowWriter writeRow)
{
    TextWriter &out = context.out;
    // Deliberate: C99 has no empty initialiser, so that a frame without signals holds a row that
    // its count does not include; held by tst_pgngenerator.
    if (mapping.isEmpty())
        out.raw("\t{ 0 }");
    const char *separator = "";
    for (const Signal &signal : mapping) {
        out.parts(separator, "\t{ ");
        writeRow(context, signal);
        out.raw(" }");
        if (!signal.data.name.isEmpty())
            out.parts("\t/* ", CText::comment(signal.data.name), " */");
        separator = ",\n";
    }
    out.raw("\n"
            "};\n");
}

void Pgn::declareMappings(Context &context)
{
    context.out.raw("\n"
                    "/*  PGN Mapping Definitions */\n");
    for (const Line &line : qAsConst(context.lines)) {
        for (const Traffic *traffic : {&line.received, &line.transmitted}) {
            for (const Group &group : traffic->groups) {
                if (hasMapping(context, line, group))
                    writeGroup(context, line, group);
            }
            if (line.type != LineType::RawCan)
                continue;
            for (const Identifier &identifier : traffic->identifiers)
                writeIdentifier(context, line, identifier);
        }
    }
}
