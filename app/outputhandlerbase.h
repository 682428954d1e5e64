// The output interface of all classes that report to the user.
#pragma once

#include <QObject>
#include <QString>
#include <QVariant>

/// Takes report lines, on the main thread only.
class OutputHandlerBase : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual void printLine(const QVariant &line) = 0;

    /// A line before work that takes a while; a handler may mark the time that has passed.
    virtual void printLinePassTime(const QVariant &line) { printLine(line); }

    /// The text of the run so far.
    virtual QString getLogging() = 0;
};
