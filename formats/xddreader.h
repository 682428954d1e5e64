// Reader of XML descriptions of devices (CiA 311, XDD and XDC), tolerant of what files in the field
// hold. It knows elements and attributes; what they mean for objects is the parser's concern.
#pragma once

#include "formats/xddfile.h"
#include "support/fileproblems.h"

#include <QByteArray>
#include <QXmlStreamReader>

/// Reads one file. Elements are known by their names without prefix and name space, since files
/// have these in any form. A file that is not well-formed is read up to its fault.
class XddReader
{
public:
    static constexpr qint64 kMostBytes = 64 * 1024 * 1024;
    static constexpr int kMostDepth = 100; ///< of elements in each other; the schema needs 15

    static constexpr int kMostAttributes = 255; ///< of an element; the schema has 20

    /// In UTF-8 or Windows-1252, whatever they declare, or with a byte order mark. \a result and
    /// \a collector must outlive the reader.
    XddReader(const QByteArray &bytes, XddFile *result, FileProblems *collector);

    /// False if there is nothing in it for CANopen; whyNot() tells then the reason.
    bool read();

    /// Words that follow a colon.
    const QString &whyNot() const { return reason; }

    /// Of what whyNot() tells; 0 if it is none of a line.
    int lineOfReason() const { return reasonLine; }

private:
    enum class Kind : quint8;
    struct Row;
    static const Row kRows[];
    static const Row *rowOf(const QStringRef &name);

    /// The text for something, of which the English one counts.
    struct Label {
        QString text;
        bool isEnglish = false;
    };
    /// Limits of a parameter, from its ranges and single values.
    struct Limits {
        QString lowest;
        QString highest;
        void add(const QString &value, bool isLow, bool isHigh);
    };

    XddReader(const QString &content, XddFile *result, FileProblems *collector);
    void refuse(const QString &words, int line);
    void startElement();
    void endElement();
    bool isWithin(Kind kind, int levels) const;
    bool isAllowed(int levels) const;

    void startBody();
    void startObject();
    void startSubObject();
    void startParameter();
    void startType(Kind kind);
    void takeSimpleType(const Row &row);
    void takeReference();
    void takeValue(Kind kind);
    void takeFeatures(Kind kind);
    void takeBaudRate();
    void endBaudRates();
    void takeDummy();
    void endText(Kind kind);
    void endParameter();
    void endAllowedTemplate();
    void endType();

    QString attribute(const char *word) const;
    void readEntry(XddEntry *entry) const;
    bool readHex(const char *word, uint most, uint *number);
    void inform(const char *key, const QString &value);
    void note(const char *rule, const std::function<QString()> &words);
    void placeObject(const XddObject &object);
    void placeSubObject(const XddEntry &entry);

    QXmlStreamReader xml;
    XddFile &file;
    FileProblems &problems;
    QString reason;
    int reasonLine = 0;
    QVector<Kind> open; ///< elements from the root on
    QHash<quint16, int> objectNumbers;
    QHash<quint32, int> subNumbers; ///< by index and subindex, of its object's list
    bool isInObject = false;        ///< of the last one of the file
    XddParameter parameter;         ///< the one that is open
    QString parameterId;
    Label name;
    Label description;
    Label denotation;
    Limits limits;
    XddType type; ///< the definition that is open
    QString typeId;
    QString text; ///< of the element that is open
    QString language;
    int containers = 0;
    bool hasBaudRates = false; ///< the file lists any
    int otherNetworkLine = 0;  ///< 0: none so far
};
