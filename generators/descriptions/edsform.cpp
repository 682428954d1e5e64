// The two forms of electronic data sheets.
#include "generators/descriptions/edsform.h"

#include "formats/edskeys.h"
#include "formats/edsnumber.h"
#include "formats/edstext.h"
#include "generators/descriptions/edsportable.h"
#include "generators/descriptions/edssections.h"
#include "generators/descriptions/xddwriter.h"
#include "generators/generationdate.h"
#include "store/settingdefaults.h"
#include "support/numbers.h"
#include "support/plaintext.h"

namespace
{

/// Characters of a comment that stand in one line.
constexpr int kCommentWidth = 250;

/// Types from here on have no number of CiA 301 and are described as bytes.
constexpr quint16 kFirstOwnType = CAN::typeNumber(CAN::CANopenDataType::Unsigned2);

// --- Classic ---

/// How much of \a text goes into a full line: a character beyond 16 bits is not torn apart.
int fullLineOf(const QStringRef &text)
{
    return text[kCommentWidth - 1].isHighSurrogate() ? kCommentWidth - 1 : kCommentWidth;
}

void addLongLine(QStringList &lines, QStringRef rest)
{
    while (rest.size() > kCommentWidth) {
        const int length = fullLineOf(rest);
        lines << rest.left(length).toString();
        rest = rest.mid(length);
    }
    // Deliberate: a last piece that fills its line is dropped, held by tst_edsgenerator.
    if (rest.size() != kCommentWidth)
        lines << rest.toString();
}

QStringList classicDescription(const QString &text)
{
    QStringList lines;
    const QStringList all = textLines(text);
    for (const QString &line : all) {
        if (line.size() <= kCommentWidth)
            lines << line;
        else
            addLongLine(lines, QStringRef(&line));
    }
    return lines;
}

quint16 classicType(const SubIndexData &data)
{
    const auto own = data.metadata.constFind(QLatin1String(EdsPortable::kTypeKey));
    if (own != data.metadata.constEnd())
        return static_cast<quint16>(Numbers::toUIntByPrefix(*own));
    return data.dataType < kFirstOwnType ? data.dataType : 5;
}

/// A project marks strings that it holds as hexadecimal bytes by "|x", which no data sheet knows.
QString classicValue(const QString &value)
{
    return oneLine(value.startsWith(QLatin1String("|x")) ? value.mid(2) : value);
}

EdsSubTexts classicTexts(const SubIndexData &data, EdsRole, bool)
{
    EdsSubTexts texts;
    texts.dataType = classicType(data);
    texts.accessType = oneLine(data.accessType);
    texts.pdoMapping = data.pdoMapping.toBinary();
    if (EdsSections::isDefaultDescribed(data))
        texts.defaultValue = classicValue(data.defaultValue);
    if (data.limitInEds) {
        texts.lowLimit = oneLine(data.lowLimit);
        texts.highLimit = oneLine(data.upLimit);
    }
    return texts;
}

EdsForm makeClassic()
{
    EdsForm form;
    form.firstUnlisted = 0xD000;
    form.listsAbsentObjects = true;
    form.repeatsDescriptions = true;
    form.highestCount = 255;
    form.entry = [](const char *, const QString &text) { return oneLine(text); };
    form.number = [](const QString &text, quint32) { return oneLine(text); };
    form.flag = oneLine;
    form.orderCode = oneLine;
    form.day = GenerationDate::day;
    // Deliberate: 24 hours and the letters PM at any time of day, held by tst_golden.
    form.clock = [](const QDateTime &moment) -> QString {
        return GenerationDate::clock(moment) + QLatin1String("PM");
    };
    form.commentLines = textLines;
    form.descriptionLines = classicDescription;
    form.ownSections = [](const QString &text, EdsForm::IsReserved *) { return text; };
    form.hex = Numbers::toHex;
    form.name = [](const QString &text, const char *) { return oneLine(text); };
    form.objectCode = [](CANopen::ObjectCode code, bool) { return code; };
    form.texts = classicTexts;
    return form;
}

// --- Portable ---

QString portableNumber(const QString &text, quint32 highest)
{
    const auto number = EdsNumber::read(text, 32, false);
    const bool isSound = number && !number->addsNodeId() && number->number().magnitude <= highest;
    if (isSound && highest <= 0xFF) // as an import gives them back
        return QString::number(number->number().magnitude);
    return isSound ? number->text() : QStringLiteral("0");
}

QString portableFlag(const QString &text)
{
    return QString::number(Numbers::toULongLongByPrefix(text) != 0 ? 1 : 0);
}

QString portableOrderCode(const QString &text)
{
    // Projects have it from the start; it says that nobody gave them one.
    return text == QLatin1String(kMadeUpOrderCode) ? QString()
                                                   : EdsText::entry(EdsKeys::kOrderCode, text);
}

QString portableName(const QString &text, const char *missing)
{
    const QString name = EdsText::entry(EdsKeys::kParameterName, text);
    return name.isEmpty() ? QString::fromLatin1(missing) : name;
}

/// Codes that no object of a device has become what the object looks like.
CANopen::ObjectCode portableCode(CANopen::ObjectCode code, bool hasMembers)
{
    switch (code) {
    case CANopen::ObjectCode::Domain:
    case CANopen::ObjectCode::Var:
    case CANopen::ObjectCode::Array:
    case CANopen::ObjectCode::Record:
        return code;
    default:
        return hasMembers ? CANopen::ObjectCode::Record : CANopen::ObjectCode::Var;
    }
}

/// Without empty lines at the end; but one tells a text that says all twice from the description
/// of a variable, which classic files have twice and imports take once.
QStringList portableDescription(const QString &text)
{
    QStringList lines = EdsText::lines(text, kCommentWidth);
    while (!lines.isEmpty() && lines.last().trimmed().isEmpty())
        lines.removeLast();
    const int half = lines.size() / 2;
    if (half > 0 && lines.mid(0, half) == lines.mid(half))
        lines << QString();
    return lines;
}

EdsForm makePortable()
{
    EdsForm form;
    form.preferPortable = true;
    form.firstUnlisted = 0x10000;
    form.countsDescribedPdos = true;
    form.namesOwnFile = true;
    form.highestCount = 254; // subindex 255 describes the structure
    form.entry = EdsText::entry;
    form.number = portableNumber;
    form.flag = portableFlag;
    form.orderCode = portableOrderCode;
    form.day = GenerationDate::fullDay;
    form.clock = GenerationDate::halfDayClock;
    form.commentLines = EdsText::commentLines;
    form.descriptionLines = portableDescription;
    form.ownSections = EdsPortable::ownSections;
    form.hex = [](quint64 number, int digits) { return Numbers::toHex(number, digits).toUpper(); };
    form.name = portableName;
    form.objectCode = portableCode;
    form.texts = EdsPortable::texts;
    return form;
}

} // namespace

const EdsForm &classicEds()
{
    static const EdsForm form = makeClassic();
    return form;
}

const EdsForm &portableEds()
{
    static const EdsForm form = makePortable();
    return form;
}

const EdsForm &portableXdd()
{
    static const EdsForm form = [] {
        EdsForm xdd = makePortable();
        xdd.descriptionLines = [](const QString &text) {
            return QStringList{XddText::shown(text).trimmed()};
        };
        return xdd;
    }();
    return form;
}
