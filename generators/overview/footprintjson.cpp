// The memory of the generated tables as the page of the overview takes it.
#include "generators/overview/footprintjson.h"

namespace Overview
{
namespace
{

template <class Part>
void writePart(JsonWriter &json, const Part &part)
{
    json.member("line", part.line);
    json.member("area", part.area);
    json.member("ram", part.ram);
    json.member("rom", part.rom);
}

} // namespace

void writeFootprint(JsonWriter &json, const Footprint &footprint)
{
    json.startObject();
    json.key("arrays");
    json.startArray();
    for (const FootprintArray &array : footprint.arrays) {
        json.startObject();
        json.member("name", array.name);
        json.member("file", array.file);
        json.member("count", array.count);
        writePart(json, array);
        json.endObject();
    }
    json.endArray();
    json.key("areas");
    json.startArray();
    for (const FootprintArea &area : footprint.areas) {
        json.startObject();
        writePart(json, area);
        json.endObject();
    }
    json.endArray();
    json.member("ram", footprint.ram);
    json.member("rom", footprint.rom);
    json.member("note", footprint.note);
    json.endObject();
}

} // namespace Overview
