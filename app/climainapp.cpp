// The command line of the tool.
#include "app/climainapp.h"

#include "app/clioutputhandler.h"
#include "app/comparisontext.h"
#include "app/dependencyfile.h"
#include "app/sarifreport.h"
#include "store/projectfile.h"
#include "store/yaml/yamlschema.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <cstdio>

namespace
{

/// Where a save keeps the former state of a project; empty for one in a form that people read,
/// which has none.
QString backupOf(const QString &project)
{
    const ProjectFile::Form form = ProjectFile::formOf(project);
    if (form == ProjectFile::Form::Text || form == ProjectFile::Form::Yaml)
        return QString();
    const QString file = QFileInfo(project).canonicalFilePath(); // empty: there is none
    return (file.isEmpty() ? project : file) + QLatin1String(".bak");
}

/// As it is, without what is done to lines of the report.
bool printSchema()
{
    const QByteArray text = YamlSchema::text();
    const auto size = static_cast<size_t>(text.size());
    return std::fwrite(text.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
}

void tellNotWritten(const QString &path, const QString &reason)
{
    Problems::error("not-written", path, QStringLiteral("could not be written: %1").arg(reason));
}

} // namespace

CLIMainApp::CLIMainApp(const QStringList &argumentList, CLIOutputHandler *handler, QObject *parent)
    : QObject(parent), options(argumentList), outputHandler(handler),
      generatorMainHandler(new GeneratorMainHandler(handler, nullptr, this))
{
    connect(generatorMainHandler, &GeneratorMainHandler::finished, this,
            &CLIMainApp::generatorFinished);
    connect(generatorMainHandler, &GeneratorMainHandler::checked, this,
            &CLIMainApp::locateFindings);
    connect(generatorMainHandler, &GeneratorMainHandler::checked, this, &CLIMainApp::readOverview);
    fillErrorStringMap();
}

void CLIMainApp::start()
{
    followOptions();
    problemLog.finish();
}

void CLIMainApp::followOptions()
{
    if (options.isEmpty()) {
        printHelp();
        return finishWith(ReturnCode::ParameterError);
    }
    if (options.has("-help")) {
        printHelp();
        return finishWith(ReturnCode::NoError);
    }
    if (options.has("-version")) {
        outputHandler->printLine(QCoreApplication::applicationName() + QLatin1Char(' ') +
                                 QCoreApplication::applicationVersion());
        return finishWith(ReturnCode::NoError);
    }
    if (options.has("-schema"))
        return finishWith(printSchema() ? ReturnCode::NoError : ReturnCode::OutputNotWritable);
    options.reportSlips();
    QString project;
    if (!options.value("-project", project)) {
        outputHandler->printLine(QStringLiteral("Project not given."));
        printHelp();
        return finishWith(ReturnCode::NoProject);
    }
    imports = readImports(options);
    protectInputs(project);
    if (mayExport())
        runProject(project);
    else
        emit finished();
    protectReadFiles();
    writeOverview(project);
    writeReport(project);
    writeDependencies(project);
}

/// What can be told of an export by its name is told before the run does any work.
bool CLIMainApp::mayExport()
{
    QString file;
    if (!options.value("-export", file))
        return true;
    const QString role = guardOfExport.roleOf(file);
    QString reason;
    if (file.isEmpty())
        reason = QStringLiteral("the file has no name");
    else if (ProjectFile::formOf(file) == ProjectFile::Form::Other)
        reason = QStringLiteral("the ending of its name tells no form; give it one of .yaml, "
                                ".yml, .tsrt and .tsrp");
    else if (!role.isEmpty())
        reason = QStringLiteral("it is %1; give it another name").arg(role);
    if (!reason.isEmpty())
        failExport(file, reason);
    return reason.isEmpty();
}

/// A save may replace the project, and a report its former one, but nothing else of what the user
/// named may be lost by a slip in a script.
void CLIMainApp::protectInputs(const QString &project)
{
    for (const ImportRequest &import : qAsConst(imports))
        guardOfBackup.protect(import.file, QStringLiteral("the file to import"));
    guardOfBackup.protect(options.value("-dbmod"), QStringLiteral("the modifier file"));
    guardOfBackup.protect(options.value("-compare"), QStringLiteral("the project to compare with"));
    guardOfReport = guardOfBackup;
    guardOfReport.protect(project, QStringLiteral("the project"));
    guardOfReport.protect(backupOf(project), QStringLiteral("the former state of the project"));
    guardOfExport = guardOfReport;
    const QString exported = options.value("-export");
    if (!exported.isNull() && guardOfExport.roleOf(exported).isEmpty())
        guardOfReport.protect(exported, QStringLiteral("the exported project"));
    OutputGuard guard = guardOfReport;
    // Their generators keep what a user wrote into them; a report would not.
    QStringList folders = {QFileInfo(project).absolutePath()};
    if (options.has("-output"))
        folders << options.value("-output");
    for (const QString &folder : folders) {
        for (const char *file : {"gen_define.h", "j1939_adapter.c", "j1939_adapter.cs"})
            guardOfReport.protect(QDir(folder).filePath(QLatin1String(file)),
                                  QStringLiteral("a place of your code in generated files"));
    }
    guardOfDependencies = guardOfReport;
    const QString report = options.value("-report");
    if (!report.isNull() && guardOfReport.roleOf(report).isEmpty()) {
        guard.protect(report, QStringLiteral("the report for machines"));
        guardOfDependencies.protect(report, QStringLiteral("the report for machines"));
    }
    const QString dependencies = options.value("-depfile");
    if (!dependencies.isNull() && guardOfDependencies.roleOf(dependencies).isEmpty())
        guard.protect(dependencies, QStringLiteral("the dependency file"));
    guardOfOverview = guardOfDependencies;
    guardOfOverview.protect(dependencies, QStringLiteral("the dependency file"));
    const QString page = options.value("-overview");
    if (!page.isNull() && guardOfOverview.roleOf(page).isEmpty())
        guard.protect(page, QStringLiteral("the overview"));
    generatorMainHandler->setOutputGuard(guard);
}

/// Such as the settings of the user, which only the run knows of.
void CLIMainApp::protectReadFiles()
{
    const QStringList files = runFiles.readFiles();
    for (const QString &file : files) {
        for (OutputGuard *guard :
             {&guardOfExport, &guardOfReport, &guardOfDependencies, &guardOfOverview})
            guard->protect(file, QStringLiteral("a file that the run reads"));
    }
}

void CLIMainApp::runProject(const QString &project)
{
    const bool checksOnly = options.has("-check");
    generatorMainHandler->setChecksOnly(checksOnly);
    generatorMainHandler->setProjectKept(!checksOnly && (savesProject() || options.has("-export")));
    QString folder;
    if (options.value("-output", folder))
        generatorMainHandler->setOutputFolder(folder);
    if (!openProjects(project))
        return finishWith(ReturnCode::OpenProjectFailed);
    if (!generatorMainHandler->importFiles(imports)) {
        outputHandler->printLine(QStringLiteral("Import failed."));
        return finishWith(ReturnCode::ImportError);
    }
    QString modifierFile;
    if (options.value("-dbmod", modifierFile))
        (void)generatorMainHandler->applyDbModifier(modifierFile); // reported, but stops nothing
    if (!generatorMainHandler->applySettings(options.values("-set"))) {
        outputHandler->printLine(QStringLiteral("Setting failed."));
        return finishWith(ReturnCode::ImportError);
    }
    generatorMainHandler->setKeepUnchanged(options.has("-keep-unchanged"));
    generatorMainHandler->setStartsPrograms(!options.has("-no-commands"));
    generatorMainHandler->compareProject();
    generatorMainHandler->generateOutput(false);
    printComparison();
    keepProject(project);
}

/// Both are open before anything else is done, so that a slip in a name costs nothing.
bool CLIMainApp::openProjects(const QString &project)
{
    QString older;
    return generatorMainHandler->openProject(project) &&
           (!options.value("-compare", older) || generatorMainHandler->openOlderProject(older));
}

/// The overview shows it if there is one.
void CLIMainApp::printComparison()
{
    const std::optional<ProjectComparison> &comparison = generatorMainHandler->comparison();
    if (comparison && !options.has("-overview"))
        outputHandler->print(comparisonText(*comparison));
}

bool CLIMainApp::savesProject() const
{
    return options.has("-save") || options.has("-s");
}

/// A failed check does not keep an import from being saved and exported. The save comes first, for
/// an export may change the store in what its form has no use for.
void CLIMainApp::keepProject(const QString &project)
{
    const bool checksOnly = options.has("-check");
    if (savesProject() && !checksOnly)
        saveProject(project);
    else if (savesProject())
        Problems::warning("check-saves-nothing", project,
                          QStringLiteral("was not saved, since \"-check\" writes no project; leave "
                                         "that option out to save"));
    QString exported;
    if (options.value("-export", exported) && !checksOnly)
        exportProject(exported);
    else if (!exported.isNull())
        Problems::warning("check-exports-nothing", exported,
                          QStringLiteral("was not written, since \"-check\" writes no project; "
                                         "leave that option out to export"));
}

CLIMainApp::ReturnCode CLIMainApp::getReturnCode()
{
    if (returnCode != ReturnCode::NoError)
        outputHandler->printLine(QStringLiteral("Error - %1").arg(outcome()));
    return returnCode;
}

QString CLIMainApp::outcome() const
{
    return isExportAllThatFailed ? tr("Export failed.") : errorStrings.value(returnCode);
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

void CLIMainApp::printHelp()
{
    *outputHandler << QCoreApplication::applicationName() << QCoreApplication::applicationVersion();
    outputHandler->printLine(QVariant());
    for (const OptionRow &option : optionRows()) {
        if (option.isInHelp)
            outputHandler->printHelpValue(QLatin1String(option.name),
                                          QLatin1String(option.meaning));
    }
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
    else if (const int line = generatorMainHandler->firstCommentLine())
        Problems::warning("comments-lost", project,
                          QStringLiteral("the save has removed the comments, of which this line "
                                         "had the first one; \"-export\" to another file leaves "
                                         "this one as it is"),
                          line);
}

void CLIMainApp::exportProject(const QString &file)
{
    protectReadFiles();
    if (!mayExport())
        return;
    if (generatorMainHandler->exportProject(file))
        RunFiles::noteWritten(file);
    else
        failExport(file, generatorMainHandler->saveError());
}

/// The code of what went wrong before stays: the project that a check refused is not sound either
/// when it is exported.
void CLIMainApp::failExport(const QString &file, const QString &reason)
{
    Problems::error("not-exported", file.isEmpty() ? options.value("-project") : file,
                    QStringLiteral("could not be exported: %1").arg(reason));
    isExportAllThatFailed = returnCode == ReturnCode::NoError;
    if (isExportAllThatFailed)
        returnCode = ReturnCode::OutputNotWritable;
}

void CLIMainApp::locateFindings()
{
    const QString project = options.value("-project");
    const bool isTold = options.has("-problems");
    if (!isTold && !options.has("-report") && !options.has("-overview"))
        return;
    locatedFindings = locate(generatorMainHandler->findings(), *ProjectPlaces::ofFile(project));
    for (const LocatedFinding &finding : qAsConst(locatedFindings)) {
        if (isTold)
            std::fprintf(stderr, "%s\n", qUtf8Printable(finding.asProblem(project).asLine()));
    }
}

void CLIMainApp::readOverview()
{
    if (!options.has("-overview"))
        return;
    ObjectDataBase &store = generatorMainHandler->project();
    const auto names = std::make_shared<ObjectNamesByLine>(readObjectNames(store));
    overview.readProject(store, *names, options.value("-project"));
    generatorMainHandler->setObjectNames(names);
}

/// Behind all that changes generated files, so that their sizes are known. A page that is not
/// written leaves the exit code alone, as the report does.
void CLIMainApp::writeOverview(const QString &project)
{
    QString path;
    if (!options.value("-overview", path))
        return;
    QString reason;
    if (const QString role = guardOfOverview.roleOf(path); !role.isEmpty())
        reason = QStringLiteral("it is ") + role;
    else if (!overview.hasProject())
        reason = QStringLiteral("the run ended before the check");
    if (reason.isEmpty()) {
        const QString folder = options.value("-output");
        overview.addFindings(locatedFindings);
        overview.addProblems(problemLog.problems());
        overview.addFiles(runFiles.writtenFiles(),
                          folder.isNull() ? QFileInfo(project).absolutePath() : folder);
        overview.addFootprint(runFiles.writtenFiles());
        if (const auto &comparison = generatorMainHandler->comparison())
            overview.addComparison(*comparison);
        reason = overview.write(path, options.has("-keep-unchanged"));
    }
    if (reason.isEmpty())
        RunFiles::noteWritten(path);
    else
        tellNotWritten(path, reason);
}

void CLIMainApp::writeReport(const QString &project)
{
    QString path;
    if (!options.value("-report", path))
        return;
    // A check that finds errors is a check that did its work.
    const bool isComplete =
        returnCode == ReturnCode::NoError || returnCode == ReturnCode::CheckError;
    const RunReport report = {
        project,   locatedFindings, problemLog.problems(), static_cast<int>(returnCode),
        outcome(), isComplete};
    const QString role = guardOfReport.roleOf(path);
    const QString reason =
        role.isEmpty() ? writeSarifReport(report, path) : QStringLiteral("it is ") + role;
    if (reason.isEmpty())
        RunFiles::noteWritten(path);
    else
        tellNotWritten(path, reason);
}

void CLIMainApp::writeDependencies(const QString &project)
{
    QString path;
    if (returnCode != ReturnCode::NoError || !options.value("-depfile", path))
        return;
    QVector<NamedFolder> folders;
    const QString output = options.value("-output");
    for (const QString &folder : {output, QFileInfo(project).path()}) {
        if (!folder.isNull())
            folders.append({QDir::cleanPath(QFileInfo(folder).absoluteFilePath()), folder});
    }
    const QString role = guardOfDependencies.roleOf(path);
    const QString reason = role.isEmpty() ? writeDependencyFile(path, runFiles, folders)
                                          : QStringLiteral("it is ") + role;
    if (!reason.isEmpty())
        tellNotWritten(path, reason);
}
