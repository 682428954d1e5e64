// The form of the J1939 source, and what it reads from the project.
#include "generators/j1939/pgncontext.h"

#include "generators/codefeatures.h"
#include "generators/projectlines.h"
#include "support/parametergroups.h"

namespace
{

using namespace Pgn;

template <class Record>
QVector<Signal> signalsOf(const QVector<Record> &records)
{
    QVector<Signal> found;
    found.reserve(records.size());
    for (const Record &record : records)
        found << Signal{record, std::nullopt};
    return found;
}

Traffic readTraffic(const ObjectDataBase &store, quint8 line, quint8 direction)
{
    Traffic traffic;
    const QList<quint32> pgns = store.getPGNs(line, direction, false);
    for (const quint32 pgn : pgns) {
        Group group;
        (void)store.getPGNData(line, pgn, direction, group.data); // it is there: it was listed
        group.mapping = signalsOf(store.getSPNRecords(line, pgn, direction));
        traffic.groups << group;
    }
    const QList<quint32> ids = store.getCANIDs(line, direction);
    for (const quint32 id : ids) {
        Identifier identifier;
        (void)store.getCANIDData(line, id, direction, identifier.data); // as above
        identifier.mapping = signalsOf(store.getDataElementRecords(line, id, direction));
        traffic.identifiers << identifier;
    }
    return traffic;
}

} // namespace

Pgn::Dialect Pgn::dialectOf(const ObjectDataBase &store)
{
    return readCodeFeatures(store).isForV4() ? v4Dialect() : classicDialect();
}

Pgn::Context Pgn::makeContext(ObjectDataBase &store, TextWriter &out, const Dialect &dialect)
{
    Context context(store, out, dialect);
    const ProjectLines project = readProjectLines(store);
    Form &form = context.form;
    // The J1939 stack knows no forced multi-line form: lines are counted here.
    form.multiLine = project.numbers.size() > 1;
    form.canFd = context.features.hasCanFd();
    form.dynamicMapping = context.features.hasDynamicGroups();
    form.excludeSafePgns = context.features.hasSafetyGroups();
    form.initialiseValues = context.features.hasStaticValues();
    form.hasUds = context.features.hasUds();
    for (const quint8 number : project.numbers) {
        store.cacheAllSpnDataForLine(number);
        context.lines << Line{number, readLineType(store, number),
                              readTraffic(store, number, Direction::kReceived),
                              readTraffic(store, number, Direction::kTransmitted)};
    }
    return context;
}

bool Pgn::hasMapping(const Context &context, const Line &line, const Group &group)
{
    // Deliberate: nothing would refer to a mapping of received claims, which are the stack's own
    // business; held by tst_pgngenerator.
    if (group.data.number == ParameterGroup::kAddressClaimed &&
        group.data.direction == Direction::kReceived)
        return false;
    const bool isLeftOut = context.form.excludeSafePgns && group.data.isSafe != 0;
    return line.hasJ1939() && !isLeftOut;
}

QVector<const Pgn::Group *> Pgn::tableGroups(const Context &context, const Line &line,
                                             const Traffic &traffic)
{
    QVector<const Group *> groups;
    for (const Group &group : traffic.groups) {
        if (group.data.number != ParameterGroup::kAddressClaimed &&
            hasMapping(context, line, group))
            groups << &group;
    }
    return groups;
}

QString Pgn::linePrefix(const Context &context, const Line &line)
{
    return context.form.multiLine ? QStringLiteral("l%1_").arg(line.number) : QString();
}

QString Pgn::lineSuffix(const Context &context, const Line &line)
{
    return context.form.multiLine ? QStringLiteral("_l%1").arg(line.number) : QString();
}
