// Versions of the structures that start the protocol stack: which of their forms generated code
// fills.
#pragma once

#include <QtGlobal>

class ObjectDataBase;

/// The structures, by the numbers that the stack gives them.
enum class InitStruct { Common = 0, RawCan = 1, CANopen = 2, J1939 = 3, Uds = 5 };

/// 0 for any other structure. That of UDS is the project's choice.
quint8 initStructVersion(InitStruct type, const ObjectDataBase &store);
