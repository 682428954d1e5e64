// Writing of YAML files of which the same content always gives the same bytes.
#include "formats/yamlwriter.h"

namespace
{

constexpr int kFlushBytes = 1 << 20;
constexpr int kStep = 2; // columns
constexpr int kLongestImplicitKey =
    900;                        // characters; readers look no further for the ":" than 1024
constexpr int kLeastWidth = 40; // of texts in blocks, however deep they stand

QString keyText(const QString &key)
{
    return YamlScalar::oneLine(key, YamlScalar::Meaning::Written);
}

} // namespace

YamlValue YamlValue::hex(quint32 value, int digits)
{
    return written(QStringLiteral("0x") +
                   QString::number(value, 16).toUpper().rightJustified(digits, QLatin1Char('0')));
}

YamlValue YamlValue::flag(bool value)
{
    YamlValue result(Kind::Scalar);
    result.scalar = value ? QStringLiteral("true") : QStringLiteral("false");
    result.isFlag = true;
    return result;
}

YamlValue &YamlValue::operator<<(const YamlValue &item)
{
    Q_ASSERT(kind == Kind::List);
    items.append(item);
    return *this;
}

YamlValue &YamlValue::add(const QString &key, const YamlValue &value)
{
    Q_ASSERT(kind == Kind::Map);
    keys.append(key);
    items.append(value);
    return *this;
}

YamlValue &YamlValue::spread()
{
    isSpread = true;
    return *this;
}

QString YamlWriter::oneLine(const YamlValue &value)
{
    if (value.kind == YamlValue::Kind::Scalar)
        return value.isFlag ? value.scalar : YamlScalar::oneLine(value.scalar, value.meaning);
    const bool isMap = value.kind == YamlValue::Kind::Map;
    QStringList entries;
    for (int i = 0; i < value.items.size(); ++i)
        entries << (isMap ? keyText(value.keys.at(i)) + QLatin1String(": ") : QString()) +
                       oneLine(value.items.at(i));
    const QString text = entries.join(QLatin1String(", "));
    return isMap ? QLatin1Char('{') + text + QLatin1Char('}')
                 : QLatin1Char('[') + text + QLatin1Char(']');
}

bool YamlWriter::flow(const YamlValue &value, int room, QString *result)
{
    if (value.kind == YamlValue::Kind::Scalar) {
        if (result->size() + value.scalar.size() > room)
            return false;
        *result += oneLine(value);
        return YamlScalar::literalBlock(value.scalar).isEmpty() && result->size() <= room;
    }
    const bool isMap = value.kind == YamlValue::Kind::Map;
    if (value.isSpread && !value.isEmpty())
        return false;
    *result += QLatin1Char(isMap ? '{' : '[');
    for (int i = 0; i < value.items.size(); ++i) {
        if (i > 0)
            *result += QLatin1String(", ");
        if (isMap && value.keys.at(i).size() > room)
            return false;
        if (isMap)
            *result += keyText(value.keys.at(i)) + QLatin1String(": ");
        if (!flow(value.items.at(i), room, result))
            return false;
    }
    *result += QLatin1Char(isMap ? '}' : ']');
    return result->size() <= room;
}

void YamlWriter::line(int indent, const QString &text)
{
    const QString start = lead.isEmpty() ? QString(indent, QLatin1Char(' ')) : lead;
    lead.clear();
    buffer += (start + text).toUtf8() + '\n';
    if (buffer.size() >= kFlushBytes)
        flush();
}

void YamlWriter::flush()
{
    failed = device->write(buffer) != buffer.size() || failed;
    buffer.clear();
}

void YamlWriter::begin(const QString &key)
{
    heads.append(key);
}

void YamlWriter::end()
{
    if (written < heads.size()) {
        const QString key = heads.takeLast();
        value(key, YamlValue::map());
    } else {
        heads.removeLast();
        --written;
    }
}

void YamlWriter::value(const QString &key, const YamlValue &value)
{
    for (; written < heads.size(); ++written)
        line(written * kStep, startOfEntry(written * kStep, heads.at(written)));
    writeEntry(written * kStep, key, value);
}

QString YamlWriter::startOfEntry(int indent, const QString &key)
{
    if (key.size() <= kLongestImplicitKey) {
        const QString text = keyText(key);
        if (text.size() <= kLongestImplicitKey)
            return text + QLatin1Char(':');
    }
    writeLines(indent, QStringLiteral("? "), YamlScalar::quotedLines(key, kWidth));
    return QStringLiteral(":");
}

void YamlWriter::writeEntry(int indent, const QString &key, const YamlValue &value)
{
    writeAfter(indent, startOfEntry(indent, key), value);
}

void YamlWriter::writeAfter(int indent, const QString &start, const YamlValue &value)
{
    QString oneLiner = start + QLatin1Char(' ');
    if (flow(value, kWidth - indent, &oneLiner))
        return line(indent, oneLiner);
    if (value.kind == YamlValue::Kind::Scalar)
        return writeText(indent, start, value);
    line(indent, start);
    writeItems(indent + kStep, value);
}

void YamlWriter::writeItems(int indent, const YamlValue &value)
{
    for (int i = 0; i < value.items.size(); ++i) {
        const YamlValue &item = value.items.at(i);
        if (value.kind == YamlValue::Kind::Map) {
            writeEntry(indent, value.keys.at(i), item);
            continue;
        }
        QString oneLiner = QStringLiteral("- ");
        if (flow(item, kWidth - indent, &oneLiner)) {
            line(indent, oneLiner);
        } else if (item.kind == YamlValue::Kind::Scalar) {
            writeText(indent, QStringLiteral("-"), item);
        } else {
            // The first entry stands behind the dash.
            lead =
                (lead.isEmpty() ? QString(indent, QLatin1Char(' ')) : lead) + QLatin1String("- ");
            writeItems(indent + kStep, item);
        }
    }
}

void YamlWriter::writeText(int indent, const QString &start, const YamlValue &value)
{
    const int width = qMax(kLeastWidth, kWidth - indent - kStep);
    QString mark = QStringLiteral(" |");
    QStringList lines = YamlScalar::literalBlock(value.scalar);
    if (lines.isEmpty()) {
        mark = QStringLiteral(" >");
        lines = YamlScalar::foldedBlock(value.scalar, width);
    }
    if (lines.isEmpty())
        return writeLines(indent, start + QLatin1Char(' '),
                          YamlScalar::quotedLines(value.scalar, width));
    line(indent, start + mark + lines.takeFirst());
    for (const QString &text : qAsConst(lines)) // an empty line has no blanks
        line(text.isEmpty() ? 0 : indent + kStep, text);
}

void YamlWriter::writeLines(int indent, const QString &start, const QStringList &lines)
{
    line(indent, start + lines.first());
    for (int i = 1; i < lines.size(); ++i)
        line(indent + kStep, lines.at(i));
}

bool YamlWriter::finish()
{
    while (!heads.isEmpty())
        end();
    flush();
    return !failed;
}
