// CAN identifiers of raw CAN lines.
#include "store/objectdatabase_p.h"

QList<quint32> ObjectDataBase::getCANIDs(quint8 line, quint8 direction) const
{
    QList<quint32> identifiers;
    const bool both = direction == 0;
    Statement statement(*d,
                        QStringLiteral("select id from %1%2 order by id asc")
                            .arg(Schema::table("CANIDs", line),
                                 both ? QString() : QStringLiteral(" where direction = ?")),
                        both ? Cells() : Cells{direction});
    while (statement.next())
        identifiers << statement.value(0).toUInt();
    return identifiers;
}
