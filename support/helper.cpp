// Small text operations.
#include "support/helper.h"

#include "support/replacefile.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTextCodec>

namespace
{

constexpr int kLongestPlaceHolder = 9; // "${number}"

constexpr int kMibOfUtf8 = 106; // IANA, character sets
constexpr char kUtf8Mark[] = "\xEF\xBB\xBF";

} // namespace

QString Helper::substituteVariables(const QString &text, quint16 count, quint8 subindex)
{
    if (!text.contains(QLatin1Char('$')))
        return text; // as most names are
    QString result;
    int done = 0;
    // One pass, so that a name which holds the text of another place holder is not filled twice.
    for (int start = text.indexOf(QLatin1String("${")); start >= 0;
         start = text.indexOf(QLatin1String("${"), start + 2)) {
        const int end = start + text.midRef(start, kLongestPlaceHolder).indexOf(QLatin1Char('}'));
        if (end < start)
            continue;
        const QStringRef name = text.midRef(start + 2, end - start - 2);
        QString value;
        if (name == QLatin1String("number"))
            value = QString::number(count);
        else if (name == QLatin1String("index"))
            value = QStringLiteral("%1").arg(count, 4, 16, QLatin1Char('0'));
        else if (name == QLatin1String("sub"))
            value = QString::number(subindex);
        else
            continue;
        result += text.midRef(done, start - done) + value;
        done = end + 1;
    }
    return done == 0 ? text : result + text.midRef(done);
}

QByteArray Helper::withLineEnds(QByteArray text, const QString &ending)
{
    text.replace("\r\n", "\n").replace('\r', '\n');
    if (ending != QLatin1String("\n"))
        text.replace("\n", ending.toLatin1());
    return text;
}

bool Helper::modifyLineEnding(const QString &file, const QString &ending)
{
    if (!QFile::exists(file))
        return true;
    QByteArray old;
    if (!readWholeFile(file, old))
        return false;
    const QByteArray text = withLineEnds(old, ending);
    return text == old || ReplaceFile::write(file, text);
}

bool Helper::readWholeFile(const QString &file, QByteArray &bytes)
{
    QFile source(file);
    // A device file or a pipe could deliver bytes without an end.
    if (!QFileInfo(file).isFile() || !source.open(QIODevice::ReadOnly) ||
        source.size() > kMaxFileBytes)
        return false;
    bytes = source.readAll();
    return true;
}

QString Helper::decodeText(const QByteArray &bytes)
{
    QTextCodec *codec = QTextCodec::codecForUtfText(bytes, QTextCodec::codecForName("UTF-8"));
    QTextCodec::ConverterState state;
    const QString decoded = codec->toUnicode(bytes.constData(), bytes.size(), &state);
    const bool isDamaged = state.invalidChars != 0 || state.remainingChars != 0;
    // What a mark shows to have two or four bytes a character is no 8-bit text, damaged or not.
    if (!isDamaged || codec->mibEnum() != kMibOfUtf8)
        return decoded;
    const int start = bytes.startsWith(kUtf8Mark) ? int(qstrlen(kUtf8Mark)) : 0;
    codec = QTextCodec::codecForName("Windows-1252");
    return codec ? codec->toUnicode(bytes.constData() + start, bytes.size() - start)
                 : QString::fromLatin1(bytes.constData() + start, bytes.size() - start);
}

QString Helper::UTF8String2ArrayString(const QString &text)
{
    QStringList bytes;
    for (const char byte : text.toUtf8())
        bytes << QStringLiteral("0x%1").arg(static_cast<quint8>(byte), 2, 16, QLatin1Char('0'));
    return QLatin1Char('{') + bytes.join(QLatin1Char(',')) + QLatin1Char('}');
}
