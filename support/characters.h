// Work on eight characters at a time: most texts of a project are short and plain, and go to many
// files.
#pragma once

#include <QString>

#include <cstring>

namespace Characters
{

constexpr size_t kAtOnce = 8;

/// Eight characters that follow each other. Operators work on each: comparisons give all bits of a
/// character or none.
using Eight = quint16 __attribute__((vector_size(kAtOnce * sizeof(quint16))));
using EightBytes = quint8 __attribute__((vector_size(kAtOnce)));

/// The first \a count characters of \a text, at most eight, and blanks after them.
inline Eight load(const QChar *text, size_t count = kAtOnce)
{
    Eight characters = Eight{} + quint16(' ');
    std::memcpy(&characters, text, count * sizeof *text);
    return characters;
}

inline bool isAnySet(Eight bits)
{
    quint64 halves[2];
    std::memcpy(halves, &bits, sizeof bits);
    return (halves[0] | halves[1]) != 0;
}

/// Control characters, and all beyond ASCII.
inline Eight areOdd(Eight characters)
{
    return Eight((characters < quint16(' ')) | (characters > quint16('~')));
}

/// Whether \a test is true of any of \a text; blanks are tested with a text of fewer than eight.
template <typename Test>
bool any(const QString &text, Test test)
{
    const QChar *next = text.constData();
    const QChar *const end = next + text.size();
    if (size_t(text.size()) < kAtOnce)
        return isAnySet(test(load(next, size_t(text.size()))));
    for (; end - next > qptrdiff(kAtOnce); next += kAtOnce) {
        if (isAnySet(test(load(next))))
            return true;
    }
    return isAnySet(test(load(end - kAtOnce))); // some of them a second time
}

/// Writes the low bytes of \a characters and tells all bits that were set in any of them.
inline Eight narrowed(Eight characters, char *place)
{
    const auto bytes = __builtin_convertvector(characters, EightBytes);
    std::memcpy(place, &bytes, sizeof bytes);
    return characters;
}

/// Writes \a text; up to eight bytes more than it has are written. False if it is not ASCII.
inline bool writeAscii(const QString &text, char *place)
{
    const QChar *next = text.constData();
    const auto size = size_t(text.size());
    if (size < kAtOnce)
        return !isAnySet(narrowed(load(next, size), place) & quint16(0xFF80));
    Eight seen{};
    const QChar *const last = next + size - kAtOnce;
    for (; next < last; next += kAtOnce, place += kAtOnce)
        seen |= narrowed(load(next), place);
    // Some of them a second time.
    seen |= narrowed(load(last), place - (next - last));
    return !isAnySet(seen & quint16(0xFF80));
}

} // namespace Characters
