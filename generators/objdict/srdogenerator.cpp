// Parameters and mappings of SRDOs.
#include "generators/objdict/srdogenerator.h"

#include "generators/ctext.h"
#include "generators/objdict/objdictpreamble.h"
#include "generators/objdict/objdictvalues.h"
#include "generators/projectlines.h"
#include "generators/sourcehead.h"
#include "store/linetype.h"
#include "support/implementation.h"

#include <algorithm>

namespace
{

// Subindices of the communication objects (EN 50325-5).
constexpr quint8 kSubDirection = 1;
constexpr quint8 kSubRefreshTime = 2;
constexpr quint8 kSubValidationTime = 3;
constexpr quint8 kSubFirstCobId = 5;

QString addressOf(const ObjDict::Context &context, quint8 line, quint32 mapping)
{
    const auto index = static_cast<quint16>(mapping >> 16);
    const auto sub = static_cast<quint8>(mapping >> 8);
    SubIndexData data;
    // All other values lie in arrays that only the object dictionary's source knows.
    if (!context.store.getSubIndexData(line, index, sub, data) ||
        data.implementation != Implementation::kApplicationVariable ||
        data.varName.trimmed().isEmpty())
        return QStringLiteral("NULL");
    return ObjDict::getObjectAddress(context, line, index, sub);
}

QVector<Srdo::MapEntry> readMapping(const ObjDict::Context &context, quint8 line, quint16 index)
{
    const auto valueOf = [&](quint8 sub) {
        return Numbers::toUIntByPrefix(context.store.getSubIndexValue(line, index, sub));
    };
    QVector<Srdo::MapEntry> entries;
    const auto count = static_cast<quint8>(valueOf(0));
    for (int sub = 1; sub <= count; ++sub) {
        Srdo::MapEntry entry;
        entry.mapping = valueOf(static_cast<quint8>(sub));
        entry.address = addressOf(context, line, entry.mapping);
        entry.isInverted = sub % 2 == 0;
        entries << entry;
    }
    return entries;
}

Srdo::Parameters readSrdo(const ObjDict::Context &context, quint8 line, quint16 index)
{
    const ObjectDataBase &store = context.store;
    const auto valueOf = [&](quint8 sub) {
        return Numbers::toUIntByPrefix(store.getSubIndexValue(line, index, sub));
    };
    Srdo::Parameters srdo;
    srdo.line = line;
    srdo.number = static_cast<quint8>(ObjectRanges::kSrdoParameters.numberOf(index));
    srdo.direction = static_cast<quint8>(valueOf(kSubDirection));
    srdo.refreshTimeMs = static_cast<quint16>(valueOf(kSubRefreshTime));
    srdo.srvtMs = static_cast<quint8>(valueOf(kSubValidationTime));
    for (quint8 i = 0; i < srdo.cobIds.size(); ++i)
        srdo.cobIds[i] = Srdo::parseCobId(store.getSubIndexValue(line, index, kSubFirstCobId + i));
    srdo.mapping = readMapping(
        context, line, static_cast<quint16>(index + ObjectRanges::kFromSrdoParameterToMapping));
    return srdo;
}

QString mappingName(const Srdo::Parameters &srdo)
{
    return QStringLiteral("srdo_mapping_l%1_%2")
        .arg(QString::number(srdo.line), QString::number(srdo.number));
}

void writeEntry(TextWriter &out, const Srdo::MapEntry &entry)
{
    const QString index =
        QString::number(entry.mapping >> 16, 16).rightJustified(4, QLatin1Char('0'));
    out.fill("\t{ $address$, $bits$u, $isInverted$ }, /* 0x$index$:$sub$ */\n",
             {{"address", entry.address},
              {"bits", static_cast<quint8>(entry.mapping)},
              {"isInverted", entry.isInverted ? "CO_TRUE" : "CO_FALSE"},
              {"index", index},
              {"sub", entry.mapping >> 8 & 0xFF}});
}

bool hasLineThat(const ObjectDataBase &store, bool (*matches)(LineType))
{
    const QList<quint8> lines = readProjectLines(store).numbers;
    return std::any_of(lines.begin(), lines.end(),
                       [&](quint8 line) { return matches(readLineType(store, line)); });
}

/// Besides J1939 and raw CAN a header declares the variables of all lines.
bool hasOtherProtocols(const ObjectDataBase &store)
{
    return hasLineThat(
        store, [](LineType type) { return carriesJ1939(type) || type == LineType::RawCan; });
}

} // namespace

Srdo::CobId Srdo::parseCobId(const QString &value)
{
    CobId cobId;
    const QStringList terms = value.split(QLatin1Char('+'));
    for (const QString &term : terms) {
        if (term.trimmed().compare(QLatin1String("$NODEID"), Qt::CaseInsensitive) == 0)
            ++cobId.nodeIdFactor;
        else
            cobId.base += Numbers::toUIntByPrefix(term);
    }
    return cobId;
}

QVector<Srdo::Parameters> Srdo::readSrdos(const ObjDict::Context &context)
{
    QVector<Parameters> srdos;
    const QList<quint8> lines = readProjectLines(context.store).numbers;
    for (const quint8 line : lines) {
        const QList<quint16> indices =
            context.store.getIndices(line, ObjectRanges::kSrdoParameterPlaces);
        for (const quint16 index : indices)
            srdos << readSrdo(context, line, index);
    }
    return srdos;
}

void Srdo::writePreamble(ObjDict::Context &context)
{
    TextWriter &out = context.out;
    out.block(R"(
#include <stddef.h>

#include <gen_define.h>
#include <co_canopen.h>
)");
    if (hasOtherProtocols(context.store) ||
        (context.features.hasGeneratedVariables() && hasLineThat(context.store, carriesCANopen)))
        out.raw("#include <gen_extern_decl.h>\n");
    out.raw("\n");
    ObjDict::writeApplicationHeaders(context);
    SourceHead::writeConstMacro(out, context.dialect);
}

void Srdo::writeMappings(ObjDict::Context &context, const QVector<Parameters> &srdos)
{
    TextWriter &out = context.out;
    for (const Parameters &srdo : srdos) {
        if (srdo.mapping.isEmpty())
            continue;
        out.fill("/* mapping of SRDO $number$ of line $line$ */\n"
                 "static $const$ CO_SRDO_MAP_ENTRY_T\t$name$[$rows$] = {\n",
                 {{"number", srdo.number},
                  {"line", srdo.line},
                  {"const", context.dialect.constMacro},
                  {"name", mappingName(srdo)},
                  {"rows", srdo.mapping.size()}});
        for (const MapEntry &entry : srdo.mapping)
            writeEntry(out, entry);
        out.raw("};\n\n");
    }
}

void Srdo::writeTable(ObjDict::Context &context, const QVector<Parameters> &srdos)
{
    if (srdos.isEmpty())
        return; // the definitions header does not define the length then
    TextWriter &out = context.out;
    out.block(R"(
/* SRDOs of all lines: line, number, direction, refresh time (ms), SRVT (ms), both
 * COB-IDs with their factor of the node-ID, entries of the mapping, mapping */
$const$ CO_SRDO_TABLE_T	srdo_table[CO_SRDO_CNT] = {
)",
              {{"const", context.dialect.constMacro}});
    for (const Parameters &srdo : srdos) {
        const quint32 numbers[] = {srdo.line, srdo.number, srdo.direction, srdo.refreshTimeMs,
                                   srdo.srvtMs};
        out.raw("\t{ ");
        for (const quint32 number : numbers)
            out.parts(number, "u, ");
        for (const CobId &cobId : srdo.cobIds)
            out.parts("{ 0x", QString::number(cobId.base, 16), "u, ", quint32(cobId.nodeIdFactor),
                      "u }, ");
        out.parts(quint32(srdo.mapping.size()), "u, ");
        if (srdo.mapping.isEmpty())
            out.raw("NULL },\n");
        else
            out.parts("&", mappingName(srdo), "[0] },\n");
    }
    out.raw("};\n");
}

SrdoGenerator::SrdoGenerator() : TextFileGenerator(QStringLiteral("gen_srdo.c")) {}

void SrdoGenerator::write(TextWriter &out)
{
    const ObjDict::Dialect dialect = ObjDict::dialectOf(*database);
    ObjDict::Context context(*database, out, dialect);
    const QVector<Srdo::Parameters> srdos = Srdo::readSrdos(context);
    CText::writeHead(out, " * SRDO definitions for $project$ - generated by $tool$ $version$\n",
                     projectName, toolVersion);
    // A stack of other protocols has neither the types of the tables nor their header.
    if (hasLineThat(*database, carriesCANopen) || !hasOtherProtocols(*database)) {
        Srdo::writePreamble(context);
        Srdo::writeMappings(context, srdos);
        Srdo::writeTable(context, srdos);
    }
}
