// Text of a project inside files that are read line by line.
#pragma once

#include <QString>
#include <QStringList>

/// \a text as one line for readers of any kind: line ends (also those of Unicode, CR LF as one) and
/// all other C0 control characters but the tab, NUL among them, become blanks.
QString oneLine(const QString &text);

/// The lines of \a text, empty ones as well, each as oneLine() has it.
QStringList textLines(const QString &text);
