// One run of the EDS checker.
#include "app/edscheckerwrapper.h"

#include "support/logging.h"
#include "support/problems.h"

#include <QFileInfo>
#include <QTimer>

namespace
{

constexpr int kLongestResultBytes = 16 * 1024 * 1024;

} // namespace

bool EdsCheckerWrapper::startEDSCheck(const QString &edsFile)
{
    const QFileInfo checker(checkerPath);
    if (!checker.exists())
        return false;
    edsPath = edsFile;
    process = new QProcess(this);
    connect(process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &EdsCheckerWrapper::processFinished);
    // Queued: the caller counts on finished() coming after this function.
    connect(process, &QProcess::errorOccurred, this, &EdsCheckerWrapper::processFailed,
            Qt::QueuedConnection);
    connect(process, &QProcess::readyReadStandardOutput, this, &EdsCheckerWrapper::takeOutput);
    QTimer::singleShot(longestRunMs, process, [this] {
        if (process->state() != QProcess::NotRunning)
            stop(QStringLiteral("it ran longer than %1 s").arg(longestRunMs / 1000));
    });
    process->setStandardErrorFile(QProcess::nullDevice()); // is no part of the result
    process->start(checker.absoluteFilePath(),
                   {QStringLiteral("-e"), edsPath, QStringLiteral("-d"),
                    checker.absolutePath() + QStringLiteral("/v301.codb")});
    process->closeWriteChannel(); // a program that asks for input gets none
    return true;
}

QString EdsCheckerWrapper::getResults() const
{
    return QString::fromLatin1(output);
}

/// What comes beyond the limit, while the program's death is awaited, is thrown away.
void EdsCheckerWrapper::takeOutput()
{
    output += process->readAllStandardOutput();
    if (output.size() <= kLongestResultBytes)
        return;
    output.truncate(kLongestResultBytes);
    process->closeReadChannel(QProcess::StandardOutput);
    stop(QStringLiteral("it printed more than %1 MiB").arg(kLongestResultBytes / 1024 / 1024));
}

void EdsCheckerWrapper::stop(const QString &reason)
{
    if (isStopped)
        return;
    isStopped = true;
    process->kill();
    Problems::warning("checker-stopped", edsPath,
                      QStringLiteral("the EDS checker was stopped, since %1; its result is not "
                                     "complete")
                          .arg(reason));
}

void EdsCheckerWrapper::processFinished(int exitcode)
{
    qCDebug(lcApp) << "EDS checker for" << edsPath << "ended with" << exitcode;
    takeOutput();
    emit finished();
}

void EdsCheckerWrapper::processFailed(QProcess::ProcessError error)
{
    qCWarning(lcApp) << checkerPath << process->errorString();
    if (error == QProcess::FailedToStart)
        emit finished();
}
