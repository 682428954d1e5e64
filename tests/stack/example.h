// A hand-written example of examples/ as the tool itself reads it.
#pragma once

#include "tests/fixtures/storefixture.h"

#include <QProcess>

/// Runs the tool on a copy of the example in \a folder, for the newer stack if \a isV4. Gives the
/// project; none if the run failed or found anything worth a warning, which is printed.
inline std::unique_ptr<ObjectDataBase> runExample(const QString &name, const QString &folder,
                                                  bool isV4)
{
    const QString project = folder + '/' + name + ".yaml";
    QFile::copy(QString(TESSARINE_EXAMPLES "/%1/%1.yaml").arg(name), project);
    QStringList arguments = {"-project", project};
    if (isV4) {
        writeFile(folder + "/v4.txt", "GeneralSettings:use_core_headers:V4\n");
        arguments << "-dbmod" << folder + "/v4.txt";
    }
    QProcess tool;
    tool.start(TEST_TOOL, arguments);
    bool isClean = tool.waitForFinished(kLongestWaitMs) && tool.exitCode() == 0;
    const QByteArray printed = tool.readAll();
    for (const QByteArray &row : printed.split('\n'))
        isClean &= row.isEmpty() || row.startsWith("Check of") || row.startsWith("Generation") ||
                   row.startsWith("Info: ") || row.startsWith("Specify path to protocol stack");
    auto store = std::make_unique<ObjectDataBase>();
    if (!isClean || !store->openDataBase(project)) {
        qWarning("%s", printed.constData());
        return nullptr;
    }
    if (isV4)
        store->setGeneralSettingsValue("use_core_headers", "V4");
    return store;
}
