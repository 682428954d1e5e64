// Writing of YAML files of which the same content always gives the same bytes.
#pragma once

#include "formats/yamlscalar.h"

#include <QByteArray>
#include <QIODevice>
#include <QPair>
#include <QString>
#include <QVector>

/// A value on its way into a file.
class YamlValue
{
public:
    enum class Kind { Scalar, List, Map };

    static YamlValue text(const QString &text) { return {text, YamlScalar::Meaning::Text}; }
    /// A value that keeps its spelling: bare numbers.
    static YamlValue written(const QString &text) { return {text, YamlScalar::Meaning::Written}; }
    static YamlValue number(qint64 value) { return written(QString::number(value)); }
    /// "0x1A", with at least so many digits, in upper case.
    static YamlValue hex(quint32 value, int digits = 1);
    static YamlValue flag(bool value);
    static YamlValue list() { return YamlValue(Kind::List); }
    static YamlValue map() { return YamlValue(Kind::Map); }

    /// To a list.
    YamlValue &operator<<(const YamlValue &item);
    /// To a map, at its end. Number keys are written as they are.
    YamlValue &add(const QString &key, const YamlValue &value);
    /// Each entry stands on a line of its own, even if all would fit on one.
    YamlValue &spread();

    bool isEmpty() const { return items.isEmpty() && kind != Kind::Scalar; }
    int count() const { return items.size(); }

private:
    friend class YamlWriter;

    YamlValue(const QString &content, YamlScalar::Meaning stands) : scalar(content), meaning(stands)
    {
    }
    explicit YamlValue(Kind what) : kind(what) {}

    Kind kind = Kind::Scalar;
    QString scalar;
    YamlScalar::Meaning meaning = YamlScalar::Meaning::Text;
    QStringList keys; ///< of a map, in the order of the items
    QVector<YamlValue> items;
    bool isSpread = false;
    bool isFlag = false; ///< a truth, which is bare
};

/// Writes a map to a device, entry after entry, so that a large file is never in memory. A value
/// stands on one line if it fits in kWidth columns, else each of its entries begins a line.
class YamlWriter
{
public:
    static constexpr int kWidth = 110;

    explicit YamlWriter(QIODevice *target) : device(target) {}

    /// Begins a map below the open one; what is written up to end() is in it. An empty one is "{}".
    void begin(const QString &key);
    void end();
    void value(const QString &key, const YamlValue &value);

    /// False if anything could not be written.
    bool finish();

    /// The value as it would stand in a line of any length.
    static QString oneLine(const YamlValue &value);

private:
    void line(int indent, const QString &text);
    void flush();
    /// What stands before the value; writes keys that are too long for that.
    QString startOfEntry(int indent, const QString &key);
    void writeEntry(int indent, const QString &key, const YamlValue &value);
    void writeAfter(int indent, const QString &start, const YamlValue &value);
    void writeText(int indent, const QString &start, const YamlValue &value);
    void writeItems(int indent, const YamlValue &value);
    void writeLines(int indent, const QString &start, const QStringList &lines);
    /// Appends the value as it stands on one line; false if it has to be spread over several.
    static bool flow(const YamlValue &value, int room, QString *result);

    QIODevice *device;
    QByteArray buffer;
    QString lead;      ///< the "- " that the next line begins with
    QStringList heads; ///< keys of open maps
    int written = 0;   ///< how many of them stand in the file
    bool failed = false;
};
