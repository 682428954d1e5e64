// What a generated file hands on.
#include "generators/oldfile.h"

#include "support/logging.h"
#include "support/numbers.h"
#include "support/problems.h"
#include "support/runfiles.h"

#include <QByteArrayList>
#include <QFile>
#include <QFileInfo>
#include <QTextCodec>

namespace
{

constexpr qint64 kLongestFileBytes = 16 * 1024 * 1024;

constexpr char kUserSectionStart[] = "/* user-specific section: start */";
constexpr char kUserSectionEnd[] = "/* user-specific section: end */";

QByteArrayList linesOf(const QByteArray &text)
{
    QByteArrayList lines = text.split('\n');
    if (lines.last().isEmpty())
        lines.removeLast(); // the text ended with its last line
    return lines;
}

QByteArray withoutBlanks(const QByteArray &line)
{
    return line.simplified().replace(' ', "");
}

/// An editor may have indented the line or changed its blanks.
bool isMarker(const QByteArray &line, const char *marker)
{
    return line.contains('*') &&
           withoutBlanks(line).compare(withoutBlanks(marker), Qt::CaseInsensitive) == 0;
}

} // namespace

bool OldFile::read(const QString &file, QByteArray *text)
{
    text->clear();
    const QFileInfo info(file);
    QFile source(file);
    // Opening a pipe could wait for ever.
    if (!info.isFile())
        return true;
    if (info.size() > kLongestFileBytes || !source.open(QIODevice::ReadOnly)) {
        qCWarning(lcGenerator) << "too long for a generated file, or cannot be opened:" << file;
        return false;
    }
    RunFiles::noteRead(file);
    *text = source.readAll();
    const bool isWhole = text->size() == source.size();
    text->replace("\r\n", "\n");
    text->replace('\r', '\n');
    return isWhole;
}

bool OldFile::readOrTell(const QString &file, QByteArray *text)
{
    if (read(file, text))
        return true;
    const bool isLong = QFileInfo(file).size() > kLongestFileBytes;
    Problems::error("output-not-written", file,
                    isLong ? QStringLiteral("is larger than 16 MiB and not replaced, since it is "
                                            "not looked through for what you wrote into it; move "
                                            "it to another name")
                           : QStringLiteral("cannot be read and is not replaced, since you may "
                                            "have written into it; make it readable"));
    return false;
}

QByteArray OldFile::extractUserSection(const QByteArray &text)
{
    QByteArray section;
    bool isInside = false;
    const QByteArrayList lines = linesOf(text);
    for (const QByteArray &line : lines) {
        if (isMarker(line, kUserSectionEnd))
            isInside = false;
        else if (isInside)
            section += line + '\n';
        else
            isInside = isMarker(line, kUserSectionStart);
    }
    return section;
}

QByteArray OldFile::userSectionText(const QByteArray &section)
{
    return QByteArray("/* do not modify comments starting with 'user-specific section:' */\n") +
           kUserSectionStart + '\n' + (section.isEmpty() ? QByteArray("\n") : section) +
           kUserSectionEnd + '\n';
}

QString OldFile::readable(const QByteArray &section)
{
    QTextCodec::ConverterState state;
    const QString text =
        QTextCodec::codecForName("UTF-8")->toUnicode(section.constData(), section.size(), &state);
    const bool isUtf8 = state.invalidChars == 0 && state.remainingChars == 0;
    return isUtf8 ? text : QString::fromLatin1(section.constData(), section.size());
}

OldFile::Markers OldFile::findMarkers(const QByteArray &text)
{
    Markers found;
    int start = 0; // line of the section that is open; a start inside of it is the user's text
    const QByteArrayList lines = linesOf(text);
    for (int number = 1; number <= lines.size(); ++number) {
        const QByteArray &line = lines.at(number - 1);
        const bool isEnd = isMarker(line, kUserSectionEnd);
        if (!isEnd && !isMarker(line, kUserSectionStart))
            continue;
        found.isAny = true;
        if (isEnd && start == 0) {
            found.fault = Markers::Fault::NoStart;
            found.line = number;
            return found;
        }
        start = isEnd ? 0 : start == 0 ? number : start;
    }
    if (start != 0) {
        found.fault = Markers::Fault::NoEnd;
        found.line = start;
    }
    return found;
}

bool OldFile::hasWholeSections(const QString &file)
{
    QByteArray text;
    (void)read(file, &text); // then there are none
    const Markers markers = findMarkers(text);
    if (markers.fault == Markers::Fault::None)
        return true;
    const bool isStart = markers.fault == Markers::Fault::NoEnd;
    const QString what =
        isStart ? QStringLiteral("this start of a user-specific section has no end, so "
                                 "the file is not replaced; put the line \"%1\" "
                                 "after your text")
                : QStringLiteral("this end of a user-specific section has no start, "
                                 "so the file is not replaced; put the line \"%1\" "
                                 "before your text");
    Problems::error("user-section", file,
                    what.arg(QLatin1String(isStart ? kUserSectionEnd : kUserSectionStart)),
                    markers.line);
    return false;
}

quint32 OldFile::extractGenerationCounter(const QByteArray &text)
{
    const QByteArrayList lines = linesOf(text);
    for (const QByteArray &line : lines) {
        if (!line.contains("GEN_GENERATION_COUNT"))
            continue;
        QByteArray number = line.mid(line.lastIndexOf('\t') + 1);
        number.chop(2); // "ul"
        return Numbers::toUIntByPrefix(QString::fromLatin1(number));
    }
    return 0;
}
