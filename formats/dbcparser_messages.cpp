// The statements of DBC files that make nodes, messages and signals.
#include "formats/dbckeys.h"
#include "formats/dbcparser.h"
#include "support/printable.h"

#include <utility>

namespace
{

constexpr quint32 kExtendedFlag = 0x80000000;
constexpr quint32 kExtendedMask = 0x1FFFFFFF;
constexpr quint32 kStandardMask = 0x7FF;
constexpr quint32 kPseudoFlag = 0x40000000; ///< with or without the one before, and nothing else
constexpr quint32 kMostBytes = 1785;        ///< 255 packets of 7 bytes (SAE J1939-21, 5.10)

} // namespace

bool DbcParser::readNodes()
{
    if (!expect(':'))
        return false;
    while (!lexer.atKeyword()) {
        DbcNode node;
        node.place = lexer.place();
        const QStringRef name = lexer.takeName();
        if (name.isEmpty() && !lexer.accept(','))
            break;
        node.name = shared(name);
        if (name.isEmpty() || nodeNames.contains(node.name))
            continue;
        if (nodeNames.size() >= kMostNodes)
            return miss("a message, since no network has more nodes,");
        nodeNames.insert(node.name);
        file.nodes.append(node);
    }
    return expectEnd();
}

bool DbcParser::readMessage()
{
    DbcMessage message;
    message.place = begin;
    if (!expectNumber(&message.reference) || !expectName(&message.name) || !expect(':') ||
        !expectNumber(&message.size))
        return false;
    if (!lexer.atKeyword())
        message.sender = shared(lexer.takeName());
    if (message.sender.isEmpty())
        note("dbc-missing", begin, [&] {
            return QStringLiteral("the message %1 names no sender, not even Vector__XXX")
                .arg(quotedWord(message.name));
        });
    if (message.sender == QLatin1String(DbcKeys::kNobody))
        message.sender.clear();
    setIdentifier(&message);
    file.messages.append(message);
    isInMessage = true;
    endLine();
    return true;
}

void DbcParser::setIdentifier(DbcMessage *message)
{
    const quint32 number = message->reference;
    message->identifier = number & kExtendedMask;
    message->isExtended = (number & kExtendedFlag) != 0 || message->identifier > kStandardMask;
    message->isPseudo = (number & ~kExtendedFlag) == kPseudoFlag ||
                        message->name == QLatin1String(DbcKeys::kLooseSignals);
    if (message->isPseudo)
        return;
    if ((number & ~(kExtendedFlag | kExtendedMask)) != 0)
        note("dbc-value", begin, [&] {
            return QStringLiteral("the identifier %1 has more than 29 bits, and those above are "
                                  "passed over")
                .arg(number);
        });
    else if (message->isExtended && (number & kExtendedFlag) == 0)
        note("dbc-value", begin, [&] {
            return QStringLiteral("the identifier %1 has more than 11 bits and no bit 31, and "
                                  "counts as one of 29 bits")
                .arg(number);
        });
    if (message->size > kMostBytes)
        note("dbc-value", begin, [&] {
            return QStringLiteral("the message %1 has %2 bytes, and no message has more than %3")
                .arg(quotedWord(message->name))
                .arg(message->size)
                .arg(kMostBytes);
        });
}

bool DbcParser::readSignal()
{
    DbcSignal signal;
    signal.place = begin;
    if (!isInMessage)
        return passOverSignal();
    if (!expectName(&signal.name) || !readMultiplexing(&signal.multiplexing) ||
        !readLayout(&signal) || !readScaling(&signal))
        return false;
    readReceivers(&signal);
    file.messages.last().signalList.append(signal);
    endLine();
    return true;
}

bool DbcParser::passOverSignal()
{
    const QString name = lexer.peekName().toString();
    lexer.takeUpToKeyword();
    note("dbc-syntax", begin, [&] {
        return QStringLiteral("the signal %1 is passed over, since no message is understood above "
                              "it")
            .arg(quotedWord(name));
    });
    return true;
}

/// "M", "m" with a number, or both, and the colon.
bool DbcParser::readMultiplexing(DbcMultiplexing *multiplexing)
{
    QStringRef word = lexer.takeName();
    if (word.startsWith(QLatin1Char('m'))) {
        multiplexing->isSwitched = true;
        word = word.mid(1);
        const bool isBoth = word.endsWith(QLatin1Char('M'));
        bool ok = false;
        const quint64 number = DbcLexer::toUnsigned(isBoth ? word.chopped(1) : word, &ok);
        if (!ok)
            return miss("the number after m");
        multiplexing->ranges = {{number, number}};
        word = isBoth ? word.right(1) : QStringRef();
    }
    multiplexing->isSwitch = word == QLatin1String("M");
    if (!word.isEmpty() && !multiplexing->isSwitch)
        return miss("M, or m with a number,");
    return expect(':');
}

/// Where its bits are: "0|8@1+".
bool DbcParser::readLayout(DbcSignal *signal)
{
    if (!expectNumber(&signal->startBit) || !expect('|') || !expectNumber(&signal->bits) ||
        !expect('@'))
        return false;
    signal->isBigEndian = lexer.accept('0');
    if (!signal->isBigEndian && !lexer.accept('1'))
        return miss("the byte order, which is 0 or 1,");
    signal->isSigned = lexer.accept('-');
    if (!signal->isSigned && !lexer.accept('+'))
        return miss("the sign, which is + or -,");
    if (signal->bits == 0)
        note("dbc-value", begin, [&] {
            return QStringLiteral("the signal %1 has no bits").arg(quotedWord(signal->name));
        });
    return true;
}

/// What its values mean: "(1,0) [0|255] "unit"". Each of the three may be missing.
bool DbcParser::readScaling(DbcSignal *signal)
{
    const auto lack = [&](const char *what) {
        note("dbc-missing", begin, [&] {
            return QStringLiteral("the signal %1 lacks its %2")
                .arg(quotedWord(signal->name), QLatin1String(what));
        });
    };
    if (!lexer.accept('('))
        lack("factor and offset, which count as 1 and 0");
    else if (!expectReal(&signal->factor) || !expect(',') || !expectReal(&signal->offset) ||
             !expect(')'))
        return false;
    if (!lexer.accept('['))
        lack("minimum and maximum");
    else if (!expectReal(&signal->minimum) || !expect('|') || !expectReal(&signal->maximum) ||
             !expect(']'))
        return false;
    if (lexer.peek() == QLatin1Char('"'))
        return expectText(&signal->unit);
    lack("unit");
    return true;
}

/// Names on the line of the signal, or after a comma; commas between them may be missing.
void DbcParser::readReceivers(DbcSignal *signal)
{
    bool isNamed = false;
    for (bool goesOn = true; goesOn && !lexer.atKeyword();) {
        const QStringRef name = lexer.startsLine() && isNamed ? QStringRef() : lexer.takeName();
        if (!name.isEmpty() && name != QLatin1String(DbcKeys::kNobody))
            signal->receivers.append(shared(name));
        isNamed = isNamed || !name.isEmpty();
        const bool isComma = lexer.accept(',');
        goesOn = isComma || (!name.isEmpty() && !lexer.startsLine());
        if (isComma && lexer.startsLine())
            isNamed = false;
    }
}

bool DbcParser::readTransmitters()
{
    DbcRemarks::Transmitters list{subjectHere(DbcOwner::Message), {}};
    if (!expectNumber(&list.subject.message) || !expect(':'))
        return false;
    while (!lexer.atKeyword()) {
        const QStringRef name = lexer.takeName();
        if (name.isEmpty() && !lexer.accept(','))
            break;
        if (!name.isEmpty() && name != QLatin1String(DbcKeys::kNobody))
            list.nodes.append(shared(name));
    }
    if (expectEnd())
        found.transmitters.append(list);
    return missing.isEmpty();
}

bool DbcParser::readVariable()
{
    DbcVariable variable;
    variable.place = begin;
    if (!expectName(&variable.name) || !readUnused())
        return false;
    file.variables.append(variable);
    return true;
}

bool DbcParser::readValueType()
{
    using Type = DbcSignal::ValueType;
    DbcRemarks::ValueType entry{subjectHere(DbcOwner::Signal), Type::Integer};
    quint32 number = 0;
    if (!readSignalSubject(&entry.subject))
        return false;
    (void)lexer.accept(':');
    if (!expectNumber(&number))
        return false;
    constexpr Type kTypes[] = {Type::Integer, Type::Float, Type::Double};
    if (number > 2)
        return miss("a type of values from 0 to 2");
    if (!expectEnd())
        return false;
    entry.type = kTypes[number];
    found.valueTypes.append(entry);
    return true;
}

bool DbcParser::readSwitch()
{
    DbcRemarks::Switch entry;
    entry.subject = subjectHere(DbcOwner::Signal);
    if (!readSignalSubject(&entry.subject) || !expectName(&entry.name) ||
        !readRanges(&entry.ranges) || !expectEnd())
        return false;
    found.switches.append(entry);
    return true;
}

bool DbcParser::readRanges(QVector<DbcRange> *ranges)
{
    do {
        DbcRange range;
        if (!expectNumber(&range.first))
            return false;
        range.last = range.first;
        if (lexer.accept('-') && !expectNumber(&range.last))
            return false;
        if (range.last < range.first)
            std::swap(range.first, range.last);
        ranges->append(range);
    } while (lexer.accept(','));
    return true;
}
