// Findings of the check with their place in the project's file.
#include "app/locatedfinding.h"

#include "check/subjects.h"

namespace
{

ProjectPlace placeOf(const Finding &finding)
{
    const Check::Subject subject = Check::subjectOf(finding.rule);
    ProjectPlace place;
    place.line = finding.line;
    place.index = finding.index;
    place.subindex = finding.subindex;
    place.group = finding.group;
    place.signal = finding.signal;
    place.column = QLatin1String(subject.column);
    place.store = QLatin1String(subject.store);
    place.setting = QLatin1String(subject.setting);
    return place;
}

} // namespace

QString LocatedFinding::object() const
{
    QString name;
    if (finding.index >= 0)
        name = QStringLiteral("0x%1").arg(
            QString::number(finding.index, 16).toUpper().rightJustified(4, QLatin1Char('0')));
    if (finding.subindex >= 0)
        name += QLatin1Char(':') + QString::number(finding.subindex);
    if (finding.group >= 0)
        name = QStringLiteral("PGN %1").arg(finding.group);
    if (finding.signal >= 0)
        name += QStringLiteral(" SPN %1").arg(finding.signal);
    if (finding.line < 0)
        return name;
    if (name.isEmpty())
        return QStringLiteral("line %1").arg(finding.line);
    return finding.line == 0 ? name : QString::number(finding.line) + QLatin1Char('/') + name;
}

QString LocatedFinding::text() const
{
    QString text = finding.text();
    for (const char *word : {"Error: ", "Warning: "}) {
        if (text.startsWith(QLatin1String(word)))
            text.remove(0, int(qstrlen(word)));
    }
    return text;
}

Problems::Level LocatedFinding::level() const
{
    const Check::MessageRow &row = Check::messageRow(finding.rule);
    if (row.counted)
        return Problems::Level::Error;
    return Check::levelOf(row) == Check::Level::Note ? Problems::Level::Note
                                                     : Problems::Level::Warning;
}

Problems::Problem LocatedFinding::asProblem(const QString &file) const
{
    const QString place = object();
    return {level(), file, fileLine,
            place.isEmpty() ? text() : place + QLatin1String(": ") + text(),
            Check::ruleName(finding.rule)};
}

QVector<LocatedFinding> locate(const QVector<Finding> &findings, ProjectPlaces &places)
{
    QVector<LocatedFinding> located;
    located.reserve(findings.size());
    for (const Finding &finding : findings)
        located.append({finding, places.lineOf(placeOf(finding))});
    return located;
}
