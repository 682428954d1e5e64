// What a generated file hands on.
#include "generators/oldfile.h"

#include "support/logging.h"
#include "support/numbers.h"

#include <QFile>
#include <QFileInfo>
#include <QTextCodec>

namespace
{

constexpr qint64 kLongestFileBytes = 16 * 1024 * 1024;

constexpr char kUserSectionStart[] = "/* user-specific section: start */";
constexpr char kUserSectionEnd[] = "/* user-specific section: end */";

QString decoded(const QByteArray &bytes)
{
    QTextCodec::ConverterState state;
    const QString text =
        QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    const bool isUtf8 = state.invalidChars == 0 && state.remainingChars == 0;
    return isUtf8 ? text : QString::fromLatin1(bytes.constData(), bytes.size());
}

QStringList linesOf(const QString &text)
{
    QStringList lines = text.split(QLatin1Char('\n'));
    if (lines.last().isEmpty())
        lines.removeLast(); // the text ended with its last line
    return lines;
}

} // namespace

bool OldFile::read(const QString &file, QString *text)
{
    text->clear();
    const QFileInfo info(file);
    QFile source(file);
    // Opening a pipe could wait for ever.
    if (!info.isFile() || !info.isReadable())
        return true;
    if (info.size() > kLongestFileBytes || !source.open(QIODevice::ReadOnly)) {
        qCWarning(lcGenerator) << "too long for a generated file, or cannot be opened:" << file;
        return false;
    }
    const QByteArray bytes = source.readAll();
    *text = decoded(bytes);
    text->replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text->replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return bytes.size() == source.size();
}

QString OldFile::extractUserSection(const QString &text)
{
    QString section;
    bool isInside = false;
    const QStringList lines = linesOf(text);
    for (const QString &line : lines) {
        if (line.compare(QLatin1String(kUserSectionEnd), Qt::CaseInsensitive) == 0)
            isInside = false;
        else if (isInside)
            section += line + QLatin1Char('\n');
        else
            isInside = line.compare(QLatin1String(kUserSectionStart), Qt::CaseInsensitive) == 0;
    }
    return section;
}

QString OldFile::userSectionText(const QString &section)
{
    return QStringLiteral("/* do not modify comments starting with 'user-specific section:' */\n") +
           QLatin1String(kUserSectionStart) + QLatin1Char('\n') +
           (section.isEmpty() ? QStringLiteral("\n") : section) + QLatin1String(kUserSectionEnd) +
           QLatin1Char('\n');
}

quint32 OldFile::extractGenerationCounter(const QString &text)
{
    const QStringList lines = linesOf(text);
    for (const QString &line : lines) {
        if (!line.contains(QLatin1String("GEN_GENERATION_COUNT")))
            continue;
        QString number = line.section(QLatin1Char('\t'), -1);
        number.chop(2); // "ul"
        return Numbers::toUIntByPrefix(number);
    }
    return 0;
}
