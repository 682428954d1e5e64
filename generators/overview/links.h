// Places of the page, as links name them.
#pragma once

#include <QString>

namespace Overview
{

QString linkTo(quint8 line, quint16 index);
QString linkTo(quint8 line, quint16 index, quint8 sub);
QString linkToGroup(quint8 line, quint32 pgn);
QString linkToIdentifier(quint8 line, quint32 id); ///< of a raw CAN frame
QString linkToFrame(quint8 line, const QString &key);

} // namespace Overview
