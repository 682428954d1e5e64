// Numbers of the signals of parameter groups.
#include "import/dbcspns.h"

#include "formats/dbckeys.h"
#include "store/fillers.h"
#include "support/numbers.h"

namespace
{

constexpr quint32 kMostFillers = 0x10000; ///< of a group

} // namespace

void DbcSpns::avoidThoseOf(const DbcMessage &message)
{
    for (const DbcSignal &signal : message.signalList)
        avoid(statedNumber(signal));
}

void DbcSpns::beginGroup()
{
    usedInGroup.clear();
    nextInGroup = kFirst;
}

quint32 DbcSpns::numberOf(const DbcMessage &message, const DbcSignal &signal, DbcTally *tally)
{
    const quint32 stated = statedNumber(signal);
    if (stated > 0 && stated <= kLast && !usedInGroup.contains(stated)) {
        usedInGroup.insert(stated);
        return stated;
    }
    tally->add(stated == 0 ? DbcTally::Kind::NoSpn : DbcTally::Kind::UnfitSpn, message, signal);
    return freeNumber();
}

quint32 DbcSpns::freeNumber()
{
    while (next <= kLast && used.contains(next))
        ++next;
    if (next <= kLast) {
        usedInGroup.insert(next);
        return next++;
    }
    // A number may stand in several groups, once in each; those above are of fillers.
    while (usedInGroup.contains(nextInGroup)) {
        if (++nextInGroup == Fillers::kFirstNumber)
            nextInGroup += kMostFillers;
    }
    usedInGroup.insert(nextInGroup);
    return nextInGroup;
}

quint32 DbcSpns::statedNumber(const DbcSignal &signal) const
{
    const double number = file.attribute(signal, DbcKeys::kSpn).toDouble();
    return number > 0 && number < 0xFFFFFFFF ? static_cast<quint32>(number) : 0;
}
