// Dependency files: rules of make, which ninja reads too.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace MakeRule
{

/// Can a rule name the file? Not if its name holds a line end.
bool canName(const QString &path);

/// The rule that \a targets are made of \a inputs, one file a line.
QByteArray text(const QStringList &targets, const QStringList &inputs);

} // namespace MakeRule
