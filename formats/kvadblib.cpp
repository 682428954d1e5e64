// A database of CAN messages and its DBC form.
#include "formats/kvadblib.h"

#include "formats/dbckeys.h"
#include "support/plaintext.h"

#include <QFile>
#include <QHash>
#include <QSet>
#include <QTextCodec>
#include <QVector>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>
#include <vector>

struct KvaDbAttributeDef {
    struct EnumValue {
        QString name;
        int value;
    };
    QString name;
    KvaDbAttributeOwner owner = KvaDbAttributeOwner::Database;
    KvaDbAttributeType type = KvaDbAttributeType::Integer;
    int defaultValue = 0;
    int minimum = 0;
    int maximum = 0;
    QString defaultText;
    QVector<EnumValue> values;
};

struct KvaDbAttribute {
    KvaDbAttributeDef *definition = nullptr;
    int number = 0;
    QString text;
};

namespace
{

/// What can have attributes.
struct AttributeOwner {
    std::vector<std::unique_ptr<KvaDbAttribute>> attributes;
};

} // namespace

struct KvaDbSignal : AttributeOwner {
    QString name;
    QString comment;
    int startBit = 0;
    int bits = 0;
};

struct KvaDbMessage : AttributeOwner {
    QString name;
    QString comment;
    quint32 identifier = 0; ///< bit 31: extended
    int dlc = 0;
    std::vector<std::unique_ptr<KvaDbSignal>> signalList;
};

struct KvaDb : AttributeOwner {
    bool isCreated = false;
    std::vector<std::unique_ptr<KvaDbAttributeDef>> definitions;
    std::vector<std::unique_ptr<KvaDbMessage>> messages;
};

namespace
{

constexpr quint32 kExtendedMask = 0x1FFFFFFF;
constexpr quint32 kStandardMask = 0x7FF;

/// \a text for the inside of quotes.
QString escaped(QString text)
{
    if (text.contains(QLatin1Char('\\')))
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

/// Names of a scope, none of which occurs twice.
class UniqueNames
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

/// What a message or signal is called in the file.
struct FileName {
    QString name;
    QString fullName; ///< unique as well: readers take it in place of a shortened name

    bool isShortened() const { return name != fullName; }
};

/// The names of a scope in the file.
class FileNames
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

/// Writes the sections of a file from a finished database.
class DbcWriter
{
public:
    explicit DbcWriter(const KvaDb &source) : database(source) { chooseNames(); }

    const std::string &bytes()
    {
        writeHead();
        for (const auto &message : database.messages)
            writeMessage(*message);
        put("\n");
        writeComments();
        writeDefinitions();
        writeValues();
        return out;
    }

private:
    /// A text that stands in quotes.
    struct Quoted {
        const QString &text;
    };
    /// What the value or comment in a line belongs to; no message: the database.
    struct Place {
        const KvaDbMessage *message = nullptr;
        const KvaDbSignal *signal = nullptr;
    };

    void chooseNames()
    {
        FileNames messageNames;
        for (const auto &message : database.messages) {
            names.insert(message.get(), messageNames.claim(message->name));
            FileNames signalNames;
            for (const auto &signal : message->signalList)
                names.insert(signal.get(), signalNames.claim(signal->name));
        }
    }

    const FileName &nameOf(const void *messageOrSignal) const
    {
        return *names.constFind(messageOrSignal);
    }

    /// Texts and numbers, one after the other.
    template <class... Parts>
    void put(const Parts &...parts)
    {
        (append(parts), ...);
    }

    void append(const char *ascii) { out += ascii; }
    void append(int number) { out += std::to_string(number); }
    void append(quint32 number) { out += std::to_string(number); }
    void append(quint64 number) { out += std::to_string(number); }

    void append(const QString &text)
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

    void append(Quoted quoted) { put("\"", escaped(quoted.text), "\""); }

    void append(const Place &place)
    {
        if (place.signal)
            put("SG_ ", place.message->identifier, " ", nameOf(place.signal).name, " ");
        else if (place.message)
            put("BO_ ", place.message->identifier, " ");
    }

    void writeHead()
    {
        put("VERSION \"\"\n\n\nNS_ :\n");
        for (const char *symbol : DbcKeys::kSymbols)
            put("\t", symbol, "\n");
        put("\nBS_:\n\nBU_:\n\n");
    }

    void writeMessage(const KvaDbMessage &message)
    {
        put("BO_ ", message.identifier, " ", nameOf(&message).name, ": ", message.dlc,
            " Vector__XXX\n");
        for (const auto &signal : message.signalList) {
            const quint64 highest =
                signal->bits >= 64 ? ~quint64(0) : (quint64(1) << signal->bits) - 1;
            put(" SG_ ", nameOf(signal.get()).name, " : ", signal->startBit, "|", signal->bits,
                "@1+ (1,0) [0|", highest, "] \"\" Vector__XXX\n");
        }
        put("\n");
    }

    void writeComments()
    {
        for (const auto &message : database.messages) {
            writeComment({message.get()}, message->comment);
            for (const auto &signal : message->signalList)
                writeComment({message.get(), signal.get()}, signal->comment);
        }
    }

    void writeComment(const Place &place, const QString &comment)
    {
        if (!comment.isEmpty())
            put("CM_ ", place, Quoted{comment}, ";\n");
    }

    bool needsLongNames(bool ofSignals) const
    {
        for (const auto &message : database.messages) {
            if (!ofSignals && nameOf(message.get()).isShortened())
                return true;
            for (const auto &signal : message->signalList) {
                if (ofSignals && nameOf(signal.get()).isShortened())
                    return true;
            }
        }
        return false;
    }

    static const char *ownerWord(KvaDbAttributeOwner owner)
    {
        switch (owner) {
        case KvaDbAttributeOwner::Message:
            return "BO_ ";
        case KvaDbAttributeOwner::Signal:
            return "SG_ ";
        case KvaDbAttributeOwner::Database:
            break;
        }
        return "";
    }

    void putTypeWords(const KvaDbAttributeDef &definition)
    {
        switch (definition.type) {
        case KvaDbAttributeType::String:
            put("STRING");
            return;
        case KvaDbAttributeType::Integer:
            put("INT ", definition.minimum, " ", definition.maximum);
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

    void putDefaultWord(const KvaDbAttributeDef &definition)
    {
        switch (definition.type) {
        case KvaDbAttributeType::String:
            put(Quoted{definition.defaultText});
            return;
        case KvaDbAttributeType::Integer:
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

    void writeDefinitions()
    {
        const bool longMessages = needsLongNames(false);
        const bool longSignals = needsLongNames(true);
        for (const auto &definition : database.definitions) {
            put("BA_DEF_ ", ownerWord(definition->owner), Quoted{definition->name}, " ");
            putTypeWords(*definition);
            put(";\n");
        }
        if (longMessages)
            put("BA_DEF_ BO_ \"", DbcKeys::kLongMessageName, "\" STRING;\n");
        if (longSignals)
            put("BA_DEF_ SG_ \"", DbcKeys::kLongSignalName, "\" STRING;\n");
        for (const auto &definition : database.definitions) {
            put("BA_DEF_DEF_ ", Quoted{definition->name}, " ");
            putDefaultWord(*definition);
            put(";\n");
        }
        if (longMessages)
            put("BA_DEF_DEF_ \"", DbcKeys::kLongMessageName, "\" \"\";\n");
        if (longSignals)
            put("BA_DEF_DEF_ \"", DbcKeys::kLongSignalName, "\" \"\";\n");
    }

    void writeAttributes(const AttributeOwner &owner, const Place &place)
    {
        for (const auto &attribute : owner.attributes) {
            const KvaDbAttributeDef &definition = *attribute->definition;
            put("BA_ ", Quoted{definition.name}, " ", place);
            if (definition.type == KvaDbAttributeType::String)
                put(Quoted{attribute->text}, ";\n");
            else
                put(attribute->number, ";\n");
        }
    }

    void writeFullName(const char *attribute, const Place &place, const FileName &name)
    {
        if (name.isShortened())
            put("BA_ \"", attribute, "\" ", place, Quoted{name.fullName}, ";\n");
    }

    void writeValues()
    {
        writeAttributes(database, {});
        for (const auto &message : database.messages) {
            const Place place{message.get()};
            writeAttributes(*message, place);
            writeFullName(DbcKeys::kLongMessageName, place, nameOf(message.get()));
            for (const auto &signal : message->signalList) {
                const Place signalPlace{message.get(), signal.get()};
                writeAttributes(*signal, signalPlace);
                writeFullName(DbcKeys::kLongSignalName, signalPlace, nameOf(signal.get()));
            }
        }
    }

    const KvaDb &database;
    QHash<const void *, FileName> names; ///< of messages and signals
    std::string out;
};

KvaDbStatus addAttribute(AttributeOwner *owner, KvaDbAttributeDefHnd definition,
                         KvaDbAttributeHnd *attribute)
{
    if (!owner || !definition || !attribute)
        return kvaDbErr_Param;
    owner->attributes.push_back(std::make_unique<KvaDbAttribute>());
    *attribute = owner->attributes.back().get();
    (*attribute)->definition = definition;
    return kvaDbOK;
}

/// Sets a field of what the handle stands for.
template <class Thing, class Field, class Value>
KvaDbStatus set(Thing *thing, Field field, const Value &value)
{
    if (!thing)
        return kvaDbErr_Param;
    thing->*field = value;
    return kvaDbOK;
}

KvaDbStatus setNumber(KvaDbAttributeHnd attribute, KvaDbAttributeType type, int value)
{
    if (!attribute || attribute->definition->type != type)
        return kvaDbErr_Param;
    attribute->number = value;
    return kvaDbOK;
}

} // namespace

KvaDbStatus kvaDbOpen(KvaDbHnd *database)
{
    if (!database)
        return kvaDbErr_Param;
    *database = new KvaDb;
    return kvaDbOK;
}

KvaDbStatus kvaDbCreate(KvaDbHnd database, const QString &localName, const char *fileName)
{
    Q_UNUSED(localName)
    Q_UNUSED(fileName)
    if (!database)
        return kvaDbErr_Param;
    *database = KvaDb();
    database->isCreated = true;
    return kvaDbOK;
}

KvaDbStatus kvaDbWriteFile(KvaDbHnd database, const QString &fileName)
{
    if (!database)
        return kvaDbErr_Param;
    if (!database->isCreated)
        return kvaDbErr_NoDatabase;
    DbcWriter writer(*database);
    const std::string &bytes = writer.bytes();
    const auto size = static_cast<qint64>(bytes.size());
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        file.write(bytes.data(), size) != size || !file.flush())
        return kvaDbErr_WriteFile;
    return kvaDbOK;
}

KvaDbStatus kvaDbClose(KvaDbHnd database)
{
    delete database;
    return database ? kvaDbOK : kvaDbErr_Param;
}

KvaDbStatus kvaDbAddAttributeDefinition(KvaDbHnd database, KvaDbAttributeDefHnd *definition)
{
    if (!database || !definition)
        return kvaDbErr_Param;
    database->definitions.push_back(std::make_unique<KvaDbAttributeDef>());
    *definition = database->definitions.back().get();
    return kvaDbOK;
}

KvaDbStatus kvaDbSetAttributeDefinitionName(KvaDbAttributeDefHnd definition, const QString &name)
{
    return set(definition, &KvaDbAttributeDef::name, name);
}

KvaDbStatus kvaDbSetAttributeDefinitionOwner(KvaDbAttributeDefHnd definition,
                                             KvaDbAttributeOwner owner)
{
    return set(definition, &KvaDbAttributeDef::owner, owner);
}

KvaDbStatus kvaDbSetAttributeDefinitionType(KvaDbAttributeDefHnd definition,
                                            KvaDbAttributeType type)
{
    return set(definition, &KvaDbAttributeDef::type, type);
}

KvaDbStatus kvaDbSetAttributeDefinitionInt(KvaDbAttributeDefHnd definition, int defaultValue,
                                           int minimum, int maximum)
{
    if (!definition || definition->type != KvaDbAttributeType::Integer)
        return kvaDbErr_Param;
    definition->defaultValue = defaultValue;
    definition->minimum = minimum;
    definition->maximum = maximum;
    return kvaDbOK;
}

KvaDbStatus kvaDbSetAttributeDefinitionString(KvaDbAttributeDefHnd definition,
                                              const QString &defaultValue)
{
    return set(definition, &KvaDbAttributeDef::defaultText, defaultValue);
}

KvaDbStatus kvaDbAddAttributeDefinitionEnum(KvaDbAttributeDefHnd definition, const QString &name,
                                            int value)
{
    if (!definition || definition->type != KvaDbAttributeType::Enumeration)
        return kvaDbErr_Param;
    definition->values.append({name, value});
    return kvaDbOK;
}

KvaDbStatus kvaDbSetAttributeDefinitionEnumDefault(KvaDbAttributeDefHnd definition, int value)
{
    return set(definition, &KvaDbAttributeDef::defaultValue, value);
}

KvaDbStatus kvaDbAddAttribute(KvaDbHnd database, KvaDbAttributeDefHnd definition,
                              KvaDbAttributeHnd *attribute)
{
    return addAttribute(database, definition, attribute);
}

KvaDbStatus kvaDbAddMsgAttribute(KvaDbMessageHnd message, KvaDbAttributeDefHnd definition,
                                 KvaDbAttributeHnd *attribute)
{
    return addAttribute(message, definition, attribute);
}

KvaDbStatus kvaDbAddSignalAttribute(KvaDbSignalHnd signal, KvaDbAttributeDefHnd definition,
                                    KvaDbAttributeHnd *attribute)
{
    return addAttribute(signal, definition, attribute);
}

KvaDbStatus kvaDbSetAttributeValueInt(KvaDbAttributeHnd attribute, int value)
{
    return setNumber(attribute, KvaDbAttributeType::Integer, value);
}

KvaDbStatus kvaDbSetAttributeValueEnumeration(KvaDbAttributeHnd attribute, int value)
{
    return setNumber(attribute, KvaDbAttributeType::Enumeration, value);
}

KvaDbStatus kvaDbSetAttributeValueString(KvaDbAttributeHnd attribute, const QString &text,
                                         int length)
{
    if (!attribute || attribute->definition->type != KvaDbAttributeType::String)
        return kvaDbErr_Param;
    attribute->text = oneLine(text.left(length)); // unlike comments, values are one line
    return kvaDbOK;
}

KvaDbStatus kvaDbAddMsg(KvaDbHnd database, KvaDbMessageHnd *message)
{
    if (!database || !message)
        return kvaDbErr_Param;
    database->messages.push_back(std::make_unique<KvaDbMessage>());
    *message = database->messages.back().get();
    return kvaDbOK;
}

KvaDbStatus kvaDbSetMsgName(KvaDbMessageHnd message, const QString &name)
{
    return set(message, &KvaDbMessage::name, name);
}

KvaDbStatus kvaDbSetMsgComment(KvaDbMessageHnd message, const QString &comment)
{
    return set(message, &KvaDbMessage::comment, comment);
}

KvaDbStatus kvaDbSetMsgId(KvaDbMessageHnd message, quint32 identifier, quint32 flags)
{
    const bool isExtended = flags & KVADB_MESSAGE_EXT;
    return set(message, &KvaDbMessage::identifier,
               isExtended ? (identifier & kExtendedMask) | KVADB_MESSAGE_EXT
                          : identifier & kStandardMask);
}

KvaDbStatus kvaDbSetMsgDlc(KvaDbMessageHnd message, int bytes)
{
    return set(message, &KvaDbMessage::dlc, bytes);
}

KvaDbStatus kvaDbAddSignal(KvaDbMessageHnd message, KvaDbSignalHnd *signal)
{
    if (!message || !signal)
        return kvaDbErr_Param;
    message->signalList.push_back(std::make_unique<KvaDbSignal>());
    *signal = message->signalList.back().get();
    return kvaDbOK;
}

KvaDbStatus kvaDbSetSignalName(KvaDbSignalHnd signal, const QString &name)
{
    return set(signal, &KvaDbSignal::name, name);
}

KvaDbStatus kvaDbSetSignalComment(KvaDbSignalHnd signal, const QString &comment)
{
    return set(signal, &KvaDbSignal::comment, comment);
}

KvaDbStatus kvaDbSetSignalValueSize(KvaDbSignalHnd signal, int startBit, int bits)
{
    if (!signal)
        return kvaDbErr_Param;
    signal->startBit = startBit;
    signal->bits = bits;
    return kvaDbOK;
}
