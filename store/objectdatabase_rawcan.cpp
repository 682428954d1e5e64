// CAN identifiers of raw lines and their data elements.
#include "store/objectdatabase_frames_p.h"

using Identifiers = Frames<CanIdData>;

QList<quint32> ObjectDataBase::getCANIDs(quint8 line, quint8 direction) const
{
    return Identifiers(*d).numbers(line, direction);
}

bool ObjectDataBase::existsCANID(quint8 line, quint32 id, quint8 direction) const
{
    CANID data;
    return getCANIDData(line, id, direction, data);
}

bool ObjectDataBase::getCANIDData(quint8 line, quint32 id, quint8 direction, CANID &data) const
{
    return Identifiers(*d).get(line, {id, direction}, data);
}

QString ObjectDataBase::getCANIDName(quint8 line, quint32 id, quint8 direction) const
{
    CANID data;
    (void)getCANIDData(line, id, direction, data); // one that is not there has no name
    return data.name;
}

bool ObjectDataBase::addCANID(quint8 line, quint32 id, const CANID &data)
{
    return Identifiers(*d).add(line, id, data);
}

bool ObjectDataBase::delCANID(quint8 line, quint32 id, quint8 direction)
{
    return Identifiers(*d).del(line, {id, direction});
}

QList<quint32> ObjectDataBase::getDataElements(quint8 line, quint32 id, quint8 direction) const
{
    return Identifiers(*d).signalNumbers(line, {id, direction});
}

bool ObjectDataBase::getDataElementData(quint8 line, quint32 id, quint8 direction, quint32 number,
                                        DataElement &data) const
{
    return Identifiers(*d).getSignal(line, {id, direction}, number, data);
}

QVector<ObjectDataBase::DataElement> ObjectDataBase::getDataElementRecords(quint8 line, quint32 id,
                                                                           quint8 direction) const
{
    return Identifiers(*d).signalsOf(line, {id, direction});
}

QVector<ObjectDataBase::DataElement> ObjectDataBase::getDataElementsWithoutId(quint8 line) const
{
    return Identifiers(*d).signalsWithoutFrame(line);
}

QString ObjectDataBase::getDataElementName(quint8 line, quint32 id, quint8 direction,
                                           quint32 number) const
{
    DataElement data;
    (void)getDataElementData(line, id, direction, number, data); // as above
    return data.name;
}

bool ObjectDataBase::addDataElement(quint8 line, quint32 id, quint8 direction, quint32 number,
                                    const DataElement &data)
{
    return Identifiers(*d).addSignal(line, {id, direction}, number, data);
}

bool ObjectDataBase::delDataElement(quint8 line, quint32 id, quint8 direction, quint32 number)
{
    return Identifiers(*d).delSignal(line, {id, direction}, number);
}

bool ObjectDataBase::CANIDEqual(ObjectDataBase *other, quint8 line, quint8 otherLine, quint32 id,
                                quint32 otherId, quint8 direction) const
{
    return Identifiers::isEqual(Identifiers(*d), line, {id, direction}, Identifiers(*other->d),
                                otherLine, {otherId, direction});
}
