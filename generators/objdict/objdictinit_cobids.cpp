// userOverwriteCobIdSettings: sets the COB-IDs of the project in place of those of the predefined
// connection set (CiA 301, 7.3.5).
#include "generators/objdict/objdictinit.h"

#include <algorithm>

namespace ObjDict
{

namespace
{

/// Objects of one service that have COB-IDs, in subindex 1 up to lastSub.
struct CobIdRange {
    ObjectRange objects;
    quint8 lastSub;
    const char *comment;
};

// clang-format off
constexpr CobIdRange kSdoServers     = {ObjectRanges::kFurtherSdoServers, 2, "\n\t/* SDO server COB IDs */\n"};
constexpr CobIdRange kSdoServersOfLine
                                     = {ObjectRanges::kFurtherSdoServers, 2, "\n\t/* SDO server COB IDs starting at 2nd SDO server */\n"};
constexpr CobIdRange kSdoClients     = {ObjectRanges::kSdoClients,        2, "\n\t/* SDO client COB IDs */\n"};
constexpr CobIdRange kRpdos          = {ObjectRanges::kRpdoParameters,    1, "\n\t/* RxPDO COB IDs */\n"};
// Deliberate: whether there are TPDOs is decided by their own range, held by tst_generatedc.
constexpr CobIdRange kTpdos          = {ObjectRanges::kTpdoParameters,    1, "\n\t/* TxPDO COB IDs */\n"};

constexpr CobIdRange kSingleLine[] = {kSdoServers, kSdoClients, kRpdos, kTpdos};
constexpr CobIdRange kMultiLine[]  = {kRpdos, kTpdos, kSdoServersOfLine, kSdoClients};
// clang-format on

/// What a call says of its line, and how it adds the node-ID, in each form.
struct Words {
    QString line; ///< first argument, with its comma
    const char *addNodeId;
};

/// A summand of C. Deliberate: a text that is not a number counts as 0, and decimal digits after a
/// zero are not octal; held by tst_generatedc.
QString numberOfC(const QString &text)
{
    bool isNumber = false;
    const quint32 number = Numbers::toUIntByPrefix(text, &isNumber);
    const QString trimmed = text.trimmed();
    const bool readsAlike =
        isNumber && (!trimmed.startsWith(QLatin1Char('0')) || trimmed.size() == 1 ||
                     trimmed.startsWith(QLatin1String("0x"), Qt::CaseInsensitive));
    return readsAlike && !trimmed.startsWith(QLatin1Char('+')) ? text : QString::number(number);
}

/// What the project adds to the node-ID; empty for a COB-ID without node-ID.
QString offsetToNodeId(const Context &context, quint8 line, quint16 index, quint8 sub)
{
    const QString prefix = QStringLiteral("$NODEID+");
    const QString value = context.store.getSubIndexValue(line, index, sub);
    const int position = value.indexOf(prefix, 0, Qt::CaseInsensitive);
    return position < 0 ? QString() : numberOfC(value.mid(position + prefix.size()));
}

/// The same objects have COB-IDs in both forms.
bool usesNodeId(const Context &context, quint8 line)
{
    for (const CobIdRange &range : kSingleLine) {
        const QList<quint16> indices = context.store.getIndices(line, range.objects);
        for (const quint16 index : indices) {
            for (quint8 sub = 1; sub <= range.lastSub; ++sub) {
                if (!offsetToNodeId(context, line, index, sub).isEmpty())
                    return true;
            }
        }
    }
    return false;
}

bool hasCobIds(const Context &context, quint8 line)
{
    return std::any_of(std::begin(kSingleLine), std::end(kSingleLine),
                       [&](const CobIdRange &range) {
                           return !context.store.getIndices(line, range.objects).isEmpty();
                       });
}

void writeCobId(Context &context, quint8 line, const Words &words, quint16 index, quint8 sub)
{
    TextWriter &out = context.out;
    const QString place =
        QStringLiteral("0x%1, %2").arg(QString::number(index, 16), QString::number(sub));
    // Deliberate: SDO COB-IDs keep their node-ID like those of PDOs, whose defaults lack it too;
    // held by tst_generatedc.
    const QString offset = offsetToNodeId(context, line, index, sub);
    if (!offset.isEmpty()) {
        out.block(R"(
$addNodeId$$offset$;
	ret = coOdSetCobid($line$$place$, cobId);

)",
                  {{"addNodeId", words.addNodeId},
                   {"offset", offset},
                   {"line", words.line},
                   {"place", place}});
        return;
    }
    out.block(R"(
	ret = coOdGetDefaultVal_u32($line$$place$, &cobId);
	if (ret == RET_OK) {
		ret = coOdSetCobid($line$$place$, cobId);
	}
)",
              {{"line", words.line}, {"place", place}});
}

void writeRange(Context &context, quint8 line, const Words &words, const CobIdRange &range)
{
    const QList<quint16> indices = context.store.getIndices(line, range.objects);
    if (indices.isEmpty())
        return;
    context.out.raw(range.comment);
    for (const quint16 index : indices) {
        for (quint8 sub = 1; sub <= range.lastSub; ++sub)
            writeCobId(context, line, words, index, sub);
    }
}

/// Deliberate: a variable that no line uses is not declared, since compilers warn about it; held by
/// tst_generatedc.
void writeHead(Context &context, bool usesCobIds)
{
    TextWriter &out = context.out;
    out.block(R"(

/* Please be careful - this function overwrite the COB-ids of the
* predefined connection set with values setting up by the TSR
* It should to be called inside the load indication function.
*/
RET_T userOverwriteCobIdSettings(void)
{
	RET_T ret = RET_OK;
)");
    if (usesCobIds)
        out.raw("\tUNSIGNED32 cobId = 0ul;\n");
}

void writeEnd(Context &context)
{
    context.out.raw("\treturn ret;\n"
                    "}\n");
}

void overwriteSingleLine(Context &context)
{
    const quint8 line = context.form.singleLine;
    if (!context.form.cobIdLines.contains(line) ||
        quint8(context.settings.decimal("overwrite_predef")) == 0)
        return;
    const Words words = {QString(), "\tcobId = nodeId + "};
    writeHead(context, hasCobIds(context, line));
    if (usesNodeId(context, line))
        context.out.raw("\tUNSIGNED8 nodeId = coNmtGetNodeId();\n");
    for (const CobIdRange &range : kSingleLine)
        writeRange(context, line, words, range);
    writeEnd(context);
}

QList<quint8> overwrittenLines(const Context &context)
{
    QList<quint8> overwritten;
    for (const quint8 line : context.form.cobIdLines) {
        if (quint8(context.settings.decimalOfLine("overwrite_predef", line)) != 0)
            overwritten << line;
    }
    return overwritten;
}

void overwriteMultiLine(Context &context)
{
    const QList<quint8> lines = overwrittenLines(context);
    if (lines.isEmpty())
        return;
    const auto onAnyLine = [&](bool (*test)(const Context &, quint8)) {
        return std::any_of(lines.begin(), lines.end(),
                           [&](quint8 line) { return test(context, line); });
    };
    writeHead(context, onAnyLine(hasCobIds));
    const bool withNodeId = onAnyLine(usesNodeId);
    for (const quint8 line : lines) {
        if (withNodeId)
            context.out.fill(
                "$variable$ = coNmtGetNodeId($line$);\n",
                {{"variable", line == lines.first() ? "\tUNSIGNED8 nodeId" : "\tnodeId"},
                 {"line", line}});
        const Words words = {QStringLiteral("%1, ").arg(line),
                             "\tcobId = (UNSIGNED32)nodeId + (UNSIGNED32)"};
        for (const CobIdRange &range : kMultiLine)
            writeRange(context, line, words, range);
    }
    writeEnd(context);
}

} // namespace

void overwrite301(Context &context)
{
    if (context.form.multiLine)
        overwriteMultiLine(context);
    else
        overwriteSingleLine(context);
}

} // namespace ObjDict
