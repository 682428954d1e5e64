// The start of lines of all protocols, told in the words of the test program.
#include "tests/stack/expectation_mixed.h"

#include "tests/stack/meaning.h"

#include <QRegularExpression>

using namespace Meaning;

MixedExpectation::MixedExpectation(ObjectDataBase &database)
    : store(database), groups(database), shared(groups.common()), lines(database.getNodes())
{
}

QList<quint8> MixedExpectation::linesOf(const QList<int> &types) const
{
    QList<quint8> found;
    for (const quint8 line : lines) {
        if (types.contains(shared.typeOf(line)))
            found << line;
    }
    return found;
}

bool MixedExpectation::hasCiA510() const
{
    return store.getJ1939SettingsValue("cia510serversupport") == "1";
}

bool MixedExpectation::takesOptions() const
{
    return !shared.isMultiLine() && hasCANopen() &&
           store.getGeneralSettingsValue("nmtmaster") == "2";
}

bool MixedExpectation::canRefuse() const
{
    return shared.isMultiLine() && !isRawOnly() && !linesOf({1, 2, 4}).isEmpty();
}

QStringList MixedExpectation::appVariables() const
{
    QStringList names = shared.appVariables().keys() + groups.appVariables().keys();
    for (const quint8 line : linesOf({4})) {
        for (const quint8 direction : {kSent, kReceived}) {
            for (const quint32 id : store.getCANIDs(line, direction)) {
                for (const auto &item : store.getDataElementRecords(line, id, direction))
                    names << item.varName;
            }
        }
    }
    names.removeDuplicates();
    names.removeAll(QString());
    return names;
}

QString MixedExpectation::protocols() const
{
    QStringList values;
    const quint8 first = shared.isMultiLine() ? 0 : lines.first(); // a line alone has no number
    for (quint8 line = first; line <= lines.last(); ++line)
        values << QString::number(lines.contains(line) ? shared.protocolsOf(line) : 0x80);
    return values.join(',');
}

// --- Start ---

QStringList MixedExpectation::start(int variant)
{
    const quint8 none = Expectation::kNoLine;
    QStringList rows = {shared.call("commonStackInit", none, {quint32(lines.size())})};
    if (hasCANopen()) {
        rows << shared.call("coCanOpenStackVarInit", none);
        QStringList load;
        shared.loadParameters(load);
        rows << load.replaceInStrings(QRegularExpression(" 1$"), " 0"); // a null pointer
    }
    if (hasJ1939())
        rows << shared.call("j1939StackInit_common", none, {5});
    if (hasRaw())
        rows << shared.call("rawcanStackInit_common", none, {4});
    if (shared.hasUds())
        rows << shared.call(
            "udsStackInit_common", none,
            {quint32(numberOf(store.getGeneralSettingsValue("udsserver_version")))});
    groups.restart();
    for (const quint8 line : linesOf({1, 2, 4, 5}))
        rows << lineRows(line, variant);
    return blocks(rows);
}

QStringList MixedExpectation::lineRows(quint8 line, int variant)
{
    const int type = shared.typeOf(line);
    QStringList rows;
    if (type == 2 || type == 5)
        rows << groups.line(line);
    if (type == 1 || type == 5)
        rows << canopenRows(line, variant);
    if (type == 4)
        rows << rawRows(line);
    if (type == 2 && hasCiA510() && hasCANopen())
        rows << shared.call("coOdInitOdPtr", line, {0});
    if ((type == 2 || type == 4) && shared.isMultiLine() && shared.isSet("isotp_connection_cnt"))
        rows << shared.call("isoTpInit", line);
    // Beside other lines one of CANopen alone leaves its diagnostics to the application.
    return shared.hasUds() && type != 1 ? rows + shared.uds(line) : rows;
}

/// A line of both protocols beside others keeps to classic CAN.
QStringList MixedExpectation::canopenRows(quint8 line, int variant) const
{
    const bool isFdLine = shared.isMultiLine() ? shared.typeOf(line) == 1 : variant != 0;
    const QString role = store.getGeneralSettingsValue("co_ml_ms").split(',').value(line);
    QStringList rows = {shared.call("coOdInitOdPtr", line, {0})};
    rows << shared.services(line, isFdLine && shared.isSet("canfd_supported"),
                            shared.isMultiLine() ? role == "1" : variant == 1);
    if (shared.isMultiLine())
        rows.removeAll(shared.call("coGuardingInit", line));
    if (shared.isMultiLine() && shared.typeOf(line) == 5)
        rows.removeAll(shared.call("coIdNegoInit", line));
    return rows;
}

QStringList MixedExpectation::rawRows(quint8 line)
{
    // Variables are numbered in this order.
    QStringList rows = {shared.call("rawcanStackInit_line", line)};
    rows << identifiers(line, kReceived) << identifiers(line, kSent);
    return rows;
}

QStringList MixedExpectation::identifiers(quint8 line, quint8 direction)
{
    QStringList rows;
    for (const quint32 id : store.getCANIDs(line, direction)) {
        CanIdData data;
        (void)store.getCANIDData(line, id, direction, data); // it was listed
        rows << (direction == kSent ? QStringLiteral("  txid %1 cycle=%2 inhibit=%3")
                                          .arg(id)
                                          .arg(data.cycleTimeMs)
                                          .arg(data.inhibitTimeMs)
                                    : QStringLiteral("  rxid %1 mask=0").arg(id));
        for (const auto &item : store.getDataElementRecords(line, id, direction))
            rows << groups.itemRow(item);
    }
    return rows;
}

// --- Structures and dictionary ---

QVector<quint32> MixedExpectation::countIdentifiers(quint8 direction) const
{
    QVector<quint32> counts;
    for (const quint8 line : lines)
        counts << (shared.typeOf(line) == 4 ? quint32(store.getCANIDs(line, direction).size()) : 0);
    return counts;
}

QStringList MixedExpectation::counts(int variant) const
{
    QStringList rows = hasJ1939() ? groups.counts(variant) : shared.commonCounts();
    if (hasRaw())
        rows << "  received " + joinNumbers(countIdentifiers(kReceived))
             << "  transmitted " + joinNumbers(countIdentifiers(kSent));
    return rows;
}

QStringList MixedExpectation::virtualObjects() const
{
    const bool isV4 = store.getGeneralSettingsValue("use_core_headers") == "V4";
    return isV4 ? QStringList() : shared.virtualObjects();
}

QStringList MixedExpectation::dictionary() const
{
    if (!hasCANopen())
        return {};
    const QList<quint8> owners = linesOf(hasCiA510() ? QList<int>{1, 2, 5} : QList<int>{1, 5});
    QStringList rows;
    for (const QString &row : shared.dictionary()) {
        if (!shared.isMultiLine() || owners.contains(quint8(row.section(' ', 1, 1).toUInt())))
            rows << row;
    }
    return rows;
}

QStringList MixedExpectation::blocks(const QStringList &rows)
{
    QStringList texts;
    for (const QString &row : rows) {
        if (row.startsWith(' ') && !texts.isEmpty())
            texts.last() += '\n' + row;
        else
            texts << row;
    }
    return texts;
}
