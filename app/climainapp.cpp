// The command line of the tool.
#include "app/climainapp.h"

#include "app/clioutputhandler.h"
#include "app/sarifreport.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace
{

bool findOptionValue(const QStringList &list, const char *option, QString &value)
{
    const int position = list.indexOf(QLatin1String(option));
    if (position < 0 || position + 1 >= list.size())
        return false;
    value = list.at(position + 1);
    return true;
}

/// Where a save keeps the former state of a project; empty for a text project, which has none.
QString backupOf(const QString &project)
{
    if (project.endsWith(QLatin1String("tsrt")))
        return QString();
    const QString file = QFileInfo(project).canonicalFilePath(); // empty: there is none
    return (file.isEmpty() ? project : file) + QLatin1String(".bak");
}

} // namespace

CLIMainApp::CLIMainApp(const QStringList &argumentList, CLIOutputHandler *handler, QObject *parent)
    : QObject(parent), arguments(argumentList), outputHandler(handler),
      generatorMainHandler(new GeneratorMainHandler(handler, nullptr, this))
{
    connect(generatorMainHandler, &GeneratorMainHandler::finished, this,
            &CLIMainApp::generatorFinished);
    fillArgumentHelpMap();
    fillErrorStringMap();
}

void CLIMainApp::start()
{
    if (arguments.size() <= 1) {
        printHelp();
        return finishWith(ReturnCode::ParameterError);
    }
    if (arguments.contains(QLatin1String("-help"))) {
        printHelp();
        return finishWith(ReturnCode::NoError);
    }
    if (arguments.contains(QLatin1String("-version"))) {
        outputHandler->printLine(QCoreApplication::applicationName() + QLatin1Char(' ') +
                                 QCoreApplication::applicationVersion());
        return finishWith(ReturnCode::NoError);
    }
    QString project;
    if (!checkProjectFile(arguments, project)) {
        outputHandler->printLine(QStringLiteral("Project not given."));
        printHelp();
        return finishWith(ReturnCode::NoProject);
    }
    protectInputs(project);
    runProject(project);
    writeReport(project);
    problemLog.finish();
}

/// A save may replace the project, and a report its former one, but nothing else of what the user
/// named may be lost by a slip in a script.
void CLIMainApp::protectInputs(const QString &project)
{
    struct InputRow {
        bool (*find)(const QStringList &, QString &);
        const char *role;
    };
    static constexpr InputRow kInputs[] = {{checkImportFile, "the file to import"},
                                           {checkDbModifier, "the modifier file"}};
    for (const InputRow &row : kInputs) {
        QString path;
        if (row.find(arguments, path))
            guardOfBackup.protect(path, QLatin1String(row.role));
    }
    guardOfReport = guardOfBackup;
    guardOfReport.protect(project, QStringLiteral("the project"));
    guardOfReport.protect(backupOf(project), QStringLiteral("the former state of the project"));
    OutputGuard guard = guardOfReport;
    // Their generators keep what a user wrote into them; a report would not.
    const QDir folder = QFileInfo(project).absoluteDir();
    for (const char *file : {"gen_define.h", "j1939_adapter.c", "j1939_adapter.cs"})
        guardOfReport.protect(folder.filePath(QLatin1String(file)),
                              QStringLiteral("a place of your code in generated files"));
    QString report;
    if (checkReportFile(arguments, report) && guardOfReport.roleOf(report).isEmpty())
        guard.protect(report, QStringLiteral("the report for machines"));
    generatorMainHandler->setOutputGuard(guard);
}

void CLIMainApp::runProject(const QString &project)
{
    QString importFile;
    const bool hasImport = checkImportFile(arguments, importFile);
    if (!generatorMainHandler->openProject(project))
        return finishWith(ReturnCode::OpenProjectFailed);
    if (hasImport && !generatorMainHandler->setImportFile(importFile)) {
        outputHandler->printLine(QStringLiteral("Import failed."));
        return finishWith(ReturnCode::ImportError);
    }
    QString modifierFile;
    if (checkDbModifier(arguments, modifierFile))
        (void)generatorMainHandler->applyDbModifier(modifierFile); // reported, but stops nothing
    generatorMainHandler->setKeepUnchanged(arguments.contains(QLatin1String("-keep-unchanged")));
    generatorMainHandler->setStartsPrograms(!arguments.contains(QLatin1String("-no-commands")));
    generatorMainHandler->generateOutput(false);
    // A failed check does not keep an import from being saved.
    if (arguments.contains(QLatin1String("-save")) || arguments.contains(QLatin1String("-s")))
        saveProject(project);
}

CLIMainApp::ReturnCode CLIMainApp::getReturnCode()
{
    if (returnCode != ReturnCode::NoError)
        outputHandler->printLine(QStringLiteral("Error - %1").arg(errorStrings.value(returnCode)));
    return returnCode;
}

void CLIMainApp::generatorFinished(GeneratorMainHandler::GeneratorResult result)
{
    switch (result) {
    case GeneratorMainHandler::GeneratorResult::GenerationOk:
        returnCode = ReturnCode::NoError;
        break;
    case GeneratorMainHandler::GeneratorResult::GenerationCheckFailed:
        returnCode = ReturnCode::CheckError;
        break;
    case GeneratorMainHandler::GeneratorResult::GenerationOutputNotWritable:
        returnCode = ReturnCode::OutputNotWritable;
        break;
    }
    emit finished();
}

bool CLIMainApp::checkProjectFile(const QStringList &list, QString &value)
{
    return findOptionValue(list, "-project", value);
}

bool CLIMainApp::checkImportFile(const QStringList &list, QString &value)
{
    return findOptionValue(list, "-import", value);
}

bool CLIMainApp::checkDbModifier(const QStringList &list, QString &value)
{
    return findOptionValue(list, "-dbmod", value);
}

bool CLIMainApp::checkReportFile(const QStringList &list, QString &value)
{
    return findOptionValue(list, "-report", value);
}

void CLIMainApp::printHelp()
{
    *outputHandler << QCoreApplication::applicationName() << QCoreApplication::applicationVersion();
    outputHandler->printLine(QVariant());
    for (auto entry = argumentHelp.cbegin(); entry != argumentHelp.cend(); ++entry)
        outputHandler->printHelpValue(entry.key(), entry.value());
}

void CLIMainApp::fillArgumentHelpMap()
{
    const QString saveText =
        tr("Saves the project file. Could be helpful in combination with import option.");
    argumentHelp = {
        {QStringLiteral("-dbmod"), tr("Apply a db modification. Only for internal use.")},
        {QStringLiteral("-import"), tr("Sets an importfile. This argument is optional.")},
        {QStringLiteral("-project"),
         tr("Sets the project file to use. This argument is mandatory.")},
        {QStringLiteral("-s"), saveText},
        {QStringLiteral("-save"), saveText},
    };
}

void CLIMainApp::fillErrorStringMap()
{
    errorStrings = {
        {ReturnCode::NoError, tr("No error")},
        {ReturnCode::NoProject, tr("No project specified.")},
        {ReturnCode::OpenProjectFailed, tr("Open project failed.")},
        {ReturnCode::ParameterError, tr("Parameter error.")},
        {ReturnCode::ImportError, tr("Import error.")},
        {ReturnCode::CheckError, tr("Check of model consistency returns error.")},
        {ReturnCode::OutputNotWritable, tr("The output folder is not writeable")},
    };
}

void CLIMainApp::finishWith(ReturnCode code)
{
    returnCode = code;
    emit finished();
}

/// The report on standard output tells of the generated files only, so this goes to standard error.
void CLIMainApp::saveProject(const QString &project)
{
    const QString role = guardOfBackup.roleOf(backupOf(project));
    QString reason;
    if (!role.isEmpty())
        reason = QStringLiteral("%1, where the former state is kept: it is %2")
                     .arg(backupOf(project), role);
    else if (!generatorMainHandler->saveProject())
        reason = generatorMainHandler->saveError();
    if (!reason.isEmpty())
        Problems::error("not-saved", project, QStringLiteral("could not be saved: %1").arg(reason));
}

void CLIMainApp::writeReport(const QString &project)
{
    QString path;
    if (!checkReportFile(arguments, path))
        return;
    // A check that finds errors is a check that did its work.
    const bool isComplete =
        returnCode == ReturnCode::NoError || returnCode == ReturnCode::CheckError;
    const RunReport report = {project, generatorMainHandler->findings(),
                              static_cast<int>(returnCode), errorStrings.value(returnCode),
                              isComplete};
    const QString role = guardOfReport.roleOf(path);
    const QString reason =
        role.isEmpty() ? writeSarifReport(report, path) : QStringLiteral("it is ") + role;
    if (!reason.isEmpty())
        Problems::error("not-written", path,
                        QStringLiteral("could not be written: %1").arg(reason));
}
