// What the texts of a project mean as values, in the words of the test stack.
#pragma once

#include "store/records.h"

#include <QStringList>
#include <QVector>

namespace Meaning
{

constexpr quint8 kSent = 0x55;
constexpr quint8 kReceived = 0x77;

/// The words of each row of a file beside this one; rows that begin with "# " count as nothing.
QVector<QStringList> table(const QString &name);

/// Value of a text as all project files write numbers: hexadecimal after 0x, else decimal.
qint64 numberOf(const QString &text);
QString withoutNodeId(const QString &text);
bool hasNodeId(const QString &text);

/// Type names of the test stack. Signals below a byte live in one.
QString typeName(quint16 dataType);

/// Types whose values have arrays that the stack can reach.
bool hasArray(quint16 dataType);
bool hasLimits(quint16 dataType);

/// Has the subindex a default that a table can tell?
bool hasDefault(const SubIndexData &sub);
bool isWritten(const SubIndexData &sub);
QString numberText(quint16 dataType, const QString &value);

/// The bytes of a string; its escapes are those of C.
QByteArray textBytes(const QString &value);
QString joinNumbers(const QVector<quint32> &numbers);

} // namespace Meaning
