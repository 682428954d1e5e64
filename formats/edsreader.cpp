// Reading of device descriptions: bytes to text, text to lines, lines to sections.
#include "formats/edsreader.h"

#include "support/helper.h"
#include "support/printable.h"

namespace
{

QString normalizedName(const QString &name)
{
    QString result;
    result.reserve(name.size());
    for (const QChar character : name) {
        if (!character.isSpace())
            result += character.toLower();
    }
    return result;
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
    const QChar *characters = text.constData();
    const auto isLineEnd = [characters](int place) {
        return characters[place] == QLatin1Char('\n') || characters[place] == QLatin1Char('\r');
    };
    for (int start = 0; start < text.size();) {
        int end = start;
        while (end < text.size() && !isLineEnd(end))
            ++end;
        ++lineNumber;
        readLine(QStringRef(&text, start, end - start));
        const bool isCrLf = end + 1 < text.size() && characters[end] == QLatin1Char('\r') &&
                            characters[end + 1] == QLatin1Char('\n');
        start = end + (isCrLf ? 2 : 1);
    }
    closeBlock();
}

const EdsSection *EdsReader::section(const QString &name) const
{
    const auto found = lastByName.constFind(normalizedName(name));
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
    for (QChar &character : decoded) {
        if (character.unicode() < 0x20 && character != QLatin1Char('\n') &&
            character != QLatin1Char('\r'))
            character = QLatin1Char(' ');
    }
    return decoded;
}

void EdsReader::readLine(const QStringRef &raw)
{
    const QStringRef line = raw.trimmed();
    if (line.isEmpty()) {
        // A block that follows the lines of a section ends here; one after a blank line goes on.
        if (!block.isBehindBlank)
            closeBlock();
        lastWasBlank = true;
        return;
    }
    if (line.startsWith(QLatin1String(";;"))) {
        readComment(raw.mid(raw.indexOf(QLatin1Char(';')) + 2));
    } else if (line[0] == QLatin1Char('[')) {
        readSectionHead(line);
        lastWasBlank = false;
    } else if (line[0] != QLatin1Char(';') && line[0] != QLatin1Char('#')) {
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
    section.name = normalizedName(line.mid(1, end < 0 ? -1 : end - 1).toString());
    section.line = lineNumber;
    lastByName.insert(section.name, allSections.size());
    allSections.append(section);
    closeBlock();
}

void EdsReader::readEntry(const QStringRef &line)
{
    closeBlock();
    const int split = line.indexOf(QLatin1Char('='));
    const QStringRef key = line.left(qMax(split, 0)).trimmed();
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
    allSections.last().entries.append({key, line.mid(split + 1).trimmed(), lineNumber});
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
