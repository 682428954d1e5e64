// The words for what a project cannot hold of a DBC file.
#include "import/dbctally.h"

#include "support/printable.h"
#include "support/problems.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace
{

using Kind = DbcTally::Kind;
using Problems::Level;

/// "<count> <subject>[s] <rest>".
struct Words {
    Kind kind;
    Level level;
    const char *rule;
    const char *subject;
    const char *rest;
};

// clang-format off
constexpr Words kWords[] = { // order of the enum
    {Kind::LooseSignals, Level::Note, "dbc-message", "message",
     "of signals that are in no frame passed over"},
    {Kind::NoSize, Level::Warning, "dbc-message", "message",
     "with signals and no bytes passed over"},
    {Kind::LongGroup, Level::Warning, "dbc-message", "message",
     "of more than the 1785 bytes of the transport protocol passed over"},
    {Kind::LongFrame, Level::Warning, "dbc-message", "message",
     "of more than the 64 bytes of a CAN frame passed over"},
    {Kind::StandardIdentifier, Level::Warning, "dbc-identifier", "message",
     "with an identifier of 11 bits passed over, since messages of J1939 have 29"},
    {Kind::ShortExtendedIdentifier, Level::Warning, "dbc-identifier", "message",
     "with an identifier of 29 bits below 0x800 passed over, since a line of raw CAN has those of 11 bits there"},
    {Kind::GroupOfStack, Level::Note, "dbc-group", "message",
     "with a parameter group that the stack handles itself passed over"},
    {Kind::SameGroup, Level::Warning, "dbc-group", "message",
     "with parameter group and direction of another one passed over, since a line has a group once in each direction"},
    {Kind::NoRoom, Level::Warning, "dbc-message", "message",
     "passed over, since those before have as many elements as an import takes"},
    {Kind::NeedsCanFd, Level::Warning, "dbc-can-fd", "message",
     "of more than 8 bytes, for which the bus must be CAN FD"},
    {Kind::LongCycle, Level::Warning, "dbc-cycle", "message",
     "with a cycle time that is no number from 0 to 65535 ms; the nearest is taken"},
    {Kind::NoBits, Level::Warning, "dbc-signal", "signal",
     "without bits left out"},
    {Kind::BeyondFrame, Level::Warning, "dbc-signal", "signal",
     "beyond the end of its message left out"},
    {Kind::Multiplexed, Level::Warning, "dbc-multiplexed", "multiplexed signal",
     "left out, since a frame of a project always holds the same; the bits are a gap, and the description of the frame tells which"},
    {Kind::Overlapping, Level::Warning, "dbc-overlap", "signal",
     "with bits of one before left out; the description of the frame tells which"},
    {Kind::BigEndian, Level::Warning, "dbc-big-endian", "big-endian signal",
     "taken as single bytes or an octet string, the most significant byte first: a project has numbers in little-endian only"},
    {Kind::SignedAsUnsigned, Level::Warning, "dbc-sign", "signed signal",
     "taken as unsigned, since no signed type has as many bits; the description tells it"},
    {Kind::OctetString, Level::Note, "dbc-type", "signal",
     "taken as octet string, since no number has as many bits"},
    {Kind::InParts, Level::Warning, "dbc-type", "signal",
     "taken in several parts, the least significant one first, since no number has as many bits"},
    {Kind::Scaled, Level::Note, "dbc-scaling", "signal",
     "with factor, offset, limits or unit taken as raw number; the description tells them"},
    {Kind::StartValue, Level::Warning, "dbc-start-value", "signal",
     "with a start value that is no number of its bits; the start is 0"},
    {Kind::NameOfGap, Level::Note, "dbc-name", "signal",
     "with \"dummy\" in the name, by which projects know gaps; the project has \"Dummy\""},
    {Kind::NoSpn, Level::Note, "dbc-spn", "signal",
     "without SPN numbered from 520192 up, with numbers that are free"},
    {Kind::UnfitSpn, Level::Warning, "dbc-spn", "signal",
     "numbered anew, since the SPN is above 524287 or another signal of the message has it"},
    {Kind::NameValue, Level::Warning, "dbc-name-value", "attribute",
     "with a value that the NAME or address of a node cannot hold passed over"},
};
// clang-format on

constexpr bool wordsFollowTheEnum()
{
    for (size_t i = 0; i < std::size(kWords); ++i) {
        if (kWords[i].kind != static_cast<Kind>(i))
            return false;
    }
    return std::size(kWords) == static_cast<size_t>(Kind::Count);
}
static_assert(wordsFollowTheEnum(), "the kind is the place in the table");

} // namespace

void DbcTally::add(Kind kind, const DbcPlace &place, const DbcMessage &message,
                   const DbcSignal *signal)
{
    Entry &entry = entryOf(kind);
    if (entry.count++ > 0)
        return;
    entry.first = place;
    entry.name =
        signal ? QStringLiteral("%1 of %2").arg(quotedWord(signal->name), quotedWord(message.name))
               : quotedWord(message.name);
}

void DbcTally::add(Kind kind, const DbcNode &node, const QString &attribute)
{
    Entry &entry = entryOf(kind);
    if (entry.count++ > 0)
        return;
    entry.first = node.place;
    entry.name = QStringLiteral("%1 of %2").arg(quotedWord(attribute), quotedWord(node.name));
}

void DbcTally::tell(const QString &fileName) const
{
    std::vector<size_t> kinds;
    for (size_t kind = 0; kind < entries.size(); ++kind) {
        if (entries[kind].count > 0)
            kinds.push_back(kind);
    }
    std::stable_sort(kinds.begin(), kinds.end(), [this](size_t a, size_t b) {
        return entries[a].first.line < entries[b].first.line;
    });
    for (const size_t kind : kinds) {
        const Entry &entry = entries[kind];
        const Words &words = kWords[kind];
        const QString text =
            QStringLiteral("%1 %2%3 %4 (%5%6)")
                .arg(QString::number(entry.count), QLatin1String(words.subject),
                     entry.count == 1 ? QString() : QStringLiteral("s"), QLatin1String(words.rest),
                     entry.count == 1 ? QString() : QStringLiteral("the first is "), entry.name);
        Problems::report({words.level, fileName, entry.first.line, text,
                          QString::fromLatin1(words.rule), entry.first.column});
    }
}
