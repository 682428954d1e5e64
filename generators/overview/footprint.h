// The memory that the tables of generated C take.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace Overview
{

/// A table, variable or text of a source.
struct FootprintArray {
    QString name;
    QString file;
    std::optional<int> line; ///< of the device; none: of several, or of all
    QString area;            ///< of the object dictionary, or what else it is for
    qint64 ram = 0;          ///< bytes
    qint64 rom = 0;          ///< likewise: constants, which may stay in the program's memory
    qint64 count = 0;        ///< of elements
};

struct FootprintArea {
    QString area;
    std::optional<int> line;
    qint64 ram = 0;
    qint64 rom = 0;
};

struct Footprint {
    std::vector<FootprintArray> arrays; ///< in the order of the sources
    std::vector<FootprintArea> areas;   ///< by line and area
    qint64 ram = 0;
    qint64 rom = 0;
    QString note; ///< how it was counted, and what was not
};

/// A generated file with its name.
struct FootprintSource {
    QString name;
    QByteArray text;
};

/// Of the sources, among which is the header with the definitions of the stack. Sizes are those of
/// a target with pointers of so many bytes and natural alignment.
Footprint footprintOf(const std::vector<FootprintSource> &sources, int pointerBytes = 4);

/// The same of those among the files that a run has written. Files that cannot be read any more
/// count as none.
Footprint footprintOfFiles(const QStringList &paths, int pointerBytes = 4);

} // namespace Overview
