// SARIF reports.
#include "app/sarifreport.h"

#include "support/filereasons.h"
#include "support/replacefile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

namespace
{

QString hexNumber(qint32 number, int digits)
{
    return QStringLiteral("0x%1").arg(number, digits, 16, QLatin1Char('0'));
}

QString levelName(Check::Msg rule)
{
    switch (Check::levelOf(Check::messageRow(rule))) {
    case Check::Level::Error:
        return QStringLiteral("error");
    case Check::Level::Warning:
        return QStringLiteral("warning");
    case Check::Level::Note:
        break;
    }
    return QStringLiteral("note");
}

QJsonObject textObject(const QString &text)
{
    return {{QStringLiteral("text"), text}};
}

/// All rules, so that their numbers are the same in each report.
QJsonArray ruleList()
{
    QJsonArray rules;
    for (const Check::MessageRow &row : Check::messages()) {
        rules.append(QJsonObject{
            {QStringLiteral("id"), Check::ruleName(row.id)},
            {QStringLiteral("shortDescription"), textObject(Check::plainText(row, {}))},
            {QStringLiteral("defaultConfiguration"),
             QJsonObject{{QStringLiteral("level"), levelName(row.id)}}},
        });
    }
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

QJsonObject locationOf(const Finding &finding, const QString &projectUri)
{
    QJsonObject location{{QStringLiteral("physicalLocation"),
                          QJsonObject{{QStringLiteral("artifactLocation"),
                                       QJsonObject{{QStringLiteral("uri"), projectUri}}}}}};
    const QString place = placeName(finding);
    if (!place.isEmpty()) {
        location.insert(QStringLiteral("logicalLocations"),
                        QJsonArray{QJsonObject{{QStringLiteral("fullyQualifiedName"), place}}});
    }
    return location;
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

/// Braces in a message enclose place holders, so braces of the text are doubled
/// (SARIF 2.1.0, 3.11.5).
QString messageText(QString text)
{
    return text.replace(QLatin1Char('{'), QLatin1String("{{"))
        .replace(QLatin1Char('}'), QLatin1String("}}"));
}

QJsonObject resultOf(const Finding &finding, const QString &projectUri)
{
    return {
        {QStringLiteral("ruleId"), Check::ruleName(finding.rule)},
        {QStringLiteral("ruleIndex"), static_cast<int>(finding.rule)},
        {QStringLiteral("level"), levelName(finding.rule)},
        {QStringLiteral("message"), textObject(messageText(finding.text()))},
        {QStringLiteral("locations"), QJsonArray{locationOf(finding, projectUri)}},
        {QStringLiteral("properties"), propertiesOf(finding)},
    };
}

QJsonObject invocationOf(const RunReport &report)
{
    return {
        {QStringLiteral("executionSuccessful"), report.isComplete},
        {QStringLiteral("exitCode"), report.exitCode},
        {QStringLiteral("exitCodeDescription"), report.outcome},
    };
}

} // namespace

QByteArray sarifText(const RunReport &report)
{
    const QString uri = QUrl::fromLocalFile(QFileInfo(report.projectFile).absoluteFilePath())
                            .toString(QUrl::FullyEncoded);
    QJsonArray results;
    for (const Finding &finding : report.findings)
        results.append(resultOf(finding, uri));
    const QJsonObject driver{
        {QStringLiteral("name"), QCoreApplication::applicationName()},
        {QStringLiteral("version"), QCoreApplication::applicationVersion()},
        {QStringLiteral("rules"), ruleList()},
    };
    const QJsonObject run{
        {QStringLiteral("tool"), QJsonObject{{QStringLiteral("driver"), driver}}},
        {QStringLiteral("invocations"), QJsonArray{invocationOf(report)}},
        {QStringLiteral("artifacts"),
         QJsonArray{
             QJsonObject{{QStringLiteral("location"), QJsonObject{{QStringLiteral("uri"), uri}}}}}},
        {QStringLiteral("results"), results},
    };
    const QJsonObject log{
        {QStringLiteral("$schema"),
         QStringLiteral("https://json.schemastore.org/sarif-2.1.0.json")},
        {QStringLiteral("version"), QStringLiteral("2.1.0")},
        {QStringLiteral("runs"), QJsonArray{run}},
    };
    return QJsonDocument(log).toJson();
}

QString writeSarifReport(const RunReport &report, const QString &path)
{
    // The save puts a new file in the place of the old one, which would be the end of a device.
    QString reason = FileReasons::whyNotWritable(path);
    if (reason.isEmpty())
        (void)ReplaceFile::write(path, sarifText(report), &reason); // the reason tells
    return reason;
}
