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

    /// Starts the program without waiting for it; false if there is no such program. Otherwise
    /// finished() comes in any case: a program that cannot be started counts as one that has ended,
    /// and one that does not end within a minute, or prints more than 16 MiB, is stopped.
    bool startEDSCheck(const QString &edsFile);

    /// What the program has printed to standard output; empty if there was no start.
    QString getResults() const;

signals:
    void finished();

public slots:
    void processFinished(int exitcode);

private slots:
    void processFailed(QProcess::ProcessError error);

private:
    QPointer<QProcess> process;
    QString checkerPath;
    QString edsPath;
};
