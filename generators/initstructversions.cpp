// Versions of the structures of start-up code.
#include "generators/initstructversions.h"

#include "generators/generalsettings.h"

quint8 initStructVersion(InitStruct type, const ObjectDataBase &store)
{
    switch (type) {
    case InitStruct::Common:
        return 1;
    case InitStruct::RawCan:
        return 4;
    case InitStruct::CANopen:
    case InitStruct::J1939:
        return 5;
    case InitStruct::Uds:
        return static_cast<quint8>(GeneralSettings(store).byPrefix("udsserver_version"));
    }
    return 0;
}
