// Reports to standard output.
#pragma once

#include "app/outputhandlerbase.h"

#include <QTextStream>

#include <memory>

/// Writes to the process's standard output in UTF-8, whatever the user's locale, and keeps the
/// report as log. Each operation flushes, so that a line is seen before the next work starts.
class CLIOutputHandler : public OutputHandlerBase
{
    Q_OBJECT

public:
    explicit CLIOutputHandler(QObject *parent = nullptr);

    /// Writes \a line without its tags, see removeTags().
    void printLine(const QVariant &line) override;
    /// Control characters of \a text are shown, see printableText().
    void print(const QVariant &text);
    /// Writes \a text and one blank.
    CLIOutputHandler &operator<<(const QVariant &text);
    /// A line of the help text; it does not enter the log.
    void printHelpValue(const QString &key, const QString &value);

    QString getLogging() override { return log; }

    /// \a text without each stretch that goes from a "<" to the last ">" before the next full stop.
    /// What stands between two tags of one sentence vanishes with them.
    static QString removeTags(const QString &text);

private:
    void write(const QString &text);

    std::unique_ptr<QTextStream> stream;
    QString log;
};
