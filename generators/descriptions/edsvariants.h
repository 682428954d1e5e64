// Variants of one device out of one dictionary: the metadata "eds_define" of an object or a
// subindex names the variant that it belongs to. What a name means is the user's business; only
// equality counts.
#pragma once

#include "store/records.h"

#include <QHash>
#include <QList>
#include <QStringList>

class ObjectDataBase;

/// The variants of a line and their objects, found in one pass: of thousands of files none looks
/// at the objects of the others. Shows the state of the store in which it was made; cheap to copy.
class EdsVariants
{
public:
    EdsVariants(const ObjectDataBase &store, quint8 line);

    /// Each once: the plain one, whose name is empty, then the others in the order in which they
    /// first appear. A file is written for each.
    const QStringList &defines() const { return allDefines; }

    /// The objects of a variant and those that belong to none, ascending. An object is here
    /// whatever its subindices belong to.
    QList<quint16> objectsOf(const QString &define) const;

private:
    QStringList allDefines;
    QList<quint16> common;
    QHash<QString, QList<quint16>> own;
};

/// Does an object or subindex with these attributes belong to the variant \a define, or to none?
bool isOfVariant(const Metadata &metadata, const QString &define);
