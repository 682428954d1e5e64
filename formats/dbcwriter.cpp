// Sections of DBC files.
#include "formats/dbcwriter.h"

#include "formats/dbckeys.h"

#include <QHash>
#include <QSet>
#include <QTextCodec>

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
    // Most names end as no keyword does.
    const QChar last = name.at(name.size() - 1);
    return !last.isLower() && !last.isDigit() && keywords.contains(name);
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
quint64 highestOf(const KvaDbSignal &signal)
{
    return signal.bits >= 64 ? ~quint64(0) : (quint64(1) << signal.bits) - 1;
}

} // namespace

/// Names of a scope, none of which occurs twice.
class DbcWriter::UniqueNames
{
public:
    UniqueNames(int longestName, size_t count) : longest(longestName)
    {
        taken.reserve(static_cast<int>(count));
    }

    QString claim(const QString &wanted)
    {
        const QString stem = wanted.left(longest);
        return take(stem) ? stem : numbered(stem);
    }

private:
    /// False if the name is taken already.
    bool take(const QString &name)
    {
        const int before = taken.size();
        taken.insert(name);
        return taken.size() > before;
    }

    QString numbered(const QString &stem)
    {
        // Counted by what a number leaves of any stem, so that no number is tried twice.
        int &count = counts[stem.left(DbcKeys::kLongestName - kLongestNumber)];
        QString name;
        do {
            const QString number = QString::number(++count);
            name = stem.left(longest - number.size()) + number;
        } while (!take(name));
        return name;
    }

    static constexpr int kLongestNumber = 10;

    int longest;
    QSet<QString> taken;
    QHash<QString, int> counts;
};

DbcWriter::DbcWriter(KvaDb &source)
    : database(source), longNames{{DbcKeys::kLongNodeName, KvaDbAttributeOwner::Node},
                                  {DbcKeys::kLongMessageName, KvaDbAttributeOwner::Message},
                                  {DbcKeys::kLongSignalName, KvaDbAttributeOwner::Signal}}
{
    chooseNames(source);
}

template <class Named>
void DbcWriter::chooseNames(std::list<Named> &scope, LongNames &kind)
{
    UniqueNames fullNames(std::numeric_limits<int>::max(), scope.size());
    bool areAllFit = true;
    for (Named &named : scope) {
        named.fullFileName = fullNames.claim(identifier(named.name));
        named.fileName = named.fullFileName;
        areAllFit &= named.fullFileName.size() <= DbcKeys::kLongestName;
    }
    if (areAllFit)
        return;
    kind.areNeeded = true;
    UniqueNames names(DbcKeys::kLongestName, scope.size());
    for (Named &named : scope)
        named.fileName = names.claim(named.fullFileName);
}

void DbcWriter::chooseNames(KvaDb &source)
{
    auto &[ofNodes, ofMessages, ofSignals] = longNames;
    chooseNames(source.nodes, ofNodes);
    chooseNames(source.messages, ofMessages);
    for (KvaDbMessage &message : source.messages)
        chooseNames(message.signalList, ofSignals);
}

QByteArray DbcWriter::bytes()
{
    writeHead();
    for (const KvaDbMessage &message : database.messages)
        writeMessage(message);
    put("\n");
    writeComments();
    writeDefinitions();
    writeAttributes();
    writeValueTables();
    writeValueTypes();
    return QByteArray::fromRawData(out.constData(), used);
}

void DbcWriter::append(const QString &text)
{
    // Most texts are ASCII. The loop runs over all characters, so that the compiler can take
    // several at once.
    const ushort *characters = text.utf16();
    const int size = text.size();
    char *place = room(size);
    ushort seen = 0;
    for (int i = 0; i < size; ++i) {
        seen |= characters[i] | static_cast<ushort>(characters[i] - 1); // high bits of NUL, too
        place[i] = static_cast<char>(characters[i]);
    }
    if (seen >= 0x80) {
        const QByteArray bytes = encoded(text);
        return appendBytes(bytes.constData(), bytes.size());
    }
    used += size;
}

void DbcWriter::append(Quoted quoted)
{
    put("\"");
    const int start = used;
    append(quoted.text);
    const char *written = out.constData() + start;
    const auto size = static_cast<size_t>(used - start);
    if (std::memchr(written, '"', size) || std::memchr(written, '\\', size)) {
        used = start;
        append(escaped(quoted.text, database.doublesBackslashes));
    }
    put("\"");
}

void DbcWriter::append(const Place &place)
{
    if (place.node)
        put("BU_ ", place.node->fileName, " ");
    else if (place.signal)
        put("SG_ ", place.message->identifier, " ", place.signal->fileName, " ");
    else if (place.message)
        put("BO_ ", place.message->identifier, " ");
}

void DbcWriter::append(const KvaDbNode *node)
{
    if (node)
        put(node->fileName);
    else
        put(DbcKeys::kNobody);
}

void DbcWriter::writeHead()
{
    put("VERSION \"\"\n\n\nNS_ :\n");
    for (const char *symbol : DbcKeys::kSymbols)
        put("\t", symbol, "\n");
    put("\nBS_:\n\nBU_:");
    for (const KvaDbNode &node : database.nodes)
        put(" ", &node);
    put("\n\n");
}

void DbcWriter::putLimit(const QString &given, quint64 ofBits)
{
    if (given.isEmpty())
        put(ofBits);
    else
        put(given);
}

void DbcWriter::writeMessage(const KvaDbMessage &message)
{
    put("BO_ ", message.identifier, " ", message.fileName, ": ", message.dlc, " ", message.sender,
        "\n");
    for (const KvaDbSignal &signal : message.signalList) {
        put(" SG_ ", signal.fileName, " : ", signal.startBit, "|", signal.bits, "@1",
            signal.type == KvaDbSignalType::Unsigned ? "+" : "-", " (1,0) [");
        putLimit(signal.minimum, 0);
        put("|");
        putLimit(signal.maximum, highestOf(signal));
        put("] \"\" ", signal.receiver, "\n");
    }
    put("\n");
}

void DbcWriter::writeComments()
{
    writeComment({}, database.comment);
    for (const KvaDbMessage &message : database.messages) {
        writeComment({&message}, message.comment);
        for (const KvaDbSignal &signal : message.signalList)
            writeComment({&message, &signal}, signal.comment);
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
    for (const KvaDbAttributeDef &definition : database.definitions) {
        put("BA_DEF_ ", ownerWord(definition.owner), Quoted{definition.name}, " ");
        putTypeWords(definition);
        put(";\n");
    }
    for (const LongNames &kind : longNames) {
        if (kind.areNeeded)
            put("BA_DEF_ ", ownerWord(kind.owner), "\"", kind.attribute, "\" STRING;\n");
    }
    for (const KvaDbAttributeDef &definition : database.definitions) {
        put("BA_DEF_DEF_ ", Quoted{definition.name}, " ");
        putDefaultWord(definition);
        put(";\n");
    }
    for (const LongNames &kind : longNames) {
        if (kind.areNeeded)
            put("BA_DEF_DEF_ \"", kind.attribute, "\" \"\";\n");
    }
}

void DbcWriter::writeAttributesOf(const KvaDbAttributeList &owner, const Place &place)
{
    for (const KvaDbAttribute &attribute : owner.attributes) {
        const KvaDbAttributeDef &definition = *attribute.definition;
        put("BA_ ", Quoted{definition.name}, " ", place);
        if (definition.type == KvaDbAttributeType::String)
            put(Quoted{attribute.text}, ";\n");
        else if (definition.type == KvaDbAttributeType::Float)
            put(attribute.text, ";\n");
        else
            put(attribute.number, ";\n");
    }
}

void DbcWriter::writeFullName(const char *attribute, const Place &place, const KvaDbNamed &named)
{
    if (named.isShortened())
        put("BA_ \"", attribute, "\" ", place, Quoted{named.fullFileName}, ";\n");
}

void DbcWriter::writeAttributes()
{
    writeAttributesOf(database, {});
    for (const KvaDbNode &node : database.nodes) {
        const Place place{nullptr, nullptr, &node};
        writeAttributesOf(node, place);
        writeFullName(DbcKeys::kLongNodeName, place, node);
    }
    for (const KvaDbMessage &message : database.messages) {
        const Place place{&message};
        writeAttributesOf(message, place);
        writeFullName(DbcKeys::kLongMessageName, place, message);
        for (const KvaDbSignal &signal : message.signalList) {
            const Place signalPlace{&message, &signal};
            writeAttributesOf(signal, signalPlace);
            writeFullName(DbcKeys::kLongSignalName, signalPlace, signal);
        }
    }
}

void DbcWriter::writeValueTables()
{
    forEachSignal([this](const Place &place) {
        const KvaDbSignal &signal = *place.signal;
        if (signal.values.isEmpty())
            return;
        put("VAL_ ", place.message->identifier, " ", signal.fileName);
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
            put("SIG_VALTYPE_ ", place.message->identifier, " ", place.signal->fileName, " : ",
                type == KvaDbSignalType::Float ? 1 : 2, ";\n");
    });
}
