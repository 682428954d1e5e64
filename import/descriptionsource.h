// Where the records of a device description come from, whatever its format is.
#pragma once

#include "formats/edsrecords.h"

#include <QString>
#include <QVector>

#include <functional>
#include <memory>
#include <optional>

/// One file, read once on the worker thread of the import. What is odd in it is kept until
/// tellProblems().
class DescriptionSource
{
public:
    /// Who gets the records: an object, and after it its subindices, in the order of the file.
    struct Takers {
        std::function<void(const CANopen::CANopenIndex &)> object;
        std::function<void(const CANopenSubindex &)> subindex;
    };

    /// A text about the device or the file.
    struct Entry {
        QString key; ///< as the file has it, a word of edskeys.h in any case
        QString value;
        int line = 0;
    };

    /// The rules by which the import tells of such files.
    struct Rules {
        const char *value;
        const char *line;
        const char *promise;
    };

    /// Why there is nothing to import.
    struct Reason {
        QString words; ///< follow the name of the file
        int line = 0;  ///< 0 for none
    };

    /// By the ending of \a fileName: XML for xdd and xdc, else EDS.
    static std::unique_ptr<DescriptionSource> ofFile(const QString &fileName);

    virtual ~DescriptionSource() = default;

    /// False if the file cannot be read.
    virtual bool read(const Takers &takers) = 0;

    /// Of a section of edskeys.h, also while records are given; nothing if the file has none.
    virtual std::optional<QVector<Entry>> section(const char *name) const = 0;

    /// Of the file, if it gave no object that can be taken.
    virtual Reason whyNothing() const = 0;

    virtual Rules rules() const = 0;

    /// Keeps a warning; see FileProblems.
    virtual void warn(const char *rule, int line, const std::function<QString()> &words) const = 0;
    virtual void tellProblems() const = 0;

    /// The last entry of that name in the section, in any case.
    Entry entry(const char *sectionName, const char *key) const;
};
