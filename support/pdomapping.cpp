// Words of the PDO mapping attribute.
#include "support/pdomapping.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace
{

// In the order of PDOMappingType.
constexpr const char *kWords[] = {"no", "default", "optional", "RPDO", "TPDO"};

} // namespace

PDOMapping PDOMapping::fromUInt(quint32 number)
{
    return number < std::size(kWords) ? PDOMapping(static_cast<PDOMappingType>(number))
                                      : PDOMapping();
}

void PDOMapping::fromCSVString(const QString &word)
{
    type = PDOMappingType::No;
    for (size_t i = 0; i < std::size(kWords); ++i) {
        if (word.compare(QLatin1String(kWords[i]), Qt::CaseInsensitive) == 0)
            type = static_cast<PDOMappingType>(i);
    }
}

QString PDOMapping::getCSVStringValue() const
{
    // Made once, since documents write one for each subindex.
    static const std::array<QString, std::size(kWords)> words = [] {
        std::array<QString, std::size(kWords)> texts;
        std::transform(std::begin(kWords), std::end(kWords), texts.begin(),
                       [](const char *word) { return QString::fromLatin1(word); });
        return texts;
    }();
    return words[toUInt()];
}
