// Orders between threads that Qt guarantees and ThreadSanitizer does not see, because Qt's
// libraries are built without it. Nothing in other builds.
#pragma once

#if defined(__SANITIZE_THREAD__)
#include <sanitizer/tsan_interface.h>
#endif

/// What the calling thread did so far happens before whatever follows takeOver() of \a place.
inline void handOver([[maybe_unused]] void *place)
{
#if defined(__SANITIZE_THREAD__)
    __tsan_release(place);
#endif
}

/// To be called where Qt has already waited for the thread that called handOver().
inline void takeOver([[maybe_unused]] void *place)
{
#if defined(__SANITIZE_THREAD__)
    __tsan_acquire(place);
#endif
}
