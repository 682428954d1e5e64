// One run of the EDS checker.
#include "app/edscheckerwrapper.h"

#include "support/logging.h"

#include <QFileInfo>
#include <QTimer>

namespace
{

constexpr int kLongestRunMs = 60000;
constexpr qint64 kLongestResultBytes = 16 * 1024 * 1024;

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
    // Queued: the caller counts on finished() coming behind this function.
    connect(process, &QProcess::errorOccurred, this, &EdsCheckerWrapper::processFailed,
            Qt::QueuedConnection);
    connect(process, &QProcess::readyReadStandardOutput, process, [this] {
        if (process->bytesAvailable() > kLongestResultBytes)
            process->kill();
    });
    QTimer::singleShot(kLongestRunMs, process, &QProcess::kill);
    process->setStandardErrorFile(QProcess::nullDevice()); // is no part of the result
    process->start(checker.absoluteFilePath(),
                   {QStringLiteral("-e"), edsPath, QStringLiteral("-d"),
                    checker.absolutePath() + QStringLiteral("/v301.codb")});
    process->closeWriteChannel(); // a program that asks for input gets none
    return true;
}

QString EdsCheckerWrapper::getResults() const
{
    return process ? QString::fromLatin1(process->readAll()) : QString();
}

void EdsCheckerWrapper::processFinished(int exitcode)
{
    qCDebug(lcApp) << "EDS checker for" << edsPath << "ended with" << exitcode;
    emit finished();
}

void EdsCheckerWrapper::processFailed(QProcess::ProcessError error)
{
    qCWarning(lcApp) << checkerPath << process->errorString();
    if (error == QProcess::FailedToStart)
        emit finished();
}
