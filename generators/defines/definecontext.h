// What the sections of gen_define.h share: the differences of the two stack generations, the facts
// that all of them ask for, and the notes that one section leaves for the next.
#pragma once

#include "generators/projectlines.h"
#include "generators/sourcecontext.h"

#include <QByteArray>
#include <QSet>

/// What the two generations of the stack differ in; single words stand in their rows.
struct DefineDialect : Dialect {
    const char *j1939TimerLine = "";          ///< timer of J1939 in terms of the CANopen timer
    bool virtualsBesideOtherProtocols = true; ///< virtual objects in multi-protocol projects
    bool virtualsOfFirstLineOnly = false;     ///< in the counts by data type
    bool hasVirtualStrings = true;            ///< virtual strings and domains are counted
    bool listsVirtualsByLine = true;
};

constexpr DefineDialect classicDefineDialect()
{
    DefineDialect d;
    d.j1939TimerLine = "#define J1939_TIMER_INTERVAL\tCO_TIMER_INTERVAL\n";
    return d;
}

constexpr DefineDialect v4DefineDialect()
{
    DefineDialect d = classicDefineDialect();
    d.preferV4 = true;
    d.j1939TimerLine = "";
    d.virtualsBesideOtherProtocols = false;
    d.virtualsOfFirstLineOnly = true;
    d.hasVirtualStrings = false;
    d.listsVirtualsByLine = false;
    return d;
}

/// Defines that several sections would write. The first of them writes and sets the flag, the later
/// ones look. The services come first, then the events, J1939, raw CAN and ISO-TP.
struct WrittenDefines {
    bool multiLine = false;
    bool bufferCounts = false;
    bool sdoServerCnt = false;
    bool sdoClientCnt = false;
    bool inhibit = false;
    bool tableSwitches = false; ///< looked at, whether or not the project needs them
    bool dynamicCan = false;
    bool isoTp = false;
    bool openSection = false;    ///< the last one has no blank line after it
    QSet<QByteArray> eventSlots; ///< settings of the dynamic events
};

/// See SourceContext.
struct DefineContext : SourceContext<DefineDialect> {
    ProjectLines lines;
    quint8 activeLine = 0;      ///< the line whose device profile and description count
    bool multiProtocol = false; ///< lines of several protocols, or a raw CAN line
    WrittenDefines written;

    DefineContext(ObjectDataBase &database, TextWriter &writer, const DefineDialect &words)
        : SourceContext(database, writer, words), lines(readProjectLines(database))
    {
    }

    void define(const Word &start, quint32 value) { out.define(of(start), value); }
    void defineList(const Word &start, const QVector<quint32> &perLine)
    {
        out.defineList(of(start), perLine);
    }
};
