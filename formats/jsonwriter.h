// Writer of JSON that may stand in a page: whatever texts hold, none ends the element around it.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Appends to a text, value by value and without blanks. Who writes keeps the order: a key before
/// each value of an object, an end for each start. Besides what JSON demands, the characters of
/// markup and the line ends of scripts are written by their numbers.
class JsonWriter
{
public:
    explicit JsonWriter(QByteArray &to) : out(to) {}

    void startObject() { start('{'); }
    void endObject() { end('}'); }
    void startArray() { start('['); }
    void endArray() { end(']'); }

    /// ASCII that needs no escape.
    void key(const char *name);

    void value(qint64 number);
    void value(int number) { value(qint64(number)); }
    void value(quint32 number) { value(qint64(number)); }
    void value(double number); ///< what is no number is null
    void value(bool claim);
    void value(const QString &text);
    void value(const char *text) { value(QString::fromLatin1(text)); }
    void null();
    /// An array of numbers, at once; -1 is null.
    void array(const int *first, const int *last);
    template <class Value>
    void value(const std::optional<Value> &maybe)
    {
        if (maybe)
            value(*maybe);
        else
            null();
    }

    template <class Value>
    void member(const char *name, const Value &content)
    {
        key(name);
        value(content);
    }
    /// Not written without a value.
    template <class Value>
    void memberIf(const char *name, const std::optional<Value> &content)
    {
        if (content)
            member(name, *content);
    }

private:
    void start(char bracket);
    void end(char bracket);
    void separate();
    void writeEscaped(const QString &text);
    void escape(ushort unit);

    QByteArray &out;
    bool needsComma = false;
};
