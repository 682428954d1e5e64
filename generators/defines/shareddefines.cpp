// Defines that are written once.
#include "generators/defines/shareddefines.h"

#include "generators/defines/definelists.h"

void Defines::writeHeading(DefineContext &context, const char *line)
{
    if (context.written.openSection)
        context.raw({"\n"});
    context.raw({line});
    context.written.openSection = false;
}

void Defines::writeMultiLine(DefineContext &context)
{
    if (context.written.multiLine)
        return;
    context.raw({"#define CO_MULTI_LINE\t1u\n", "#define CAN_MULTI_LINE\t1u\n"});
    context.define({"#define CO_MULTI_LINE_CNT\t", "#define CAN_MULTI_LINE_CNT\t"},
                   quint32(context.lines.numbers.size()));
    context.written.multiLine = true;
}

void Defines::writeBufferCounts(DefineContext &context, bool withSizes)
{
    if (context.written.bufferCounts)
        return;
    const BufferSizes sizes = readBufferSizes(context.settings, context.lines.numbers);
    const QString receive = withUnsignedEnd(sizes.receive) + QLatin1Char('\n');
    const QString transmit = withUnsignedEnd(sizes.transmit) + QLatin1Char('\n');
    context.raw({"/* Number of receive/transmit buffer entries per line */\n"});
    if (withSizes) {
        context.raw({"#define CO_REC_BUFFER_CNT\t", "#define CORE_REC_BUFFER_CNT\t"});
        context.out.raw(receive);
        context.raw({"#define CO_TR_BUFFER_CNT\t", "#define CORE_TR_BUFFER_CNT\t"});
        context.out.raw(transmit);
    }
    context.raw({"#define CO_REC_BUFFER_COUNTS\t", "#define CORE_REC_BUFFER_COUNTS\t"});
    context.out.raw(receive);
    context.raw({"#define CO_TR_BUFFER_COUNTS\t", "#define CORE_TR_BUFFER_COUNTS\t"});
    context.out.raw(transmit);
    context.written.bufferCounts = true;
}

void Defines::writeSdoServerCount(DefineContext &context, quint32 count)
{
    if (count == 0 || context.written.sdoServerCnt)
        return;
    context.define({"#define CO_SDO_SERVER_CNT\t"}, count);
    context.written.sdoServerCnt = true;
}

void Defines::writeSdoClientCount(DefineContext &context, quint32 count)
{
    if (count == 0 || context.written.sdoClientCnt)
        return;
    context.define({"#define CO_SDO_CLIENT_CNT\t"}, count);
    context.written.sdoClientCnt = true;
}

void Defines::writeInhibit(DefineContext &context)
{
    if (context.written.inhibit)
        return;
    context.raw({"#define CO_INHIBIT_SUPPORTED\t1u\n", "#define CORE_INHIBIT_SUPPORTED\t1u\n"});
    context.written.inhibit = true;
}

void Defines::writeCanEvents(DefineContext &context, qint32 count)
{
    if (count <= 0 || context.written.dynamicCan)
        return;
    context.define({"#define CO_EVENT_DYNAMIC_CAN\t", "#define CORE_EVENT_DYNAMIC_CAN\t"},
                   quint32(count));
    context.written.dynamicCan = true;
}

quint8 Defines::isoTpConnectionCount(const GeneralSettings &settings)
{
    return static_cast<quint8>(settings.byPrefix("isotp_connection_cnt"));
}

void Defines::writeIsoTp(DefineContext &context)
{
    if (context.written.isoTp)
        return;
    context.raw({"#define ISOTP_SUPPORTED\t1u\n"});
    if (const quint8 connections = isoTpConnectionCount(context.settings))
        context.define({"#define ISOTP_CONNECTION_CNT\t"}, connections);
    context.written.isoTp = true;
}
