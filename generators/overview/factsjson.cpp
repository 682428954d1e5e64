// The data of the page. Who changes a word or a shape here changes the scripts as well.
#include "generators/overview/factsjson.h"

#include "formats/jsonwriter.h"
#include "generators/overview/comparisonjson.h"
#include "generators/overview/footprintjson.h"

#include <algorithm>
#include <iterator>

namespace
{

using namespace Overview;

constexpr int kForm = 1; ///< of the data

// Deliberate: in the order of ObjectText, behind index and subindex; held by tst_overview.
constexpr const char *kObjectColumns[] = {
    "index", "sub",  "name", "code",    "type",     "access",      "default",
    "low",   "high", "pdo",  "storage", "variable", "description", "identifier",
};
static_assert(std::size(kObjectColumns) == kObjectTexts + 2, "a word for each column");

void writeText(JsonWriter &json, const char *name, const QString &text)
{
    if (!text.isEmpty())
        json.member(name, text);
}

/// A list of records, each an object.
template <class List, class Write>
void writeRecords(JsonWriter &json, const char *name, const List &list, const Write &write)
{
    json.key(name);
    json.startArray();
    for (const auto &record : list) {
        json.startObject();
        write(json, record);
        json.endObject();
    }
    json.endArray();
}

const char *wordOf(Way way)
{
    switch (way) {
    case Way::Transmit:
        return "transmit";
    case Way::Receive:
        return "receive";
    case Way::Both:
        break;
    }
    return "both";
}

void writeProject(JsonWriter &json, const Project &project)
{
    json.key("project");
    json.startObject();
    json.member("name", project.name);
    json.member("file", project.file);
    json.member("vendor", project.vendor);
    json.member("product", project.product);
    json.member("version", project.version);
    json.member("tool", project.tool);
    json.endObject();
}

void writeFinding(JsonWriter &json, const Finding &finding)
{
    json.member("kind", finding.kind);
    json.member("rule", finding.rule);
    json.member("text", finding.text);
    writeText(json, "link", finding.link);
    writeText(json, "place", finding.place);
}

void writeFile(JsonWriter &json, const File &file)
{
    json.member("name", file.name);
    json.member("bytes", file.bytes);
}

// --- Lines ---

void writeObjects(JsonWriter &json, const QVector<ObjectRow> &rows)
{
    json.key("objects");
    json.startObject();
    json.key("columns");
    json.startArray();
    for (const char *column : kObjectColumns)
        json.value(column);
    json.endArray();
    json.key("rows");
    json.startArray();
    for (const ObjectRow &row : rows) {
        int cells[2 + kObjectTexts] = {row.index, row.sub ? *row.sub : -1};
        std::copy(row.texts.begin(), row.texts.end(), cells + 2);
        json.array(std::begin(cells), std::end(cells));
    }
    json.endArray();
    json.endObject();
}

void writeCell(JsonWriter &json, const Cell &cell)
{
    json.member("start", cell.start);
    json.member("bits", cell.bits);
    json.member("name", cell.name);
    writeText(json, "link", cell.link);
    writeText(json, "type", cell.type);
    json.member("gap", cell.isGap);
    writeText(json, "note", cell.note);
}

void writeRange(JsonWriter &json, const char *name, const FrameBits::Range &range)
{
    json.key(name);
    json.startArray();
    json.value(range.min);
    json.value(range.average);
    json.value(range.max);
    json.endArray();
}

void writeBits(JsonWriter &json, const FrameBits::Count &bits)
{
    json.key("bits");
    json.startObject();
    json.member("min", bits.min());
    json.member("average", bits.average());
    json.member("max", bits.max());
    writeRange(json, "arbitration", bits.arbitration);
    writeRange(json, "data", bits.data);
    if (bits.frames > 1)
        json.member("packets", bits.frames);
    json.endObject();
}

void writeTimes(JsonWriter &json, const Frame &frame)
{
    json.memberIf("transmission", frame.transmission);
    writeText(json, "transmissionText", frame.transmissionText);
    json.memberIf("cycle", frame.cycleMs);
    json.memberIf("event", frame.eventMs);
    json.memberIf("inhibit", frame.inhibitMs);
    json.memberIf("deadline", frame.deadlineMs);
}

void writeFrame(JsonWriter &json, const Frame &frame)
{
    json.member("key", frame.key);
    json.member("kind", frame.kind);
    json.member("name", frame.name);
    writeText(json, "description", frame.description);
    json.member("id", frame.id);
    json.member("extended", frame.isExtended);
    json.memberIf("idBase", frame.base);
    writeText(json, "idText", frame.idText);
    json.member("direction", wordOf(frame.direction));
    writeTimes(json, frame);
    json.memberIf("priority", frame.priority);
    json.memberIf("pgn", frame.pgn);
    json.memberIf("destination", frame.destination);
    json.member("length", frame.bytes);
    json.member("fd", frame.isFd);
    json.member("enabled", frame.isEnabled);
    writeText(json, "link", frame.link);
    writeRecords(json, "cells", frame.cells, writeCell);
    if (frame.bits)
        writeBits(json, *frame.bits);
}

void writeIdentifier(JsonWriter &json, const Identifier &identifier)
{
    json.member("id", identifier.id);
    json.memberIf("idBase", identifier.base);
    json.member("extended", identifier.isExtended);
    json.member("function", identifier.function);
    json.member("direction", wordOf(identifier.direction));
    writeText(json, "frame", identifier.frame);
    json.memberIf("node", identifier.node);
}

template <class List, class Is>
int count(const List &list, const Is &is)
{
    return int(std::count_if(list.begin(), list.end(), is));
}

void writeCounts(JsonWriter &json, const Line &line)
{
    const auto isPdo = [](const Frame &f) {
        return f.kind == QLatin1String("RPDO") || f.kind == QLatin1String("TPDO");
    };
    const auto isGroup = [](const Frame &f) { return f.pgn.has_value(); };
    json.key("counts");
    json.startObject();
    json.member("objects", line.objects);
    json.member("subindices", line.subindices);
    json.member("pdos", count(line.frames, isPdo));
    json.member("groups", count(line.frames, isGroup));
    json.member("signals", line.signalCount);
    json.member("frames", line.frames.size());
    json.endObject();
}

void writeLine(JsonWriter &json, const Line &line)
{
    json.member("number", int(line.number));
    json.member("type", line.type);
    json.member("title", line.title);
    json.member("nodeId", line.nodeId);
    json.member("address", line.address);
    writeText(json, "name", line.name);
    json.member("bitRate", line.bitRate);
    json.member("dataBitRate", line.dataBitRate);
    json.member("canFd", line.isCanFd);
    writeCounts(json, line);
    writeObjects(json, line.rows);
    writeRecords(json, "frames", line.frames, writeFrame);
    writeRecords(json, "identifiers", line.identifiers, writeIdentifier);
}

// --- Connections ---

void writeEnd(JsonWriter &json, const char *name, const End &end)
{
    json.key(name);
    json.startObject();
    json.member("line", end.line);
    writeText(json, "link", end.link);
    json.member("name", end.name);
    json.endObject();
}

void writeConnection(JsonWriter &json, const Connection &connection)
{
    writeEnd(json, "from", connection.from);
    writeEnd(json, "to", connection.to);
    json.member("kind", connection.kind);
    json.member("name", connection.name);
}

} // namespace

void Overview::writeJson(const Facts &facts, QByteArray &to)
{
    JsonWriter json(to);
    json.startObject();
    json.member("form", kForm);
    writeProject(json, facts.project);
    writeRecords(json, "findings", facts.findings, writeFinding);
    writeRecords(json, "files", facts.files, writeFile);
    writeRecords(json, "lines", facts.lines, writeLine);
    writeRecords(json, "connections", facts.connections, writeConnection);
    if (facts.footprint) {
        json.key("footprint");
        writeFootprint(json, *facts.footprint);
    }
    if (facts.comparison) {
        json.key("comparison");
        writeComparison(json, *facts.comparison);
    }
    json.key("texts");
    json.startArray();
    for (const QString &each : facts.texts.all())
        json.value(each);
    json.endArray();
    json.endObject();
}
