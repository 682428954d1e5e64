// From names in statements to the things that have them.
#include "formats/dbclinker.h"

#include "formats/dbckeys.h"
#include "support/printable.h"

namespace
{

QString hexIdentifier(const DbcMessage &message)
{
    return QStringLiteral("0x%1").arg(message.identifier, 0, 16);
}

} // namespace

DbcLinker::DbcLinker(DbcFile *result, FileProblems *collector) : file(*result), problems(*collector)
{
}

void DbcLinker::link(const DbcRemarks &remarks)
{
    indexMessages();
    indexNames();
    setDefaults(remarks.defaults);
    for (const auto &attribute : remarks.attributes)
        setAttribute(attribute);
    for (const auto &comment : remarks.comments)
        setComment(comment);
    for (const auto &values : remarks.values)
        setValues(values);
    for (const auto &entry : remarks.valueTypes)
        setValueType(entry);
    for (const auto &transmitters : remarks.transmitters)
        setTransmitters(transmitters);
    for (const auto &entry : remarks.switches)
        setSwitch(entry);
    setLongNames();
    for (DbcMessage &one : file.messages)
        check(&one);
}

void DbcLinker::indexMessages()
{
    for (int number = 0; number < file.messages.size(); ++number) {
        DbcMessage &one = file.messages[number];
        const auto former = messageNumbers.constFind(one.reference);
        if (former != messageNumbers.constEnd()) {
            DbcMessage &replaced = file.messages[*former];
            replaced.isReplaced = true;
            note("dbc-twice", one.place, [&] {
                return QStringLiteral("the message %1 takes the place of %2 of line %3, which has "
                                      "the same identifier %4")
                    .arg(quotedWord(one.name), quotedWord(replaced.name),
                         QString::number(replaced.place.line), hexIdentifier(one));
            });
        }
        messageNumbers.insert(one.reference, number);
        indexSignals(number);
    }
}

void DbcLinker::indexSignals(int messageNumber)
{
    QVector<DbcSignal> &list = file.messages[messageNumber].signalList;
    for (int number = 0; number < list.size(); ++number) {
        const QPair<int, QString> key(messageNumber, list[number].name);
        const auto former = signalNumbers.constFind(key);
        if (former != signalNumbers.constEnd()) {
            list[*former].isReplaced = true;
            note("dbc-twice", list[number].place, [&] {
                return QStringLiteral("the signal %1 takes the place of the one of line %2")
                    .arg(quotedWord(key.second))
                    .arg(list[*former].place.line);
            });
        }
        signalNumbers.insert(key, number);
    }
}

void DbcLinker::indexNames()
{
    for (int number = 0; number < file.nodes.size(); ++number)
        nodeNumbers.insert(file.nodes[number].name, number);
    for (int number = 0; number < file.variables.size(); ++number)
        variableNumbers.insert(file.variables[number].name, number);
}

void DbcLinker::setDefaults(const QVector<DbcRemarks::Default> &defaults)
{
    constexpr DbcOwner kOwners[] = {DbcOwner::Network, DbcOwner::Node, DbcOwner::Message,
                                    DbcOwner::Signal, DbcOwner::Variable};
    for (const auto &entry : defaults) {
        bool isDefined = false;
        for (const DbcOwner owner : kOwners) {
            const int number = file.definitionNumbers.value({owner, entry.name}, -1);
            if (number < 0)
                continue;
            DbcAttributeDefinition &definition = file.definitions[number];
            definition.hasDefault = true;
            definition.defaultValue = attributeText(definition, entry.text, entry.place);
            isDefined = true;
        }
        if (!isDefined)
            note("dbc-attribute", entry.place, [&] {
                return QStringLiteral("the default of %1 is passed over: there is no BA_DEF_ of "
                                      "that attribute")
                    .arg(quotedWord(entry.name));
            });
    }
}

void DbcLinker::setAttribute(const DbcRemarks::Attribute &attribute)
{
    DbcItem *const owner = item(attribute.subject);
    if (!owner)
        return;
    DbcAttribute value;
    value.definition = definitionNumber(attribute);
    value.place = attribute.subject.place;
    value.text = attributeText(file.definitions[value.definition], attribute.text, value.place);
    owner->attributes.append(value);
}

void DbcLinker::setComment(const DbcRemarks::Comment &comment)
{
    DbcItem *const owner = item(comment.subject);
    if (!owner)
        return;
    if (owner != &file.network) {
        owner->comment = comment.text;
        return;
    }
    if (!owner->comment.isEmpty())
        owner->comment += QLatin1Char('\n');
    owner->comment += comment.text;
}

void DbcLinker::setValues(const DbcRemarks::Values &values)
{
    if (values.subject.owner == DbcOwner::Signal) {
        if (DbcSignal *const owner = signal(values.subject))
            owner->values = values.values;
    } else if (item(values.subject)) {
        file.variables[variableNumbers.value(values.subject.name)].values = values.values;
    }
}

void DbcLinker::setValueType(const DbcRemarks::ValueType &entry)
{
    DbcSignal *const owner = signal(entry.subject);
    if (!owner)
        return;
    owner->valueType = entry.type;
    const quint32 bits = entry.type == DbcSignal::ValueType::Float ? 32 : 64;
    if (entry.type != DbcSignal::ValueType::Integer && owner->bits != bits)
        note("dbc-value", entry.subject.place, [&] {
            return QStringLiteral("the signal %1 is a floating-point number of %2 bits, and has %3")
                .arg(quotedWord(owner->name))
                .arg(bits)
                .arg(owner->bits);
        });
}

void DbcLinker::setTransmitters(const DbcRemarks::Transmitters &transmitters)
{
    DbcMessage *const owner = message(transmitters.subject);
    if (!owner)
        return;
    owner->transmitters = transmitters.nodes;
    for (const QString &node : transmitters.nodes)
        checkNode(node, transmitters.subject.place);
}

void DbcLinker::setSwitch(const DbcRemarks::Switch &entry)
{
    DbcSignal *const owner = signal(entry.subject);
    if (!owner)
        return;
    owner->multiplexing.isSwitched = true;
    owner->multiplexing.switchName = entry.name;
    owner->multiplexing.ranges = entry.ranges;
}

void DbcLinker::setLongNames()
{
    for (DbcNode &node : file.nodes)
        setLongName(DbcOwner::Node, &node, DbcKeys::kLongNodeName);
    for (DbcVariable &variable : file.variables)
        setLongName(DbcOwner::Variable, &variable, DbcKeys::kLongVariableName);
    for (DbcMessage &one : file.messages) {
        setLongName(DbcOwner::Message, &one, DbcKeys::kLongMessageName);
        for (DbcSignal &part : one.signalList)
            setLongName(DbcOwner::Signal, &part, DbcKeys::kLongSignalName);
    }
}

void DbcLinker::setLongName(DbcOwner owner, DbcItem *item, const char *attribute)
{
    const QString name =
        item->attributes.isEmpty() ? QString() : file.attribute(owner, *item, attribute);
    item->longName = name.isEmpty() ? item->name : name;
}

void DbcLinker::check(DbcMessage *message)
{
    if (!message->sender.isEmpty())
        checkNode(message->sender, message->place);
    for (const DbcSignal &part : qAsConst(message->signalList)) {
        for (const QString &node : part.receivers)
            checkNode(node, part.place);
        if (!message->isPseudo)
            checkSize(*message, part);
    }
    checkSwitches(message);
}

void DbcLinker::checkSize(const DbcMessage &message, const DbcSignal &signal)
{
    if (signal.bytesNeeded() <= message.size)
        return;
    note("dbc-frame", signal.place, [&] {
        return QStringLiteral("the signal %1 needs a message of %2 bytes, and %3 of line %4 has %5")
            .arg(quotedWord(signal.name), QString::number(signal.bytesNeeded()),
                 quotedWord(message.name), QString::number(message.place.line),
                 QString::number(message.size));
    });
}

/// Gives the only switch of a message to those that it switches without saying so.
void DbcLinker::checkSwitches(DbcMessage *message)
{
    QStringList switches;
    for (const DbcSignal &part : qAsConst(message->signalList)) {
        if (part.multiplexing.isSwitch && !part.isReplaced)
            switches.append(part.name);
    }
    const QString only = switches.size() == 1 ? switches.first() : QString();
    for (DbcSignal &part : message->signalList) {
        DbcMultiplexing &multiplexing = part.multiplexing;
        if (!multiplexing.isSwitched || !multiplexing.switchName.isEmpty())
            continue;
        multiplexing.switchName = part.name == only ? QString() : only;
        if (multiplexing.switchName.isEmpty())
            note("dbc-multiplexing", part.place, [&] {
                return QStringLiteral("no one can tell which signal switches %1: its message has "
                                      "%2 signals with M, and there is no SG_MUL_VAL_ of it")
                    .arg(quotedWord(part.name))
                    .arg(switches.size());
            });
    }
}

/// Tells once of a node that BU_ does not name.
void DbcLinker::checkNode(const QString &name, const DbcPlace &place)
{
    constexpr int kMostTold = 1000; // more would not be told anyway
    if (nodeNumbers.contains(name) || undeclared.size() >= kMostTold || undeclared.contains(name))
        return;
    undeclared.insert(name);
    note("dbc-node", place, [&] {
        return QStringLiteral("the node %1 is none of those that BU_ names").arg(quotedWord(name));
    });
}

DbcMessage *DbcLinker::message(const DbcSubject &subject)
{
    const int number = messageNumbers.value(subject.message, -1);
    if (number >= 0)
        return &file.messages[number];
    note("dbc-reference", subject.place, [&] {
        return QStringLiteral("there is no message with the identifier %1, and what is said of it "
                              "is passed over")
            .arg(subject.message);
    });
    return nullptr;
}

DbcSignal *DbcLinker::signal(const DbcSubject &subject)
{
    DbcMessage *const owner = message(subject);
    if (!owner)
        return nullptr;
    const int messageNumber = messageNumbers.value(subject.message);
    const int number = signalNumbers.value({messageNumber, subject.name}, -1);
    if (number >= 0)
        return &owner->signalList[number];
    note("dbc-reference", subject.place, [&] {
        return QStringLiteral("the message %1 has no signal %2, and what is said of it is passed "
                              "over")
            .arg(quotedWord(owner->name), quotedWord(subject.name));
    });
    return nullptr;
}

DbcItem *DbcLinker::item(const DbcSubject &subject)
{
    const auto named = [&](const QHash<QString, int> &numbers, const char *kind) {
        const int number = numbers.value(subject.name, -1);
        if (number < 0)
            note("dbc-reference", subject.place, [&] {
                return QStringLiteral("there is no %1 %2, and what is said of it is passed over")
                    .arg(QLatin1String(kind), quotedWord(subject.name));
            });
        return number;
    };
    int number = -1;
    switch (subject.owner) {
    case DbcOwner::Network:
        return &file.network;
    case DbcOwner::Message:
        return message(subject);
    case DbcOwner::Signal:
        return signal(subject);
    case DbcOwner::Node:
        number = named(nodeNumbers, "node");
        return number < 0 ? nullptr : &file.nodes[number];
    case DbcOwner::Variable:
        number = named(variableNumbers, "environment variable");
        return number < 0 ? nullptr : &file.variables[number];
    }
    return nullptr;
}

/// Makes a definition of text if the file has none.
int DbcLinker::definitionNumber(const DbcRemarks::Attribute &attribute)
{
    const QPair<DbcOwner, QString> key(attribute.subject.owner, attribute.name);
    const int number = file.definitionNumbers.value(key, -1);
    if (number >= 0)
        return number;
    DbcAttributeDefinition definition;
    definition.name = attribute.name;
    definition.owner = attribute.subject.owner;
    definition.isDefined = false;
    definition.place = attribute.subject.place;
    note("dbc-attribute", definition.place, [&] {
        return QStringLiteral("there is no BA_DEF_ of the attribute %1 for what has it here, and "
                              "its values are taken as they are")
            .arg(quotedWord(attribute.name));
    });
    file.definitionNumbers.insert(key, file.definitions.size());
    file.definitions.append(definition);
    return file.definitions.size() - 1;
}

/// Of an enumeration the word with that number, or the word itself.
QString DbcLinker::attributeText(const DbcAttributeDefinition &definition, const QString &text,
                                 const DbcPlace &place)
{
    using Type = DbcAttributeDefinition::Type;
    if (definition.type == Type::Text)
        return text;
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (definition.type == Type::Words) {
        const bool isKnown = isNumber && number >= 0 && number < definition.words.size();
        if (isKnown)
            return definition.words.at(static_cast<int>(number));
        isNumber = definition.words.contains(text);
    }
    if (!isNumber)
        note("dbc-value", place, [&] {
            return QStringLiteral("%1 is no value of the attribute %2, and is taken as it is")
                .arg(quotedWord(text), quotedWord(definition.name));
        });
    return text;
}

void DbcLinker::note(const char *rule, const DbcPlace &place, const std::function<QString()> &words)
{
    problems.add(rule, place.line, place.column, words);
}
