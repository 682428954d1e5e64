// The driver of a run.
#include "app/generatormainhandler.h"

#include "app/imports.h"
#include "app/modelwarnings.h"
#include "app/outputhandlerbase.h"
#include "app/runsettings.h"
#include "generators/descriptions/classicalxddgenerator.h"
#include "generators/descriptions/edsgenerator.h"
#include "generators/descriptions/edsvariants.h"
#include "generators/j1939/j1939adaptergenerator.h"
#include "store/comparison/projectcomparison.h"
#include "store/databasemodifier.h"
#include "store/objectdatabase.h"
#include "store/projectconverter.h"
#include "store/projectfile.h"
#include "store/projectlosses.h"
#include "support/filereasons.h"
#include "support/helper.h"
#include "support/logging.h"
#include "support/numbers.h"
#include "support/parametergroups.h"
#include "support/problems.h"
#include "support/replacefile.h"
#include "support/runfiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <filesystem>
#include <iterator>

namespace
{

/// What an EDS file describes. The classical companion of a variant is the variant: both have one
/// file by design.
QString variantName(quint8 line, const QString &define, bool isClassical)
{
    const QString name = !define.isEmpty() ? QStringLiteral("the variant \"%1\"").arg(define)
                         : isClassical     ? QStringLiteral("the classical companion")
                                           : QStringLiteral("the plain device");
    return QStringLiteral("%1 of line %2").arg(name, QString::number(line));
}

/// Tells of variants whose names give one file name, so that only the last one's file remains.
class EdsNames
{
public:
    void note(const QString &path, const QString &variant)
    {
        // Of the bytes: several characters may become the same one there.
        QString &former = variants[QFile::encodeName(path)];
        if (!former.isEmpty() && former != variant)
            Problems::error("eds-name", path,
                            QStringLiteral("describes %1, and not %2 any more, since both have "
                                           "this file name; name one of them otherwise")
                                .arg(variant, former));
        former = variant;
    }

private:
    QHash<QByteArray, QString> variants; ///< by path
};

/// Files of the run are named relative to the current folder, which some steps change.
class CurrentFolder
{
public:
    CurrentFolder() = default;
    ~CurrentFolder() { QDir::setCurrent(path); }
    CurrentFolder(const CurrentFolder &) = delete;
    CurrentFolder &operator=(const CurrentFolder &) = delete;

private:
    const QString path = QDir::currentPath();
};

/// While it lives, problems name a file as the user does, not by the path that it is opened by.
class GivenName
{
public:
    GivenName(const QString &path, const QString &given)
        : former(Problems::setHandler([this, path, given](Problems::Problem problem) {
              if (problem.file == path)
                  problem.file = given;
              if (former)
                  former(problem);
          }))
    {
    }
    ~GivenName() { (void)Problems::setHandler(former); }
    GivenName(const GivenName &) = delete;
    GivenName &operator=(const GivenName &) = delete;

private:
    Problems::Handler former;
};

} // namespace

GeneratorMainHandler::GeneratorMainHandler(OutputHandlerBase *handler,
                                           PostGenProgressHandler *progress, QObject *parent)
    : QObject(parent), database(new ObjectDataBase(this)), outputHandler(handler),
      progressHandler(progress)
{
}

GeneratorMainHandler::~GeneratorMainHandler() = default;

bool GeneratorMainHandler::openProject(const QString &filePath)
{
    if (!openInto(*database, filePath, isKept))
        return false;
    const QFileInfo info(filePath);
    if (!checksOnly && ProjectFile::formOf(filePath) != ProjectFile::Form::Text)
        ReplaceFile::removeLeftover(info.absoluteFilePath());
    projectFile = filePath;
    setProjectFolder(info.absolutePath());
    projectName = info.completeBaseName();
    return true;
}

bool GeneratorMainHandler::openInto(ObjectDataBase &store, const QString &filePath,
                                    bool willBeSaved)
{
    const QString reason = FileReasons::whyNotReadable(filePath);
    if (!reason.isEmpty()) {
        Problems::error("not-opened", filePath,
                        QStringLiteral("could not be opened: %1").arg(reason));
        return false;
    }
    const CurrentFolder current;
    const QFileInfo info(filePath);
    const QString path = info.isRelative() ? info.absoluteFilePath() : filePath;
    const GivenName name(path, filePath);
    const bool isText = ProjectFile::formOf(path) == ProjectFile::Form::Text;
    if (!(isText ? store.fromText(path) : store.openDataBase(path, willBeSaved)))
        return false;
    correctProject(store);
    RunFiles::noteRead(path);
    store.setGeneralSettingsValue(QStringLiteral("new_init_structure"), QStringLiteral("1"));
    return true;
}

bool GeneratorMainHandler::openOlderProject(const QString &filePath)
{
    ObjectDataBase store;
    if (!openInto(store, filePath, false))
        return false;
    dropDeclaredGroups(store, readProjectFacts(store));
    auto record = std::make_unique<ProjectRecord>();
    if (!store.readRecords(record.get())) {
        Problems::error("not-opened", filePath,
                        QStringLiteral("could not be opened: not all of it can be read"));
        return false;
    }
    olderFile = filePath;
    olderProject = std::move(record);
    return true;
}

void GeneratorMainHandler::compareProject()
{
    if (!olderProject)
        return;
    const ProjectFacts facts = readProjectFacts(*database);
    dropDeclaredGroups(*database, facts);
    fillCaches(facts); // the run needs them anyway
    ProjectRecord project;
    if (!database->readRecords(&project)) {
        Problems::error("not-compared", projectFile,
                        QStringLiteral("could not be compared: not all of it can be read"));
        return;
    }
    foundComparison = compareProjects(*olderProject, project);
    foundComparison->with = olderFile;
    olderProject.reset();
}

void GeneratorMainHandler::openProject(QPointer<ObjectDataBase> store, const QString &directory,
                                       const QString &name)
{
    if (database && database != store && database->parent() == this)
        delete database;
    database = store;
    projectFile.clear();
    setProjectFolder(directory);
    projectName = name;
}

void GeneratorMainHandler::setProjectFolder(const QString &folder)
{
    projectDirectory = folder;
    if (!outputFolder.isNull())
        return outputGuard.setFolder(outputDirectory, QStringLiteral("the folder of the files"));
    outputDirectory = folder;
    outputGuard.setFolder(folder);
}

void GeneratorMainHandler::setOutputFolder(const QString &folder)
{
    outputFolder = folder;
    outputDirectory = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
}

void GeneratorMainHandler::makeOutputFolder()
{
    if (outputFolder.isNull())
        return;
    std::error_code error;
    std::filesystem::create_directories(QFile::encodeName(outputDirectory).toStdString(), error);
    const QFileInfo info(outputDirectory);
    QString reason;
    if (outputFolder.isEmpty())
        reason = QStringLiteral("it has no name");
    else if (info.isSymLink() && !info.exists())
        reason = QStringLiteral("it is a link to a folder that is not there");
    else if (info.exists() && !info.isDir())
        reason = QStringLiteral("it is no folder");
    else if (error)
        reason = FileReasons::ofSystem(error.value());
    else if (!info.isWritable())
        reason = QStringLiteral("there is no permission to write it");
    if (!reason.isEmpty())
        Problems::error("no-output-folder", outputFolder,
                        QStringLiteral("cannot take the files: %1").arg(reason));
}

/// The same driver serves all tools of the family; the application's name tells which it is.
void GeneratorMainHandler::correctProject(ObjectDataBase &store)
{
    ProjectConverter converter;
    converter.setDatabase(&store);
    converter.doGenericCorrection();
    converter.doCANopenCorrection();
    const QString tool = QCoreApplication::applicationName();
    if (tool == QLatin1String("EnergyBus Morvane"))
        converter.doEnergyBusCorrection();
    else if (tool.contains(QLatin1String("J1939")))
        converter.do1939Correction();
    else if (tool.contains(QLatin1String("CAN Tessarine")))
        converter.doMPCorrection();
}

bool GeneratorMainHandler::setImportFile(const QString &file)
{
    ImportRequest request;
    request.file = file;
    return importFiles({request});
}

bool GeneratorMainHandler::importFiles(const QVector<ImportRequest> &requests)
{
    return Imports(*database).run(requests);
}

bool GeneratorMainHandler::applyDbModifier(const QString &file)
{
    const QString reason = FileReasons::whyNotReadable(file);
    if (!reason.isEmpty())
        Problems::error("modifier-not-read", file,
                        QStringLiteral("could not be read: %1").arg(reason));
    DatabaseModifier modifier(database);
    const bool isApplied = modifier.setModifierFile(file) && modifier.applyModifierFile();
    const QHash<QString, int> &lines = modifier.linesOfSettings();
    for (auto line = lines.cbegin(); line != lines.cend(); ++line)
        placesOfSettings.insert(line.key(), {file, *line});
    if (isApplied)
        RunFiles::noteRead(file);
    return isApplied;
}

bool GeneratorMainHandler::applySettings(const QStringList &assignments)
{
    RunSettings settings(*database);
    int applied = 0;
    for (const QString &assignment : assignments)
        applied += settings.apply(assignment) ? 1 : 0;
    for (const QString &name : settings.settingsApplied())
        placesOfSettings.insert(name, {}); // no file
    return applied == assignments.size();
}

void GeneratorMainHandler::abandonProject()
{
    if (database)
        database->abandon();
}

bool GeneratorMainHandler::saveProject()
{
    if (database)
        dropDeclaredGroupsOf(projectFile);
    return database && database->saveDataBase(QString());
}

bool GeneratorMainHandler::exportProject(const QString &file)
{
    if (database)
        dropDeclaredGroupsOf(file);
    if (!database || !database->exportProject(file, unchangedFiles != nullptr))
        return false;
    if (ProjectFile::formOf(file) == ProjectFile::Form::Text)
        tellLosses(file);
    return true;
}

void GeneratorMainHandler::tellLosses(const QString &file) const
{
    ProjectRecord project;
    if (!database->readRecords(&project))
        return;
    const QStringList losses = ProjectLosses::ofTextForm(project);
    for (const QString &loss : losses)
        Problems::warning("export-loses", file,
                          QStringLiteral("was written without %1, which a text project cannot "
                                         "hold; one in .yaml or .tsrp can")
                              .arg(loss));
}

int GeneratorMainHandler::firstCommentLine() const
{
    return database ? database->firstCommentLine() : 0;
}

QString GeneratorMainHandler::saveError() const
{
    const QString error = database ? database->getLastErrorString() : QString();
    return error.isEmpty() ? QStringLiteral("unknown error") : error;
}

void GeneratorMainHandler::setKeepUnchanged(bool keeps)
{
    unchangedFiles = keeps ? std::make_unique<UnchangedFiles>() : nullptr;
}

void GeneratorMainHandler::generateOutput(bool ignoreCheckErrors)
{
    const ProjectFacts facts = readProjectFacts(*database);
    const std::unique_ptr<ProjectPlaces> places = ProjectPlaces::ofFile(projectFile);
    warnOfSettings(*places);
    if (!checksOnly)
        makeOutputFolder();
    dropDeclaredGroups(*database, facts);
    QElapsedTimer timer;
    timer.start();
    fillCaches(facts);
    qCDebug(lcApp) << "reading took" << timer.restart() << "ms";
    warnOfModel(facts, *places);
    const bool isSound = checkModel(facts, ignoreCheckErrors);
    qCDebug(lcApp) << "check took" << timer.elapsed() << "ms";
    if (!isSound) {
        emit finished(GeneratorResult::GenerationCheckFailed);
        return;
    }
    if (checksOnly) {
        emit finished(GeneratorResult::GenerationOk);
        return;
    }
    const QFileInfo folder(outputDirectory);
    if (!folder.isDir() || !folder.isWritable()) {
        outputHandler->printLine(
            QStringLiteral("ABORT - The output folder %1 is not writeable.").arg(outputDirectory));
        emit finished(GeneratorResult::GenerationOutputNotWritable);
        return;
    }
    generateFiles(facts);
    QCoreApplication::processEvents();
    if (isKept)
        database->clearAllCachedSubs();
    outputHandler->printLine(QStringLiteral("Generation finished."));
    runPostGenProcess();
    emit finished(GeneratorResult::GenerationOk);
}

void GeneratorMainHandler::warnOfSettings(ProjectPlaces &places) const
{
    const auto locate = [&](const QString &store, const QString &key) {
        ProjectPlace place;
        place.store = store;
        place.setting = key;
        return placeOf(place, places);
    };
    SettingsCheck(*database, locate).run();
}

void GeneratorMainHandler::warnOfModel(const ProjectFacts &facts, ProjectPlaces &places) const
{
    const auto locate = [&](const ProjectPlace &place) { return placeOf(place, places); };
    ModelWarnings(*database, facts, locate, {projectDirectory, outputDirectory}).run();
}

SettingsCheck::Place GeneratorMainHandler::placeOf(const ProjectPlace &place,
                                                   ProjectPlaces &places) const
{
    const auto given = placesOfSettings.constFind(place.store + QLatin1Char(':') + place.setting);
    if (given != placesOfSettings.constEnd())
        return *given;
    return {projectFile, places.lineOf(place)};
}

/// The generators declare the group of address claiming on their own.
void GeneratorMainHandler::dropDeclaredGroups(ObjectDataBase &store, const ProjectFacts &facts)
{
    for (const ProjectLine &line : facts.lines) {
        if (line.choosesGenerators() && carriesJ1939(line.type))
            (void)store.delPGN(line.number, ParameterGroup::kAddressClaimed,
                               Direction::kTransmitted); // may not be there
    }
}

/// What each run declares anew is nothing that a person wrote, and would stand between it.
void GeneratorMainHandler::dropDeclaredGroupsOf(const QString &file)
{
    if (ProjectFile::formOf(file) == ProjectFile::Form::Yaml)
        dropDeclaredGroups(*database, readProjectFacts(*database));
}

void GeneratorMainHandler::fillCaches(const ProjectFacts &facts)
{
    for (const ProjectLine &line : facts.lines) {
        database->cacheAllSubs(line.number, 0);
        database->cacheAllSpnDataForLine(line.number);
    }
    database->cacheStrings();
}

bool GeneratorMainHandler::checkModel(const ProjectFacts &facts, bool ignoreCheckErrors)
{
    ModelChecker checker;
    outputHandler->printLine(QStringLiteral("\nCheck of model consistency started"));
    connect(&checker, &ModelChecker::newError, this, &GeneratorMainHandler::handleCheckError);
    bool didCorrection = false;
    qint32 errorCount = checker.startGlobalCheck(database);
    for (const ProjectLine &line : facts.lines)
        errorCount += checkLine(checker, facts, line, didCorrection);
    checkFindings = checker.findings();
    emit checked();
    if (didCorrection)
        emit doneCorrection();

    const QString log = outputDirectory + QStringLiteral("/__tsrerrorlog.txt");
    const bool hasLog = writeCheckLog(log);
    if (errorCount >= 1 && !ignoreCheckErrors) {
        outputHandler->printLine(
            QStringLiteral("ABORT - Check of model consistency finished: failed (%1 errors)")
                .arg(errorCount));
        return false;
    }
    if (hasLog)
        keepCheckLog(log);
    outputHandler->printLine(QStringLiteral("\nCheck of model consistency finished.\n"));
    return true;
}

qint32 GeneratorMainHandler::checkLine(ModelChecker &checker, const ProjectFacts &facts,
                                       const ProjectLine &line, bool &didCorrection)
{
    const int lineCount = facts.lines.size();
    if (lineCount > 1) {
        outputHandler->printLinePassTime(QVariant());
        outputHandler->printLinePassTime(
            QStringLiteral("<strong>________________________________________ Checking line %1 "
                           "________________________________________</strong>")
                .arg(line.number));
    }
    qint32 errors = 0;
    if (!carriesCANopen(line.type) && hasDictionary(facts))
        errors += checker.startTypeCheck(line.number, database);
    if (!isKnown(line.type)) {
        outputHandler->printLine(
            QStringLiteral("Warning line type not set for line %1.").arg(line.number));
        return errors;
    }
    if (carriesCANopen(line.type))
        errors += checker.startCANopenCheck(line.number, database, didCorrection);
    // Deliberate: on a line of both protocols this count includes that of the check before, held by
    // tst_generatormainhandler.
    if (carriesJ1939(line.type))
        errors += checker.startJ1939Check(
            quint8(lineCount), line.number, database,
            {std::begin(ParameterGroup::kOfStack), std::end(ParameterGroup::kOfStack)});
    return errors;
}

void GeneratorMainHandler::handleCheckError(const QString &errorString)
{
    outputHandler->printLine(errorString);
}

bool GeneratorMainHandler::writeCheckLog(const QString &path)
{
    if (checksOnly || !QFileInfo(outputDirectory).isDir())
        return false;
    QFile log(path);
    const QFileInfo present(path);
    if (present.exists() && !present.isFile())
        return false; // a pipe would wait for a reader
    if (!outputGuard.admits(path))
        return false;
    if (!log.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false; // the report stands on the console too
    log.write(outputHandler->getLogging().toUtf8());
    return true;
}

/// Of a run without errors: the first such log stays, under another name.
void GeneratorMainHandler::keepCheckLog(const QString &path)
{
    const QString backup = path + QStringLiteral(".bak");
    if (!QFile::exists(backup) && outputGuard.admits(backup)) {
        // A link would lead to the file that it is to be kept from.
        if (!QFileInfo(path).isSymLink() && QFile::rename(path, backup))
            return;
        QFile::copy(path, backup);
    }
    QFile::remove(path);
}

void GeneratorMainHandler::generateFiles(ProjectFacts facts)
{
    readContentFacts(*database, facts);
    facts.objectNames = std::move(objectNames);
    runSteps(generatorSteps(), facts);
    if (facts.hasCANopen)
        generateEdsFiles(facts);
    runSteps(stepsBehindEds(), facts);
    removeStaleFiles(facts);
}

void GeneratorMainHandler::runSteps(StepRange steps, const ProjectFacts &facts)
{
    for (const GeneratorStep &step : steps) {
        const QList<quint8> lines = linesOfStep(step, facts);
        for (const quint8 line : lines) {
            qCDebug(lcApp) << "step" << step.file << "line" << line;
            const auto generator = step.create(*database, facts);
            generator->generateML = step.takesMultiLine && facts.isMultiLine();
            runGenerator(*generator, line, filled(step.notWritable, projectName),
                         filled(step.started, projectName));
        }
    }
}

/// \a text with the output directory for its %1 and, where it has one, \a name for its %2.
QString GeneratorMainHandler::filled(const char *text, const QString &name) const
{
    const QString pattern = QLatin1String(text);
    return pattern.contains(QLatin1String("%2")) ? pattern.arg(outputDirectory, name)
                                                 : pattern.arg(outputDirectory);
}

void GeneratorMainHandler::runGenerator(AbstractGenerator &generator, quint8 line,
                                        const QString &notWritable, const QString &started)
{
    generator.setOutputDirectory(outputDirectory);
    generator.projectDirectory = projectDirectory;
    generator.setDataBase(database);
    generator.setProjectName(projectName);
    generator.setActiveLine(line);
    generator.unchangedFiles = unchangedFiles.get();
    generator.outputGuard = &outputGuard;
    if (!generator.isOutputAdmitted() || !generator.checkWritability()) {
        outputHandler->printLine(notWritable);
        return;
    }
    connect(&generator, &AbstractGenerator::progress, this,
            &GeneratorMainHandler::generatorProgress);
    QElapsedTimer timer;
    timer.start();
    generator.startGeneration();
    if (!started.isEmpty())
        outputHandler->printLine(started);
    generator.wait();
    qCDebug(lcApp) << generator.objectName() << "took" << timer.elapsed() << "ms";
    // Its last signal must reach generatorProgress() while the generator, its sender, lives.
    QCoreApplication::processEvents();
    const QString remark = generator.closingRemark();
    if (!remark.isEmpty())
        outputHandler->printLine(remark);
}

struct GeneratorMainHandler::EdsFile {
    const EdsVariants &variants;
    quint8 line;
    QString define;
    bool isFd;
    bool isClassical;
    bool isMultiLine;
};

void GeneratorMainHandler::generateEdsFiles(const ProjectFacts &facts)
{
    EdsNames names;
    for (const ProjectLine &line : facts.lines) {
        if (!carriesCANopen(line.type))
            continue;
        const EdsVariants variants(*database, line.number);
        const bool hasDcf = DCFGenerator::isWanted(*database, line.number);
        const bool hasXdd = ClassicalXddGenerator::isWanted(*database, line.number);
        const auto describe = [&](const QString &define, bool isFd, bool isClassical) {
            const EdsFile file = {variants, line.number, define,
                                  isFd,     isClassical, facts.isMultiLine()};
            EDSGenerator device(variants, define, isFd, isClassical);
            generateEds(device, file);
            names.note(device.targetFile(), variantName(line.number, define, isClassical));
            if (hasDcf)
                generateDcf(file);
            if (hasXdd && !isFd)
                generateXdd(file);
        };
        const bool hasFd = facts.features.hasCanFd();
        const QStringList &defines = variants.defines();
        for (const QString &define : defines) {
            describe(define, hasFd, false);
            if (hasFd)
                describe(define, false, true);
        }
        if (defines.size() > 1)
            outputHandler->printLine(
                QStringLiteral("Warning: multiple different EDS files to be generated.\n"));
    }
}

void GeneratorMainHandler::generateEds(EDSGenerator &generator, const EdsFile &file)
{
    generator.generateML = file.isMultiLine;
    runGenerator(generator, file.line,
                 filled(file.isClassical ? "The EDS file %2_classical.eds in %1 is not writable"
                                         : "The EDS file %2.eds in %1 is not writable",
                        projectName),
                 filled(file.isClassical ? "Generation of %2 classical EDS file in %1 started"
                                         : "Generation of %2 EDS file in %1 started",
                        file.define));
}

void GeneratorMainHandler::generateDcf(const EdsFile &file)
{
    DCFGenerator generator(file.variants, file.define, file.isFd, file.isClassical);
    generator.generateML = file.isMultiLine;
    runGenerator(generator, file.line,
                 filled("The DCF file of %2 in %1 is not writable", projectName),
                 filled("Generation of %2 DCF file in %1 started", file.define));
}

void GeneratorMainHandler::generateXdd(const EdsFile &file)
{
    ClassicalXddGenerator generator(file.variants, file.define, file.isClassical);
    generator.generateML = file.isMultiLine;
    runGenerator(generator, file.line,
                 filled("The XDD file of %2 in %1 is not writable", projectName),
                 filled("Generation of %2 classical XDD file in %1 started", file.define));
}

/// What a project no longer writes must not be compiled with its stack.
void GeneratorMainHandler::removeStaleFiles(const ProjectFacts &facts)
{
    if (facts.hasCANopen && !facts.hasVirtualObjects)
        removeStaleFile("gen_vobjdict.c");
    if (!facts.isPureJ1939())
        return;
    static constexpr const char *kAdapterFiles[] = {"gen_j1939_adapter.c", "gen_j1939_adapter.cs",
                                                    "j1939_adapter.cs", "j1939_adapter.c"};
    if (!facts.features.hasAdapter()) {
        for (const char *file : kAdapterFiles) {
            const QString path = outputDirectory + QLatin1Char('/') + QLatin1String(file);
            // Deliberate: what the user wrote into the adapter stays, and so does an adapter of
            // the user's own; held by tst_generatormainhandler.
            if (J1939Adapter::isWithoutCode(path))
                removeStaleFile(file);
        }
    }
    removeStaleFile("gen_indication.h");
}

void GeneratorMainHandler::removeStaleFile(const char *name)
{
    outputGuard.remove(outputDirectory + QLatin1Char('/') + QLatin1String(name));
}

/// The program must not end while EDS checkers run, which would end with it.
void GeneratorMainHandler::runPostGenProcess()
{
    const CurrentFolder current;
    if (!postGenProcessor)
        postGenProcessor = new PostGenProcessor(outputHandler, progressHandler, this);
    QEventLoop loop;
    connect(postGenProcessor, &PostGenProcessor::completed, &loop, &QEventLoop::quit);
    postGenProcessor->setOutputGuard(&outputGuard);
    postGenProcessor->setProjectValues(database, projectDirectory, projectName);
    postGenProcessor->setOutputDirectory(outputDirectory);
    postGenProcessor->setStartedHidden(startedHidden);
    postGenProcessor->setStartsPrograms(startsPrograms);
    postGenProcessor->start();
    if (postGenProcessor->isRunning())
        loop.exec();
}

void GeneratorMainHandler::generatorProgress(quint8 progress)
{
    if (progress != 100)
        return;
    const QString subject = sender() ? sender()->objectName() : QStringLiteral("output");
    const auto *generator = qobject_cast<AbstractGenerator *>(sender());
    if (generator && generator->getWasError())
        outputHandler->printLine(QStringLiteral("<b>ERROR - Generation of %1 failed. %2</b>")
                                     .arg(subject, generator->getLastErrorString()));
    else
        outputHandler->printLine(QStringLiteral("Generation of %1 completed.").arg(subject));
}
