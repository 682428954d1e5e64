// What happens after the generation.
#include "app/postgenprocessor.h"

#include "app/edscheckerwrapper.h"
#include "app/outputhandlerbase.h"
#include "app/postgenprogresshandler.h"
#include "generators/lineends.h"
#include "generators/outputname.h"
#include "store/objectdatabase.h"
#include "support/helper.h"
#include "support/logging.h"
#include "support/outputguard.h"
#include "support/problems.h"
#include "support/usersettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>

#include <unistd.h>

namespace
{

constexpr int kLongestStartMs = 30000;
constexpr int kTerminationMs = 3000;
constexpr int kLastCheckedLine = 7;
constexpr int kMostPrintedBytes = 1024 * 1024;

/// A program that outlives its object and the tool, in a session of its own. Unlike
/// QProcess::startDetached() it leaves the program the default action for a pipe that is closed.
class FreeProcess : public QProcess
{
public:
    FreeProcess() = default;
    ~FreeProcess() override { setProcessState(QProcess::NotRunning); } // else it would be killed

protected:
    void setupChildProcess() override { (void)::setsid(); } // a new process leads no group yet
};

} // namespace

PostGenProcessor::PostGenProcessor(OutputHandlerBase *handler, PostGenProgressHandler *progress,
                                   QObject *parent)
    : QObject(parent), process(new QProcess(this)), outputHandler(handler),
      progressHandler(progress)
{
    connect(process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &PostGenProcessor::postGenProcessFinished);
    connect(process, &QProcess::readyReadStandardError, this,
            &PostGenProcessor::postGenProcessReadyReadStandardError);
    connect(process, &QProcess::readyReadStandardOutput, this,
            &PostGenProcessor::postGenProcessReadyReadStandardOutput);
    connect(this, &PostGenProcessor::proceedGeneration, this,
            &PostGenProcessor::proceedGenerationSlot);
    if (progressHandler)
        connect(progressHandler, &PostGenProgressHandler::cancelProcess, this,
                &PostGenProcessor::cancelPostGenProcess);
}

void PostGenProcessor::setProjectValues(QPointer<ObjectDataBase> store, const QString &directory,
                                        const QString &name)
{
    database = store;
    projectDirectory = directory;
    outputDirectory = directory;
    projectName = name;
}

void PostGenProcessor::start()
{
    running = true;
    const Command command = readCommand();
    processExitCode = 0;
    printedBytes = 0;
    isOutputCut = false;
    for (Stream *stream : {&standardOutput, &standardError}) {
        stream->hasSpoken = false;
        stream->decoder.reset(QTextCodec::codecForLocale()->makeDecoder());
    }
    if (database)
        database->blockSignals(false);
    if (command.program.isEmpty())
        proceed(Stage::Command);
    else
        runCommand(command);
}

/// The project's command; the user's own where the project has none.
PostGenProcessor::Command PostGenProcessor::readCommand() const
{
    Command command;
    if (!startsPrograms)
        return command;
    const auto ofProject = [this](const char *key) {
        return database ? database->getMiscSettingsValue(QLatin1String(key)) : QString();
    };
    const UserSettings user;
    if (QVariant(ofProject("postGenEnabled")).toBool()) {
        command = {ofProject("postgencmd"), ofProject("postgencmdargs"),
                   QVariant(ofProject("postGenWait")).toBool()};
    } else if (user.value("General", "postGenEnabled").toBool()) {
        command = {user.value("General", "postgenerationcommand").toString(),
                   user.value("General", "postgenerationcommandarguments").toString(),
                   user.value("General", "waitPostGen").toBool()};
    }
    command.arguments = filledArguments(command.arguments);
    return command;
}

QString PostGenProcessor::filledArguments(QString arguments) const
{
    const QString file = projectName + QStringLiteral(".tsrp");
    arguments.replace(QLatin1String("%P"), projectDirectory + QLatin1Char('/') + file);
    arguments.replace(QLatin1String("%D"), projectDirectory);
    return arguments.replace(QLatin1String("%N"), file);
}

void PostGenProcessor::runCommand(const Command &command)
{
    canceled = false;
    QDir::setCurrent(outputDirectory);
    const QString tool = QCoreApplication::applicationName();
    if (process->state() != QProcess::NotRunning) {
        if (progressHandler)
            progressHandler->showMessageBox(
                nullptr, tool, QStringLiteral("Post generation process is already running."),
                QString());
        return proceed(Stage::Command);
    }
    waitForProcess = command.isWaitedFor;
    process->setWorkingDirectory(outputDirectory);
    process->setProgram(command.program);
    process->setArguments(command.arguments.split(QLatin1Char(' ')));
    bool isStarted = false;
    QString error;
    if (waitForProcess) {
        process->start(QIODevice::ReadWrite);
        isStarted = process->waitForStarted(kLongestStartMs);
        error = process->errorString();
    } else {
        isStarted = startDetached(error);
    }
    if (!isStarted) {
        qCWarning(lcApp) << command.program << error;
        if (progressHandler)
            progressHandler->showMessageBox(
                nullptr, tool, QStringLiteral("Could not start post gen process."), error);
        return proceed(Stage::Command);
    }
    if (waitForProcess)
        waitForCommand();
    else
        proceed(Stage::Command);
}

/// A command that nobody waits for outlives the tool. It gets no stream of the tool: else whoever
/// reads the report would wait for the end of the command.
bool PostGenProcessor::startDetached(QString &error)
{
    FreeProcess program;
    program.setWorkingDirectory(process->workingDirectory());
    program.setStandardInputFile(QProcess::nullDevice());
    program.setStandardOutputFile(QProcess::nullDevice());
    program.setStandardErrorFile(QProcess::nullDevice());
    program.start(process->program(), process->arguments());
    const bool isStarted = program.waitForStarted(kLongestStartMs);
    error = program.errorString();
    return isStarted;
}

void PostGenProcessor::waitForCommand()
{
    process->closeWriteChannel(); // a command that asks for input gets none
    if (progressHandler) {
        progressHandler->setLabelText(QStringLiteral("Post generation process running ... "));
        progressHandler->setCancelButtonText(QStringLiteral("Cancel process"));
    }
    QEventLoop loop;
    connect(process, &QProcess::stateChanged, &loop, &QEventLoop::quit);
    while (process->state() != QProcess::NotRunning)
        loop.exec();
}

void PostGenProcessor::postGenProcessFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    if (!waitForProcess)
        return;
    qCDebug(lcApp) << "post generation process ended" << exitCode << exitStatus
                   << (canceled ? "canceled" : "");
    processExitCode = exitCode;
    outputHandler->printLine(
        QStringLiteral("Post generation process finished with code %1").arg(exitCode));
    proceed(Stage::Command);
}

void PostGenProcessor::postGenProcessReadyReadStandardError()
{
    takeOutput(standardError, process->readAllStandardError());
}

void PostGenProcessor::postGenProcessReadyReadStandardOutput()
{
    takeOutput(standardOutput, process->readAllStandardOutput());
}

void PostGenProcessor::takeOutput(Stream &stream, QByteArray bytes)
{
    if (isOutputCut)
        return;
    const int room = kMostPrintedBytes - printedBytes;
    isOutputCut = bytes.size() > room;
    bytes.truncate(room);
    printedBytes += bytes.size();
    if (!isOutputCut || room > 0)
        printStream(stream, bytes);
    if (!isOutputCut)
        return;
    // The pipes are emptied all the same, for the command must not wait or die at a full one.
    process->closeReadChannel(QProcess::StandardOutput);
    process->closeReadChannel(QProcess::StandardError);
    Problems::warning("command-output-cut", process->program(),
                      QStringLiteral("the command printed more than %1 MiB; the rest of its output "
                                     "is not shown")
                          .arg(kMostPrintedBytes / 1024 / 1024));
}

void PostGenProcessor::printStream(Stream &stream, const QByteArray &bytes)
{
    if (!stream.hasSpoken)
        outputHandler->printLine(QLatin1String(stream.heading));
    stream.hasSpoken = true;
    const QString text = stream.decoder->toUnicode(bytes).simplified();
    if (!text.isEmpty())
        outputHandler->printLine(QLatin1Char('\t') + text);
}

void PostGenProcessor::cancelPostGenProcess()
{
    if (process->state() != QProcess::NotRunning) {
        canceled = true;
        process->terminate();
        if (!process->waitForFinished(kTerminationMs))
            process->kill();
    }
    if (progressHandler) {
        progressHandler->setCancelButtonText(QStringLiteral("Cancel process"));
        progressHandler->hide();
    }
}

void PostGenProcessor::proceed(Stage finished)
{
    stage = finished;
    emit proceedGeneration();
}

void PostGenProcessor::proceedGenerationSlot()
{
    if (!startedHidden && progressHandler)
        progressHandler->hide();
    switch (stage) {
    case Stage::Command:
        if (progressHandler) {
            progressHandler->setCancelButtonText(QStringLiteral("Cancel process"));
            progressHandler->show();
        }
        startEdsCheck();
        break;
    case Stage::EdsCheck:
        if (progressHandler)
            progressHandler->setLabelText(QStringLiteral("EDS Checker running"));
        adjustLineEndings();
        proceed(Stage::LineEnds);
        break;
    case Stage::LineEnds:
        if (progressHandler)
            progressHandler->adjustSize();
        outputHandler->printLine(
            processExitCode == 0
                ? QStringLiteral("Generation completed.")
                : QStringLiteral("<b>Warning: Generation completed, but post gen process "
                                 "returned %1.</b>")
                      .arg(processExitCode));
        stage = Stage::Idle;
        running = false;
        emit completed();
        break;
    case Stage::Idle:
        break;
    }
}

void PostGenProcessor::startEdsCheck()
{
    if (progressHandler)
        progressHandler->setLabelText(QStringLiteral("EDS Checker running"));
    const UserSettings settings;
    if (startsPrograms && settings.value("EDSChecker", "checkeds").toBool()) {
        const auto fileOf = [this](const QString &tail) {
            return OutputName::path(outputDirectory, projectName, tail);
        };
        startChecker(settings, fileOf(QStringLiteral(".eds")),
                     QStringLiteral("EDS Checker started"));
        for (int line = 0; line <= kLastCheckedLine; ++line)
            startChecker(settings, fileOf(QStringLiteral("_%1.eds").arg(line)),
                         QStringLiteral("EDS Checker started for line %1").arg(line));
    }
    if (checkers.isEmpty())
        proceed(Stage::EdsCheck);
}

void PostGenProcessor::startChecker(const UserSettings &settings, const QString &edsFile,
                                    const QString &started)
{
    if (!QFile::exists(edsFile))
        return;
    auto checker = std::make_unique<EdsCheckerWrapper>(this);
    connect(checker.get(), &EdsCheckerWrapper::finished, this, &PostGenProcessor::edsCheckFinished);
    checker->setCheckerPath(settings.value("EDSChecker", "EDSCheckerPath").toString());
    if (checker->startEDSCheck(edsFile)) {
        checkers << checker.release();
        outputHandler->printLine(started);
    } else {
        outputHandler->printLine(QStringLiteral("Start of EDS Checker failed"));
    }
}

void PostGenProcessor::edsCheckFinished()
{
    auto *checker = qobject_cast<EdsCheckerWrapper *>(sender());
    if (!checker || !checkers.removeOne(checker))
        return;
    outputHandler->printLine(QStringLiteral("EDS Checker result:\n\n") + checker->getResults());
    outputHandler->printLine(QStringLiteral("EDS Checker finished.\n"));
    checker->deleteLater();
    if (checkers.isEmpty())
        proceed(Stage::EdsCheck);
}

void PostGenProcessor::adjustLineEndings()
{
    const QString lineEnd = LineEnds::chosen();
    if (lineEnd.isEmpty())
        return;
    for (const char *file : LineEnds::kFiles) {
        const QString path = outputDirectory + QLatin1Char('/') + QLatin1String(file);
        if (outputGuard && !outputGuard->isFree(path))
            continue; // this run has not written it
        if (!Helper::modifyLineEnding(path, lineEnd))
            qCWarning(lcApp) << "line ends of" << path << "stay as they are";
    }
}
