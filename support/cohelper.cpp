// Tables of the CANopen vocabulary.
#include "support/cohelper.h"

#include "support/accesstype.h"
#include "support/numbers.h"

#include <QHash>

#include <array>

namespace
{

enum class Range { None, Bool, Signed, Unsigned };

struct TypeRow {
    quint16 number;
    quint8 bits; ///< 0: the type has no fixed size
    Range range;
    const char *longName;
    const char *shortName;
};

// clang-format off
constexpr TypeRow kTypes[] = {
    {1,    1, Range::Bool,     "BOOLEAN",         "B"},
    {2,    8, Range::Signed,   "INTEGER8",        "I8"},
    {3,   16, Range::Signed,   "INTEGER16",       "I16"},
    {4,   32, Range::Signed,   "INTEGER32",       "I32"},
    {5,    8, Range::Unsigned, "UNSIGNED8",       "U8"},
    {6,   16, Range::Unsigned, "UNSIGNED16",      "U16"},
    {7,   32, Range::Unsigned, "UNSIGNED32",      "U32"},
    {8,   32, Range::None,     "REAL32",          "R32"},
    {9,    0, Range::None,     "VISIBLE_STRING",  "VS"},
    {10,   0, Range::None,     "OCTET_STRING",    "OS"},
    {11,   0, Range::None,     "UNICODE_STRING",  "US"},
    // The stack has no type for a time of day and takes its 48 bits as a number.
    {12,  48, Range::None,     "TIME_OF_DAY",     "U48"},
    {13,  48, Range::None,     "TIME_DIFFERENCE", "TD"},
    {15,   0, Range::None,     "DOMAIN",          "D"},
    {16,  24, Range::Signed,   "INTEGER24",       "I24"},
    {17,  64, Range::None,     "REAL64",          "R64"},
    {18,  40, Range::Signed,   "INTEGER40",       "I40"},
    {19,  48, Range::Signed,   "INTEGER48",       "I48"},
    {20,  56, Range::Signed,   "INTEGER56",       "I56"},
    {21,  64, Range::Signed,   "INTEGER64",       "I64"},
    {22,  24, Range::Unsigned, "UNSIGNED24",      "U24"},
    {24,  40, Range::Unsigned, "UNSIGNED40",      "U40"},
    {25,  48, Range::Unsigned, "UNSIGNED48",      "U48"},
    {26,  56, Range::Unsigned, "UNSIGNED56",      "U56"},
    {27,  64, Range::Unsigned, "UNSIGNED64",      "U64"},
    {100,  2, Range::Unsigned, "UNSIGNED2",       "U2"},
    {101,  3, Range::Unsigned, "UNSIGNED3",       "U3"},
    {102,  4, Range::Unsigned, "UNSIGNED4",       "U4"},
    {103,  5, Range::Unsigned, "UNSIGNED5",       "U5"},
    {104,  6, Range::Unsigned, "UNSIGNED6",       "U6"},
    {105,  7, Range::Unsigned, "UNSIGNED7",       "U7"},
    {106,  9, Range::Unsigned, "UNSIGNED9",       "U9"},
    {107, 10, Range::Unsigned, "UNSIGNED10",      "U10"},
    {108, 11, Range::Unsigned, "UNSIGNED11",      "U11"},
    {109, 12, Range::Unsigned, "UNSIGNED12",      "U12"},
    {110, 13, Range::Unsigned, "UNSIGNED13",      "U13"},
    {111, 14, Range::Unsigned, "UNSIGNED14",      "U14"},
    {112, 15, Range::Unsigned, "UNSIGNED15",      "U15"},
    {117, 19, Range::Unsigned, "UNSIGNED19",      "U19"},
    {118, 18, Range::Unsigned, "UNSIGNED18",      "U18"},
    {119, 21, Range::Unsigned, "UNSIGNED21",      "U21"},
    {120,  0, Range::None,     "STRING_NULL",     "STRING_NULL"},
    {121,  0, Range::None,     "STRING_ASTERISK", "STRING_ASTERIKS"}, // so spelled in the stack
    {124,  0, Range::None,     "UTF8_STRING",     "UTF8"},
    {129, 29, Range::Unsigned, "UNSIGNED29",      "U29"},
};
// clang-format on

constexpr quint16 kHighestType = 129;
constexpr quint8 kNoRow = 0xFF;

/// Place of each type's row, since generators ask for several types of each subindex.
constexpr std::array<quint8, kHighestType + 1> makeRowPlaces()
{
    std::array<quint8, kHighestType + 1> places{};
    for (quint8 &place : places)
        place = kNoRow;
    for (quint8 row = 0; row < std::size(kTypes); ++row)
        places[kTypes[row].number] = row;
    return places;
}

constexpr auto kRowPlaces = makeRowPlaces();

const TypeRow *rowOf(quint16 type)
{
    const bool isKnown = type <= kHighestType && kRowPlaces[type] != kNoRow;
    return isKnown ? &kTypes[kRowPlaces[type]] : nullptr;
}

/// The texts of a type, made once.
struct TypeTexts {
    QString longName;
    QString shortName;
    QString low;
    QString high;
};

void setRange(const TypeRow &row, TypeTexts &texts)
{
    if (row.range == Range::None)
        return;
    const quint64 all = ~quint64(0) >> (64 - row.bits); // all bits of the type set
    if (row.range == Range::Signed) {
        const quint64 highest = all >> 1;
        texts.low = QString::number(-static_cast<qint64>(highest) - 1);
        texts.high = QString::number(highest);
    } else {
        texts.low = QStringLiteral("0");
        texts.high = QString::number(all);
    }
}

const TypeTexts &textsOf(quint16 type)
{
    static const auto texts = [] {
        std::array<TypeTexts, std::size(kTypes) + 1> made; // the last one is of unknown types
        for (size_t i = 0; i < std::size(kTypes); ++i) {
            made[i].longName = QString::fromLatin1(kTypes[i].longName);
            made[i].shortName = QString::fromLatin1(kTypes[i].shortName);
            setRange(kTypes[i], made[i]);
        }
        return made;
    }();
    const TypeRow *row = rowOf(type);
    return texts[row ? size_t(row - kTypes) : std::size(kTypes)];
}

struct CodeRow {
    CANopen::ObjectCode code;
    const char *name;
};

// The second name of a code is read, never written.
constexpr CodeRow kCodes[] = {
    {CANopen::ObjectCode::Null, "NULL"},       {CANopen::ObjectCode::Domain, "DOMAIN"},
    {CANopen::ObjectCode::DefType, "DEFTYPE"}, {CANopen::ObjectCode::DefStruct, "DEFSTRUCT"},
    {CANopen::ObjectCode::Var, "VAR"},         {CANopen::ObjectCode::Array, "ARRAY"},
    {CANopen::ObjectCode::Record, "RECORD"},   {CANopen::ObjectCode::Var, "VARIABLE"},
};

struct ImplementationRow {
    const char *display;
    const char *word;
};

// The place is the number.
constexpr ImplementationRow kImplementations[] = {
    {"Managed Variable", "managedvariable"},
    {"Managed Const", "managedconst"},
    {"Variable", "variable"},
    {"Virtual Object", "virtualobject"},
};

QHash<QString, quint16> makeTypeNumbers()
{
    QHash<QString, quint16> numbers;
    // Rows are entered backwards, so that of two rows with one short name the first one counts; a
    // value that is written as "U48" means the number type, not the time of day.
    for (auto row = std::rbegin(kTypes); row != std::rend(kTypes); ++row) {
        numbers.insert(QString::fromLatin1(row->shortName).toUpper(), row->number);
        numbers.insert(QString::fromLatin1(row->longName), row->number);
    }
    numbers.insert(QStringLiteral("U48"), static_cast<quint16>(CAN::CANopenDataType::Unsigned48));
    numbers.insert(QStringLiteral("U8S"), static_cast<quint16>(CAN::CANopenDataType::Utf8String));
    return numbers;
}

} // namespace

quint8 COHelper::getDataLengthBits(CAN::CANopenDataType type)
{
    const TypeRow *row = rowOf(static_cast<quint16>(type));
    return row ? row->bits : 0;
}

bool COHelper::isStringLike(CAN::CANopenDataType type)
{
    return type == CAN::CANopenDataType::VisibleString ||
           type == CAN::CANopenDataType::OctetString || type == CAN::CANopenDataType::Domain ||
           type == CAN::CANopenDataType::Utf8String;
}

bool COHelper::isSignedInteger(CAN::CANopenDataType type)
{
    const TypeRow *row = rowOf(static_cast<quint16>(type));
    return row && row->range == Range::Signed;
}

void COHelper::getDefaultLimits(CAN::CANopenDataType type, QString &low, QString &high)
{
    const TypeTexts &texts = textsOf(static_cast<quint16>(type));
    low = texts.low;
    high = texts.high;
}

QString COHelper::index2DataTypeString(quint16 type)
{
    return textsOf(type).longName;
}

QString COHelper::index2DataTypeShortString(quint16 type)
{
    return textsOf(type).shortName;
}

quint16 COHelper::mapDataTypeString(const QString &text)
{
    static const QHash<QString, quint16> numbers = makeTypeNumbers();
    const QString word = text.trimmed().toUpper();
    const auto found = numbers.constFind(word);
    if (found != numbers.constEnd())
        return *found;
    const quint32 number = Numbers::toUIntByPrefix(word);
    return number <= 0xFFFF ? static_cast<quint16>(number) : 0;
}

QString COHelper::objectCode2String(CANopen::ObjectCode code)
{
    for (const CodeRow &row : kCodes) {
        if (row.code == code)
            return QString::fromLatin1(row.name);
    }
    return QString();
}

CANopen::ObjectCode COHelper::string2objectCode(const QString &text)
{
    const QString word = text.trimmed();
    for (const CodeRow &row : kCodes) {
        if (word.compare(QLatin1String(row.name), Qt::CaseInsensitive) == 0)
            return row.code;
    }
    return CANopen::ObjectCode::Null;
}

QString COHelper::implementation2String(quint8 implementation)
{
    return implementation < std::size(kImplementations)
               ? QString::fromLatin1(kImplementations[implementation].display)
               : QString();
}

QString COHelper::implementation2Word(quint8 implementation)
{
    static const auto words = [] {
        std::array<QString, std::size(kImplementations)> made;
        for (size_t i = 0; i < made.size(); ++i)
            made[i] = QString::fromLatin1(kImplementations[i].word);
        return made;
    }();
    return implementation < words.size() ? words[implementation] : QString();
}

int COHelper::word2Implementation(const QString &text)
{
    const QString word = text.trimmed();
    for (size_t i = 0; i < std::size(kImplementations); ++i) {
        if (word.compare(QLatin1String(kImplementations[i].word), Qt::CaseInsensitive) == 0)
            return static_cast<int>(i);
    }
    return -1;
}

QString COHelper::normalizeAccessType(const QString &text)
{
    const QString word = text.trimmed().toLower();
    for (const QLatin1String known : AccessType::kAll) {
        if (word == known)
            return word;
    }
    return word == QLatin1String("w") ? AccessType::kWriteOnly : AccessType::kReadOnly;
}
