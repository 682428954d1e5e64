// What happens after the generation: the user's command, the EDS checker, line ends.
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QProcess>
#include <QString>
#include <QTextCodec>

#include <memory>

class EdsCheckerWrapper;
class ObjectDataBase;
class OutputGuard;
class OutputHandlerBase;
class PostGenProgressHandler;
class UserSettings;

/// Runs the stages one after the other, each of which ends by proceedGeneration(); the last one
/// says that the generation is completed and raises completed(). Lives on the main thread, and only
/// the programs that it starts run beside it.
class PostGenProcessor : public QObject
{
    Q_OBJECT

public:
    /// \a progress may be null.
    PostGenProcessor(OutputHandlerBase *handler, PostGenProgressHandler *progress, QObject *parent);

    void setProjectValues(QPointer<ObjectDataBase> store, const QString &directory,
                          const QString &name);
    /// Where the files are and programs run; the directory of the project if none is set. Set after
    /// setProjectValues().
    void setOutputDirectory(const QString &directory) { outputDirectory = directory; }
    /// Files whose line ends stay as they are; null for none. \a guard stays the caller's.
    void setOutputGuard(const OutputGuard *guard) { outputGuard = guard; }
    void setStartedHidden(bool hidden) { startedHidden = hidden; }
    /// Without it neither a command nor an EDS checker is started, whoever asks for them.
    void setStartsPrograms(bool starts) { startsPrograms = starts; }

    /// Begins with the user's command. Returns after its end if the user wants to wait for it;
    /// the other stages run on in the event loop. Makes the folder of the files the current one if
    /// there is a command.
    void start();

    /// From start() until completed().
    bool isRunning() const { return running; }

public slots:
    void proceedGenerationSlot();
    void startEdsCheck();
    void edsCheckFinished();
    void postGenProcessFinished(int exitCode, QProcess::ExitStatus exitStatus);
    void postGenProcessReadyReadStandardError();
    void postGenProcessReadyReadStandardOutput();
    /// Asks the command to end, and ends it if it does not.
    void cancelPostGenProcess();

signals:
    void proceedGeneration();
    void completed();

private:
    /// The stage that is over.
    enum class Stage { Idle = 0, Command = 1, EdsCheck = 2, LineEnds = 3 };

    struct Command {
        QString program; ///< empty: there is none
        QString arguments;
        bool isWaitedFor = false;
    };

    /// One of the command's streams.
    struct Stream {
        const char *heading;
        bool hasSpoken = false;
        std::unique_ptr<QTextDecoder> decoder;
    };

    Command readCommand() const;
    QString filledArguments(QString arguments) const;
    void runCommand(const Command &command);
    /// Fills \a error if it gives false.
    bool startDetached(QString &error);
    void waitForCommand();
    /// Prints what the limit of the command's output lets through.
    void takeOutput(Stream &stream, QByteArray bytes);
    void printStream(Stream &stream, const QByteArray &bytes);
    void startChecker(const UserSettings &settings, const QString &edsFile, const QString &started);
    void adjustLineEndings();
    void proceed(Stage finished);

    QPointer<ObjectDataBase> database;
    QString projectDirectory;
    QString outputDirectory;
    QString projectName;
    const OutputGuard *outputGuard = nullptr;
    QPointer<QProcess> process;
    bool waitForProcess = false;
    int processExitCode = 0;
    bool canceled = false;
    bool startedHidden = false;
    bool startsPrograms = true;
    int printedBytes = 0; ///< of both streams of the command
    bool isOutputCut = false;
    QList<EdsCheckerWrapper *> checkers; ///< those that run
    OutputHandlerBase *outputHandler;
    PostGenProgressHandler *progressHandler;
    Stage stage = Stage::Idle;
    bool running = false;
    Stream standardOutput{"Post generation process standard output:\n", false, nullptr};
    Stream standardError{"Post generation process error output:\n", false, nullptr};
};
