// Parser of XML descriptions of devices (XDD and XDC, CiA 311).
#pragma once

#include "formats/edsrecords.h"
#include "formats/xddfile.h"
#include "support/fileproblems.h"

#include <QByteArray>
#include <QObject>

/// Turns the objects of a file into the records that EdsParser makes of other descriptions, in the
/// order of the file: whoever imports those can import these. Its signals run on the caller's
/// thread, during load() and parse().
class XddParser : public QObject
{
    Q_OBJECT

public:
    explicit XddParser(QObject *parent = nullptr) : QObject(parent) {}

    /// Raises newIndex() for each object, after it newSubIndex() for each of its subindices. False
    /// if the file cannot be read or has no object; whyNotRead() tells then which.
    bool load(const QString &fileName);

    /// The same from bytes; \a origin stands for the file name in problems.
    bool parse(const QByteArray &bytes, const QString &origin);

    /// Words that follow a colon; empty if there was something to read.
    const QString &whyNotRead() const { return reason; }

    /// Where the reason stands in the file; 0 if it is none of a line.
    int lineOfReason() const { return reasonLine; }

    /// What stands in the file besides objects, by the keys of edskeys.h.
    const QMap<QString, XddInformation> &information() const { return file.information; }

    /// Keeps something odd for tellProblems(); see FileProblems.
    void note(const char *rule, int line, const std::function<QString()> &words) const;

    /// Warns of all that was noted, and forgets it.
    void tellProblems() const;

signals:
    void newIndex(const CANopen::CANopenIndex &record);
    void newSubIndex(const CANopenSubindex &record);

private:
    XddFile file;
    QString reason;
    int reasonLine = 0;
    mutable FileProblems problems; ///< what is noted changes nothing of the records
};
