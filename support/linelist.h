// Settings with one value for each line of the device, parted by commas.
#pragma once

#include <QString>

/// Element n of a list is that of line n, whichever lines the device has. All that read such
/// settings do it here, so that they agree on what belongs to a line.
namespace LineList
{

/// What stands for a line beyond the end of its list; each setting has its own rule.
enum class Beyond {
    Nothing, ///< an empty text
    First,   ///< the first element
    Last,    ///< the last element
    Whole,   ///< the list as it is
};

/// Has the list more than one element?
bool isList(const QString &text);

/// Has the list an element for \a line, be it an empty one? A text without comma is a list with
/// the element of line 0.
bool reaches(const QString &list, quint8 line);

/// The element of \a line as it is written, blanks included.
QString element(const QString &list, quint8 line, Beyond beyond = Beyond::Nothing);

/// The same for settings whose text without comma is the value of every line.
QString shared(const QString &setting, quint8 line, Beyond beyond = Beyond::Nothing);

/// \a list with \a value for \a line; elements that it lacks before it are empty.
QString withElement(const QString &list, quint8 line, const QString &value);

} // namespace LineList
