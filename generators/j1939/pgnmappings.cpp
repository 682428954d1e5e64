// The mapping tables: where the signals of a frame lie, how wide they are and of which type.
#include "generators/j1939/pgnmappings.h"

#include "generators/ctext.h"
#include "generators/j1939/pgnsections.h"
#include "generators/j1939/pgntypes.h"
#include "support/cohelper.h"
#include "support/implementation.h"

#include <QStringBuilder>

namespace
{

using namespace Pgn;

// clang-format off
constexpr const char *kReferences[kValueArrayCount] = { // the place is the array
    "&mv_u8[", "&mv_i8[", "&mv_u16[", "&mv_i16[", "&mv_u32[", "&mv_i32[", "&mv_u64[", "&mv_r32[",
};
// clang-format on

bool isManaged(const Signal &signal)
{
    return signal.data.implementation == Implementation::kManagedVariable;
}

/// The variable of a signal as the project gives it, or its address where that does not have it;
/// "NULL" for a signal that has none.
void writeVariable(TextWriter &out, const Signal &signal, bool asAddress)
{
    if (isManaged(signal) && signal.place) {
        out.parts(kReferences[static_cast<int>(signal.place->array)],
                  quint32(signal.place->position), "]");
        return;
    }
    const QString variable =
        isManaged(signal) ? QString() : CText::expression(signal.data.varName.trimmed());
    if (variable.isEmpty())
        return out.raw("NULL");
    // Deliberate: NULL stands bare, held by tst_pgngenerator.
    const bool isAddress = variable.contains(QLatin1Char('&')) ||
                           variable.contains(QLatin1Char('*')) || variable == QLatin1String("NULL");
    out.parts(asAddress && !isAddress ? "&" : "", variable);
}

quint32 bitsOfType(const Signal &signal)
{
    return COHelper::getDataLengthBits(static_cast<CAN::CANopenDataType>(signal.data.dataType));
}

void writeGroupRow(Context &context, const Signal &signal)
{
    writeAddressInGroup(context.out, signal);
    context.out.parts(", ", bitsInGroup(signal), "u, ", signal.data.number, "u, ",
                      typeTagOfGroup(signal.data.dataType),
                      context.form.dynamicMapping ? ", 0u" : "");
}

void writeIdentifierRow(Context &context, const Signal &signal)
{
    writeVariable(context.out, signal, true);
    context.out.parts(", ", bitsOfType(signal), "u, ", typeTagOfIdentifier(signal.data.dataType));
}

const char *mappingName(quint8 direction)
{
    return direction == Direction::kTransmitted ? "tx_mapping_" : "rx_mapping_";
}

void writeGroup(Context &context, const QString &linePrefix, const Group &group)
{
    TextWriter &out = context.out;
    const quint32 number = group.data.number;
    out.parts("/* PGN ", numberAndName(number, group.data.name), " */\nstatic ");
    if (!context.form.dynamicMapping)
        out.parts(" ", context.dialect.constMacro, " ");
    out.parts("J1939_MAPPING_T ", linePrefix, mappingName(group.data.direction), number,
              "[] = {\n");
    writeRows(context, group.mapping, writeGroupRow);
    out.raw("\n");
}

void writeIdentifier(Context &context, const QString &linePrefix, const Identifier &identifier)
{
    const quint32 id = identifier.data.id;
    context.out.parts("/* canid ", numberAndName(id, identifier.data.name), " */\n");
    context.out.parts("static  ", context.dialect.constMacro, " CORE_MAPPING_T ", linePrefix,
                      mappingName(identifier.data.direction), id, "[] = {\n");
    writeRows(context, identifier.mapping, writeIdentifierRow);
}

} // namespace

void Pgn::writeAddressInGroup(TextWriter &out, const Signal &signal)
{
    writeVariable(out, signal, !isTextOfGroup(signal.data.dataType));
}

quint32 Pgn::bitsInGroup(const Signal &signal)
{
    return isTextOfGroup(signal.data.dataType) ? signal.data.bitSize : bitsOfType(signal);
}

QString Pgn::numberAndName(quint32 number, const QString &name)
{
    return QString::number(number) % QLatin1String("/0x") % Numbers::toHex(number, 4) %
           QLatin1Char(' ') % CText::comment(name);
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
        const QString prefix = linePrefix(context, line);
        for (const Traffic *traffic : {&line.received, &line.transmitted}) {
            for (const Group &group : traffic->groups) {
                if (hasMapping(context, line, group))
                    writeGroup(context, prefix, group);
            }
            if (line.type != LineType::RawCan)
                continue;
            for (const Identifier &identifier : traffic->identifiers)
                writeIdentifier(context, prefix, identifier);
        }
    }
}
