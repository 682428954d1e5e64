// Errors in the YAML form.
#include "store/yaml/yamlcontext.h"

#include "store/yaml/yamlcolumns.h"
#include "support/editdistance.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>
#include <limits>

namespace
{

constexpr int kLongestWord = 100; ///< that is compared to others, or told
constexpr int kMostToTell = 8;    ///< of words that can stand for a number

/// "a number from 0 to 255", in the base of what was \a written.
QString range(qint64 low, qint64 high, const QString &written)
{
    if (low == std::numeric_limits<qint64>::min())
        return QStringLiteral("a whole number");
    const bool isHex = low >= 0 && written.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    const auto spelled = [isHex](qint64 bound) {
        return isHex ? QStringLiteral("0x") + QString::number(bound, 16).toUpper()
                     : QString::number(bound);
    };
    return QStringLiteral("a number from %1 to %2").arg(spelled(low), spelled(high));
}

/// The word of the column that a database and a text project name \a key; empty if there is none.
template <class Record>
QString wordOfColumn(const YamlTable<Record> &table, const QString &key)
{
    for (int i = 0; i < table.count; ++i) {
        if (key == QLatin1String(table.words[i].column))
            return QString::fromLatin1(table.words[i].word);
    }
    return QString();
}

/// Who knows the columns of the text form writes "accesstype" first.
QString meantKey(const QString &key, const QStringList &known)
{
    for (const QString &word :
         {wordOfColumn(kSubIndexYaml, key), wordOfColumn(kIndexYaml, key),
          wordOfColumn(kNodeYaml, key), wordOfColumn(kPgnYaml, key), wordOfColumn(kSpnYaml, key)}) {
        if (!word.isEmpty() && word != key && known.contains(word))
            return QStringLiteral("; did you mean \"%1\"").arg(word);
    }
    return didYouMean(key, known);
}

} // namespace

QString YamlContext::cut(const QString &word)
{
    return word.size() <= kLongestWord ? word : word.left(kLongestWord) + QStringLiteral("...");
}

QString YamlContext::quoted(const QString &word)
{
    return QLatin1Char('"') + cut(word) + QLatin1Char('"');
}

void YamlContext::wrongValue(YamlNode node, const QString &text)
{
    problems->add("yaml-value", node.place(), text);
}

void YamlContext::wrongKind(YamlNode node, const QString &wanted, const char *hint)
{
    if (node.kind() == YamlNode::Kind::None || problems->isFull())
        return;
    const char *found = node.isMap() ? "a map" : node.isList() ? "a list" : "a single value";
    const QString what = node.isMissing() ? QStringLiteral("nothing") : QLatin1String(found);
    problems->add("yaml-wrong-kind", node.place(),
                  QStringLiteral("%1, but here is %2").arg(wanted, what) + QLatin1String(hint));
}

void YamlContext::unknownKey(YamlNode key, const QString &where, const QStringList &known)
{
    if (problems->isFull())
        return; // to look for the word that was meant takes time
    const QString word = cut(key.text());
    problems->add("yaml-unknown-key", key.place(),
                  QStringLiteral("there is no key %1 in %2").arg(quoted(word), where) +
                      meantKey(word, known));
}

void YamlContext::misplacedKey(YamlNode key, const QString &where, const QString &home)
{
    problems->add("yaml-unknown-key", key.place(),
                  QStringLiteral("there is no key %1 in %2; it belongs to %3")
                      .arg(quoted(key.text()), where, home));
}

void YamlContext::doubledNumber(YamlNode key, const QString &what, int first)
{
    problems->add("yaml-doubled-number", key.place(),
                  QStringLiteral("%1 %2 stands here a second time; line %3 has it first")
                      .arg(what, cut(key.text()))
                      .arg(first));
}

bool YamlContext::isMap(YamlNode node, const QString &wanted)
{
    if (node.isMap())
        return true;
    static const QRegularExpression key(QStringLiteral("\\A[A-Za-z][A-Za-z0-9_-]*:"));
    const bool lacksBlank = node.isScalar() && node.isPlain() && key.match(node.text()).hasMatch();
    wrongKind(node, wanted, lacksBlank ? "; a blank comes after each \":\"" : "");
    return false;
}

bool YamlContext::isList(YamlNode node, const QString &wanted)
{
    if (!node.isList())
        wrongKind(node, wanted);
    return node.isList();
}

std::optional<QString> YamlContext::text(YamlNode node, const QString &what)
{
    if (node.kind() == YamlNode::Kind::None)
        return std::nullopt;
    if (!node.isScalar()) {
        wrongKind(node, what + QStringLiteral(" is a single value"));
        return std::nullopt;
    }
    if (node.isMissing()) {
        wrongValue(node, what + QStringLiteral(" has no value; write \"\" for an empty text"));
        return std::nullopt;
    }
    return node.text();
}

std::optional<qint64> YamlContext::number(YamlNode node, qint64 low, qint64 high,
                                          const QString &what)
{
    const std::optional<QString> written = text(node, what);
    if (!written)
        return std::nullopt;
    const std::optional<qint64> value = YamlNumber::parse(*written);
    if (value && *value >= low && *value <= high)
        return value;
    wrongValue(
        node,
        QStringLiteral("%1 is %2, not %3").arg(what, range(low, high, *written), quoted(*written)));
    return std::nullopt;
}

std::optional<qint64> YamlContext::word(YamlNode node, const YamlWords &words, qint64 low,
                                        qint64 high, const QString &what)
{
    const std::optional<QString> written = text(node, what);
    if (!written)
        return std::nullopt;
    for (const YamlWord &row : words) {
        if (*written == QLatin1String(row.word))
            return row.number;
    }
    const std::optional<qint64> value = YamlNumber::parse(*written);
    if (value && *value >= low && *value <= high)
        return value;
    if (value && words.count > kMostToTell) {
        wrongValue(node, QStringLiteral("%1 is a word or %2, not %3")
                             .arg(what, range(low, high, *written), quoted(*written)));
        return std::nullopt;
    }
    QStringList known;
    for (const YamlWord &row : words)
        known << QString::fromLatin1(row.word);
    noSuchWord(node, what, *written, known);
    return std::nullopt;
}

void YamlContext::noSuchWord(YamlNode node, const QString &what, const QString &text,
                             const QStringList &words)
{
    if (problems->isFull())
        return;
    QString meant = didYouMean(cut(text), words);
    const auto isMeant = [&text](const QString &word) {
        return text.size() > 2 && word.startsWith(text, Qt::CaseInsensitive);
    };
    const auto longer = std::find_if(words.cbegin(), words.cend(), isMeant);
    if (meant.isEmpty() && longer != words.cend())
        meant = QStringLiteral("; did you mean \"%1\"").arg(*longer);
    const QString some = words.size() <= kMostToTell ? QStringLiteral("; it is one of ")
                                                     : QStringLiteral("; some are ");
    wrongValue(node,
               QStringLiteral("there is no %1 %2").arg(what, quoted(text)) +
                   (meant.isEmpty() ? some + words.mid(0, kMostToTell).join(QStringLiteral(", "))
                                    : meant));
}

QVector<YamlContext::Numbered> YamlContext::numbered(YamlNode map, qint64 low, qint64 high,
                                                     const QString &what, const YamlWords &words)
{
    return numbered(map.entries(), low, high, what, words);
}

QVector<YamlContext::Numbered> YamlContext::numbered(const QVector<YamlNode::Entry> &entries,
                                                     qint64 low, qint64 high, const QString &what,
                                                     const YamlWords &words)
{
    QVector<Numbered> result;
    QHash<qint64, int> lines;
    for (const YamlNode::Entry &entry : entries) {
        if (problems->isFull())
            break;
        const std::optional<qint64> key = words.count > 0 ? word(entry.key, words, low, high, what)
                                                          : number(entry.key, low, high, what);
        if (!key)
            continue;
        if (const int line = lines.value(*key)) {
            doubledNumber(entry.key, what, line);
            continue;
        }
        lines.insert(*key, qMax(1, entry.key.place().line));
        result.append({*key, entry.key, entry.value});
    }
    return result;
}

bool YamlContext::hasRoomFor(int records, YamlNode node)
{
    const bool hadRoom = recordCount <= kMostRecords;
    recordCount += records;
    if (recordCount <= kMostRecords)
        return true;
    if (hadRoom)
        problems->add("yaml-bounds", node.place(),
                      QStringLiteral("from here on the project has more than %1 subindices, frames "
                                     "and signals")
                          .arg(kMostRecords));
    return false;
}

bool YamlNumber::isValue(const QString &text)
{
    static const QRegularExpression node(QStringLiteral("\\A\\$NODEID *\\+ *(.+)\\z"),
                                         QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = node.match(text);
    return parse(match.hasMatch() ? match.captured(1) : text).has_value();
}

std::optional<qint64> YamlNumber::parse(const QString &text)
{
    const bool isNegative = text.startsWith(QLatin1Char('-'));
    const bool isSigned = isNegative || text.startsWith(QLatin1Char('+'));
    QString digits = isSigned ? text.mid(1) : text;
    const bool isHex = digits.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    if (isHex)
        digits = digits.mid(2);
    if (digits.isEmpty() || !digits.at(0).isLetterOrNumber())
        return std::nullopt; // a second sign, or a blank, which Qt would take
    bool ok = false;
    if (isNegative)
        digits.prepend(QLatin1Char('-'));
    const qlonglong number = digits.toLongLong(&ok, isHex ? 16 : 10);
    return ok ? std::optional<qint64>(number) : std::nullopt;
}
