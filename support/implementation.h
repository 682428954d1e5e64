// How the generated device keeps the value of a subindex or signal.
#pragma once

#include <QtGlobal>

/// Numbers of the column "implementation"; COHelper has their words. Records keep them as integers,
/// because a project may hold any number.
namespace Implementation
{

constexpr quint8 kManagedVariable = 0;     ///< a variable that generated code declares
constexpr quint8 kManagedConst = 1;        ///< a constant that generated code declares
constexpr quint8 kApplicationVariable = 2; ///< a variable of the application, known by its C name
constexpr quint8 kVirtualObject = 3;       ///< none: the application answers each access by itself

} // namespace Implementation
