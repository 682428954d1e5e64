// From the findings of a run to its SARIF log.
#include "app/sarifreport.h"

#include "app/artifacturis.h"
#include "formats/sarif.h"
#include "support/filereasons.h"
#include "support/replacefile.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonObject>

namespace
{

Sarif::Level sarifLevel(Problems::Level level)
{
    switch (level) {
    case Problems::Level::Error:
        return Sarif::Level::Error;
    case Problems::Level::Warning:
        return Sarif::Level::Warning;
    case Problems::Level::Note:
        break;
    }
    return Sarif::Level::Note;
}

/// An error that did not end the run is no more than a warning.
Sarif::Level resultLevel(const Problems::Problem &problem)
{
    return problem.level == Problems::Level::Note ? Sarif::Level::Note : Sarif::Level::Warning;
}

/// The messages of the check, in their order.
QVector<Sarif::Rule> checkRules()
{
    QVector<Sarif::Rule> rules;
    for (const Check::MessageRow &row : Check::messages()) {
        const LocatedFinding example{{row.id, {}}, 0};
        rules.append(
            {Check::ruleName(row.id), Check::ruleDescription(row), sarifLevel(example.level())});
    }
    return rules;
}

/// Position of the rule of a problem among \a rules, to which it is added if need be.
int ruleOf(const Problems::Problem &problem, QVector<Sarif::Rule> *rules)
{
    for (int i = 0; i < rules->size(); ++i) {
        if (rules->at(i).id == problem.rule)
            return i;
    }
    QString words = problem.rule;
    words.replace(QLatin1Char('-'), QLatin1Char(' '));
    words = words.left(1).toUpper() + words.mid(1);
    rules->append({problem.rule, words, resultLevel(problem)});
    return rules->size() - 1;
}

/// Numbers of the place; what the finding is not about is left out.
QJsonObject propertiesOf(const Finding &finding)
{
    const QPair<const char *, qint32> numbers[] = {{"line", finding.line},
                                                   {"index", finding.index},
                                                   {"subindex", finding.subindex},
                                                   {"group", finding.group},
                                                   {"signal", finding.signal}};
    QJsonObject properties;
    for (const auto &[name, number] : numbers) {
        if (number >= 0)
            properties.insert(QLatin1String(name), number);
    }
    return properties;
}

/// Collects what the report says, and the files it says it of.
class RunBuilder
{
public:
    explicit RunBuilder(const QString &projectFile) : project(projectFile)
    {
        run.rules = checkRules();
        (void)locationOf(project, 0);
    }

    void add(const LocatedFinding &located)
    {
        const Finding &finding = located.finding;
        Sarif::Location location = locationOf(project, located.fileLine);
        location.place = located.object();
        run.results.append({static_cast<int>(finding.rule), sarifLevel(located.level()),
                            finding.text(), location, propertiesOf(finding)});
    }

    /// A failure ended the run; anything else is a result like the findings.
    void add(const Problems::Problem &problem, bool isFailure)
    {
        Sarif::Location location =
            locationOf(problem.file.isEmpty() ? project : problem.file, problem.line);
        location.column = problem.column;
        if (isFailure)
            run.notifications.append({ruleOf(problem, &run.failures), problem.text, location});
        else
            run.results.append(
                {ruleOf(problem, &run.rules), resultLevel(problem), problem.text, location, {}});
    }

    Sarif::Run done()
    {
        run.bases = uris.bases();
        return run;
    }

private:
    Sarif::Location locationOf(const QString &path, int line)
    {
        const Sarif::File file = uris.of(path);
        if (!run.files.contains(file))
            run.files.append(file);
        return {file, line, 0, QString()};
    }

    QString project;
    ArtifactUris uris{QDir::currentPath()};
    Sarif::Run run;
};

} // namespace

QByteArray sarifText(const RunReport &report)
{
    RunBuilder builder(report.projectFile);
    for (const LocatedFinding &finding : report.findings)
        builder.add(finding);
    for (const Problems::Problem &problem : report.problems)
        builder.add(problem, !report.isComplete && problem.level == Problems::Level::Error);
    Sarif::Run run = builder.done();
    run.tool = QCoreApplication::applicationName();
    run.version = QCoreApplication::applicationVersion();
    run.exitCode = report.exitCode;
    run.exitText = report.outcome;
    run.isSuccessful = report.isComplete;
    return Sarif::text(run);
}

QString writeSarifReport(const RunReport &report, const QString &path)
{
    // The save puts a new file in the place of the old one, which would be the end of a device.
    QString reason = FileReasons::whyNotWritable(path);
    if (reason.isEmpty())
        (void)ReplaceFile::write(path, sarifText(report), &reason); // the reason says
    return reason;
}
