// How many bits frames take on the bus.
#pragma once

namespace FrameBits
{

/// Depending on the content, which decides on stuff bits: the least, the most, and what random
/// content takes.
struct Range {
    int min = 0;
    double average = 0;
    int max = 0;
};

/// With the intermission that follows. What is sent at the data rate of CAN FD stands apart.
struct Count {
    Range arbitration;
    Range data;
    int frames = 1; ///< that carry it; not those of the receiver, whose bits count as well

    int min() const { return arbitration.min + data.min; }
    double average() const { return arbitration.average + data.average; }
    int max() const { return arbitration.max + data.max; }
};

/// A data frame of classical CAN with so many \a bytes, 0 to 8 (ISO 11898-1, 10.4).
Count classical(int bytes, bool isExtended);

/// A frame of CAN FD that switches its bit rate, with so many \a bytes, 0 to 64; those that no
/// frame can have are sent in the next longer one.
Count canFd(int bytes, bool isExtended);

/// A message of SAE J1939-21 with so many \a bytes: one frame up to 8, else the frames of the
/// transport protocol, from 9 to 1785 bytes. A broadcast is announced; another one is asked for,
/// granted at once, and acknowledged.
Count group(int bytes, bool isBroadcast);

/// Bytes of a frame that has room for \a bytes, of which CAN FD has only some numbers; those of the
/// longest one above it.
int frameLength(int bytes);

} // namespace FrameBits
