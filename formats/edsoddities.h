// What is odd in a device description beside the entries of its objects.
#pragma once

#include "formats/edsobjects.h"

#include <QHash>
#include <QStringList>

/// Finds words that are a slip of a known one. Looks up the first few hundred only: a file that has
/// more of them is full of words of its own.
class EdsSlips
{
public:
    explicit EdsSlips(const QStringList &knownWords) : known(knownWords) {}

    /// The word that \a text may stand for; empty if there is none, or if they differ only in their
    /// numbers, as "BaudRate_100" does from "BaudRate_1000".
    QString meant(const QString &text);

private:
    QString lookUp(const QString &text) const;

    QStringList known;
    QHash<QString, QString> found; ///< by text
};

/// Warns of keys that are a slip of one that has a meaning. Other keys are extensions, which any
/// tool may write.
class EdsKeyCheck
{
public:
    EdsKeyCheck(const EdsReader &edsReader, const QStringList &keys)
        : reader(edsReader), slips(keys)
    {
    }

    /// Keys of objects.
    explicit EdsKeyCheck(const EdsReader &edsReader);

    void check(const EdsEntry &entry);

private:
    const EdsReader &reader;
    EdsSlips slips;
};

namespace EdsOddities
{

/// Notes what the lists of objects, the sections about file and device and the names of sections
/// have wrong.
void note(const EdsReader &reader, const EdsObjects &objects);

} // namespace EdsOddities
