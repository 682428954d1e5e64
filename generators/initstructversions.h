// Versions of the structures by which start-up code hands its settings to the stack.
#pragma once

#include <QtGlobal>

class ObjectDataBase;

/// The structure of one protocol, or of what all protocols share.
enum class InitStruct {
    Common = 0,
    RawCan = 1,
    CANopen = 2,
    J1939 = 3,
    Uds = 5,
};

/// The version that generated code is written for; that of UDS is a setting of the project, cut to
/// 8 bits. 0 for any other number.
quint8 initStructVersion(InitStruct type, const ObjectDataBase &store);
