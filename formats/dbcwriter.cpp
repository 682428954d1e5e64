// Sections of DBC files.
#include "formats/dbcwriter.h"

#include "formats/dbckeys.h"

#include <QSet>
#include <QTextCodec>

#include <algorithm>
#include <limits>

namespace
{

/// \a text for the inside of quotes.
QString escaped(QString text, bool doublesBackslashes)
{
    if (doublesBackslashes && text.contains(QLatin1Char('\\')))
        text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    if (text.contains(QLatin1Char('"')))
        text.replace(QLatin1Char('"'), QLatin1String("\\\""));
    return text;
}

bool isKeyword(const QString &name)
{
    static const QSet<QString> keywords = [] {
        QSet<QString> words;
        for (const char *word :
             {DbcKeys::kVersion, DbcKeys::kNewSymbols, DbcKeys::kBitTiming, DbcKeys::kNodes,
              DbcKeys::kMessage, DbcKeys::kSignal, DbcKeys::kVariable})
            words.insert(QLatin1String(word));
        for (const char *word : DbcKeys::kSymbols)
            words.insert(QLatin1String(word));
        return words;
    }();
    return keywords.contains(name);
}

QString identifier(const QString &name)
{
    const bool isFit = !name.isEmpty() && !name.at(0).isDigit() && name.at(0) != QLatin1Char('*') &&
                       !isKeyword(name);
    return isFit ? name : QLatin1Char('_') + name;
}

/// Windows-1252, with "?" for what it has not.
QByteArray encoded(const QString &text)
{
    QTextCodec *codec = QTextCodec::codecForName("windows-1252");
    QTextCodec::ConverterState state;
    state.flags = QTextCodec::DefaultConversion;
    QByteArray bytes =
        codec ? codec->fromUnicode(text.constData(), text.size(), &state) : text.toLatin1();
    return bytes.replace('\0', '?');
}

const char *ownerWord(KvaDbAttributeOwner owner)
{
    switch (owner) {
    case KvaDbAttributeOwner::Message:
        return "BO_ ";
    case KvaDbAttributeOwner::Signal:
        return "SG_ ";
    case KvaDbAttributeOwner::Node:
        return "BU_ ";
    case KvaDbAttributeOwner::Database:
        break;
    }
    return "";
}

/// The largest number without a sign.
QString highestOf(const KvaDbSignal &signal)
{
    return QString::number(signal.bits >= 64 ? ~quint64(0) : (quint64(1) << signal.bits) - 1);
}

} // namespace

/// Names of a scope, none of which occurs twice.
class DbcWriter::UniqueNames
{
public:
    explicit UniqueNames(int longestName) : longest(longestName) {}

    QString claim(const QString &wanted)
    {
        const QString stem = wanted.left(longest);
        const QString name = taken.contains(stem) ? numbered(stem) : stem;
        taken.insert(name);
        return name;
    }

private:
    QString numbered(const QString &stem)
    {
        // Counted by what a number leaves of any stem, so that no number is tried twice.
        int &count = counts[stem.left(DbcKeys::kLongestName - kLongestNumber)];
        QString name;
        do {
            const QString number = QString::number(++count);
            name = stem.left(longest - number.size()) + number;
        } while (taken.contains(name));
        return name;
    }

    static constexpr int kLongestNumber = 10;

    int longest;
    QSet<QString> taken;
    QHash<QString, int> counts;
};

/// The names of a scope in the file.
class DbcWriter::FileNames
{
public:
    FileName claim(const QString &wanted)
    {
        const QString fullName = fullNames.claim(identifier(wanted));
        return {names.claim(fullName), fullName};
    }

private:
    UniqueNames fullNames{std::numeric_limits<int>::max()};
    UniqueNames names{DbcKeys::kLongestName};
};

DbcWriter::DbcWriter(const KvaDb &source)
    : database(source), longNames{{DbcKeys::kLongNodeName, KvaDbAttributeOwner::Node},
                                  {DbcKeys::kLongMessageName, KvaDbAttributeOwner::Message},
                                  {DbcKeys::kLongSignalName, KvaDbAttributeOwner::Signal}}
{
    chooseNames();
}

void DbcWriter::chooseNames()
{
    auto &[ofNodes, ofMessages, ofSignals] = longNames;
    const auto choose = [this](FileNames &scope, const void *owner, const QString &name,
                               LongNames &kind) {
        names.insert(owner, scope.claim(name));
        kind.areNeeded |= isShortened(owner);
    };
    FileNames nodeNames;
    for (const auto &node : database.nodes)
        choose(nodeNames, node.get(), node->name, ofNodes);
    FileNames messageNames;
    for (const auto &message : database.messages) {
        choose(messageNames, message.get(), message->name, ofMessages);
        FileNames signalNames;
        for (const auto &signal : message->signalList)
            choose(signalNames, signal.get(), signal->name, ofSignals);
    }
}

const std::string &DbcWriter::bytes()
{
    writeHead();
    for (const auto &message : database.messages)
        writeMessage(*message);
    put("\n");
    writeComments();
    writeDefinitions();
    writeAttributes();
    writeValueTables();
    writeValueTypes();
    return out;
}

void DbcWriter::append(const QString &text)
{
    const bool isAscii = std::all_of(text.cbegin(), text.cend(), [](QChar character) {
        return character.unicode() > 0 && character.unicode() < 0x80;
    });
    if (!isAscii) {
        out += encoded(text).toStdString();
        return;
    }
    for (const QChar character : text)
        out += static_cast<char>(character.unicode());
}

void DbcWriter::append(Quoted quoted)
{
    put("\"", escaped(quoted.text, database.doublesBackslashes), "\"");
}

void DbcWriter::append(const Place &place)
{
    if (place.node)
        put("BU_ ", nameOf(place.node).name, " ");
    else if (place.signal)
        put("SG_ ", place.message->identifier, " ", nameOf(place.signal).name, " ");
    else if (place.message)
        put("BO_ ", place.message->identifier, " ");
}

void DbcWriter::append(const KvaDbNode *node)
{
    if (node)
        put(nameOf(node).name);
    else
        put(DbcKeys::kNobody);
}

void DbcWriter::writeHead()
{
    put("VERSION \"\"\n\n\nNS_ :\n");
    for (const char *symbol : DbcKeys::kSymbols)
        put("\t", symbol, "\n");
    put("\nBS_:\n\nBU_:");
    for (const auto &node : database.nodes)
        put(" ", node.get());
    put("\n\n");
}

void DbcWriter::writeMessage(const KvaDbMessage &message)
{
    put("BO_ ", message.identifier, " ", nameOf(&message).name, ": ", message.dlc, " ",
        message.sender, "\n");
    for (const auto &signal : message.signalList) {
        put(" SG_ ", nameOf(signal.get()).name, " : ", signal->startBit, "|", signal->bits, "@1",
            signal->type == KvaDbSignalType::Unsigned ? "+" : "-", " (1,0) [",
            signal->minimum.isEmpty() ? QStringLiteral("0") : signal->minimum, "|",
            signal->maximum.isEmpty() ? highestOf(*signal) : signal->maximum, "] \"\" ",
            signal->receiver, "\n");
    }
    put("\n");
}

void DbcWriter::writeComments()
{
    writeComment({}, database.comment);
    for (const auto &message : database.messages) {
        writeComment({message.get()}, message->comment);
        for (const auto &signal : message->signalList)
            writeComment({message.get(), signal.get()}, signal->comment);
    }
}

void DbcWriter::writeComment(const Place &place, const QString &comment)
{
    if (!comment.isEmpty())
        put("CM_ ", place, Quoted{comment}, ";\n");
}

void DbcWriter::putTypeWords(const KvaDbAttributeDef &definition)
{
    switch (definition.type) {
    case KvaDbAttributeType::String:
        put("STRING");
        return;
    case KvaDbAttributeType::Integer:
        put("INT ", definition.minimum, " ", definition.maximum);
        return;
    case KvaDbAttributeType::Float:
        put("FLOAT ", definition.range);
        return;
    case KvaDbAttributeType::Enumeration:
        break;
    }
    put("ENUM ");
    const char *separator = "";
    for (const KvaDbAttributeDef::EnumValue &value : definition.values) {
        put(separator, Quoted{value.name});
        separator = ",";
    }
}

void DbcWriter::putDefaultWord(const KvaDbAttributeDef &definition)
{
    switch (definition.type) {
    case KvaDbAttributeType::String:
        put(Quoted{definition.defaultText});
        return;
    case KvaDbAttributeType::Integer:
    case KvaDbAttributeType::Float:
        put(definition.defaultValue);
        return;
    case KvaDbAttributeType::Enumeration:
        break;
    }
    for (const KvaDbAttributeDef::EnumValue &value : definition.values) {
        if (value.value == definition.defaultValue) {
            put(Quoted{value.name});
            return;
        }
    }
    put("\"\"");
}

void DbcWriter::writeDefinitions()
{
    for (const auto &definition : database.definitions) {
        put("BA_DEF_ ", ownerWord(definition->owner), Quoted{definition->name}, " ");
        putTypeWords(*definition);
        put(";\n");
    }
    for (const LongNames &kind : longNames) {
        if (kind.areNeeded)
            put("BA_DEF_ ", ownerWord(kind.owner), "\"", kind.attribute, "\" STRING;\n");
    }
    for (const auto &definition : database.definitions) {
        put("BA_DEF_DEF_ ", Quoted{definition->name}, " ");
        putDefaultWord(*definition);
        put(";\n");
    }
    for (const LongNames &kind : longNames) {
        if (kind.areNeeded)
            put("BA_DEF_DEF_ \"", kind.attribute, "\" \"\";\n");
    }
}

void DbcWriter::writeAttributesOf(const KvaDbAttributeList &owner, const Place &place)
{
    for (const auto &attribute : owner.attributes) {
        const KvaDbAttributeDef &definition = *attribute->definition;
        put("BA_ ", Quoted{definition.name}, " ", place);
        if (definition.type == KvaDbAttributeType::String)
            put(Quoted{attribute->text}, ";\n");
        else if (definition.type == KvaDbAttributeType::Float)
            put(attribute->text, ";\n");
        else
            put(attribute->number, ";\n");
    }
}

void DbcWriter::writeFullName(const char *attribute, const Place &place, const FileName &name)
{
    if (name.isShortened())
        put("BA_ \"", attribute, "\" ", place, Quoted{name.fullName}, ";\n");
}

void DbcWriter::writeAttributes()
{
    writeAttributesOf(database, {});
    for (const auto &node : database.nodes) {
        const Place place{nullptr, nullptr, node.get()};
        writeAttributesOf(*node, place);
        writeFullName(DbcKeys::kLongNodeName, place, nameOf(node.get()));
    }
    for (const auto &message : database.messages) {
        const Place place{message.get()};
        writeAttributesOf(*message, place);
        writeFullName(DbcKeys::kLongMessageName, place, nameOf(message.get()));
        for (const auto &signal : message->signalList) {
            const Place signalPlace{message.get(), signal.get()};
            writeAttributesOf(*signal, signalPlace);
            writeFullName(DbcKeys::kLongSignalName, signalPlace, nameOf(signal.get()));
        }
    }
}

void DbcWriter::writeValueTables()
{
    forEachSignal([this](const Place &place) {
        const KvaDbSignal &signal = *place.signal;
        if (signal.values.isEmpty())
            return;
        put("VAL_ ", place.message->identifier, " ", nameOf(&signal).name);
        for (const KvaDbSignal::Value &value : signal.values)
            put(" ", value.number, " ", Quoted{value.text});
        put(" ;\n");
    });
}

void DbcWriter::writeValueTypes()
{
    forEachSignal([this](const Place &place) {
        const KvaDbSignalType type = place.signal->type;
        if (type == KvaDbSignalType::Float || type == KvaDbSignalType::Double)
            put("SIG_VALTYPE_ ", place.message->identifier, " ", nameOf(place.signal).name, " : ",
                type == KvaDbSignalType::Float ? 1 : 2, ";\n");
    });
}
