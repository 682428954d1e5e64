// Numbers of device descriptions by the letter of CiA 306, for those that write them.
#pragma once

#include <QString>

#include <optional>

/// A whole number of up to 64 bits, with or without a sign.
struct WholeNumber {
    bool isNegative = false; ///< never of 0
    quint64 magnitude = 0;

    bool operator<(const WholeNumber &other) const;
    WholeNumber operator+(quint32 count) const;
};

struct WholeRange {
    WholeNumber low;
    WholeNumber high;

    bool contains(const WholeNumber &number) const { return !(number < low) && !(high < number); }
};

/// A value as a project has it and a description writes it: a number, or one that the node-ID is
/// added to.
class EdsNumber
{
public:
    /// Takes decimal digits, hexadecimal ones after "0x", and either of them with "$NODEID". In a
    /// type with a sign hexadecimal digits of all \a bits are the two's complement. Nothing if
    /// \a text is none of these or does not fit the type, with no node-ID from 1 to 127.
    static std::optional<EdsNumber> read(const QString &text, int bits, bool isSigned);

    /// Decimal without leading zeros, which would make it octal; or "0x" with as many digits as the
    /// project has, but none beyond the type. "$NODEID" comes first and never stands alone.
    const QString &text() const { return written; }

    bool addsNodeId() const { return isSum; }

    /// With whatever node-ID.
    bool isWithin(const WholeRange &range) const;

    /// The values of a type.
    static WholeRange rangeOf(int bits, bool isSigned);

    const WholeNumber &number() const { return value; }

private:
    WholeNumber value;
    bool isSum = false;
    QString written;
};
