// How much memory the types of generated C take.
#pragma once

#include "generators/overview/carrays.h"

/// The types of the stack by their members, for one target.
class StructSizes
{
public:
    /// What a target has, and what the configuration of the stack makes of the types.
    struct Target {
        int pointer = 4;        ///< bytes
        bool isRouting = false; ///< received PDOs are sent on
        CArrays::Macros macros;
    };

    explicit StructSizes(const Target &of) : target(of) {}

    /// Bytes of a value of that type, which is as it is aligned in arrays; -1 if it is not known.
    qint64 sizeOf(const QByteArray &type) const;
    qint64 pointerSize() const { return target.pointer; }

private:
    struct Layout {
        qint64 size = 0;
        qint64 alignment = 1;
    };

    Layout layoutOf(const QByteArray &type) const;
    /// Of a member such as "2", "p" or "1*LINES".
    Layout layoutOfMember(const QByteArray &member) const;
    qint64 countOf(const QByteArray &name) const;
    bool isDefined(const QByteArray &name) const;

    Target target;
};
