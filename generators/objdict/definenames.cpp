// Names of defines.
#include "generators/objdict/definenames.h"

#include <QStringBuilder>

#include <array>
#include <charconv>

namespace
{

/// What becomes of an ASCII character in a name: letters of upper case, "_" for what cannot stand
/// there, blanks among them.
constexpr auto kNameCharacters = [] {
    std::array<char, 0x80> characters{};
    for (size_t code = 0; code < characters.size(); ++code) {
        const auto letter = static_cast<char>(code);
        const bool isLower = letter >= 'a' && letter <= 'z';
        const bool isFit = (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9');
        characters[code] = isLower ? static_cast<char>(letter - 'a' + 'A') : isFit ? letter : '_';
    }
    return characters;
}();

/// One "_" for a run of them.
QString withoutRuns(QString name)
{
    constexpr int kLongestRun = 7;
    static const QString shortestRun = QStringLiteral("__");
    if (!name.contains(shortestRun))
        return name;
    for (int length = kLongestRun; length > 1; --length)
        name.replace(QString(length, QLatin1Char('_')), QStringLiteral("_"));
    return name;
}

QString withCount(const QString &name, const char *separator, quint32 count)
{
    char digits[10];
    const char *end = std::to_chars(digits, digits + sizeof digits, count).ptr;
    return name % QLatin1String(separator) % QLatin1String(digits, int(end - digits));
}

} // namespace

DefineNames::DefineNames(const QString &prefix)
{
    if (!prefix.isEmpty())
        return;
    claimShared(QStringLiteral("S_NUMBER_OF_ENTRIES"), 0);
    claimShared(QStringLiteral("GEN_INDICES_H"), 1);
}

bool DefineNames::isTaken(const QString &name, quint32 value) const
{
    return isTaken(names.value(name), value);
}

std::optional<QString> DefineNames::claimCounted(const QString &text, quint32 value,
                                                 const char *separator)
{
    Name &name = names[text];
    const bool isNew = !isTaken(name, value);
    name.isUsed = true;
    if (isNew && name.isWritten)
        return std::nullopt;
    if (isNew) {
        name.isWritten = true;
        name.value = value;
        return text;
    }
    // Deliberate: the count goes on until the name is new, since a name that was given with its
    // digits would lose its define otherwise; held by tst_golden.
    while (true) {
        const QString counted = withCount(text, separator, ++name.repeats);
        Name &next = names[counted]; // leaves the others where they are
        if (next.isWritten)
            continue;
        next.isWritten = true;
        next.value = value;
        return counted;
    }
}

std::optional<QString> DefineNames::claimShared(const QString &text, quint32 value)
{
    Name &name = names[text];
    if (name.isWritten)
        return std::nullopt;
    name.isWritten = true;
    name.value = value;
    return text;
}

bool DefineNames::isDefined(const QString &name, quint32 value) const
{
    const Name known = names.value(name);
    return known.isWritten && known.value == value;
}

QString DefineNames::onlyNameCharacters(QString text)
{
    for (QChar &character : text) {
        const ushort code = character.unicode();
        character = QLatin1Char(code < kNameCharacters.size() ? kNameCharacters[code] : '_');
    }
    return text;
}

QString DefineNames::withKind(const char *kind, const QString &text)
{
    QString name(static_cast<int>(qstrlen(kind)) + text.size(), Qt::Uninitialized);
    QChar *place = name.data();
    for (const char *letter = kind; *letter != '\0'; ++letter)
        *place++ = QLatin1Char(*letter);
    char former = '_';
    bool hasRun = false;
    for (const QChar character : text) {
        const ushort code = character.unicode();
        // Upper case comes first: that of a sharp s is two letters.
        if (code >= kNameCharacters.size())
            return withoutRuns(onlyNameCharacters(QLatin1String(kind) + text.toUpper()));
        const char fit = kNameCharacters[code];
        hasRun |= fit == '_' && former == '_';
        *place++ = QLatin1Char(fit);
        former = fit;
    }
    return hasRun ? withoutRuns(name) : name;
}
