// Which sections of a device description make up its objects.
#pragma once

#include "formats/edsreader.h"

#include <QHash>
#include <QString>
#include <QVector>

/// What the name of a section says.
struct EdsAddress {
    enum class Kind { Other, Object, Subindex, Names, Values, Denotations, Links };

    Kind kind = Kind::Other;
    quint16 index = 0;
    quint8 subindex = 0;

    /// Reads the normalized name of a section; kind Other if it is no part of the object
    /// dictionary.
    static EdsAddress of(const QString &name);
};

/// The sections of one object; numbers are positions in the reader's list.
struct EdsObject {
    struct Sub {
        quint8 number;
        int section;
    };
    quint16 index = 0;
    int section = -1; ///< -1: the file has subindices only
    QVector<Sub> subs;
};

/// The objects of a file in the order in which they first appear. Of sections that stand twice, the
/// last one counts. Tells of sections that make up no object or take the place of others.
class EdsObjects
{
public:
    explicit EdsObjects(const EdsReader &reader);

    const QVector<EdsObject> &all() const { return objects; }
    bool contains(quint16 index) const { return byIndex.contains(index); }

    /// Positions of the sections that are of no object.
    const QVector<int> &others() const { return otherSections; }

    /// Position of the section that lists names, values or denotations; -1 if there is none.
    int listOf(quint16 index, EdsAddress::Kind kind) const;

private:
    void add(const EdsReader &reader, int position);
    EdsObject &object(quint16 index);
    /// Position of the section that was there before; -1 if none was.
    int place(const EdsAddress &address, int position);

    QVector<EdsObject> objects;
    QVector<int> otherSections;
    QHash<quint16, int> byIndex;
    QHash<quint32, int> subPlaces; ///< place of a subindex in its object's list
    QHash<quint32, int> lists;
};
