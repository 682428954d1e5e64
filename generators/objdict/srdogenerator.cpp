// Parameters and mappings of SRDOs.
#include "generators/objdict/srdogenerator.h"

#include "generators/ctext.h"
#include "generators/projectlines.h"
#include "support/helper.h"

#include <QCoreApplication>
#include <QFile>

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

QString addressOf(const ObjectDataBase &store, quint8 line, quint32 mapping)
{
    const auto index = static_cast<quint16>(mapping >> 16);
    const auto sub = static_cast<quint8>(mapping >> 8);
    SubIndexData data;
    // All other values lie in arrays that only the object dictionary's source knows.
    if (!store.getSubIndexData(line, index, sub, data) ||
        data.implementation != kApplicationVariable)
        return QStringLiteral("NULL");
    const QString name = Helper::substituteVariables(data.varName, index, sub).trimmed();
    if (name.isEmpty())
        return QStringLiteral("NULL");
    // An expression, such as a macro call, is an address as it stands.
    return name.contains(QLatin1Char('(')) ? name : QStringLiteral("&(%1)").arg(name);
}

QVector<Srdo::MapEntry> readMapping(const ObjectDataBase &store, quint8 line, quint16 index)
{
    const auto valueOf = [&](quint8 sub) {
        return Numbers::toUIntByPrefix(store.getSubIndexValue(line, index, sub));
    };
    QVector<Srdo::MapEntry> entries;
    const auto count = static_cast<quint8>(valueOf(0));
    for (int sub = 1; sub <= count; ++sub) {
        Srdo::MapEntry entry;
        entry.mapping = valueOf(static_cast<quint8>(sub));
        entry.address = addressOf(store, line, entry.mapping);
        entry.isInverted = sub % 2 == 0;
        entries << entry;
    }
    return entries;
}

Srdo::Parameters readSrdo(const ObjectDataBase &store, quint8 line, quint16 index)
{
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
    srdo.mapping = readMapping(store, line, static_cast<quint16>(index + kMappingDistance));
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

QVector<Srdo::Parameters> Srdo::readSrdos(const ObjectDataBase &store)
{
    QVector<Parameters> srdos;
    const QList<quint8> lines = readProjectLines(store).numbers;
    for (const quint8 line : lines) {
        const QList<quint16> indices = store.getIndices(line, kFirstSrdo, kLastSrdo);
        for (const quint16 index : indices)
            srdos << readSrdo(store, line, index);
    }
    return srdos;
}

void Srdo::writePreamble(TextWriter &out, const GeneralSettings &settings, const char *constMacro)
{
    out.raw("#include <stddef.h>\n\n"
            "#include <gen_define.h>\n"
            "#include <co_canopen.h>\n"
            "\n");
    const QStringList headers =
        settings.trimmed("applicationheader").split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (!headers.isEmpty()) {
        out.raw("/* application header file(s) */\n");
        for (const QString &header : headers)
            out.raw(QStringLiteral("#include \"%1\"\n").arg(header));
        out.raw("\n");
    }
    out.raw(QStringLiteral("/* definition of memory specifier */\n"
                           "#ifndef %1\n"
                           "#define %1 const\n"
                           "#endif\n\n")
                .arg(QLatin1String(constMacro)));
}

void Srdo::writeMappings(TextWriter &out, const QVector<Parameters> &srdos, const char *constMacro)
{
    for (const Parameters &srdo : srdos) {
        if (srdo.mapping.isEmpty())
            continue;
        out.raw(QStringLiteral("/* mapping of SRDO %1 of line %2 */\n")
                    .arg(QString::number(srdo.number), QString::number(srdo.line)));
        out.raw(QStringLiteral("static %1 CO_SRDO_MAP_ENTRY_T\t%2[%3] = {\n")
                    .arg(QLatin1String(constMacro), mappingName(srdo),
                         QString::number(srdo.mapping.size())));
        for (const MapEntry &entry : srdo.mapping)
            out.raw(entryText(entry));
        out.raw("};\n\n");
    }
}

void Srdo::writeTable(TextWriter &out, const QVector<Parameters> &srdos, const char *constMacro)
{
    if (srdos.isEmpty())
        return; // the definitions header does not define the length then
    out.raw("/* SRDOs of all lines: line, number, direction, refresh time (ms), SRVT (ms), both\n"
            " * COB-IDs with their factor of the node-ID, entries of the mapping, mapping */\n");
    out.raw(QStringLiteral("%1 CO_SRDO_TABLE_T\tsrdo_table[CO_SRDO_CNT] = {\n")
                .arg(QLatin1String(constMacro)));
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

SrdoGenerator::SrdoGenerator() : AbstractGenerator(QStringLiteral("gen_srdo.c")) {}

QString SrdoGenerator::targetFile() const
{
    return QStringLiteral("%1/gen_srdo.c").arg(outputDirectory);
}

bool SrdoGenerator::checkWritability()
{
    return isNewOrWritable(targetFile());
}

void SrdoGenerator::doJob()
{
    const JobBracket bracket(*this);
    const GeneralSettings settings(*database);
    const ObjDict::Dialect dialect = settings.text("use_core_headers") == QLatin1String("V4")
                                         ? ObjDict::v4Dialect()
                                         : ObjDict::classicDialect();
    const QVector<Srdo::Parameters> srdos = Srdo::readSrdos(*database);
    QFile file(targetFile());
    if (!openOutputFile(file))
        return;
    TextWriter out(&file);
    out.raw("/*\n");
    out.raw(
        QStringLiteral(" * SRDO definitions for %1 - generated by %2 %3\n")
            .arg(CText::comment(projectName), QCoreApplication::applicationName(), toolVersion));
    out.raw(QStringLiteral(" * %1\n").arg(CText::generationTime()));
    out.raw(" */\n");
    Srdo::writePreamble(out, settings, dialect.constMacro);
    Srdo::writeMappings(out, srdos, dialect.constMacro);
    Srdo::writeTable(out, srdos, dialect.constMacro);
    closeOutputFile(out, file);
}
