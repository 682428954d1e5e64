// SARIF logs.
#include "formats/sarif.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace
{

QString levelName(Sarif::Level level)
{
    switch (level) {
    case Sarif::Level::Error:
        return QStringLiteral("error");
    case Sarif::Level::Warning:
        return QStringLiteral("warning");
    case Sarif::Level::Note:
        break;
    }
    return QStringLiteral("note");
}

QJsonObject textObject(const QString &text)
{
    return {{QStringLiteral("text"), text}};
}

QJsonArray ruleList(const QVector<Sarif::Rule> &rules)
{
    QJsonArray list;
    for (const Sarif::Rule &rule : rules) {
        list.append(QJsonObject{
            {QStringLiteral("id"), rule.id},
            {QStringLiteral("shortDescription"), textObject(rule.description)},
            {QStringLiteral("defaultConfiguration"),
             QJsonObject{{QStringLiteral("level"), levelName(rule.level)}}},
        });
    }
    return list;
}

QJsonObject fileObject(const QString &uri)
{
    return {{QStringLiteral("uri"), uri}};
}

QJsonObject locationOf(const Sarif::Result &result, const QString &uri)
{
    QJsonObject location{{QStringLiteral("physicalLocation"),
                          QJsonObject{{QStringLiteral("artifactLocation"), fileObject(uri)}}}};
    if (!result.place.isEmpty()) {
        location.insert(
            QStringLiteral("logicalLocations"),
            QJsonArray{QJsonObject{{QStringLiteral("fullyQualifiedName"), result.place}}});
    }
    return location;
}

/// Braces in a message enclose place holders, so braces of the text are doubled
/// (SARIF 2.1.0, 3.11.5).
QString messageText(QString text)
{
    return text.replace(QLatin1Char('{'), QLatin1String("{{"))
        .replace(QLatin1Char('}'), QLatin1String("}}"));
}

QJsonArray resultList(const Sarif::Run &run)
{
    QJsonArray list;
    for (const Sarif::Result &result : run.results) {
        const Sarif::Rule &rule = run.rules.at(result.rule);
        list.append(QJsonObject{
            {QStringLiteral("ruleId"), rule.id},
            {QStringLiteral("ruleIndex"), result.rule},
            {QStringLiteral("level"), levelName(rule.level)},
            {QStringLiteral("message"), textObject(messageText(result.message))},
            {QStringLiteral("locations"), QJsonArray{locationOf(result, run.fileUri)}},
            {QStringLiteral("properties"), result.properties},
        });
    }
    return list;
}

QJsonObject invocationOf(const Sarif::Run &run)
{
    return {
        {QStringLiteral("executionSuccessful"), run.isSuccessful},
        {QStringLiteral("exitCode"), run.exitCode},
        {QStringLiteral("exitCodeDescription"), run.exitText},
    };
}

} // namespace

QByteArray Sarif::text(const Run &run)
{
    const QJsonObject driver{
        {QStringLiteral("name"), run.tool},
        {QStringLiteral("version"), run.version},
        {QStringLiteral("rules"), ruleList(run.rules)},
    };
    const QJsonObject runObject{
        {QStringLiteral("tool"), QJsonObject{{QStringLiteral("driver"), driver}}},
        {QStringLiteral("invocations"), QJsonArray{invocationOf(run)}},
        {QStringLiteral("artifacts"),
         QJsonArray{QJsonObject{{QStringLiteral("location"), fileObject(run.fileUri)}}}},
        {QStringLiteral("results"), resultList(run)},
    };
    const QJsonObject log{
        {QStringLiteral("$schema"),
         QStringLiteral("https://json.schemastore.org/sarif-2.1.0.json")},
        {QStringLiteral("version"), QStringLiteral("2.1.0")},
        {QStringLiteral("runs"), QJsonArray{runObject}},
    };
    return QJsonDocument(log).toJson();
}
