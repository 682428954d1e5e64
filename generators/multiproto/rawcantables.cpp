// The tables of CAN identifiers of raw lines, and what each such line is started with.
#include "generators/multiproto/multiprosections.h"

namespace
{

using Pgn::Identifier;
using Pgn::Line;

/// The words of a direction.
struct TableWords {
    const char *title;
    const char *name; ///< before the suffix of the line
    const char *mapping;
    const char *ignoreMask; ///< row of its own; empty for what is sent
    bool hasTimes;
    const char *reference; ///< before the suffix of the line
    const char *referenceEnd;
};

constexpr TableWords kTransmitWords = {"/*  TX CANID definitions */\n",
                                       "static RAWCAN_TR_CONFIG_T\trawcanTransmitConfig",
                                       "tx_mapping_",
                                       "",
                                       true,
                                       "\t&rawcanTransmitConfig",
                                       "[0],\n"};
constexpr TableWords kReceiveWords = {"/*  RX CANID definitions */\n",
                                      "static RAWCAN_REC_CONFIG_T\trawcanReceiveConfig",
                                      "rx_mapping_",
                                      "\t0u, /*  RX ignore mask */ \n",
                                      false,
                                      "\t&rawcanReceiveConfig",
                                      "[0], \n"};

void writeRow(TextWriter &out, const TableWords &words, const QString &prefix,
              const Identifier &identifier)
{
    const CanIdData &data = identifier.data;
    out.parts(" ", "{\n");
    out.parts("\t", data.id, "u, /* CANID number 0x", HexNumber{data.id, 4}, " */ \n");
    out.raw(words.ignoreMask);
    out.parts("\t&", prefix, words.mapping, data.id, "[0], \n");
    if (words.hasTimes) {
        out.parts("\t", quint32(data.cycleTimeMs), "u, /* cycletime in ms */ \n");
        out.parts("\t", quint32(data.inhibitTimeMs), "u, /* inhibit time in ms */ \n");
    }
    // Deliberate: the rows that the mapping has, not the number that the record gives, which may
    // lead beyond them; held by tst_multiprogenerator.
    out.parts("\t", quint32(identifier.mapping.size()), "u /* number of mappings */\n");
    out.raw(" }");
}

void writeTable(MultiPro::Context &context, const TableWords &words, const Line &line,
                const QVector<Identifier> &identifiers)
{
    if (identifiers.isEmpty())
        return;
    TextWriter &out = context.out;
    out.raw(words.title);
    out.parts(words.name, lineSuffix(context.pgn, line), "[", quint32(identifiers.size()),
              "] = {\n");
    const char *separator = "";
    for (const Identifier &identifier : identifiers) {
        out.raw(separator);
        writeRow(out, words, linePrefix(context.pgn, line), identifier);
        separator = ",\n";
    }
    out.raw("\n"
            "};\n");
}

void writeReference(MultiPro::Context &context, const TableWords &words, const Line &line,
                    const QVector<Identifier> &identifiers)
{
    TextWriter &out = context.out;
    if (identifiers.isEmpty())
        out.raw("\t0, \n");
    else
        out.parts(words.reference, lineSuffix(context.pgn, line), words.referenceEnd);
    out.parts("\t", quint32(identifiers.size()), ", \n");
}

} // namespace

void MultiPro::writeRawCanTables(Context &context)
{
    TextWriter &out = context.out;
    out.raw("\n/* configuration of raw CAN settings */"
            "\n");
    for (const Line &line : qAsConst(context.pgn.lines)) {
        if (line.type != LineType::RawCan)
            continue;
        const QVector<Identifier> &sent = line.transmitted.identifiers;
        const QVector<Identifier> &received = line.received.identifiers;
        writeTable(context, kTransmitWords, line, sent);
        writeTable(context, kReceiveWords, line, received);
        out.parts("RAWCAN_CONFIG_T  rawcanConfig", lineSuffix(context.pgn, line), " = {\n");
        writeReference(context, kTransmitWords, line, sent);
        writeReference(context, kReceiveWords, line, received);
        out.raw("};\n");
    }
}
