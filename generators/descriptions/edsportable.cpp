// Values and sections of data sheets that strict readers take.
#include "generators/descriptions/edsportable.h"

#include "formats/edskeys.h"
#include "formats/edsnumber.h"
#include "formats/edsobjects.h"
#include "formats/edstext.h"
#include "generators/descriptions/edssections.h"
#include "generators/descriptions/xddwriter.h"
#include "support/cohelper.h"
#include "support/numbers.h"
#include "support/plaintext.h"

#include <QLocale>
#include <QRegularExpression>
#include <QSet>

#include <cfloat>
#include <cmath>
#include <cstring>

namespace
{

using Type = CAN::CANopenDataType;

/// How the values of a type stand in a file.
enum class Kind {
    Whole,
    Real,
    Text,
    Bytes,
    Untold, ///< each reader wants another form
};

/// How a kind of file says what is no whole number.
struct Notation {
    bool hasDecimalReals;
    bool hasTimes; ///< as numbers, under types of their own
    bool (*isHeld)(const char *key, const QString &text);
};

constexpr Notation kEdsNotation = {false, false, EdsText::isHeld};

// XML holds all characters but a few.
constexpr Notation kXddNotation = {true, true, [](const char *, const QString &text) {
                                       return !text.isEmpty() && XddText::shown(text) == text;
                                   }};

/// A type of a project as a file describes it.
struct TypeForm {
    quint16 number; ///< of CiA 301
    Kind kind;
    int bits = 0; ///< of the type of the project
    bool isSigned = false;
    bool isNarrower = false; ///< than the type of the file, whose limits say so
};

quint16 unsignedFor(int bits)
{
    const Type type = bits <= 8    ? Type::Unsigned8
                      : bits <= 16 ? Type::Unsigned16
                      : bits <= 24 ? Type::Unsigned24
                                   : Type::Unsigned32;
    return CAN::typeNumber(type);
}

/// Nothing for a number that is no type.
std::optional<TypeForm> formOf(quint16 number, const Notation &notation)
{
    const auto type = static_cast<Type>(number);
    const int bits = COHelper::getDataLengthBits(type);
    switch (type) {
    case Type::Real32:
    case Type::Real64:
        return TypeForm{number, Kind::Real, bits};
    case Type::VisibleString:
    case Type::StringNull:
    case Type::StringAsterisk:
    case Type::Utf8String:
        return TypeForm{CAN::typeNumber(Type::VisibleString), Kind::Text};
    case Type::UnicodeString:
        return TypeForm{number, Kind::Text};
    case Type::OctetString:
    case Type::Domain:
        return TypeForm{number, Kind::Bytes};
    case Type::TimeOfDay: // the stack takes it as a number
        if (notation.hasTimes)
            return TypeForm{number, Kind::Whole, bits};
        return TypeForm{CAN::typeNumber(Type::Unsigned48), Kind::Whole, bits};
    case Type::TimeDifference:
        return TypeForm{number, notation.hasTimes ? Kind::Whole : Kind::Untold, bits};
    default:
        break;
    }
    if (bits == 0)
        return std::nullopt;
    if (type < Type::Unsigned2)
        return TypeForm{number, Kind::Whole, bits, COHelper::isSignedInteger(type)};
    return TypeForm{unsignedFor(bits), Kind::Whole, bits, false, true};
}

/// Nothing if \a text is no number of a type of so many bits.
std::optional<double> realNumber(const QString &text, int bits)
{
    QString digits = text.trimmed();
    bool ok = false;
    double number = double(Numbers::toULongLongByPrefix(digits, &ok));
    if (!ok) {
        if (digits.endsWith(QLatin1Char('f'), Qt::CaseInsensitive)) // a constant of C
            digits.chop(1);
        number = digits.toDouble(&ok);
    }
    if (!ok || !std::isfinite(number) || (bits == 32 && std::fabs(number) > double(FLT_MAX)))
        return std::nullopt;
    return number;
}

/// The bits of a number; nothing if \a text is none.
std::optional<quint64> realPattern(const QString &text, int bits)
{
    const auto number = realNumber(text, bits);
    if (!number)
        return std::nullopt;
    if (bits == 32) {
        const auto narrow = float(*number);
        quint32 pattern = 0;
        std::memcpy(&pattern, &narrow, sizeof pattern);
        return pattern;
    }
    quint64 pattern = 0;
    std::memcpy(&pattern, &*number, sizeof pattern);
    return pattern;
}

/// Decimal digits, as the project has them where it does.
std::optional<QString> decimalReal(const QString &text, int bits)
{
    static const QRegularExpression decimal(
        QStringLiteral("^-?[0-9]+(\\.[0-9]+)?([eE][-+]?[0-9]+)?$"));
    const auto number = realNumber(text, bits);
    if (!number)
        return std::nullopt;
    return decimal.match(text).hasMatch()
               ? text
               : QString::number(*number, 'g', QLocale::FloatingPointShortest);
}

/// Some readers want a decimal number and others its bits, and only 0 is the same in both. The
/// value of a configuration must not be lost: those who read it so far want the bits.
std::optional<QString> realText(const QString &text, int bits, bool isConfigured)
{
    const auto pattern = realPattern(text, bits);
    if (!pattern || (!isConfigured && *pattern != 0))
        return std::nullopt;
    return *pattern == 0 ? QStringLiteral("0")
                         : QLatin1String("0x") + Numbers::toHex(*pattern, bits / 4).toUpper();
}

/// What a string holds; after "|x" the project gives its bytes in hexadecimal.
QByteArray bytesOf(const QString &value)
{
    if (!value.startsWith(QLatin1String("|x")))
        return value.toUtf8();
    QByteArray digits = value.mid(2).toLatin1();
    if (digits.size() % 2 == 1)
        digits.insert(digits.size() - 1, '0');
    return QByteArray::fromHex(digits);
}

std::optional<QString> textFor(const char *key, const QString &value, const TypeForm &type,
                               const Notation &notation)
{
    if (value.isEmpty())
        return std::nullopt;
    QString text;
    switch (type.kind) {
    case Kind::Whole: {
        const auto number = EdsNumber::read(value, type.bits, type.isSigned);
        return number ? std::optional<QString>(number->text()) : std::nullopt;
    }
    case Kind::Real:
        if (notation.hasDecimalReals)
            return decimalReal(value, type.bits);
        return realText(value, type.bits, qstrcmp(key, EdsKeys::kParameterValue) == 0);
    case Kind::Text:
        text = QString::fromUtf8(bytesOf(value));
        break;
    case Kind::Bytes:
        text = QString::fromLatin1(bytesOf(value).toHex().toUpper());
        break;
    case Kind::Untold:
        return std::nullopt;
    }
    return notation.isHeld(key, text) ? std::optional<QString>(text) : std::nullopt;
}

bool fits(const QString &value, const TypeForm &type)
{
    if (value.isEmpty())
        return true;
    if (type.kind == Kind::Real)
        return realPattern(value, type.bits).has_value();
    if (type.kind == Kind::Whole || type.kind == Kind::Untold)
        return EdsNumber::read(value, type.bits, type.isSigned).has_value();
    return true;
}

bool fitsAll(const SubIndexData &data, const TypeForm &type)
{
    return fits(data.defaultValue, type) && fits(data.currentValue, type) &&
           (!data.limitInEds || (fits(data.lowLimit, type) && fits(data.upLimit, type)));
}

TypeForm typeOf(const SubIndexData &data, EdsRole role, const Notation &notation)
{
    const TypeForm byte = {CAN::typeNumber(Type::Unsigned8), Kind::Whole, 8};
    if (role == EdsRole::Count)
        return byte;
    if (role == EdsRole::Domain)
        return {CAN::typeNumber(Type::Domain), Kind::Bytes};
    const QString wanted = data.metadata.value(QLatin1String(EdsPortable::kTypeKey));
    const quint32 number = Numbers::toUIntByPrefix(wanted);
    const auto stated = number <= 0xFFFF ? formOf(quint16(number), notation) : std::nullopt;
    if (stated && fitsAll(data, *stated))
        return *stated;
    return formOf(data.dataType, notation).value_or(byte);
}

/// A number that a limit can be.
std::optional<EdsNumber> limitOf(const QString &text, const TypeForm &type)
{
    const auto number = EdsNumber::read(text, type.bits, type.isSigned);
    return number && !number->addsNodeId() ? number : std::nullopt;
}

bool isWithin(const std::optional<QString> &value, const WholeRange &range, const TypeForm &type)
{
    const auto number = value ? EdsNumber::read(*value, type.bits, type.isSigned) : std::nullopt;
    return !number || number->isWithin(range);
}

QString textOf(const WholeNumber &number)
{
    const QString digits = QString::number(number.magnitude);
    return number.isNegative ? QLatin1Char('-') + digits : digits;
}

/// Limits that exclude a value of the file would make a reader reject it. Where only one can be
/// told, the other one is that of the type.
void addLimits(const SubIndexData &data, const TypeForm &type, EdsSubTexts &texts)
{
    if (type.kind != Kind::Whole)
        return;
    const WholeRange all = EdsNumber::rangeOf(type.bits, type.isSigned);
    const auto low = data.limitInEds ? limitOf(data.lowLimit, type) : std::nullopt;
    const auto high = data.limitInEds ? limitOf(data.upLimit, type) : std::nullopt;
    const WholeRange range = {low ? low->number() : all.low, high ? high->number() : all.high};
    const bool isSound = !(range.high < range.low) && isWithin(texts.defaultValue, range, type) &&
                         isWithin(texts.parameterValue, range, type);
    if (!type.isNarrower && !(isSound && (low || high)))
        return;
    // Limits of types with a sign are read as decimal numbers.
    texts.lowLimit =
        isSound && low && !type.isSigned ? low->text() : textOf(isSound ? range.low : all.low);
    texts.highLimit =
        isSound && high && !type.isSigned ? high->text() : textOf(isSound ? range.high : all.high);
}

/// Both, or none if they exclude the default value.
void addRealLimits(const SubIndexData &data, const TypeForm &type, EdsSubTexts &texts)
{
    const auto low = realNumber(data.lowLimit, type.bits);
    const auto high = realNumber(data.upLimit, type.bits);
    if (!data.limitInEds || !low || !high || *high < *low)
        return;
    const auto value = texts.defaultValue ? realNumber(*texts.defaultValue, type.bits) : low;
    if (!value || *value < *low || *high < *value)
        return;
    texts.lowLimit = decimalReal(data.lowLimit, type.bits);
    texts.highLimit = decimalReal(data.upLimit, type.bits);
}

/// Takes the lines of the user's own sections one by one.
class OwnSections
{
public:
    explicit OwnSections(EdsForm::IsReserved *reserved) : isReserved(reserved) {}

    void add(const QString &line)
    {
        if (line.startsWith(QLatin1Char('[')))
            return addHead(line);
        if (!isOpen || line.isEmpty())
            return;
        if (line.startsWith(QLatin1Char(';')))
            result += line.left(EdsText::kLineLength) + QLatin1Char('\n');
        else
            addEntry(line);
    }

    QString result;

private:
    void addHead(const QString &line)
    {
        const QString name = EdsText::entry("", line.mid(1).section(QLatin1Char(']'), 0, 0))
                                 .left(EdsText::kLineLength - 2);
        const QString known = name.toLower().remove(QLatin1Char(' ')); // as our reader has it
        isOpen = !name.isEmpty() && line.contains(QLatin1Char(']')) && !sections.contains(known) &&
                 !isReserved(known);
        if (!isOpen)
            return;
        sections.insert(known);
        keys.clear();
        if (!result.isEmpty())
            result += QLatin1Char('\n');
        result += QLatin1Char('[') + name + QLatin1String("]\n");
    }

    void addEntry(const QString &line)
    {
        const QString key = EdsText::entry("", line.section(QLatin1Char('='), 0, 0));
        const bool isKey = !key.isEmpty() && line.contains(QLatin1Char('=')) &&
                           !key.startsWith(QLatin1Char('#')) && !key.contains(QLatin1Char(':'));
        if (!isKey || keys.contains(key.toLower()))
            return;
        keys.insert(key.toLower());
        result += key + QLatin1Char('=') +
                  EdsText::entry(key.toLatin1().constData(), line.section(QLatin1Char('='), 1)) +
                  QLatin1Char('\n');
    }

    EdsForm::IsReserved *const isReserved;
    QSet<QString> sections;
    QSet<QString> keys; ///< of the open section
    bool isOpen = false;
};

EdsSubTexts textsIn(const Notation &notation, const SubIndexData &data, EdsRole role,
                    bool isConfiguration)
{
    const TypeForm type = typeOf(data, role, notation);
    EdsSubTexts result;
    result.dataType = type.number;
    result.accessType = COHelper::normalizeAccessType(data.accessType);
    if (role != EdsRole::Domain)
        result.pdoMapping = data.pdoMapping.toBinary();
    if (EdsSections::isDefaultDescribed(data))
        result.defaultValue = textFor(EdsKeys::kDefaultValue, data.defaultValue, type, notation);
    if (isConfiguration)
        result.parameterValue =
            textFor(EdsKeys::kParameterValue, data.currentValue, type, notation);
    if (type.kind == Kind::Real && notation.hasDecimalReals)
        addRealLimits(data, type, result);
    addLimits(data, type, result);
    return result;
}

} // namespace

EdsSubTexts EdsPortable::texts(const SubIndexData &data, EdsRole role, bool isConfiguration)
{
    return textsIn(kEdsNotation, data, role, isConfiguration);
}

EdsSubTexts EdsPortable::xddTexts(const SubIndexData &data, EdsRole role)
{
    return textsIn(kXddNotation, data, role, false);
}

QString EdsPortable::ownSections(const QString &text, EdsForm::IsReserved *isReserved)
{
    OwnSections sections(isReserved);
    const QStringList lines = textLines(text);
    for (const QString &line : lines)
        sections.add(EdsText::ascii(line).trimmed());
    return sections.result;
}
