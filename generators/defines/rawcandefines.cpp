// Raw CAN.
#include "generators/defines/rawcandefines.h"

#include "generators/defines/shareddefines.h"
#include "store/linetype.h"

#include <numeric>

namespace
{

/// Lines of other protocols have no identifiers, whatever the project keeps of them.
struct Facts {
    QVector<quint32> received; ///< identifiers by line
    QVector<quint32> transmitted;
    bool hasRawLine = false;
    bool hasInhibit = false;
};

/// Functions that the application may register; written if the setting is above zero.
struct IndicationRow {
    const char *setting;
    const char *start;
};

// clang-format off
constexpr IndicationRow kIndications[] = { // row order is file order
    {"rxindication_cnt",      "#define RAWCAN_REC_INDICATION_CNT\t"},
    {"txindication_cnt",      "#define RAWCAN_TR_INDICATION_CNT\t"},
    {"changedindication_cnt", "#define RAWCAN_CHANGED_INDICATION_CNT\t"},
};
// clang-format on

bool hasInhibitTime(const ObjectDataBase &store, quint8 line, const QList<quint32> &ids)
{
    for (const quint32 id : ids) {
        CanIdData data;
        if (store.getCANIDData(line, id, Direction::kTransmitted, data) && data.inhibitTimeMs != 0)
            return true;
    }
    return false;
}

Facts readFacts(const DefineContext &context)
{
    Facts facts;
    for (const quint8 line : context.lines.numbers) {
        const bool isRaw = readLineType(context.store, line) == LineType::RawCan;
        const QList<quint32> sent =
            isRaw ? context.store.getCANIDs(line, Direction::kTransmitted) : QList<quint32>();
        facts.transmitted << quint32(sent.size());
        facts.received << (isRaw
                               ? quint32(context.store.getCANIDs(line, Direction::kReceived).size())
                               : 0);
        facts.hasRawLine |= isRaw;
        facts.hasInhibit = facts.hasInhibit || hasInhibitTime(context.store, line, sent);
    }
    return facts;
}

quint32 sum(const QVector<quint32> &perLine)
{
    return std::accumulate(perLine.begin(), perLine.end(), 0U);
}

void writeIdentifiers(DefineContext &context, const Facts &facts)
{
    TextWriter &out = context.out;
    out.raw("#define RAWCAN_SUPPORTED\t1u\n");
    out.define("#define RAWCAN_RECEIVE_CNT\t", sum(facts.received));
    out.define("#define RAWCAN_TRANSMIT_CNT\t", sum(facts.transmitted));
    out.defineList("#define RAWCAN_RECEIVE_COUNTS\t", facts.received);
    out.defineList("#define RAWCAN_TRANSMIT_COUNTS\t", facts.transmitted);
}

void writeIndications(DefineContext &context)
{
    for (const IndicationRow &row : kIndications) {
        const qint32 count = context.settings.decimal(row.setting);
        if (count > 0)
            context.out.define(row.start, quint32(count));
    }
    Defines::writeCanEvents(context, context.settings.decimal("event_can"));
}

} // namespace

void Defines::generateCANRAWDefines(DefineContext &context)
{
    const Facts facts = readFacts(context);
    if (!facts.hasRawLine)
        return;
    writeHeading(context, "/* Raw CAN Defines */\n");
    if (context.lines.multiLine)
        writeMultiLine(context);
    writeIdentifiers(context, facts);
    if (facts.hasInhibit)
        writeInhibit(context);
    writeIndications(context);
    context.raw({"\n"});
    if (!context.written.bufferCounts) {
        writeBufferCounts(context, true);
        context.raw({"\n"});
    }
}
