// What the tests of generated J1939 sources share: a program of the generated files that is
// compiled, linked and run.
#pragma once

#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/storefixture.h"

#include <QProcess>

/// A project with J1939 lines, whose sources become a program.
class CSourceTest : public StoreTest
{
protected:
    /// What the program of all sources in the fixture's folder prints; the compiler's text if it
    /// does not compile.
    QString runProgram(const QByteArray &mainSource)
    {
        if (!writeFile(fixture.path("main.c"), mainSource))
            return "not written";
        const QString flags =
            "-std=c99 -Wall -Wextra -Wpedantic -Werror -O2 -I" TEST_STACK "/include";
        QStringList arguments = flags.split(' ');
        arguments << "-I" + fixture.path() << "-o" << fixture.path("program");
        for (const QString &file : QDir(fixture.path()).entryList({"*.c"}))
            arguments << fixture.path(file);
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(TEST_C_COMPILER, arguments);
        if (process.waitForFinished(kLongestWaitMs) && process.exitCode() == 0) {
            process.start(fixture.path("program"), QStringList());
            // If it does not end, its output is not what is expected.
            (void)process.waitForFinished(kLongestWaitMs);
        }
        return QString::fromUtf8(process.readAll());
    }
};
