// When one description serves several subindices of an object.
#pragma once

struct SubIndexData;

/// Do these agree in all that a description says? Their names do not count.
bool areDescribedAlike(const SubIndexData &one, const SubIndexData &other);
