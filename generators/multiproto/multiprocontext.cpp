// The form of the source of several protocols.
#include "generators/multiproto/multiprocontext.h"

#include "generators/codefeatures.h"
#include "generators/objdict/objdictinit.h"
#include "generators/projectlines.h"

MultiPro::Facts MultiPro::readFacts(const ObjectDataBase &store)
{
    const ProjectFeatures features = readCodeFeatures(store);
    const ProjectLines project = readProjectLines(store);
    Facts facts;
    facts.multiLine = project.multiLine;
    for (const quint8 line : project.numbers) {
        const LineType type = readLineType(store, line);
        facts.hasCANopen |= carriesCANopen(type);
        facts.hasJ1939 |= carriesJ1939(type);
        facts.hasRaw |= type == LineType::RawCan;
    }
    facts.hasUds = features.hasUds();
    facts.hasCiA510 = features.hasSdoServer();
    return facts;
}

MultiPro::Context MultiPro::makeContext(ObjectDataBase &store, TextWriter &out,
                                        const Dialect &dialect, quint8 activeLine)
{
    Context context{
        readFacts(store),
        out,
        ObjDict::Context(store, out, dialect.objDict),
        Pgn::makeContext(store, out, dialect.pgn),
    };
    // Deliberate: one decision for the whole file, so that a single line of both protocols finds
    // its tables in a forced multi-line form too; held by tst_mixedc.
    context.pgn.form.multiLine = context.facts.multiLine;
    ObjDict::Form &form = context.objDict.form;
    form = ObjDict::readForm(store, activeLine);
    // Each CANopen line is started, and only these: tables of stale objects would be unused. Their
    // rows stand in the dictionary all the same, as the definitions header counts them.
    form.servedLines.clear();
    for (const Pgn::Line &line : qAsConst(context.pgn.lines)) {
        if (carriesCANopen(line.type))
            form.servedLines << line.number;
    }
    // Deliberate: a stack without CANopen has no COB-IDs to set; held by tst_multiprogenerator.
    if (!context.facts.hasCANopen)
        form.cobIdLines.clear();
    Facts &facts = context.facts;
    facts.takesOptions = !facts.multiLine && facts.hasCANopen && facts.hasJ1939 &&
                         isMasterByOptions(context.objDict);
    return context;
}

QList<quint8> MultiPro::startedLines(const Context &context)
{
    QList<quint8> started;
    for (const Pgn::Line &line : qAsConst(context.pgn.lines)) {
        if (isKnown(line.type))
            started << line.number;
    }
    return started;
}
