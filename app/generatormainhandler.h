// The driver of a run: open, import, check, generate, save.
#pragma once

#include "app/generatorsteps.h"
#include "app/importrequest.h"
#include "app/postgenprocessor.h"
#include "app/postgenprogresshandler.h"
#include "check/modelchecker.h"
#include "check/settingscheck.h"
#include "generators/unchangedfiles.h"
#include "store/comparison/projectchange.h"
#include "store/projectplaces.h"
#include "support/outputguard.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QVector>

#include <memory>
#include <optional>

class EDSGenerator;
class ObjectDataBase;
class OutputHandlerBase;
struct ProjectRecord;

/// Owns the project store for the run and reports through the output handler. Runs on the main
/// thread; importers and generators work on threads of their own while it waits, one at a time.
class GeneratorMainHandler : public QObject
{
    Q_OBJECT

public:
    enum class GeneratorResult {
        GenerationOk = 0,
        GenerationCheckFailed = 2,
        GenerationOutputNotWritable = 3,
    };
    Q_ENUM(GeneratorResult)

    /// \a handler and \a progress, which may be null, stay the caller's. There is no project until
    /// one is opened.
    explicit GeneratorMainHandler(OutputHandlerBase *handler,
                                  PostGenProgressHandler *progress = nullptr,
                                  QObject *parent = nullptr);
    ~GeneratorMainHandler() override;

    /// Adopts a store that is open already; it stays the caller's.
    void openProject(QPointer<ObjectDataBase> store, const QString &directory, const QString &name);

    /// True if \a file can be read and its suffix is known, else the reason is reported. What is in
    /// it makes no difference, unless it is a project. It goes into line 0.
    bool setImportFile(const QString &file);

    /// See Imports::run().
    bool importFiles(const QVector<ImportRequest> &requests);

    /// Reads an older project, with which compareProject() compares. False as with openProject().
    bool openOlderProject(const QString &filePath);

    /// Compares the project, as it stands now, with the older one, if there is one.
    void compareProject();
    const std::optional<ProjectComparison> &comparison() const { return foundComparison; }

    /// False, and reported, if \a file cannot be read.
    bool applyDbModifier(const QString &file);

    /// Sets values of the project, each "<key>=<value>", see RunSettings. False, and each one that
    /// is wrong is reported, if not all could be set.
    bool applySettings(const QStringList &assignments);

    /// What the outputs must leave alone; they may have no folder yet. Set before openProject().
    void setOutputGuard(const OutputGuard &guard) { outputGuard = guard; }

    /// The folder for the files, made if it is missing; that of the project if none is set. Set
    /// before openProject().
    void setOutputFolder(const QString &folder);

    /// generateOutput() ends after the check, and neither it nor openProject() writes or removes
    /// a file of the user. Set before openProject().
    void setChecksOnly(bool only) { checksOnly = only; }

    /// False if the project will be neither saved nor exported. Set before openProject().
    void setProjectKept(bool keeps) { isKept = keeps; }

    /// Leaves files alone that would differ in their date only.
    void setKeepUnchanged(bool keeps);

    void setStartedHidden(bool hidden) { startedHidden = hidden; }

    /// Without it neither a command nor an EDS checker runs after the generation.
    void setStartsPrograms(bool starts) { startsPrograms = starts; }

    /// The whole run, from the check to the end of what the user wants done after the last file.
    /// Raises finished() before it returns.
    void generateOutput(bool ignoreCheckErrors);

    /// The last call before the end of the process.
    void abandonProject();

    /// Saves in place.
    bool saveProject();
    /// Writes the project as a save would, to another file and in the form of its name.
    bool exportProject(const QString &file);
    /// Of the project's file, which a save loses; 0 if there is none.
    int firstCommentLine() const;
    /// Why the last one of these failed.
    QString saveError() const;

    /// The store of the run, which it alone may change.
    ObjectDataBase &project() { return *database; }

    /// For the generators, if they are made already; they last for one run.
    void setObjectNames(std::shared_ptr<ObjectNamesByLine> names)
    {
        objectNames = std::move(names);
    }

    /// What the check of the last run has found.
    const QVector<Finding> &findings() const { return checkFindings; }

public slots:
    /// Opens a project in the form that the end of its name says. The output goes to the
    /// file's folder, or to that of setOutputFolder(). False if it is no file that can be read, or
    /// no project of this tool; the reason is reported.
    bool openProject(const QString &filePath);

    /// Reports a generator's end, which is 100.
    void generatorProgress(quint8 progress);

    /// Reports a finding of the check.
    void handleCheckError(const QString &errorString);

signals:
    void finished(GeneratorMainHandler::GeneratorResult result);

    /// findings() are those of this run; nothing is generated yet.
    void checked();

    /// The check has changed the project.
    void doneCorrection();

private:
    /// Opens a project as it has to be for a run; false, and reported, if that cannot be done.
    static bool openInto(ObjectDataBase &store, const QString &filePath, bool willBeSaved);
    /// Tells on standard error what in the settings, and in the model, has no effect.
    void warnOfSettings(ProjectPlaces &places) const;
    void warnOfModel(const ProjectFacts &facts, ProjectPlaces &places) const;
    /// In the project, or of what the run was given beside it, if that has set the setting.
    SettingsCheck::Place placeOf(const ProjectPlace &place, ProjectPlaces &places) const;
    /// Tells what of the project the text form in \a file has no place for.
    void tellLosses(const QString &file) const;
    static void correctProject(ObjectDataBase &store);
    void setProjectFolder(const QString &folder);
    /// Makes the output folder that the user has named; reports why that cannot be done.
    void makeOutputFolder();
    static void dropDeclaredGroups(ObjectDataBase &store, const ProjectFacts &facts);
    /// Of a project that is about to be written to that file, if it is one in YAML.
    void dropDeclaredGroupsOf(const QString &file);
    void fillCaches(const ProjectFacts &facts);
    /// False if the check ends the run.
    bool checkModel(const ProjectFacts &facts, bool ignoreCheckErrors);
    /// Number of errors of the line. Sets \a didCorrection if the check changed the project.
    qint32 checkLine(ModelChecker &checker, const ProjectFacts &facts, const ProjectLine &line,
                     bool &didCorrection);
    bool writeCheckLog(const QString &path);
    void keepCheckLog(const QString &path);
    void generateFiles(ProjectFacts facts);
    void runSteps(StepRange steps, const ProjectFacts &facts);
    /// One file, with what is said when it is begun or cannot be written; an empty text is not
    /// said.
    void runGenerator(AbstractGenerator &generator, quint8 line, const QString &notWritable,
                      const QString &started);
    void generateEdsFiles(const ProjectFacts &facts);
    struct EdsFile;
    void generateEds(EDSGenerator &generator, const EdsFile &file);
    void generateDcf(const EdsFile &file);
    void generateXdd(const EdsFile &file);
    void removeStaleFiles(const ProjectFacts &facts);
    void removeStaleFile(const char *name);
    void runPostGenProcess();
    QString filled(const char *text, const QString &name) const;

    QPointer<ObjectDataBase> database;
    QString projectFile;      ///< as the user named it; empty for an adopted store
    QString projectDirectory; ///< the folder of the project file
    QString outputFolder;     ///< as the user named it; null: that of the project
    QString outputDirectory;  ///< its path
    QString projectName;      ///< the project file's name without folder and last suffix
    /// Of the settings that come from elsewhere than the project, by "<group>:<key>".
    QHash<QString, SettingsCheck::Place> placesOfSettings;
    OutputHandlerBase *outputHandler;
    QString olderFile; ///< the project to compare with, as the user named it
    std::unique_ptr<ProjectRecord> olderProject;
    std::optional<ProjectComparison> foundComparison;
    QVector<Finding> checkFindings;
    std::shared_ptr<ObjectNamesByLine> objectNames;
    OutputGuard outputGuard;
    std::unique_ptr<UnchangedFiles> unchangedFiles; ///< null: all files are written
    QPointer<PostGenProcessor> postGenProcessor;
    QPointer<PostGenProgressHandler> progressHandler;
    bool startedHidden = false;
    bool startsPrograms = true;
    bool checksOnly = false;
    bool isKept = true;
};
