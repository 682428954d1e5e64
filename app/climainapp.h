// The command line: what the user asked for, and the exit code.
#pragma once

#include "app/generatormainhandler.h"
#include "app/locatedfinding.h"
#include "app/overviewfile.h"
#include "app/problemlog.h"
#include "app/runoptions.h"
#include "support/outputguard.h"
#include "support/runfiles.h"

#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

class CLIOutputHandler;

/// Takes the argument list through one run of GeneratorMainHandler. All work happens in start(),
/// which the event loop calls once.
class CLIMainApp : public QObject
{
    Q_OBJECT

public:
    /// The process's exit codes.
    enum class ReturnCode {
        NoError = 0,
        NoProject = 2,
        OpenProjectFailed = 3,
        ParameterError = 4,
        ImportError = 5,
        CheckError = 7,
        OutputNotWritable = 8,
    };

    /// \a argumentList as QCoreApplication gives it, the program's path first.
    CLIMainApp(const QStringList &argumentList, CLIOutputHandler *handler,
               QObject *parent = nullptr);

    /// Prints the text of a code other than NoError; called once, when all else is done.
    ReturnCode getReturnCode();

    /// The last act of the process.
    void abandonProject()
    {
        generatorMainHandler->abandonProject();
        overview.abandon();
    }

public slots:
    void start();
    void generatorFinished(GeneratorMainHandler::GeneratorResult result);

signals:
    void finished();

private:
    void printHelp();
    void fillErrorStringMap();
    /// The process as its options ask for it.
    void followOptions();
    void protectInputs(const QString &project);
    /// Whether the file of an export may be written, if there is to be one; else says why not.
    bool mayExport();
    void runProject(const QString &project);
    /// Opens the project, and the older one that the user wants it to be compared with, if any.
    bool openProjects(const QString &project);
    void printComparison();
    void protectReadFiles();
    void finishWith(ReturnCode code);
    bool savesProject() const;
    void keepProject(const QString &project);
    void saveProject(const QString &project);
    void exportProject(const QString &file);
    void failExport(const QString &file, const QString &reason);
    QString outcome() const; ///< of the run, in words
    /// Finds the places of the findings, as long as the project's file is the one that was read.
    void locateFindings();
    /// Reads what the page of the project shows, if there is to be one.
    void readOverview();
    /// Writes the page of the project, if the user asked for it.
    void writeOverview(const QString &project);
    /// Writes the report on the run that the user asked for, if he did.
    void writeReport(const QString &project);
    /// The same for the dependency file; only of a run that went well.
    void writeDependencies(const QString &project);

    ProblemLog problemLog;
    OutputGuard guardOfBackup;       ///< what the backup of a save must not take the place of
    OutputGuard guardOfExport;       ///< the same for the exported project
    OutputGuard guardOfReport;       ///< the same for the report for machines
    OutputGuard guardOfDependencies; ///< the same for the dependency file
    OutputGuard guardOfOverview;     ///< the same for the page of the project
    RunFiles runFiles;
    OverviewFile overview;
    QVector<LocatedFinding> locatedFindings;
    RunOptions options;
    QVector<ImportRequest> imports;
    CLIOutputHandler *outputHandler;
    GeneratorMainHandler *generatorMainHandler;
    QMap<ReturnCode, QString> errorStrings;
    ReturnCode returnCode = ReturnCode::NoError;
    bool isExportAllThatFailed = false;
};
