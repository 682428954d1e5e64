// Reading of device descriptions: bytes to text, text to lines, lines to sections.
#include "formats/edsreader.h"

#include "support/helper.h"
#include "support/printable.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr ushort kFirstPrintable = 0x20;
constexpr int kUsualEntries = 8; // of a section

QChar lowerCase(QChar character)
{
    const ushort code = character.unicode();
    if (code >= 0x80)
        return character.toLower();
    return code >= 'A' && code <= 'Z' ? QChar(ushort(code - 'A' + 'a')) : character;
}

QString normalizedName(const QStringRef &name)
{
    QString result(name.size(), Qt::Uninitialized);
    QChar *end = result.data();
    for (const QChar character : name) {
        if (!character.isSpace())
            *end++ = lowerCase(character);
    }
    result.truncate(int(end - result.constData()));
    return result;
}

/// As QStringRef::trimmed() does, which is felt in a file of many short lines.
QStringRef trimmed(const QStringRef &text, int from, int end)
{
    const QChar *const characters = text.constData();
    while (from < end && characters[from].isSpace())
        ++from;
    while (end > from && characters[end - 1].isSpace())
        --end;
    return {text.string(), text.position() + from, end - from};
}

} // namespace

bool EdsReader::read(const QString &fileName)
{
    QByteArray bytes;
    const bool isRead = Helper::readWholeFile(fileName, bytes);
    parse(bytes, fileName);
    return isRead;
}

void EdsReader::parse(const QByteArray &bytes, const QString &origin)
{
    file = origin;
    problems.begin(origin);
    allSections.clear();
    lastByName.clear();
    block = Block();
    lineNumber = 0;
    lastWasBlank = true;

    text = decode(bytes);
    const QChar *const textEnd = text.constEnd();
    for (const QChar *start = text.constBegin(); start < textEnd;) {
        const QChar *end = start;
        while (end->unicode() >= kFirstPrintable) // else a line end, or the zero after the text
            ++end;
        ++lineNumber;
        readLine(QStringRef(&text, int(start - text.constBegin()), int(end - start)));
        const bool isCrLf = end->unicode() == '\r' && end[1].unicode() == '\n';
        start = end + (isCrLf ? 2 : 1);
    }
    closeBlock();
}

const EdsSection *EdsReader::section(const QString &name) const
{
    const auto found = lastByName.constFind(normalizedName(QStringRef(&name)));
    return found == lastByName.constEnd() ? nullptr : &allSections[*found];
}

void EdsReader::note(const char *rule, int line, const std::function<QString()> &words) const
{
    problems.add(rule, line, words);
}

void EdsReader::tellProblems() const
{
    problems.tell();
}

QString EdsReader::decode(const QByteArray &bytes)
{
    QString decoded = Helper::decodeText(bytes);
    QChar *characters = decoded.data();
    for (int i = 0; i < decoded.size(); ++i) {
        const ushort code = characters[i].unicode();
        const bool isControl = code < kFirstPrintable && code != '\n' && code != '\r';
        characters[i] = QChar(isControl ? ushort(' ') : code);
    }
    return decoded;
}

void EdsReader::readLine(const QStringRef &raw)
{
    const QStringRef line = trimmed(raw, 0, raw.size());
    if (line.isEmpty()) {
        // A block that follows the lines of a section ends here; one after a blank line goes on.
        if (!block.isBehindBlank)
            closeBlock();
        lastWasBlank = true;
        return;
    }
    switch (line[0].unicode()) {
    case '[':
        readSectionHead(line);
        lastWasBlank = false;
        break;
    case ';':
        if (line.size() > 1 && line[1] == QLatin1Char(';'))
            readComment(raw.mid(raw.indexOf(QLatin1Char(';')) + 2));
        break;
    case '#':
        break;
    default:
        readEntry(line);
        lastWasBlank = false;
    }
}

void EdsReader::readSectionHead(const QStringRef &line)
{
    if (!block.isBehindBlank)
        closeBlock();
    const int end = line.indexOf(QLatin1Char(']'));
    const QStringRef rest = line.mid(end + 1).trimmed();
    if (end < 0)
        note("eds-line", lineNumber, [&] {
            return quotedWord(line.toString()) +
                   QLatin1String(" begins a section and has no ], and is read as if it had one at "
                                 "its end");
        });
    else if (!rest.isEmpty() && rest[0] != QLatin1Char(';') && rest[0] != QLatin1Char('#'))
        note("eds-line", lineNumber, [&] {
            return quotedWord(rest.toString()) +
                   QLatin1String(" after the name of the section is passed over: put it on a line "
                                 "of its own");
        });

    EdsSection section;
    section.name = normalizedName(line.mid(1, end < 0 ? -1 : end - 1));
    section.line = lineNumber;
    section.entries.reserve(kUsualEntries);
    lastByName.insert(section.name, allSections.size());
    allSections.append(std::move(section));
    closeBlock();
}

void EdsReader::readEntry(const QStringRef &line)
{
    closeBlock();
    const QChar *const sign = std::find(line.begin(), line.end(), QLatin1Char('='));
    const int split = int(sign - line.begin());
    const QStringRef key = sign == line.end() ? QStringRef() : trimmed(line, 0, split);
    if (key.isEmpty() || allSections.isEmpty()) {
        const bool isKey = !key.isEmpty();
        note("eds-line", lineNumber, [&] {
            return quotedWord(line.toString()) +
                   (isKey ? QLatin1String(" stands before the first section, and is passed over")
                          : QLatin1String(" is neither [section] nor key=value, and is passed "
                                          "over: begin it with ; if it is a comment"));
        });
        return;
    }
    allSections.last().entries.append({key, trimmed(line, split + 1, line.size()), lineNumber});
}

void EdsReader::readComment(const QStringRef &line)
{
    if (block.isOpen) {
        block.text += QLatin1Char('\n');
    } else {
        block.isOpen = true;
        block.isBehindBlank = lastWasBlank;
    }
    block.text += line;
}

/// Gives the open block to the section that was begun last. A block at the file's start stays open
/// until there is one.
void EdsReader::closeBlock()
{
    if (!block.isOpen || allSections.isEmpty())
        return;
    QString &comment = allSections.last().comment;
    if (!comment.isEmpty())
        comment += QLatin1Char('\n');
    comment += block.text;
    block = Block();
}
