// The comparison with an older project as a text for a review.
#include "app/comparisontext.h"

#include "support/printable.h"

#include <QStringList>

#include <algorithm>

namespace
{

using Change = ProjectChange::Change;

constexpr int kWidth = 110;

QString sign(Change change)
{
    switch (change) {
    case Change::Added:
        return QStringLiteral("+");
    case Change::Removed:
        return QStringLiteral("-");
    case Change::Changed:
        break;
    }
    return QStringLiteral("~");
}

/// "5 -> 6", or the value that there was or is.
QString values(const ChangedField &field)
{
    if (field.before.isEmpty() || field.after.isEmpty())
        return field.before + field.after;
    return field.before + QLatin1String(" -> ") + field.after;
}

QString oneLine(const ChangedField &field)
{
    return field.name.isEmpty() ? values(field) : field.name + QLatin1Char(' ') + values(field);
}

QString linesOf(const ProjectChange &change)
{
    const QString head =
        QStringLiteral("  %1 ").arg(sign(change.change)) + printableLine(change.what);
    if (change.fields.isEmpty())
        return head + QLatin1Char('\n');
    QStringList fields;
    for (const ChangedField &field : change.fields)
        fields << printableLine(oneLine(field));
    const QString line = head + QLatin1String(": ") + fields.join(QLatin1String(", "));
    if (line.size() <= kWidth || fields.size() == 1 || change.change != Change::Changed)
        return line + QLatin1Char('\n');
    return head + QLatin1String(":\n      ") + fields.join(QLatin1String("\n      ")) +
           QLatin1Char('\n');
}

QString counts(const ProjectComparison &comparison)
{
    QStringList parts;
    const auto add = [&](Change kind, const char *word) {
        const auto count =
            std::count_if(comparison.changes.begin(), comparison.changes.end(),
                          [kind](const ProjectChange &change) { return change.change == kind; });
        if (count > 0)
            parts << QStringLiteral("%1 %2").arg(QString::number(count), QLatin1String(word));
    };
    add(Change::Added, "added");
    add(Change::Removed, "removed");
    add(Change::Changed, "changed");
    return parts.join(QLatin1String(", "));
}

} // namespace

QString comparisonText(const ProjectComparison &comparison)
{
    const QString with = printableLine(comparison.with);
    if (comparison.changes.empty())
        return QStringLiteral("\nNothing differs from %1.\n").arg(with);
    QString text = QStringLiteral("\nComparison with %1: %2\n").arg(with, counts(comparison));
    const ProjectChange *former = nullptr;
    for (const ProjectChange &change : comparison.changes) {
        if (!former || former->line != change.line)
            text += QLatin1Char('\n') +
                    comparison.titles.value(
                        change.line, change.line < 0 ? QStringLiteral("Project")
                                                     : QStringLiteral("Line %1").arg(change.line)) +
                    QLatin1Char('\n');
        text += linesOf(change);
        former = &change;
    }
    return text;
}
