// Memory for CAN messages.
#include "generators/defines/bufferdefines.h"

#include "generators/defines/definecounts.h"
#include "generators/defines/definelists.h"

namespace
{

void writeUserMessages(DefineContext &context)
{
    const qint32 transmit = context.settings.decimal("user_tx_cob");
    const qint32 receive = context.settings.decimal("user_rx_cob");
    if (transmit > 0)
        context.define({"#define USER_TRANSMIT_MSG_CNT\t"}, quint32(transmit));
    if (receive > 0)
        context.define({"#define USER_RECEIVE_MSG_CNT\t"}, quint32(receive));
    if (transmit > 0 || receive > 0)
        context.raw({"#define CO_USER_EXTENSION_SUPPORTED\t1u\n"});
}

} // namespace

void Defines::generateBufferDefines(DefineContext &context)
{
    const GeneralSettings &settings = context.settings;
    writeUserMessages(context);
    if (context.features.hasSortedCobs()) {
        context.raw({"/* Use of sorted COB list*/\n"
                     "#define CO_COB_SORTED_LIST\t1u\n"
                     "\n"});
    }
    if (settings.decimal("only_one_hb_buffer") > 0)
        context.raw({"#define CO_ONE_HB_CONSUMER_COB\t1u\n"});

    const BufferSizes sizes = readBufferSizes(settings, context.lines.numbers);
    context.raw({"/* Definition of CAN queue sizes */\n"});
    context.raw({"#define CO_CONFIG_REC_BUFFER_CNT\t", "#define CORE_CONFIG_REC_BUFFER_CNT\t"});
    context.out.parts(combineCobBufferCounts(sizes.receive), "u\n");
    context.raw({"#define CO_CONFIG_TRANS_BUFFER_CNT\t", "#define CORE_CONFIG_TRANS_BUFFER_CNT\t"});
    context.out.parts(combineCobBufferCounts(sizes.transmit), "u\n");
    if (context.features.hasCanFd())
        context.raw({"#define CO_CANFD_SUPPORTED\t1u\n"});
    context.raw({"\n"});
}

void Defines::generateMultiCOBs(DefineContext &context)
{
    context.raw({"/* COB Definitions */\n"});
    context.raw({"#define CO_COB_COUNTS ", "#define CORE_COB_COUNTS "});
    quint16 total = 0;
    const char *gap = "";
    // Deliberate: the same lines as in all other lists, and a 0 for one of unknown type, since an
    // initialiser can hold no empty element; held by tst_definesections.
    for (const quint8 line : qAsConst(context.lines.numbers)) {
        const quint16 cobs = getMultiProtocolCobs(context, line);
        context.out.raw(gap);
        context.out.raw(quint32(cobs));
        total += cobs;
        gap = ", ";
    }
    context.raw({"\n"});
    context.raw({"#define CO_COB_CNT \t", "#define CORE_COB_CNT \t"});
    context.out.raw(quint32(total));
    context.raw({"\n"});
}
