// The base of all generators: configuration, the job's thread, its result.
#pragma once

#include "store/objectdatabase.h"
#include "support/candatatype.h"
#include "support/jobthread.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <atomic>

class OutputGuard;
class UnchangedFiles;

/// Writes files of one project, on a thread of its own. The driver makes one for each step,
/// configures it, calls startGeneration() and wait(), and reads the result. The job runs on the
/// worker thread, all else on the driver's. Whoever destroys a generator waits for it first.
class AbstractGenerator : public QObject
{
    Q_OBJECT

public:
    enum class ResultCode : quint32 {
        Success = 0,
        DirectoryMissing = 1,
        DirectoryUnreadable = 2,
        NoStore = 3, ///< none given, or one without any line
        NoSuchLine = 4,
        Running = 5,    ///< the call was refused
        NotRunning = 6, ///< nothing to abort
    };

    /// \a jobName is the object name from the start of the job on; reports name the file by it.
    explicit AbstractGenerator(const QString &jobName);

    /// True if the target file can be written or does not exist yet.
    virtual bool checkWritability() = 0;

    /// True if no file that the job would write is an input of the run or lies elsewhere; reports
    /// which one is.
    bool isOutputAdmitted();

    /// Starts doJob() on the worker thread. Running, or NoStore, if it was not started.
    virtual ResultCode startGeneration();

    /// Asks the job to end early; it may run to its end all the same.
    virtual ResultCode abortGeneration();

    /// Each setter but for Running keeps what it is given, whatever the result.
    ResultCode setOutputDirectory(const QString &directory);
    ResultCode setProjectName(const QString &name);
    ResultCode setDataBase(ObjectDataBase *store);
    ResultCode setActiveLine(quint8 line); ///< looks the line up only if a store is set

    /// Returns when the job's thread has ended, at once if none was started. Delivers the caller's
    /// events meanwhile, and sleeps while there are none.
    void wait();

    bool isRunning() const { return running; }
    bool getWasError() const { return wasError; }
    QString getLastErrorString() const { return lastErrorString; }

    /// Byte-wise initialiser of a value whose type has no native C type, such as
    /// "U24_SET(0x12,0xab,0x05)"; "0" for all other types. Bits above the type's width are dropped.
    static QString convertValue(CAN::CANopenDataType type, quint64 unsignedValue,
                                qint64 signedValue);
    /// What the user is told after the end of the job; empty for nothing.
    virtual QString closingRemark() const { return {}; }

    /// The project has several lines: file names and texts name the line. Set before the start.
    bool generateML = false;

    /// Where the project lies with what belongs to it; the output directory if none is set. Set
    /// before the start.
    QString projectDirectory;

    /// Asked about each file that is written; null: none is left as it was. Set before the start.
    UnchangedFiles *unchangedFiles = nullptr;

    /// Asked about each file that is written or removed; null: all may be. Set before the start.
    const OutputGuard *outputGuard = nullptr;

public slots:
    /// The whole job: writeFiles() and what stands around it.
    void doJob();

signals:
    /// Percent of the job, 0 to 100; 100 comes once, when all is over.
    void progress(quint8 percent);

protected:
    /// Writes outputFiles(), on the worker thread. The store is locked against writers, and forceML
    /// is up to date.
    virtual void writeFiles() = 0;

    /// The files that the job is going to write. Read before the start, when forceML is up to date.
    virtual QStringList outputFiles() const = 0;

    /// Clears what a subclass keeps from an earlier start.
    virtual void resetJob() {}

    bool isMultiLine() const { return generateML || forceML; }

    /// Does the user want documents to say how values are stored? From the user's settings.
    static bool wantsImplementationInfo();

    /// May generated C include <stdlib.h>? The user forbids it by a file beside the project.
    bool hasStandardLibrary() const;

    void fail(const QString &error);

    quint8 activeLine = 0;
    std::atomic<bool> abortRequested{false}; ///< written by the driver's thread, read by the job
    std::atomic<bool> running{false};
    bool forceML = false;
    bool wasError = false; ///< written by the job; read once its end has been reported
    QString lastErrorString;
    QString projectName;
    QString outputDirectory;
    QString toolVersion;
    QPointer<ObjectDataBase> database;

private:
    class JobBracket;

    /// Sets forceML if the misc setting "generateML" is "true", in just this spelling.
    void checkForceMLFlag();

    QString jobName;
    JobThread workerThread;
};
