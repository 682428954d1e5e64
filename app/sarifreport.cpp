// From the findings of a run to its SARIF log.
#include "app/sarifreport.h"

#include "formats/sarif.h"
#include "support/filereasons.h"
#include "support/replacefile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonObject>
#include <QUrl>

namespace
{

QString hexNumber(qint32 number, int digits)
{
    return QStringLiteral("0x%1").arg(number, digits, 16, QLatin1Char('0'));
}

Sarif::Level sarifLevel(const Check::MessageRow &row)
{
    switch (Check::levelOf(row)) {
    case Check::Level::Error:
        return Sarif::Level::Error;
    case Check::Level::Warning:
        return Sarif::Level::Warning;
    case Check::Level::Note:
        break;
    }
    return Sarif::Level::Note;
}

/// Their positions are those of the messages.
QVector<Sarif::Rule> allRules()
{
    QVector<Sarif::Rule> rules;
    for (const Check::MessageRow &row : Check::messages())
        rules.append({Check::ruleName(row.id), Check::plainText(row, {}), sarifLevel(row)});
    return rules;
}

/// Place of a finding in words, such as "line 0/0x1018/0x01"; empty for the whole project.
QString placeName(const Finding &finding)
{
    if (finding.line < 0)
        return QString();
    QString name = QStringLiteral("line %1").arg(finding.line);
    if (finding.index >= 0)
        name += QLatin1Char('/') + hexNumber(finding.index, 4);
    if (finding.subindex >= 0)
        name += QLatin1Char('/') + hexNumber(finding.subindex, 2);
    return name;
}

/// Numbers of the place; what the finding is not about is left out.
QJsonObject propertiesOf(const Finding &finding)
{
    QJsonObject properties;
    if (finding.line >= 0)
        properties.insert(QStringLiteral("line"), finding.line);
    if (finding.index >= 0)
        properties.insert(QStringLiteral("index"), finding.index);
    if (finding.subindex >= 0)
        properties.insert(QStringLiteral("subindex"), finding.subindex);
    return properties;
}

} // namespace

QByteArray sarifText(const RunReport &report)
{
    Sarif::Run run;
    run.tool = QCoreApplication::applicationName();
    run.version = QCoreApplication::applicationVersion();
    run.rules = allRules();
    run.fileUri = QUrl::fromLocalFile(QFileInfo(report.projectFile).absoluteFilePath())
                      .toString(QUrl::FullyEncoded);
    for (const Finding &finding : report.findings)
        run.results.append({static_cast<int>(finding.rule), finding.text(), placeName(finding),
                            propertiesOf(finding)});
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
        (void)ReplaceFile::write(path, sarifText(report), &reason); // the reason tells
    return reason;
}
