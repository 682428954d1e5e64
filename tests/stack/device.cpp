// Compiles and runs generated sources.
#include "tests/stack/device.h"

#include "generators/overview/footprint.h"
#include "tests/fixtures/testkit.h"

#include <QDir>
#include <QFileInfo>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>

#include <memory>
#include <vector>

/// Runs a program once for each of these arguments, all at once; true if all ended well.
bool Device::execute(const QString &program, const QList<QStringList> &calls)
{
    std::vector<std::unique_ptr<QProcess>> processes;
    for (const QStringList &arguments : calls) {
        processes.push_back(std::make_unique<QProcess>());
        processes.back()->setWorkingDirectory(path);
        processes.back()->setProcessChannelMode(QProcess::MergedChannels);
        processes.back()->start(program, arguments);
    }
    for (const auto &process : processes) {
        const bool isDone = process->waitForFinished(kLongestWaitMs);
        printed = QString::fromUtf8(process->readAll());
        const bool isGood =
            isDone && process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0;
        if (!isGood && firstFault.isEmpty())
            firstFault = program + " failed:\n" + printed.left(4000);
    }
    return firstFault.isEmpty();
}

void Device::run(const QStringList &parts, const QStringList &features)
{
    QStringList files = QDir(path).entryList({"*.c"});
    for (const QString &part : parts)
        files << QStringLiteral(TEST_STACK "/%1.c").arg(part);
    QStringList flags = {"-std=c99",      "-O0",
                         "-Wall",         "-Wextra",
                         "-Werror",       "-fsanitize=address",
                         "-I.",           "-I" TEST_STACK "/include",
                         "-I" TEST_STACK, "-I" TESSARINE_EXAMPLES "/pump",
                         "-fno-pie",      "-no-pie"}; // constants with addresses stay constants
    flags += features;
    QStringList objects;
    QList<QStringList> compilers;
    for (const QString &file : files) {
        objects << QFileInfo(file).completeBaseName() + ".o";
        compilers << flags + QStringList{"-c", file, "-o", objects.last()};
    }
    const bool isCompiled = firstFault.isEmpty() && execute(TEST_C_COMPILER, compilers);
    if (isCompiled)
        checkFootprint(objects.filter(QRegularExpression("^gen_")));
    if (isCompiled && execute(TEST_C_COMPILER, {flags + objects + QStringList{"-o", "device"}}))
        execute(path + "/device", {QStringList()});
}

void Device::checkFootprint(const QStringList &objects)
{
    QStringList sources;
    for (const QString &name : QDir(path).entryList({"gen_*.c", "gen_define.h"}))
        sources << path + '/' + name;
    const Overview::Footprint told = Overview::footprintOfFiles(sources, sizeof(void *));
    using Bytes = QPair<qint64, qint64>; // RAM and ROM, by the name of the table
    QMap<QString, Bytes> expected;
    for (const Overview::FootprintArray &array : told.arrays) {
        if (!array.name.startsWith("texts of "))
            expected[array.name] = {expected[array.name].first + array.ram,
                                    expected[array.name].second + array.rom};
    }
    if (!execute("nm", {QStringList{"-S"} + objects}))
        return;
    QMap<QString, Bytes> actual;
    for (const QString &row : printed.split('\n')) {
        const QStringList cells = row.split(' '); // address, size, kind, name
        if (cells.size() != 4 || !QString("bdr").contains(cells[2].toLower()) ||
            cells[3].startsWith('_') || cells[3].startsWith('.'))
            continue;
        Bytes &bytes = actual[cells[3].section('.', 0, 0)];
        (cells[2].toLower() == "r" ? bytes.second : bytes.first) +=
            cells[1].toLongLong(nullptr, 16);
    }
    const auto rows = [](const QMap<QString, Bytes> &tables) {
        QStringList result;
        for (auto table = tables.begin(); table != tables.end(); ++table)
            result << QString("%1 RAM %2 ROM %3")
                          .arg(table.key())
                          .arg(table->first)
                          .arg(table->second);
        return result;
    };
    if (actual != expected && firstFault.isEmpty())
        firstFault = "footprint: " + difference(rows(expected), rows(actual)) + told.note;
}

QStringList Device::rowsOf(const QString &text, const QStringList &words)
{
    QStringList found;
    for (const QString &row : text.split('\n')) {
        for (const QString &word : words) {
            if (row.startsWith(word))
                found << row;
        }
    }
    return found;
}

QString Device::section(const QString &begin) const
{
    const int start = printed.indexOf(begin);
    return start < 0 ? QString() : printed.mid(start, printed.indexOf("\nresult ", start) - start);
}

QStringList Device::startRows(int variant, const QStringList &words) const
{
    return rowsOf(section(QStringLiteral("start %1\n").arg(variant)), words);
}

QByteArray difference(const QStringList &actualBlocks, const QStringList &expectedBlocks)
{
    // QtTest cuts long texts, so that rows are told one by one.
    const QStringList actual = actualBlocks.join('\n').split('\n');
    const QStringList expected = expectedBlocks.join('\n').split('\n');
    int row = 0;
    while (row < actual.size() && row < expected.size() && actual[row] == expected[row])
        ++row;
    if (row == actual.size() && row == expected.size())
        return QByteArray();
    const auto part = [row](const QStringList &rows) {
        return rows.mid(qMax(0, row - 2), 8).join("\n    ");
    };
    return QStringLiteral("row %1\n  actual:\n    %2\n  expected:\n    %3")
        .arg(row)
        .arg(part(actual), part(expected))
        .toUtf8();
}
