// docs/project-yaml-keys.md, which GOLDEN_UPDATE=1 rewrites. Its text is that of yamlkeys.md, where
// holes stand for tables of keys:
//
//     {{lines/tpdo cob-id map ...}}
//
// lists keys of the map that the schema has there: those named, the others with "...", or those
// that are kept for other tools with "kept"; but none that the map behind "-" has with the same
// meaning.
#include "store/yaml/yamlcolumns.h"
#include "store/yaml/yamlkeys.h"
#include "store/yaml/yamlschema.h"
#include "tests/fixtures/testkit.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QRegularExpression>
#include <QSet>

namespace
{

constexpr char kPage[] = TESSARINE_SOURCES "/docs/project-yaml-keys.md";
constexpr char kTemplate[] = TESSARINE_SOURCES "/tests/unit/store/yamlkeys.md";
constexpr char kKept[] = "Kept for other tools";

const QJsonObject &schema()
{
    static const QJsonObject root = QJsonDocument::fromJson(YamlSchema::text()).object();
    return root;
}

QJsonObject definition(const QJsonObject &reference)
{
    const QString name = reference["$ref"].toString().section('/', -1);
    return schema()["$defs"].toObject()[name].toObject();
}

/// The map with keys of its own that stands there, below a number or in a list as well; or none.
QJsonObject mapIn(const QJsonObject &value)
{
    if (value.contains("$ref"))
        return mapIn(definition(value));
    if (value.isEmpty() || !value["properties"].toObject().isEmpty())
        return value;
    QJsonArray inner = value["anyOf"].toArray();
    inner << value["items"];
    for (const QJsonValue &entry : value["patternProperties"].toObject())
        inner << entry;
    for (const QJsonValue &entry : qAsConst(inner)) {
        if (const QJsonObject map = mapIn(entry.toObject()); !map.isEmpty())
            return map;
    }
    return {};
}

QJsonObject mapAt(const QString &path)
{
    QJsonObject map = schema();
    for (const QString &key : path.split('/', Qt::SkipEmptyParts))
        map = mapIn(map["properties"].toObject()[key].toObject());
    return map;
}

bool takesAnyKey(const QJsonObject &map)
{
    return map["additionalProperties"].isObject();
}

/// Words of the tables in their order; those that are texts only with \a isText.
QStringList columnWords(bool isText)
{
    QStringList words;
    const auto add = [&](const auto &table) {
        for (int i = 0; i < table.count; ++i) {
            const YamlColumn &column = table.words[i];
            if (column.word && (!isText || column.form == YamlForm::Text))
                words << column.word;
        }
    };
    add(kNodeYaml);
    add(kIndexYaml);
    add(kSubIndexYaml);
    add(kLineSignalYaml);
    add(kSpnYaml);
    add(kPgnYaml);
    return words;
}

QString code(const QJsonValue &value)
{
    return '`' + value.toVariant().toString() + '`';
}

class Page
{
public:
    QString text()
    {
        const QStringList lines = QString::fromUtf8(readFile(kTemplate)).split('\n');
        static const QRegularExpression hole("^\\{\\{(\\S*?)((?: \\S+)*)\\}\\}$");
        QString heading;
        for (const QString &line : lines) { // links go forward, too
            if (line.startsWith('#'))
                heading = line.section(' ', 1).toLower().replace(' ', '-');
            if (const auto found = hole.match(line); found.hasMatch())
                headings << qMakePair(mapAt(found.captured(1)), heading);
        }
        QStringList result;
        for (const QString &line : lines) {
            const auto found = hole.match(line);
            result << (found.hasMatch() ? table(found.captured(1), found.captured(2)) : line);
        }
        return result.join('\n').replace("$services$", services());
    }

    /// What the schema has and the page has not.
    QStringList missing(const QString &path = QString())
    {
        QStringList result;
        const QJsonObject map = mapAt(path);
        if (takesAnyKey(map)) // settings.md has them
            return result;
        const QJsonObject keys = map["properties"].toObject();
        for (auto key = keys.begin(); key != keys.end(); ++key) {
            const QString place = path + '/' + key.key();
            if (linkTo(map).isEmpty() || (told.contains(path) && !told[path].contains(key.key())))
                result << place;
            if (!mapIn(key.value().toObject()).isEmpty())
                result << missing(path.isEmpty() ? key.key() : place);
        }
        return result;
    }

private:
    static QString services()
    {
        QString table = "| service | number |\n| --- | --- |";
        for (const YamlWord &word : kServiceWords)
            table += QString("\n| `%1` | 0x%2 |")
                         .arg(word.word, QString::number(word.number, 16).toUpper());
        return table;
    }

    QString table(const QString &path, const QString &which)
    {
        const QJsonObject map = mapAt(path);
        const QJsonObject keys = map["properties"].toObject();
        QString rows;
        for (const QString &key : keysOf(path, keys, which.split(' ', Qt::SkipEmptyParts))) {
            told[path] << key;
            const QJsonObject value = keys[key].toObject();
            const bool isRequired = map["required"].toArray().contains(key);
            const QString base = value.contains("default") ? code(value["default"]) : QString();
            QString help = value["description"].toString();
            if (help.startsWith(kKept))
                help.remove(0, int(qstrlen(kKept)) + 2);
            rows +=
                "\n| " +
                QStringList({code(key), valueOf(key, value), isRequired ? "must be there" : base,
                             help.left(1).toUpper() + help.mid(1).replace('|', "\\|")})
                    .join(" | ") +
                " |";
        }
        if (rows.isEmpty())
            return {};
        return "| key | value | if left out | meaning |\n| --- | --- | --- | --- |" +
               rows.replace("|  |", "| |");
    }

    QStringList keysOf(const QString &path, const QJsonObject &keys, const QStringList &which)
    {
        QStringList result;
        for (const QString &word : which) {
            if (word.startsWith('-')) {
                const QJsonObject others = mapAt(word.mid(1))["properties"].toObject();
                for (const QString &key : others.keys()) {
                    if (keys[key] == others[key])
                        told[path] << key;
                }
            }
        }
        static const QStringList order = columnWords(false);
        QStringList others = order + keys.keys();
        others.removeDuplicates();
        for (const QString &word : which) {
            if (word != "..." && word != "kept" && !word.startsWith('-'))
                result << word;
        }
        for (const QString &key : qAsConst(others)) {
            const bool isKept = keys[key].toObject()["description"].toString().startsWith(kKept);
            if (keys.contains(key) && !told[path].contains(key) && !result.contains(key) &&
                which.contains(isKept ? "kept" : "..."))
                result << key;
        }
        return result;
    }

    QString linkTo(const QJsonObject &map) const
    {
        for (const auto &entry : headings) {
            if (entry.first == map)
                return '#' + entry.second;
        }
        return {};
    }

    QString valueOf(const QString &key, const QJsonObject &value) const
    {
        static const QSet<QString> texts(
            [words = columnWords(true)] { return QSet<QString>(words.begin(), words.end()); }());
        const QString reference = value["$ref"].toString().section('/', -1);
        const QJsonObject map = mapIn(value);
        if (reference == "flag")
            return "`true`, `false`";
        if (reference == "type")
            return "[data type](projects.md#data-types)";
        if (reference == "list" || reference == "texts")
            return reference == "list" ? "list" : "map of texts";
        if (reference == "text")
            return texts.contains(key) || key == YamlKeys::kMapAbout ? "text" : "value";
        if (value.contains("anyOf"))
            return choice(key, value["anyOf"].toArray());
        if (takesAnyKey(map))
            return "[settings](settings.md)";
        if (value.contains("items"))
            return map.isEmpty() ? "list" : "list of [maps](" + linkTo(map) + ")";
        if (!map.isEmpty())
            return "[map](" + linkTo(map) + ")";
        return plain(value);
    }

    QString choice(const QString &key, const QJsonArray &values) const
    {
        const QString first = valueOf(key, values[0].toObject());
        const QJsonObject second = values[1].toObject();
        const bool areWords = values[0].toObject()["enum"].toArray().size() > 1;
        const QString other = valueOf(key, second);
        return areWords ? first : first + (other.contains(" or ") ? ", " : " or ") + other;
    }

    static QString plain(const QJsonObject &value)
    {
        constexpr double kNoLimit = 0x7FFFFFFF;
        QStringList words;
        for (const QJsonValue &word : value["enum"].toArray()) {
            if (!word.isNull()) // NULL stands there, too
                words << code(word);
        }
        if (!words.isEmpty())
            return words.join(", ");
        if (value.contains("patternProperties"))
            return "map of texts";
        if (!value.contains("maximum"))
            return value["type"].isArray() ? "value" : "text";
        const QString low = value["minimum"].toVariant().toString();
        const double high = value["maximum"].toDouble();
        if (low == QString::number(high))
            return code(low);
        return high >= kNoLimit ? "number" : low + " to " + QString::number(high);
    }

    QVector<QPair<QJsonObject, QString>> headings; ///< by what stands below them
    QMap<QString, QStringList> told;
};

} // namespace

class tst_YamlKeys : public QObject
{
    Q_OBJECT

private slots:
    void pageIsCurrent()
    {
        Page page;
        const QString text = page.text();
        QCOMPARE(page.missing().join('\n'), QString());
        if (qEnvironmentVariableIsSet("GOLDEN_UPDATE")) {
            QFile file(kPage);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(text.toUtf8());
        }
        QVERIFY2(QString::fromUtf8(readFile(kPage)) == text,
                 "run tst_yamlkeys with GOLDEN_UPDATE=1");
    }
};

QTEST_APPLESS_MAIN(tst_YamlKeys)
#include "tst_yamlkeys.moc"
