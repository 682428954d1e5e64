// Descriptions of frames and signals.
#include "import/dbctext.h"

#include "formats/dbcj1939.h"
#include "support/cohelper.h"
#include "support/numbers.h"

#include <QLocale>
#include <QStringList>

#include <cmath>

namespace
{

constexpr int kMostListed = 64;
constexpr quint32 kMostNumberBits = 64; ///< more are a text, or bytes without an order
constexpr quint8 kNullAddress = 0xFE;   // SAE J1939-81, 4.2

QString numberText(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

bool hasFormula(const DbcSignal &signal)
{
    return signal.factor != 1 || signal.offset != 0;
}

/// Limits that the bits of the signal do not tell.
bool hasLimits(const DbcSignal &signal)
{
    if (signal.minimum == 0 && signal.maximum == 0)
        return false;
    const bool isInteger = signal.valueType == DbcSignal::ValueType::Integer;
    const double span = std::ldexp(1, int(qMin(signal.bits, 64U)));
    const double lowest = signal.isSigned ? -span / 2 : 0;
    const double highest = signal.isSigned ? span / 2 - 1 : span - 1;
    return hasFormula(signal) || !isInteger || signal.minimum > lowest || signal.maximum < highest;
}

/// "Value = raw * 0.25 - 40 l/min, from -40 to 80 (raw 0 to 480)."
QString scalingText(const DbcSignal &signal)
{
    QStringList parts;
    QString formula;
    if (signal.factor != 1)
        formula += QStringLiteral(" * ") + numberText(signal.factor);
    if (signal.offset != 0)
        formula +=
            QLatin1String(signal.offset < 0 ? " - " : " + ") + numberText(std::fabs(signal.offset));
    const QString unit = signal.unit.isEmpty() ? QString() : QLatin1Char(' ') + signal.unit;
    if (!formula.isEmpty())
        parts << QStringLiteral("value = raw") + formula + unit;
    else if (!unit.isEmpty())
        parts << QStringLiteral("in") + unit;
    if (hasLimits(signal)) {
        QString limits = QStringLiteral("from %1 to %2")
                             .arg(numberText(signal.minimum), numberText(signal.maximum));
        if (!formula.isEmpty() && signal.factor != 0)
            limits +=
                QStringLiteral(" (raw %1 to %2)")
                    .arg(numberText(std::round((signal.minimum - signal.offset) / signal.factor)),
                         numberText(std::round((signal.maximum - signal.offset) / signal.factor)));
        parts << limits;
    }
    return parts.join(QLatin1String(", "));
}

/// "0: off, 1: on"
QString valuesText(const QVector<DbcValue> &values)
{
    QStringList words;
    for (const DbcValue &value : values.mid(0, kMostListed))
        words << QStringLiteral("%1: %2").arg(QString::number(value.number), value.text);
    if (values.size() > kMostListed)
        words << QStringLiteral("and %1 more").arg(values.size() - kMostListed);
    return words.join(QLatin1String(", "));
}

/// In what the element differs from the signal's number.
QString formText(const DbcElement &element)
{
    const DbcSignal &signal = *element.signal;
    QString text;
    switch (element.part) {
    case DbcElement::Part::Byte:
        text = QStringLiteral("byte %1 of a big-endian number of %2 bits, byte 0 is the most "
                              "significant one")
                   .arg(QString::number(element.number), QString::number(signal.bits));
        break;
    case DbcElement::Part::Bits:
        text = QStringLiteral("bits %1 to %2 of a number of %3 bits")
                   .arg(QString::number(element.shift),
                        QString::number(element.shift + element.bits - 1),
                        QString::number(signal.bits));
        break;
    case DbcElement::Part::Whole:
        if (element.type != CAN::CANopenDataType::OctetString || signal.bits > kMostNumberBits)
            break;
        text = QStringLiteral("%1 bits, the %2 significant byte first")
                   .arg(QString::number(signal.bits),
                        signal.isBigEndian ? QStringLiteral("most") : QStringLiteral("least"));
        break;
    }
    const bool isInteger = signal.valueType == DbcSignal::ValueType::Integer;
    const bool isSplit = element.part != DbcElement::Part::Whole;
    if (isInteger && signal.isSigned && (isSplit || !COHelper::isSignedInteger(element.type)))
        text += QString(text.isEmpty() ? QString() : QStringLiteral(", ")) +
                QStringLiteral("signed (two's complement)");
    else if (!isInteger && element.type != CAN::CANopenDataType::Real32 &&
             element.type != CAN::CANopenDataType::Real64)
        text += QString(text.isEmpty() ? QString() : QStringLiteral(", ")) +
                QStringLiteral("a floating-point number");
    return text;
}

/// With which value of which signal one is in the frame.
QString conditionText(const DbcMultiplexing &multiplexing)
{
    if (multiplexing.switchName.isEmpty() || multiplexing.ranges.isEmpty())
        return QString();
    QStringList values;
    for (const DbcRange &range : multiplexing.ranges.mid(0, kMostListed))
        values << (range.first == range.last
                       ? QString::number(range.first)
                       : QStringLiteral("%1 to %2").arg(range.first).arg(range.last));
    return QStringLiteral(" (if %1 is %2)")
        .arg(multiplexing.switchName, values.join(QLatin1String(" or ")));
}

/// As a sentence on a line of its own, unless the comment before it says the same, as in a file
/// that was made of an import.
void addSentence(QStringList *lines, const QString &text)
{
    const bool isKnown = !lines->isEmpty() && lines->first().contains(text, Qt::CaseInsensitive);
    if (!text.isEmpty() && !isKnown)
        *lines << text.at(0).toUpper() + text.mid(1) + QLatin1Char('.');
}

QString addressText(quint8 address)
{
    return QStringLiteral("0x") + Numbers::toHex(address, 2).toUpper();
}

/// What the frame of a project has no place for; empty for placeholders.
QString routeText(const DbcMessage &message, bool isGroup, const DbcText::Device &own)
{
    QString text;
    const bool isOwn = own.isTold && message.sender == own.node;
    if (!message.sender.isEmpty() && !isOwn)
        text = QStringLiteral("sent by ") + message.sender;
    if (!isGroup)
        return text;
    const DbcJ1939::Identifier id = DbcJ1939::identifierOf(message.identifier);
    const auto add = [&](const char *word, quint8 address, bool isOfDevice) {
        const bool isKnown = own.isTold && isOfDevice && address == own.address;
        if (address < kNullAddress && !isKnown)
            text += QStringLiteral("%1%2 address %3")
                        .arg(text.isEmpty() ? QStringLiteral("sent ") : QStringLiteral(" "),
                             QLatin1String(word), addressText(address));
    };
    add("from", id.source, isOwn);
    if (id.isPdu1)
        add("to", id.destination, !isOwn);
    return text;
}

} // namespace

bool DbcText::isScaled(const DbcSignal &signal)
{
    return hasFormula(signal) || !signal.unit.isEmpty() || hasLimits(signal);
}

QString DbcText::ofElement(const DbcElement &element)
{
    const DbcSignal &signal = *element.signal;
    QStringList lines;
    const bool isFirst =
        element.part == DbcElement::Part::Whole ||
        (element.part == DbcElement::Part::Byte ? element.number == 0 : element.shift == 0);
    if (isFirst && !signal.comment.isEmpty())
        lines << signal.comment;
    addSentence(&lines, formText(element));
    if (isFirst) {
        addSentence(&lines, scalingText(signal));
        addSentence(&lines, valuesText(signal.values));
    }
    return lines.join(QLatin1Char('\n'));
}

QString DbcText::ofText(const DbcElement &element)
{
    const DbcSignal &signal = *element.signal;
    const auto *text = DbcJ1939::variableText(signal);
    if (!text)
        return ofElement(element);
    const QString words = signal.comment.chopped(text->remark(signal.bits).size());
    return words.left(words.size() - 1); // without what parts it from the remark
}

QString DbcText::ofMessage(const DbcMessage &message, bool isGroup, const Device &own,
                           const QVector<const DbcSignal *> &leftOut)
{
    QStringList lines;
    if (!message.comment.isEmpty())
        lines << message.comment;
    addSentence(&lines, routeText(message, isGroup, own));
    if (!isGroup && message.isExtended && !own.isTold)
        lines << QStringLiteral("Identifier of 29 bits.");
    QStringList names;
    for (const DbcSignal *signal : leftOut.mid(0, kMostListed))
        names << signal->name + conditionText(signal->multiplexing);
    if (leftOut.size() > kMostListed)
        names << QStringLiteral("and %1 more").arg(leftOut.size() - kMostListed);
    if (!names.isEmpty())
        lines << QStringLiteral("Not in the frame: ") + names.join(QLatin1String(", ")) +
                     QLatin1Char('.');
    return lines.join(QLatin1Char('\n'));
}
