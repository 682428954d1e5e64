// What the tests of generated J1939 sources share: groups and signals, and a program of the
// generated files that is compiled, linked and run.
#pragma once

#include "tests/fixtures/storefixture.h"

#include <QProcess>

/// A project with J1939 lines, whose sources become a program.
class CSourceTest : public StoreTest
{
protected:
    void setType(quint8 line, int type)
    {
        if (!store->existNode(line))
            store->addNode(line, Node());
        store->setGeneralSettingsValue(QString("line%1type").arg(line), QString::number(type));
    }

    void addGroup(quint8 line, quint32 number, int direction, quint32 srvtMs)
    {
        ObjectDataBase::PGN group;
        group.name = "a */";
        group.direction = quint8(direction);
        group.cycleTimeMs = 100;
        group.priority = 6;
        group.isSafe = srvtMs != 0;
        group.srvtMs = srvtMs;
        QVERIFY(store->addPGN(line, number, group));
    }

    /// Behind the signals that the group has.
    void addSpn(quint8 line, quint32 group, int direction, quint32 type, const QString &variable,
                const QString &value = "0", quint16 bits = 0)
    {
        ObjectDataBase::SPN spn;
        spn.pos = qint16(store->getSPNs(line, group, quint8(direction)).size());
        spn.name = "s */";
        spn.dataType = type;
        spn.bitSize = bits;
        spn.implementation = variable == "managed" ? 0 : 2;
        spn.varName = variable;
        spn.defaultValue = value;
        QVERIFY(store->addSPN(line, group, quint8(direction), quint32(spn.pos + 1), spn));
    }

    /// What the program of all sources in the fixture's folder prints; the compiler's text if it
    /// does not compile.
    QString runProgram(const QByteArray &mainSource)
    {
        if (!writeFile(fixture.path("main.c"), mainSource))
            return "not written";
        QStringList arguments = {"-std=c99",
                                 "-Wall",
                                 "-Wextra",
                                 "-Wpedantic",
                                 "-Werror",
                                 "-O2",
                                 "-I" + fixture.path(),
                                 "-I" TEST_STACK "/include",
                                 "-o",
                                 fixture.path("program")};
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
