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

QJsonObject fileObject(const Sarif::File &file)
{
    return {{QStringLiteral("uri"), file.uri}, {QStringLiteral("uriBaseId"), file.baseId}};
}

QJsonArray artifactList(const QVector<Sarif::File> &files)
{
    QJsonArray list;
    for (const Sarif::File &file : files)
        list.append(QJsonObject{{QStringLiteral("location"), fileObject(file)}});
    return list;
}

QJsonObject baseList(const QVector<Sarif::Base> &bases)
{
    QJsonObject list;
    for (const Sarif::Base &base : bases)
        list.insert(base.id, QJsonObject{{QStringLiteral("uri"), base.uri}});
    return list;
}

QJsonArray locationList(const Sarif::Location &place)
{
    QJsonObject region{{QStringLiteral("startLine"), qMax(place.line, 1)}};
    if (place.column > 0)
        region.insert(QStringLiteral("startColumn"), place.column);
    QJsonObject location{{QStringLiteral("physicalLocation"),
                          QJsonObject{{QStringLiteral("artifactLocation"), fileObject(place.file)},
                                      {QStringLiteral("region"), region}}}};
    if (!place.place.isEmpty()) {
        location.insert(
            QStringLiteral("logicalLocations"),
            QJsonArray{QJsonObject{{QStringLiteral("fullyQualifiedName"), place.place}}});
    }
    return {location};
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
            {QStringLiteral("level"), levelName(result.level)},
            {QStringLiteral("message"), textObject(messageText(result.message))},
            {QStringLiteral("locations"), locationList(result.location)},
            {QStringLiteral("properties"), result.properties},
        });
    }
    return list;
}

QJsonArray notificationList(const Sarif::Run &run)
{
    QJsonArray list;
    for (const Sarif::Notification &notification : run.notifications) {
        const QString id = run.failures.at(notification.rule).id;
        const QJsonObject descriptor{{QStringLiteral("id"), id},
                                     {QStringLiteral("index"), notification.rule}};
        list.append(QJsonObject{
            {QStringLiteral("descriptor"), descriptor},
            {QStringLiteral("level"), levelName(Sarif::Level::Error)},
            {QStringLiteral("message"), textObject(messageText(notification.message))},
            {QStringLiteral("locations"), locationList(notification.location)},
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
        {QStringLiteral("toolExecutionNotifications"), notificationList(run)},
    };
}

} // namespace

QByteArray Sarif::text(const Run &run)
{
    const QJsonObject driver{
        {QStringLiteral("name"), run.tool},
        {QStringLiteral("version"), run.version},
        {QStringLiteral("rules"), ruleList(run.rules)},
        {QStringLiteral("notifications"), ruleList(run.failures)},
    };
    const QJsonObject runObject{
        {QStringLiteral("tool"), QJsonObject{{QStringLiteral("driver"), driver}}},
        {QStringLiteral("invocations"), QJsonArray{invocationOf(run)}},
        {QStringLiteral("originalUriBaseIds"), baseList(run.bases)},
        {QStringLiteral("artifacts"), artifactList(run.files)},
        {QStringLiteral("columnKind"), QStringLiteral("utf16CodeUnits")},
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
