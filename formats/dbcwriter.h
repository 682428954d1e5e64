// The DBC form of a database of messages.
#pragma once

#include "formats/kvadbrecords.h"

#include <QByteArray>
#include <QString>

#include <charconv>
#include <cstring>
#include <list>
#include <type_traits>

/// Writes the sections of a file from a finished database, in the order of the strictest reader.
class DbcWriter
{
public:
    explicit DbcWriter(KvaDb &source);

    /// Lives as long as the writer.
    QByteArray bytes();

private:
    /// A text that stands in quotes.
    struct Quoted {
        const QString &text;
    };
    class UniqueNames;

    /// What the value or comment in a line belongs to; none of them: the database.
    struct Place {
        const KvaDbMessage *message = nullptr;
        const KvaDbSignal *signal = nullptr;
        const KvaDbNode *node = nullptr;
    };
    /// The attribute that holds long names of a kind.
    struct LongNames {
        const char *attribute;
        KvaDbAttributeOwner owner;
        bool areNeeded = false;
    };

    void chooseNames(KvaDb &source);
    template <class Named>
    void chooseNames(std::list<Named> &scope, LongNames &kind);

    /// Texts and numbers, one after the other.
    template <class... Parts>
    void put(const Parts &...parts)
    {
        (append(parts), ...);
    }
    // The length of a literal is known.
    void append(const char *ascii) { appendBytes(ascii, static_cast<int>(std::strlen(ascii))); }
    template <class Number, class = std::enable_if_t<std::is_integral_v<Number>>>
    void append(Number number)
    {
        constexpr int kMostDigits = 20; // 18446744073709551615
        char *place = room(kMostDigits);
        used += static_cast<int>(std::to_chars(place, place + kMostDigits, number).ptr - place);
    }
    void appendBytes(const char *start, int size)
    {
        std::memcpy(room(size), start, static_cast<size_t>(size));
        used += size;
    }
    /// A place for so many bytes at the end of the text.
    char *room(int size)
    {
        if (size > out.size() - used)
            out.resize(2 * (out.size() + size));
        return out.data() + used;
    }
    void append(const QString &text);
    void append(Quoted quoted);
    void append(const Place &place);
    /// The name of a node, or the word for nobody.
    void append(const KvaDbNode *node);

    void writeHead();
    void putLimit(const QString &given, quint64 ofBits);
    void writeMessage(const KvaDbMessage &message);
    void writeComments();
    void writeComment(const Place &place, const QString &comment);
    void writeDefinitions();
    void putTypeWords(const KvaDbAttributeDef &definition);
    void putDefaultWord(const KvaDbAttributeDef &definition);
    void writeAttributes();
    void writeAttributesOf(const KvaDbAttributeList &owner, const Place &place);
    void writeFullName(const char *attribute, const Place &place, const KvaDbNamed &named);
    void writeValueTables();
    void writeValueTypes();

    template <class Write>
    void forEachSignal(const Write &write) const
    {
        for (const KvaDbMessage &message : database.messages) {
            for (const KvaDbSignal &signal : message.signalList)
                write(Place{&message, &signal});
        }
    }

    const KvaDb &database;
    LongNames longNames[3];
    QByteArray out; ///< larger than the text
    int used = 0;
};
