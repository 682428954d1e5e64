// The parts of the projects whose generated C is compiled and run. Each is a file of the folder
// projects; see projecttext.h for its form.
#pragma once

#include "tests/fixtures/testkit.h"

inline QString projectPart(const char *name)
{
    const QByteArray text = readFile(QString(TEST_STACK "/projects/%1.txt").arg(name));
    if (text.isEmpty())
        qFatal("no such part: %s", name);
    return '\n' + QString::fromUtf8(text);
}

inline const QString kDevice = projectPart("device");
inline const QString kSecondLine = projectPart("second_line");
inline const QString kPdos = projectPart("pdos");
inline const QString kTypes = projectPart("types");
inline const QString kServices = projectPart("services");
inline const QString kIndicationSettings = projectPart("indications");
inline const QString kCanFd = projectPart("can_fd");
inline const QString kUds = projectPart("uds");
inline const QString kShared = projectPart("shared");
inline const QString kRouting = projectPart("routing");
inline const QString kVirtual = projectPart("virtual");
inline const QString kOdd = projectPart("odd");
inline const QString kSharedRuns = projectPart("shared_runs");
inline const QString kOddValues = projectPart("odd_values");
inline const QString kSwitches = projectPart("switches");
