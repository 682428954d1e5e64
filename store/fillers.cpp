// Elements for bits that no signal has.
#include "store/fillers.h"

#include "support/cohelper.h"

#include <QStringMatcher>

#include <algorithm>
#include <iterator>

namespace
{

using Type = CAN::CANopenDataType;

/// From wide to narrow. Generated sources have variables of these types.
constexpr Type kTypes[] = {
    Type::Unsigned64, Type::Unsigned48, Type::Unsigned40, Type::Unsigned32, Type::Unsigned29,
    Type::Unsigned24, Type::Unsigned21, Type::Unsigned19, Type::Unsigned18, Type::Unsigned16,
    Type::Unsigned15, Type::Unsigned14, Type::Unsigned13, Type::Unsigned12, Type::Unsigned11,
    Type::Unsigned10, Type::Unsigned9,  Type::Unsigned8,  Type::Unsigned7,  Type::Unsigned6,
    Type::Unsigned5,  Type::Unsigned4,  Type::Unsigned3,  Type::Unsigned2,  Type::Boolean,
};

} // namespace

bool Fillers::isFiller(const SignalData &signal)
{
    static const QStringMatcher word(QStringLiteral("dummy")); // asked of all signals
    return word.indexIn(signal.name) >= 0;
}

Type Fillers::typeFor(quint32 bits)
{
    Type fits = Type::Boolean;
    for (const Type type : kTypes) {
        const quint32 size = COHelper::getDataLengthBits(type);
        if (size == bits)
            return type;
        if (size < bits && size % 8 == 0 && fits == Type::Boolean)
            fits = type;
    }
    return fits;
}

bool Fillers::canHaveType(quint32 dataType)
{
    return std::find(std::begin(kTypes), std::end(kTypes), Type(dataType)) != std::end(kTypes);
}

void Fillers::make(SignalData *signal, quint32 dataType)
{
    signal->name = QStringLiteral("dummy");
    signal->dataType = dataType;
    signal->implementation = Implementation::kManagedVariable;
}
