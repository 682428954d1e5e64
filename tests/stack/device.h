// A device made of generated sources: written, compiled and linked with the test stack, run, and
// what it printed.
#pragma once

#include <QString>
#include <QStringList>

/// Of a project, and not fit for comments as it stands.
constexpr const char *kDeviceName = "Test /* of */ ?"
                                    "?/";

class Device
{
public:
    /// All files of the device lie in \a folder.
    explicit Device(const QString &folder) : path(folder) {}

    /// Compiles all sources of the folder with those \a parts of the test stack, without warnings,
    /// compares the sizes of generated tables with those of the overview, and runs the program. \a
    /// features are macros that the test stack takes its form from.
    void run(const QStringList &parts, const QStringList &features);

    /// What went wrong first; empty if nothing did.
    QString fault() const { return firstFault; }
    QString output() const { return printed; }

    /// The rows of the output that begin with one of these words.
    QStringList rows(const QStringList &words) const { return rowsOf(printed, words); }
    /// Those between the row "start \a variant" and its result.
    QStringList startRows(int variant, const QStringList &words) const;
    /// The part of the output from the row \a begin to the next row "result ...".
    QString section(const QString &begin) const;

    static QStringList rowsOf(const QString &text, const QStringList &words);

private:
    bool execute(const QString &program, const QList<QStringList> &calls);
    /// Do the tables in the objects have the sizes that the overview of the project tells?
    void checkFootprint(const QStringList &objects);

    QString path;
    QString firstFault;
    QString printed;
};

/// Empty if both are the same; else the first rows that are not, with what stands around them.
QByteArray difference(const QStringList &actualBlocks, const QStringList &expectedBlocks);

#define SAME_ROWS(actual, expected)                                                                \
    do {                                                                                           \
        const QByteArray difference_ = difference(actual, expected);                               \
        QVERIFY2(difference_.isEmpty(), difference_.constData());                                  \
    } while (false)
