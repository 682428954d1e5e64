// The NAME and the address of a node of a DBC file.
#pragma once

#include "import/dbcframes.h"

#include <QString>
#include <QVector>

namespace DbcIdentity
{

/// A J1939 setting of a line.
struct Setting {
    const char *key;
    QString value; ///< null if the file tells none
};

/// All of them, in the order in which a check asks for them. \a ownNode is the name of a node in
/// the file; empty for none, whose settings have no value. Where the file does not tell the node's
/// address, or only the null address, it is that from which it sends its messages.
QVector<Setting> of(const DbcFile &file, const QString &ownNode,
                    const QVector<DbcFrames::Choice> &choices, DbcTally *tally);

/// The address among \a settings; -1 if the file tells none.
int addressIn(const QVector<Setting> &settings);

} // namespace DbcIdentity
