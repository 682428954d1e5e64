// Bits of frames, counted by the fields of ISO 11898-1.
#include "support/framebits.h"

#include <algorithm>
#include <iterator>

namespace
{

constexpr int kClassicalBytes = 8;
constexpr int kFdLengths[] = {12, 16, 20, 24, 32, 48, 64};

/// A stuff bit follows five equal bits, and counts as the first of the next five: one after the
/// first five, then one after every four.
constexpr int mostStuffBits(int bits)
{
    return bits < 5 ? 0 : (bits - 1) / 4;
}

/// A stuff bit follows random content after so many bits on average: a run of n equal bits is
/// awaited for 2^n - 1 bits, and it ends with five.
constexpr double kRandomBitsOfStuffBit = 31;

constexpr FrameBits::Range rangeOf(int bits, int stuffed, int mostStuffed)
{
    return {bits, bits + stuffed / kRandomBitsOfStuffBit, bits + mostStuffed};
}

// Classical CAN. Start of frame, identifier, control bits and length; with 29 bits of identifier
// also SRR, IDE and one more reserved bit.
constexpr int kHeader = 1 + 11 + 1 + 2 + 4;
constexpr int kExtendedHeader = kHeader + 18 + 2;
constexpr int kCrc = 15;
constexpr int kAcknowledge = 2;
constexpr int kEndOfFrame = 7;
constexpr int kIntermission = 3;
constexpr int kUnstuffedTail = 1 + kAcknowledge + kEndOfFrame + kIntermission; // CRC delimiter

// CAN FD. Start of frame, identifier, RRS, IDE, FDF, res and BRS; SRR as well where extended.
constexpr int kFdArbitration = 1 + 11 + 5;
constexpr int kFdExtendedArbitration = kFdArbitration + 18 + 1;
constexpr int kFdControl = 1 + 4; // ESI and length, already at the data rate
constexpr int kFdTail = kAcknowledge + kEndOfFrame + kIntermission;
constexpr int kLongestWithShortCrc = 16; // bytes
// Stuff count, CRC, one fixed stuff bit before them and one after every four bits, CRC delimiter.
constexpr int kShortCrcField = 4 + 17 + 6 + 1;
constexpr int kLongCrcField = 4 + 21 + 7 + 1;

// The transport protocol of SAE J1939-21 (5.10).
constexpr int kBytesOfPacket = 7;
constexpr int kFramesOfBroadcast = 1;  // the announcement
constexpr int kFramesOfConnection = 3; // request, grant and acknowledgement

} // namespace

FrameBits::Count FrameBits::classical(int bytes, bool isExtended)
{
    const int stuffed = (isExtended ? kExtendedHeader : kHeader) + 8 * bytes + kCrc;
    const int bits = stuffed + kUnstuffedTail;
    return {rangeOf(bits, stuffed, mostStuffBits(stuffed)), {}};
}

FrameBits::Count FrameBits::canFd(int bytes, bool isExtended)
{
    const int sent = frameLength(bytes);
    const int head = isExtended ? kFdExtendedArbitration : kFdArbitration;
    const int content = kFdControl + 8 * sent;
    const int crc = sent > kLongestWithShortCrc ? kLongCrcField : kShortCrcField;
    const int headStuff = mostStuffBits(head);
    const int allStuff = mostStuffBits(head + content);
    Count count;
    count.arbitration = rangeOf(head + kFdTail, head, headStuff);
    count.data = rangeOf(content + crc, content, allStuff - headStuff);
    return count;
}

FrameBits::Count FrameBits::group(int bytes, bool isBroadcast)
{
    if (bytes <= kClassicalBytes)
        return classical(bytes, true);
    const int packets = (bytes + kBytesOfPacket - 1) / kBytesOfPacket;
    const int frames = packets + (isBroadcast ? kFramesOfBroadcast : kFramesOfConnection);
    const Range one = classical(kClassicalBytes, true).arbitration;
    return {{one.min * frames, one.average * frames, one.max * frames}, {}, packets};
}

int FrameBits::frameLength(int bytes)
{
    if (bytes <= kClassicalBytes)
        return bytes;
    return *std::lower_bound(std::begin(kFdLengths), std::end(kFdLengths) - 1, bytes);
}
