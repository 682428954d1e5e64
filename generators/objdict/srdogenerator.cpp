// Parameters and mappings of SRDOs.
#include "generators/objdict/srdogenerator.h"

#include "generators/ctext.h"
#include "generators/objdict/objdictpreamble.h"
#include "generators/objdict/objdictvalues.h"
#include "generators/projectlines.h"
#include "store/linetype.h"

#include <algorithm>

namespace
{

// CiA 304: subindices of the communication objects, and where their mappings are.
constexpr quint16 kFirstSrdo = 0x1301;
constexpr quint16 kLastSrdo = 0x137F;
constexpr quint16 kMappingDistance = 0x80;
constexpr quint8 kSubDirection = 1;
constexpr quint8 kSubRefreshTime = 2;
constexpr quint8 kSubValidationTime = 3;
constexpr quint8 kSubFirstCobId = 5;

constexpr quint8 kApplicationVariable = 2;

QString addressOf(const ObjDict::Context &context, quint8 line, quint32 mapping)
{
    const auto index = static_cast<quint16>(mapping >> 16);
    const auto sub = static_cast<quint8>(mapping >> 8);
    SubIndexData data;
    // All other values lie in arrays that only the object dictionary's source knows.
    if (!context.store.getSubIndexData(line, index, sub, data) ||
        data.implementation != kApplicationVariable || data.varName.trimmed().isEmpty())
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
    srdo.number = static_cast<quint8>(index - kFirstSrdo + 1);
    srdo.direction = static_cast<quint8>(valueOf(kSubDirection));
    srdo.refreshTimeMs = static_cast<quint16>(valueOf(kSubRefreshTime));
    srdo.srvtMs = static_cast<quint8>(valueOf(kSubValidationTime));
    for (quint8 i = 0; i < srdo.cobIds.size(); ++i)
        srdo.cobIds[i] = Srdo::parseCobId(store.getSubIndexValue(line, index, kSubFirstCobId + i));
    srdo.mapping = readMapping(context, line, static_cast<quint16>(index + kMappingDistance));
    return srdo;
}

QString mappingName(const Srdo::Parameters &srdo)
{
    return QStringLiteral("srdo_mapping_l%1_%2")
        .arg(QString::number(srdo.line), QString::number(srdo.number));
}

QString entryText(const Srdo::MapEntry &entry)
{
    const auto bits = static_cast<quint8>(entry.mapping);
    return QStringLiteral("\t{ %1, %2u, %3 }, /* 0x%4:%5 */\n")
        .arg(entry.address, QString::number(bits),
             entry.isInverted ? QStringLiteral("CO_TRUE") : QStringLiteral("CO_FALSE"),
             QStringLiteral("%1").arg(entry.mapping >> 16, 4, 16, QLatin1Char('0')),
             QString::number(entry.mapping >> 8 & 0xFF));
}

QString cobIdText(const Srdo::CobId &cobId)
{
    return QStringLiteral("{ 0x%1u, %2u }")
        .arg(QString::number(cobId.base, 16), QString::number(cobId.nodeIdFactor));
}

bool hasLineThat(const ObjectDataBase &store, bool (*matches)(LineType))
{
    const QList<quint8> lines = readProjectLines(store).numbers;
    return std::any_of(lines.begin(), lines.end(),
                       [&](quint8 line) { return matches(readLineType(store, line)); });
}

/// Beside J1939 and raw CAN a header declares the variables of all lines.
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
        const QList<quint16> indices = context.store.getIndices(line, kFirstSrdo, kLastSrdo);
        for (const quint16 index : indices)
            srdos << readSrdo(context, line, index);
    }
    return srdos;
}

void Srdo::writePreamble(ObjDict::Context &context)
{
    TextWriter &out = context.out;
    out.raw("#include <stddef.h>\n\n"
            "#include <gen_define.h>\n"
            "#include <co_canopen.h>\n");
    if (hasOtherProtocols(context.store))
        out.raw("#include <gen_extern_decl.h>\n");
    out.raw("\n");
    ObjDict::writeApplicationHeaders(context);
    out.raw(QStringLiteral("/* definition of memory specifier */\n"
                           "#ifndef %1\n"
                           "#define %1 const\n"
                           "#endif\n\n")
                .arg(QLatin1String(context.dialect.constMacro)));
}

void Srdo::writeMappings(ObjDict::Context &context, const QVector<Parameters> &srdos)
{
    TextWriter &out = context.out;
    for (const Parameters &srdo : srdos) {
        if (srdo.mapping.isEmpty())
            continue;
        out.raw(QStringLiteral("/* mapping of SRDO %1 of line %2 */\n")
                    .arg(QString::number(srdo.number), QString::number(srdo.line)));
        out.raw(QStringLiteral("static %1 CO_SRDO_MAP_ENTRY_T\t%2[%3] = {\n")
                    .arg(QLatin1String(context.dialect.constMacro), mappingName(srdo),
                         QString::number(srdo.mapping.size())));
        for (const MapEntry &entry : srdo.mapping)
            out.raw(entryText(entry));
        out.raw("};\n\n");
    }
}

void Srdo::writeTable(ObjDict::Context &context, const QVector<Parameters> &srdos)
{
    if (srdos.isEmpty())
        return; // the definitions header does not define the length then
    TextWriter &out = context.out;
    out.raw("/* SRDOs of all lines: line, number, direction, refresh time (ms), SRVT (ms), both\n"
            " * COB-IDs with their factor of the node-ID, entries of the mapping, mapping */\n");
    out.raw(QStringLiteral("%1 CO_SRDO_TABLE_T\tsrdo_table[CO_SRDO_CNT] = {\n")
                .arg(QLatin1String(context.dialect.constMacro)));
    for (const Parameters &srdo : srdos) {
        const quint32 numbers[] = {srdo.line, srdo.number, srdo.direction, srdo.refreshTimeMs,
                                   srdo.srvtMs};
        out.raw("\t{ ");
        for (const quint32 number : numbers)
            out.raw(QStringLiteral("%1u, ").arg(number));
        for (const CobId &cobId : srdo.cobIds)
            out.raw(cobIdText(cobId) + QStringLiteral(", "));
        out.raw(QStringLiteral("%1u, %2 },\n")
                    .arg(QString::number(srdo.mapping.size()),
                         srdo.mapping.isEmpty() ? QStringLiteral("NULL")
                                                : QStringLiteral("&%1[0]").arg(mappingName(srdo))));
    }
    out.raw("};\n");
}

SrdoGenerator::SrdoGenerator() : TextFileGenerator(QStringLiteral("gen_srdo.c")) {}

void SrdoGenerator::write(TextWriter &out)
{
    const ObjDict::Dialect dialect = ObjDict::dialectOf(*database);
    ObjDict::Context context{*database, out, dialect, GeneralSettings(*database), {}, {}, {}};
    const QVector<Srdo::Parameters> srdos = Srdo::readSrdos(context);
    out.raw(CText::headComment(" * SRDO definitions for %1 - generated by %2 %3\n", projectName,
                               toolVersion));
    // A stack of other protocols has neither the types of the tables nor their header.
    if (hasLineThat(*database, carriesCANopen) || !hasOtherProtocols(*database)) {
        Srdo::writePreamble(context);
        Srdo::writeMappings(context, srdos);
        Srdo::writeTable(context, srdos);
    }
}
