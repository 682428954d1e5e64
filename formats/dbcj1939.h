// What the identifiers and attributes of a DBC file mean in J1939.
#pragma once

#include "formats/dbcfile.h"
#include "support/candatatype.h"

namespace DbcJ1939
{

/// The parts of an identifier of 29 bits (SAE J1939-21, 5.2).
struct Identifier {
    quint8 priority = 0;
    quint32 group = 0; ///< PGN; of PDU1, which is sent to one address, its low byte is 0
    quint8 source = 0;
    quint8 destination = 0xFF; ///< the global address but for PDU1
    bool isPdu1 = false;
};

/// Files have addresses as placeholders: messages of two files are the same if their group is.
Identifier identifierOf(quint32 identifier);

/// Does the file say so of the network, or of any of its messages? Many files of J1939 do not.
bool isJ1939(const DbcFile &file);

/// Is it likely, where the file says nothing of it? All its identifiers have 29 bits then, and it
/// has attributes that only networks of J1939 have: numbers of signals, or parts of NAMEs.
bool isLikelyJ1939(const DbcFile &file);

/// Has the file messages, and all of them identifiers of 29 bits?
bool isAllExtended(const DbcFile &file);

/// Is that a message of J1939: by its own attribute, else, where it has none, by that of the
/// network?
bool isJ1939(const DbcFile &file, const DbcMessage &message);

/// A text whose end is in the text.
struct VariableText {
    CAN::CANopenDataType type;
    J1939::SigType sigType;
    const char *end;

    /// What the comment of a signal of at most so many \a bits ends with.
    QString remark(quint32 bits) const;
};

/// Null if the type is none of them.
const VariableText *variableText(CAN::CANopenDataType type);

/// The one that the comment of \a signal tells of; null if it tells of none.
const VariableText *variableText(const DbcSignal &signal);

} // namespace DbcJ1939
