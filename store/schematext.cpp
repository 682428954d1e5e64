// The statements in a project's schema.
#include "store/schematext.h"

#include <QRegularExpression>
#include <QStringList>

namespace
{

bool isWordCharacter(QChar ch)
{
    return ch.unicode() >= 0x80 || ch.isLetterOrNumber() || ch == QLatin1Char('_') ||
           ch == QLatin1Char('$');
}

/// Past the comment or the text in quotes that ends with \a end, which is looked for from \a from
/// on; the end of \a sql closes it as well.
int behind(const QString &sql, const QString &end, int from)
{
    const int found = sql.indexOf(end, from);
    return found < 0 ? sql.size() : found + end.size();
}

/// The words of \a sql in lower case and its other characters, one each, without comments. Key
/// words of SQL that name nothing unless they stand in quotes are thereby what they look like.
QStringList tokens(const QString &sql)
{
    QStringList result;
    for (int at = 0; at < sql.size();) {
        const QChar ch = sql.at(at);
        const QStringRef pair = sql.midRef(at, 2);
        if (pair == QLatin1String("--")) {
            at = behind(sql, QStringLiteral("\n"), at);
        } else if (pair == QLatin1String("/*")) {
            at = behind(sql, QStringLiteral("*/"), at + 2);
        } else if (QStringLiteral("'\"`[").contains(ch)) {
            at = behind(sql, ch == QLatin1Char('[') ? QStringLiteral("]") : QString(ch), at + 1);
            result << QStringLiteral("quoted");
        } else if (isWordCharacter(ch)) {
            const int start = at;
            while (at < sql.size() && isWordCharacter(sql.at(at)))
                ++at;
            result << sql.mid(start, at - start).toLower();
        } else {
            if (!ch.isSpace())
                result << ch;
            ++at;
        }
    }
    return result;
}

bool isPlainTable(const QStringList &words)
{
    for (const char *word : {"check", "as", "select"}) {
        if (words.contains(QLatin1String(word)))
            return false;
    }
    return !words.join(QLatin1Char(' ')).contains(QLatin1String("default ("));
}

} // namespace

bool SchemaText::isPlain(const QString &sql)
{
    static const QRegularExpression plainIndex(
        QStringLiteral("^create (unique )?index NAME on NAME \\( COL(, COL)*\\) $")
            .replace(QLatin1String("COL"), QLatin1String("NAME (collate NAME )?((asc|desc) )?"))
            .replace(QLatin1String("NAME"), QLatin1String("[^ (),]+")));
    if (sql.isEmpty())
        return true;
    const QStringList words = tokens(sql);
    if (words.mid(0, 2) == QStringList{QStringLiteral("create"), QStringLiteral("table")})
        return isPlainTable(words);
    return plainIndex.match(words.join(QLatin1Char(' ')) + QLatin1Char(' ')).hasMatch();
}
