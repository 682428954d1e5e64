// The section of gen_define.h on virtual objects: those whose values the application computes when
// they are asked for.
#pragma once

#include "generators/defines/definecontext.h"

#include <array>

namespace Defines
{

/// Data types that the stack keeps apart for virtual objects.
constexpr int kVirtualTypeCount = 11;

/// What a project has of virtual objects. The counts by type span the whole object dictionary, the
/// rows leave out what a compact description of an array stands for.
struct VirtualCounts {
    quint16 objects = 0;
    std::array<quint16, kVirtualTypeCount> subsByType{}; ///< in the order of the file
    quint32 descriptions = 0;
    quint32 assignments = 0;
    QVector<quint32> assignmentsByLine; ///< of the lines with at least two objects
};

VirtualCounts countVirtualObjects(const DefineContext &context);

void generateVODDefines(DefineContext &context);

} // namespace Defines
