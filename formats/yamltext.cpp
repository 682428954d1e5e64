// What can be said of a YAML file before it is parsed.
#include "formats/yamlreader.h"

#include <cstring>

namespace
{

constexpr uint kNoText = 0xFFFFFFFF;
constexpr int kHeadBytes = 64; ///< other kinds of files have a 0 here

/// Takes the next character of UTF-8; kNoText if there is none.
uint nextCharacter(const char *&at, const char *end)
{
    static constexpr uint kLeast[] = {0, 0x80, 0x800, 0x10000};
    const uchar first = uchar(*at);
    const int more = first < 0x80 ? 0 : first < 0xC2 ? -1 : first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
    if (more < 0 || first > 0xF4 || end - at <= more)
        return kNoText;
    uint value = more == 0 ? first : first & (0x3Fu >> more);
    for (int i = 1; i <= more; ++i) {
        if ((uchar(at[i]) & 0xC0) != 0x80)
            return kNoText;
        value = value << 6 | (uchar(at[i]) & 0x3Fu);
    }
    if (value < kLeast[more] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
        return kNoText;
    at += more + 1;
    return value;
}

/// Why a file cannot hold this character as it is; empty if it can.
QString whyNotPlain(uint character)
{
    const bool isControl = character < 0x20 || (character >= 0x7F && character <= 0x9F);
    if (character == 0x85 || character == 0x2028 || character == 0x2029)
        return QStringLiteral(
                   "the character U+%1 ends a line in some readers: write it as \"\\u%1\" "
                   "in quotes")
            .arg(character, 4, 16, QLatin1Char('0'));
    if ((isControl && character != '\t') || character == 0xFFFE || character == 0xFFFF)
        return QStringLiteral("the character U+%1 cannot stand in YAML: write it as \"\\u%1\" in "
                              "quotes")
            .arg(character, 4, 16, QLatin1Char('0'));
    return {};
}

/// The first character of a line that is none; columns count characters.
void checkLine(const char *at, const char *end, int line, YamlProblems *problems)
{
    const auto isPlain = [](char ch) { return (ch >= 0x20 && ch < 0x7F) || ch == '\t'; };
    for (int column = 1; at < end; ++column) {
        if (isPlain(*at)) {
            ++at;
            continue;
        }
        const uint character = nextCharacter(at, end);
        const QString reason =
            character == kNoText ? QStringLiteral("this is no UTF-8") : whyNotPlain(character);
        if (!reason.isEmpty())
            return problems->add("yaml-text", {line, column}, reason);
    }
}

bool isConflictMarker(const char *at, const char *end)
{
    if (end - at == 7)
        return !std::memcmp(at, "=======", 7);
    return end - at >= 8 && (!std::memcmp(at, "<<<<<<< ", 8) || !std::memcmp(at, ">>>>>>> ", 8));
}

/// Of files that are no UTF-8 from their first bytes on: one reason for all their lines.
QString whyNoUtf8(const QByteArray &text)
{
    const bool isMarked = text.startsWith("\xFF\xFE") || text.startsWith("\xFE\xFF");
    const bool hasWideAscii = text.size() > 1 && (text.at(0) == '\0' || text.at(1) == '\0');
    if (isMarked || hasWideAscii)
        return QStringLiteral("this is UTF-16: save the file as UTF-8");
    return text.left(kHeadBytes).contains('\0')
               ? QStringLiteral("this is no text but another kind of file")
               : QString();
}

} // namespace

bool YamlReader::checkText(const QByteArray &text, YamlProblems *problems)
{
    const char *at = text.constData();
    const char *const end = at + text.size();
    if (text.size() > YamlDocument::kMostBytes) {
        problems->add("yaml-bounds", {1, 1},
                      QStringLiteral("the file is larger than 64 MiB, which no project needs"));
        return false;
    }
    if (const QString reason = whyNoUtf8(text); !reason.isEmpty()) {
        problems->add("yaml-text", {1, 1}, reason);
        return false;
    }
    const int before = problems->count();
    for (int line = 1; at < end && !problems->isFull(); ++line) {
        const char *lineEnd = at;
        while (lineEnd < end && *lineEnd != '\n' && *lineEnd != '\r')
            ++lineEnd;
        if (lineEnd - at > YamlDocument::kMostBytesOfLine)
            problems->add("yaml-bounds", {line, 1},
                          QStringLiteral("the line is longer than 64 KiB: fold it"));
        else if (isConflictMarker(at, lineEnd))
            problems->add("yaml-syntax", {line, 1},
                          QStringLiteral("a merge left a conflict here that nobody has solved"));
        else
            checkLine(at, lineEnd, line, problems);
        const bool isPair = lineEnd + 1 < end && lineEnd[0] == '\r' && lineEnd[1] == '\n';
        at = lineEnd + (isPair ? 2 : 1);
    }
    return problems->count() == before;
}
