// The initialiser of what all protocols share.
#include "generators/commonstart.h"

#include "generators/codefeatures.h"
#include "generators/projectlines.h"
#include "generators/textwriter.h"
#include "store/linetype.h"
#include "store/objectdatabase.h"

#include <QStringList>

namespace
{

constexpr Word kCommonHead = {"CO_COMMON_INIT_VAL_T    commonInitVars = {\n",
                              "CORE_COMMON_INIT_VAL_T    commonInitVars = {\n"};
constexpr Word kBufferCounts[] = {
    {"\t{ CO_REC_BUFFER_COUNTS },\n", "\t{ CORE_REC_BUFFER_COUNTS },\n"},
    {"\t{ CO_TR_BUFFER_COUNTS },\n", "\t{ CORE_TR_BUFFER_COUNTS },\n"},
    {"\t{ CO_COB_COUNTS }, \n", "\t{ CORE_COB_COUNTS }, \n"},
};

QString protocolOfLine(const ObjectDataBase &store, quint8 line, bool hasUds)
{
    QString protocol = QStringLiteral("MP_PROT_TYPE_UNKNOWN");
    switch (readLineType(store, line)) {
    case LineType::CANopen:
        protocol = QStringLiteral("MP_PROT_TYPE_CANOPEN");
        break;
    case LineType::J1939:
        protocol = QStringLiteral("MP_PROT_TYPE_J1939");
        break;
    case LineType::RawCan:
        protocol = QStringLiteral("MP_PROT_TYPE_RAWCAN");
        break;
    case LineType::CANopenAndJ1939:
        protocol = QStringLiteral("MP_PROT_TYPE_J1939 | MP_PROT_TYPE_CANOPEN");
        break;
    }
    return hasUds ? protocol + QStringLiteral(" | MP_PROT_TYPE_UDS") : protocol;
}

} // namespace

void writeCommonInitVars(TextWriter &out, const Dialect &dialect, const ObjectDataBase &store)
{
    const ProjectFeatures features = readCodeFeatures(store);
    const QList<quint8> lines = readProjectLines(store).numbers;
    QStringList protocols;
    QStringList canFdModes;
    for (const quint8 line : lines) {
        protocols << protocolOfLine(store, line, features.hasUds());
        canFdModes << QStringLiteral("CO_TRUE");
    }
    out.raw(dialect.of(kCommonHead));
    out.parts("\t", quint32(lines.size()), "u,\n");
    for (const Word &word : kBufferCounts)
        out.raw(dialect.of(word));
    out.parts("\t{ ", protocols.join(QStringLiteral(", ")), "}");
    if (features.hasUds())
        out.raw(",\n"
                "\t{ ISOTP_CLIENT_COUNTS },\n"
                "\t{ ISOTP_SERVER_COUNTS },\n");
    // Deliberate: the preceding element ends in a comma only with UDS, and two commas would not
    // compile; held by tst_golden.
    if (features.hasCanFd() && !features.hasUds())
        out.raw(",\n");
    if (features.hasCanFd())
        out.parts("\t{ ", canFdModes.join(QStringLiteral(", ")), " }\n");
    out.raw("};\n\n");
}
