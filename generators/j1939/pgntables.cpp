// The tables of parameter groups, and what each line is started with.
#include "generators/ctext.h"
#include "generators/j1939/pgnsections.h"

namespace
{

using namespace Pgn;

/// The words of a direction. Their differences are those of the stack's own sources.
struct TableWords {
    const char *title;
    const char *name; ///< before the suffix of the line
    const char *sizeMacro;
    const char *start; ///< after the size
    const char *mapping;
};

constexpr TableWords kTransmitWords = {"/*  TX PGN definitions */\n",
                                       " J1939_PGN_CONFIG_T\tjPgnTransmitConfig",
                                       "J1939_TRANSMIT_PGN_CNT", " = {\n", "tx_mapping_"};
constexpr TableWords kReceiveWords = {"/*  RX PGN definitions */\n",
                                      " J1939_PGN_CONFIG_T\tjPgnReceiveConfig",
                                      "J1939_RECEIVE_PGN_CNT", "= {\n", "rx_mapping_"};

// clang-format off
constexpr const char *kTrailerFormats[] = { // by number
    "\tJ1939_ATF_SAE_NONE,\n",
    "\tJ1939_ATF_MANU_CYBERSEC_32,\n",
    "\tJ1939_ATF_MANU_CYBERSEC_64,\n",
    "\tJ1939_ATF_MANU_FUNC_SAFETY_32,\n",
    "\tJ1939_ATF_MANU_FUNC_SAFETY_64,\n",
    "\tJ1939_ATF_MANU_FUNC_CYB_SAFE_32,\n",
};

constexpr const char *kAssuranceTypes[] = { // by number
    "\tJ1939_ADT_NONE,\n",
    "\tJ1939_ADT_MANU_CYBERSEC,\n",
    "\tJ1939_ADT_MANU_FUNC_SAFETY,\n",
    "\tJ1939_ADT_MANU_FUNC_CYB_SAFE,\n",
};
// clang-format on

template <size_t N>
const char *wordOf(const char *const (&words)[N], quint32 number)
{
    return number < N ? words[number] : "\tINVALID_VALUE,\n";
}

void writeFDTrailerData(TextWriter &out, const PgnData &pgn)
{
    out.parts(wordOf(kTrailerFormats, pgn.fdTrailerFormat),
              wordOf(kAssuranceTypes, pgn.fdAssuranceType), "\t", quint32(pgn.fdAssuranceDataSize),
              "u\n");
}

/// After the last member that all devices have.
const char *tailOf(const Context &context)
{
    return context.form.canFd ? "," : "";
}

/// The number of rows, of a table of its own or of the only one.
QString countText(const Context &context, const char *macro, int rows)
{
    return context.form.multiLine ? QString::number(rows) : QString::fromLatin1(macro);
}

void writeGroupRow(Context &context, const QString &mapping, const Group &group)
{
    const PgnData &pgn = group.data;
    TextWriter &out = context.out;
    out.block(R"(
    {
	$number$u, /* PGN number */ 
	&$mapping$$number$[0], 
	$cycleTimeMs$u, /* cycletime in ms */ 
	$inhibitTimeMs$u, /* inhibit time in ms */ 
	$priority$u, /* priority */ 
)",
              {{"number", pgn.number},
               {"mapping", mapping},
               {"cycleTimeMs", pgn.cycleTimeMs},
               {"inhibitTimeMs", pgn.inhibitTimeMs},
               {"priority", pgn.priority}});
    // Deliberate: the rows that the mapping has, not the number that the record gives, which may
    // lead beyond them; held by tst_pgngenerator.
    out.parts("\t", quint32(group.mapping.size()), "u", tailOf(context),
              " /* number of mappings */\n");
    if (context.form.canFd)
        writeFDTrailerData(out, pgn);
    out.raw("    }");
}

void writeTable(Context &context, const TableWords &words, const Line &line, const Traffic &traffic)
{
    const QVector<const Group *> groups = tableGroups(context, line, traffic);
    if (groups.isEmpty())
        return;
    TextWriter &out = context.out;
    out.raw(words.title);
    out.parts("static ", context.dialect.constMacro, words.name, lineSuffix(context, line), "[",
              countText(context, words.sizeMacro, groups.size()), "]", words.start);
    const QString mapping = linePrefix(context, line) + QLatin1String(words.mapping);
    const char *separator = "";
    for (const Group *group : groups) {
        out.raw(separator);
        writeGroupRow(context, mapping, *group);
        separator = ",\n";
    }
    out.raw("\n"
            "};\n");
}

/// The text of an address as a number of C, where a leading zero would make it octal.
QString addressText(const QString &element)
{
    bool isNumber = false;
    const quint32 number = Numbers::toUIntByPrefix(element, &isNumber);
    const bool isHex = element.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    return isNumber && !isHex ? QString::number(number) : element;
}

QString startAddress(const Context &context, const Line &line)
{
    // Deliberate: a list gives addresses by the numbers of lines, as in the check, the NAME and the
    // DBC file, and a line alone beyond its end takes the first; no address is the null address.
    // Held by tst_pgngenerator.
    const auto beyond =
        context.form.multiLine ? LineList::Beyond::Nothing : LineList::Beyond::First;
    const QString address = CText::expression(
        addressText(context.j1939.ofLine("startaddress", line.number, beyond).trimmed()));
    if (address.isEmpty())
        return QStringLiteral("254");
    const bool staysAsItIs = context.form.multiLine &&
                             !LineList::isList(context.j1939.text(QStringLiteral("startaddress")));
    return staysAsItIs || address.endsWith(QLatin1Char('u')) ? address : address + QLatin1Char('u');
}

void writeLineConfig(Context &context, const Line &line)
{
    const QString suffix = lineSuffix(context, line);
    const int sent = tableGroups(context, line, line.transmitted).size();
    const int received = tableGroups(context, line, line.received).size();
    TextWriter &out = context.out;
    out.parts("J1939_CONFIG_T  j1939Config", suffix, " = {\n");
    if (sent == 0)
        out.raw("\t0, \n");
    else
        out.parts("\t&jPgnTransmitConfig", suffix, "[0],\n");
    out.parts("\t", countText(context, kTransmitWords.sizeMacro, sent), ", \n");
    if (received == 0)
        out.raw("\t0, \n");
    else
        out.parts("\t&jPgnReceiveConfig", suffix, "[0], \n");
    out.block(R"(
	$receivedRows$, 
	&addrTrCfg$suffix$,
	$address$ 
};
)",
              {{"receivedRows", countText(context, kReceiveWords.sizeMacro, received)},
               {"suffix", suffix},
               {"address", startAddress(context, line)}});
}

} // namespace

// Deliberate: groups of a line that does not speak J1939 have no mapping, and so no table; held by
// tst_pgngenerator.
void Pgn::defineTransmitPGNs(Context &context)
{
    context.out.raw("\n");
    for (const Line &line : qAsConst(context.lines))
        writeTable(context, kTransmitWords, line, line.transmitted);
}

void Pgn::defineReceivePGNs(Context &context)
{
    context.out.raw("\n");
    for (const Line &line : qAsConst(context.lines))
        writeTable(context, kReceiveWords, line, line.received);
}

void Pgn::defineIdentify(Context &context)
{
    TextWriter &out = context.out;
    out.raw("\n");
    if (carriesJ1939(readLineType(context.store, 0)))
        out.raw("/*  J1939 device Identifiy information (NAME PGN) */\n");
    for (const Line &line : qAsConst(context.lines)) {
        if (!line.hasJ1939())
            continue;
        out.block(R"(
static $const$ J1939_PGN_CONFIG_T	addrTrCfg$suffix$ = {
	60928u, /* PGN number */
	&$prefix$tx_mapping_60928[0],
	0u, /* cycletime in ms */
	250u, /* inhibitime in us */
	6u, /* priority */
	10u$tail$ /* number of mappings */
)",
                  {{"const", context.dialect.constMacro},
                   {"suffix", lineSuffix(context, line)},
                   {"prefix", linePrefix(context, line)},
                   {"tail", tailOf(context)}});
        if (context.form.canFd)
            out.block(R"(
	J1939_ATF_SAE_NONE,
	J1939_ADT_NONE,
	0
)");
        out.raw("};\n");
    }
}

void Pgn::defineJ1939Config(Context &context)
{
    context.out.raw("\n"
                    "/*  J1939 PGN configuration */\n");
    for (const Line &line : qAsConst(context.lines)) {
        if (line.hasJ1939())
            writeLineConfig(context, line);
    }
}
