// What all importers share: the thread, the target line, and helpers for names and types.
#pragma once

#include "store/linetype.h"
#include "support/jobthread.h"
#include "support/objectranges.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>

#include <atomic>

class ObjectDataBase;

/// Brings objects from a file into one line of a project. Made for one file and used once. The
/// driver sets it up, starts it and waits; only doImport() runs on the worker thread.
class BaseDataImporter : public QObject
{
    Q_OBJECT

public:
    struct SubAddress {
        quint16 index = 0;
        quint8 subindex = 0;
    };

    BaseDataImporter() = default;

    bool setActiveLine(quint8 line);
    bool setDatabase(ObjectDataBase *store);
    /// Objects outside of \a low to \a high are passed over; both belong to the range.
    bool setIndexRange(quint32 low, quint32 high);
    /// False if there is no such file or it cannot be read; there is no import file then.
    bool setImportFileName(const QString &file);

    /// Protocol of a line that is made for what the file holds; asked between setImportFileName()
    /// and startImport().
    virtual LineType lineTypeOfFile() { return LineType::CANopen; }
    /// The node whose messages the line transmits, of files that describe several nodes; the
    /// others pass it over.
    virtual void setOwnNode(const QString &name) { Q_UNUSED(name) }

    /// Runs doImport() on the worker thread. False if it was started before.
    bool startImport();
    /// Only an import that has not begun yet is cancelled.
    void abortImport();
    bool isFinished() const;
    /// Delivers events until the import has ended; returns at once if none was started.
    void wait();

    virtual QString getLastError() const { return lastError; }

    /// The number of the data type of that many bits: an octet string if there is none, a string up
    /// to "*" for no bits. Types of 24 and of 40 and more bits are unsigned.
    static quint16 getDataTypeFromBitLength(quint16 bits, bool isSigned);

    /// \a text as C name in lower case; followed by "_" and the hexadecimal \a index if an earlier
    /// call gave the name away. Empty if nothing of the text may stand in a name.
    QString proposeVarname(quint32 index, const QString &text);

public slots:
    virtual void doImport() = 0;

signals:
    void progress(quint8 percent); ///< 100: the import has ended, well or not
    void importError(quint32 line, quint16 index, quint8 sub);
    void importError(QString errorString);

protected:
    /// Opens the store for writing by this thread alone; at its end, whatever the way out, other
    /// threads may go on, and progress 100 is reported.
    class Job
    {
    public:
        explicit Job(BaseDataImporter &dataImporter);
        ~Job();
        Job(const Job &) = delete;
        Job &operator=(const Job &) = delete;

    private:
        BaseDataImporter &importer;
    };

    bool isInRange(quint32 index) const { return index >= lowIndex && index <= highIndex; }
    /// Name of the variable of a string or domain without one of its own: "v_" with index and
    /// subindex in decimal, separated by "_" where another place has that name. On line 1 the start
    /// is "v1_" and so on, since C knows the variables of all lines.
    QString makeVarName(quint16 index, quint8 sub);
    /// Keeps \a text for getLastError() and reports it.
    void fail(const QString &text);
    /// The same of the import file, with the reason on standard error.
    void failToOpen();

    quint8 activeLine = 0;
    QString importFileName;
    QSet<QString> usedNames;
    quint32 lowIndex = ObjectRanges::kAssigned.first;
    quint32 highIndex = ObjectRanges::kAssigned.last;
    QPointer<ObjectDataBase> database;
    QString lastError;
    std::atomic_bool abortRequested{false};

private:
    QHash<QString, quint32> varNameOwners; ///< index and subindex that a name was given to
    bool started = false;
    JobThread worker;
};
