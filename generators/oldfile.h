// What a generated file hands on to the next one: the section that the user wrote into it, and how
// often it was generated.
#pragma once

#include <QByteArray>
#include <QString>

namespace OldFile
{

/// Reads the bytes of \a file with "\n" as only line end; empty if there is no such regular file.
/// False if not all could be read, or it is too long for a generated file: what the user wrote
/// into it is unknown then.
bool read(const QString &file, QByteArray *text);

/// read() for a file that is about to be replaced: reports why that cannot be done.
bool readOrTell(const QString &file, QByteArray *text);

/// The lines between the marker lines, each with its "\n"; all sections, if there are several, and
/// up to the end of the text, if the last has no end. A marker line may be indented, have other
/// blanks than ours, and be in any letter case.
QByteArray extractUserSection(const QByteArray &text);

/// The section with its marker lines and a line that explains them. An empty one has an empty line.
QByteArray userSectionText(const QByteArray &section);

/// A section for people: bytes that are not UTF-8 are taken for Latin-1.
QString readable(const QByteArray &section);

/// The marker lines of a text.
struct Markers {
    enum class Fault {
        None,
        NoEnd,   ///< a section that does not end
        NoStart, ///< the end of a section that never started
    };
    bool isAny = false;
    Fault fault = Fault::None;
    int line = 0; ///< of the first fault, from 1
};
Markers findMarkers(const QByteArray &text);

/// False if a marker line of \a file has no partner, since it is unknown then which text is the
/// user's; reports that. What cannot be read passes: read() reports it.
bool hasWholeSections(const QString &file);

/// 0 if the text has none.
quint32 extractGenerationCounter(const QByteArray &text);

} // namespace OldFile
