// Numbers of the signals of parameter groups.
#pragma once

#include "formats/dbcfile.h"
#include "import/dbctally.h"

#include <QSet>

/// Gives signals their suspect parameter numbers: that of the file, or a free one of those that
/// makers may use.
class DbcSpns
{
public:
    explicit DbcSpns(const DbcFile &content) : file(content) {}

    /// A number that is not free.
    void avoid(quint32 number) { used.insert(number); }
    void avoidThoseOf(const DbcMessage &message);

    /// To be called before the signals of a group.
    void beginGroup();
    /// Of the first element of the signal.
    quint32 numberOf(const DbcMessage &message, const DbcSignal &signal, DbcTally *tally);
    /// Of any other element.
    quint32 freeNumber();

private:
    /// 0 if the file tells none.
    quint32 statedNumber(const DbcSignal &signal) const;

    const DbcFile &file;
    QSet<quint32> used; ///< in the project and the file
    QSet<quint32> usedInGroup;
    quint32 next = kFirst;
    quint32 nextInGroup = kFirst; ///< when all are used

    static constexpr quint32 kFirst = 520192; // SAE J1939-71
    static constexpr quint32 kLast = 524287;
};
