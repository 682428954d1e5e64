// Places of the page.
#include "generators/overview/links.h"

#include "support/numbers.h"

namespace
{

QString hex(quint32 number, int digits)
{
    return QLatin1String("0x") + Numbers::toHex(number, digits).toUpper();
}

} // namespace

QString Overview::linkTo(quint8 line, quint16 index)
{
    return QStringLiteral("#%1/%2").arg(QString::number(line), hex(index, 4));
}

QString Overview::linkTo(quint8 line, quint16 index, quint8 sub)
{
    return linkTo(line, index) + QLatin1Char(':') + QString::number(sub);
}

QString Overview::linkToGroup(quint8 line, quint32 pgn)
{
    return QStringLiteral("#%1/pgn/%2").arg(QString::number(line), hex(pgn, 4));
}

QString Overview::linkToIdentifier(quint8 line, quint32 id)
{
    return QStringLiteral("#%1/can/%2").arg(QString::number(line), hex(id, 3));
}

QString Overview::linkToFrame(quint8 line, const QString &key)
{
    return QStringLiteral("#%1/frame/%2").arg(QString::number(line), key);
}
