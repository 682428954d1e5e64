// Settings that hold one element a line, as initialisers of the stack's arrays by line.
#pragma once

#include <QList>
#include <QString>

class GeneralSettings;

namespace Defines
{

/// The elements that the comma list \a setting has for \a lines, in ascending order; empty ones
/// become \a emptyElement. A list that does not reach all lines stays short, and one that reaches
/// none keeps its last element.
QString lineList(const QString &setting, const QList<quint8> &lines, const QString &emptyElement);

/// The CAN queue sizes by line, "10" and "5" where the project has none.
struct BufferSizes {
    QString receive;
    QString transmit;
};

BufferSizes readBufferSizes(const GeneralSettings &settings, const QList<quint8> &lines);

/// \a list as an unsigned C number: with a "u" at its end.
QString withUnsignedEnd(const QString &list);

/// Sum of a list of numbers, each read by its prefix. A single number stays as it is written, but
/// for the "u" and blanks.
QString combineCobBufferCounts(QString list);

} // namespace Defines
