// One run of the EDS checker that the user has installed.
#pragma once

#include <QObject>
#include <QPointer>
#include <QProcess>
#include <QString>

/// Checks one file, once. Its result is what the program prints.
class EdsCheckerWrapper : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    void setCheckerPath(const QString &path) { checkerPath = path; }

    /// How long the program may run; a minute if nothing else is set.
    void setLongestRun(int milliseconds) { longestRunMs = milliseconds; }

    /// Starts the program without waiting for it; false if there is no such program. Otherwise
    /// finished() comes in any case: a program that cannot be started counts as one that has ended,
    /// and one that runs too long, or prints more than 16 MiB, is stopped, which is told on
    /// standard error.
    bool startEDSCheck(const QString &edsFile);

    /// What the program has printed to standard output, 16 MiB at most; empty if there was no
    /// start.
    QString getResults() const;

signals:
    void finished();

public slots:
    void processFinished(int exitcode);

private slots:
    void processFailed(QProcess::ProcessError error);
    void takeOutput();

private:
    /// Ends the program; \a reason is what it did, the end of a sentence.
    void stop(const QString &reason);

    QPointer<QProcess> process;
    QString checkerPath;
    QString edsPath;
    QByteArray output;
    int longestRunMs = 60000;
    bool isStopped = false;
};
