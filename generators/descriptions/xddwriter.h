// What all XML device descriptions share: the container of two profiles by ISO 15745, their heads,
// the identity of the device, and texts made fit.
#pragma once

#include "generators/descriptions/xddform.h"

#include <QString>
#include <QXmlStreamWriter>

class ObjectDataBase;

namespace XddText
{

/// \a text without the characters that XML 1.0 has no form for: they become blanks. Half of a
/// surrogate pair, at which the stream writer would give up the file, becomes a replacement.
QString shown(const QString &text);

/// \a text for the inside of a comment, which two hyphens would end.
QString comment(const QString &text);

/// "0f".
QString hex2(quint16 number);

} // namespace XddText

/// Writes the elements of one file, on the thread of the job. What it tells of the device it reads
/// from the store; the line's description settings must have been selected.
class XddWriter
{
public:
    /// \a fileName is without its path.
    XddWriter(QXmlStreamWriter &writer, const ObjectDataBase &database, quint8 activeLine,
              const QString &fileName, const XddForm &xddForm)
        : store(database), line(activeLine), form(xddForm), xml(writer), file(fileName)
    {
    }

    /// The comment that says what the file is; the container stays open.
    void startContainer(const QString &toolVersion);
    void startDeviceProfile() { startProfile(form.device); }
    void startCommunicationProfile() { startProfile(form.communication); }
    void writeDeviceIdentity();
    /// The one thing that the device is said to do, as each device profile asks for.
    void writeDeviceFunction(const char *characteristic, const QString &content);

    /// An element that the schema declares globally.
    void startGlobal(const char *element)
    {
        xml.writeStartElement(QLatin1String(form.prefix) + QLatin1String(element));
    }
    void start(const char *element) { xml.writeStartElement(QLatin1String(element)); }
    void end(int count = 1)
    {
        for (; count > 0; --count)
            xml.writeEndElement();
    }
    void attribute(const char *name, const QString &value)
    {
        xml.writeAttribute(QLatin1String(name), value);
    }
    void attribute(const char *name, const char *value) { attribute(name, QLatin1String(value)); }
    /// A global element that holds no more than a value.
    void writeValue(const char *element, const QString &value);
    /// A text in English, as far as we know, in an element "label" or "description".
    void writeWords(const char *element, const QString &words);
    /// A description setting.
    QString setting(const char *key) const;

    const ObjectDataBase &store;
    const quint8 line;
    const XddForm &form;

private:
    void startProfile(const XddProfile &profile);
    void writeHeader(const XddProfile &profile);
    void writeFileAttributes();
    void textElement(const char *element, const QString &content)
    {
        xml.writeTextElement(QLatin1String(element), content);
    }
    void writeText(const QString &text);
    void globalText(const char *element, const QString &content);
    QString identity(quint8 subIndex) const;

    QXmlStreamWriter &xml;
    const QString file;
};
