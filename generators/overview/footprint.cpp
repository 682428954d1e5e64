// The memory that the tables of generated C take.
#include "generators/overview/footprint.h"

#include "generators/overview/structsizes.h"
#include "support/objectranges.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <map>
#include <unordered_map>

namespace Overview
{
namespace
{

constexpr char kDefinitions[] = "gen_define.h";

struct AreaRow {
    quint16 last;
    const char *name;
};

// clang-format off
constexpr AreaRow kAreas[] = { // of the object dictionary, CiA 301, 7.4.1
    {0x0FFF, "0x0000-0x0FFF data types"},
    {0x1FFF, "0x1000-0x1FFF communication"},
    {0x5FFF, "0x2000-0x5FFF manufacturer"},
    {0x9FFF, "0x6000-0x9FFF device profile"},
    {0xAFFF, "0xA000-0xAFFF network variables"},
    {0xBFFF, "0xB000-0xBFFF system variables"},
    {0xFFFF, "0xC000-0xFFFF reserved"},
};

struct NameRow {
    const char *part; ///< of the name of a table
    const char *area;
};

constexpr NameRow kNames[] = { // of tables whose rows name no object; the first that fits counts
    {"mapTable", "PDO mapping"}, {"srdo", "SRDOs"}, {"sdg", "safety data groups"}, {"Sdg", "safety data groups"},
    {"udsSession", "diagnostic services"}, {"securityLvl", "diagnostic services"},
    {"rawcan", "CAN identifiers"}, {"jPgn", "parameter groups"}, {"addrTrCfg", "parameter groups"},
    {"_mapping_", "signals"}, {"mv_", "signals"}, {"od_const_", "constants of several objects"},
    {"od_", "object dictionary"}, {"vod_", "object dictionary"}, {"vobj_", "object dictionary"}, {"coEvent", "functions for events"},
};
// clang-format on

constexpr char kVariables[] = "variables of the application";
constexpr char kRest[] = "start of the stack";

/// Null if it is none of an object.
const char *areaOf(int index)
{
    for (const AreaRow &row : kAreas) {
        if (index >= 0 && index <= row.last)
            return row.name;
    }
    return nullptr;
}

QString areaOf(const QByteArray &name, const QString &file)
{
    if (file == QLatin1String("gen_var_decl.c"))
        return QLatin1String(kVariables);
    for (const NameRow &row : kNames) {
        if (name.contains(row.part))
            return QLatin1String(row.area);
    }
    return QLatin1String(kRest);
}

/// The number of the line in a name such as "l1_rx_mapping_61444" or "jPgnReceiveConfig_l1".
std::optional<int> lineOf(const QByteArray &name)
{
    const int behind = name.lastIndexOf("_l");
    bool isNumber = false;
    int line = behind >= 0 ? name.mid(behind + 2).toInt(&isNumber) : 0;
    if (!isNumber && name.startsWith('l'))
        line = name.mid(1, name.indexOf('_') - 1).toInt(&isNumber);
    return isNumber ? std::optional<int>(line) : std::nullopt;
}

struct StringRow {
    const char *type;
    const char *array;
};

constexpr StringRow kStrings[] = {
    {"VS", "od_vis_string"},
    {"UTF8", "od_utf8_string"},
    {"OS", "od_octet_string"},
    {"DOMAIN", "od_domain"},
};

/// The array that holds the values of a tag such as "CO_DTYPE_U8_VAR"; none if they stand nowhere,
/// or with others of the same value.
QByteArray arrayOf(std::string_view tag)
{
    const QList<QByteArray> words =
        QByteArray(tag.data(), int(tag.size())).split('_'); // CO, DTYPE, type, where
    const QByteArray type = words.value(2);
    const QByteArray where = words.value(3);
    for (const StringRow &row : kStrings) {
        if (type == row.type && (where == "VAR" || where == "PTR" || where.isEmpty()))
            return row.array;
    }
    if (where == "VAR")
        return "od_" + type.toLower();
    return where == "PTR" ? "od_ptr_" + type.toLower() : QByteArray();
}

/// Which object each element of the arrays of values belongs to, as the description of the objects
/// says: the arrays need not have values that tell it.
class Owners
{
public:
    void add(const CArrays::Definition &description)
    {
        for (const CArrays::Row &row : description.rows) {
            if (row.position < 0 || row.position > 0xFFFF || row.index < 0)
                continue;
            std::vector<Owner> &owners = ownersOf(row.tag);
            if (owners.size() <= size_t(row.position))
                owners.resize(size_t(row.position) + 1);
            owners[size_t(row.position)] = {row.line, row.index};
        }
    }

    void complete(CArrays::Definition *definition) const
    {
        QByteArray name = definition->name;
        for (const char *suffix : {"_len", "_actLen"}) {
            if (name.endsWith(suffix))
                name.chop(int(qstrlen(suffix)));
        }
        const auto array = byArray.find(name);
        if (array != byArray.end() && !name.isEmpty())
            complete(definition, array->second);
    }

private:
    struct Owner {
        int line = -1;
        int index = -1;
    };

    std::vector<Owner> &ownersOf(std::string_view tag)
    {
        std::vector<Owner> *&owners = byTag[tag];
        if (!owners)
            owners = &byArray[arrayOf(tag)];
        return *owners;
    }

    static void complete(CArrays::Definition *definition, const std::vector<Owner> &owners)
    {
        definition->rows.resize(size_t(definition->count));
        for (size_t i = 0; i < std::min(owners.size(), definition->rows.size()); ++i) {
            if (owners[i].index < 0)
                continue;
            definition->rows[i].line = owners[i].line;
            definition->rows[i].index = owners[i].index;
        }
    }

    std::map<QByteArray, std::vector<Owner>> byArray; ///< by position
    std::unordered_map<std::string_view, std::vector<Owner> *> byTag;
};

/// Do the rows of received PDOs say which PDOs of other lines send their values on?
bool isRouting(const CArrays::Definition &definition)
{
    constexpr int kWithoutRoutes = 3; // braces: of the table, its rows, and a row
    return definition.type == "PDO_REC_MAP_TABLE_T" && definition.depth > kWithoutRoutes;
}

class Counter
{
public:
    explicit Counter(const StructSizes &of) : sizes(of) {}

    void add(const QString &file, const CArrays::Definition &definition)
    {
        const qint64 size =
            definition.isPointer ? sizes.pointerSize() : sizes.sizeOf(definition.type);
        if (size < 0) {
            unknown << QString::fromUtf8(definition.type);
            return;
        }
        FootprintArray array;
        array.name = QString::fromUtf8(definition.name);
        array.file = file;
        array.count = definition.count;
        (definition.isConst ? array.rom : array.ram) = size * definition.count;
        array.line = lineOf(definition.name);
        array.area = areaOf(definition.name, file);
        if (qint64(definition.rows.size()) == definition.count)
            addRows(definition, size, &array);
        else
            addTo(array.line, array.area, array.ram, array.rom);
        addArray(array);
        addTexts(definition, array);
    }

    Footprint finish()
    {
        for (const auto &[key, bytes] : areas)
            result.areas.push_back({key.second,
                                    key.first < 0 ? std::nullopt : std::optional<int>(key.first),
                                    bytes.first, bytes.second});
        result.note = QStringLiteral("Counted from the tables of the generated C for a target with "
                                     "pointers of %1 bytes and "
                                     "natural alignment, with the stack's structures as the tool "
                                     "knows them. Texts count "
                                     "with their ends, though a compiler may keep equal ones once. "
                                     "Initial values of RAM, "
                                     "which most targets keep in ROM too, are not counted.")
                          .arg(sizes.pointerSize());
        if (!unknown.isEmpty()) {
            QStringList types = unknown.values();
            types.sort();
            result.note += QStringLiteral(" Not counted, for their size is not known: %1.")
                               .arg(types.join(QLatin1String(", ")));
        }
        return std::move(result);
    }

private:
    /// Each row goes to the area of its object, if it names one. Most come in runs of one area.
    void addRows(const CArrays::Definition &definition, qint64 size, FootprintArray *array)
    {
        const FootprintArray table = *array;
        const auto &rows = definition.rows;
        for (size_t first = 0, next = 0; first < rows.size(); first = next) {
            const CArrays::Row &row = rows[first];
            const char *areaOfRow = areaOf(row.index);
            const auto isAlike = [&](const CArrays::Row &other) {
                return other.line == row.line && areaOf(other.index) == areaOfRow;
            };
            while (next < rows.size() && isAlike(rows[next]))
                ++next;
            const std::optional<int> line = row.line >= 0 ? row.line : table.line;
            const QString area = areaOfRow ? QLatin1String(areaOfRow) : table.area;
            const qint64 bytes = qint64(next - first) * size;
            addTo(line, area, definition.isConst ? 0 : bytes, definition.isConst ? bytes : 0);
            array->line = first == 0 || array->line == line ? line : std::nullopt;
            array->area = first == 0 || array->area == area ? area : QStringLiteral("several");
        }
    }

    /// What its elements lead to is no part of the table.
    void addTexts(const CArrays::Definition &definition, const FootprintArray &table)
    {
        FootprintArray texts = table;
        texts.name = QStringLiteral("texts of ") + table.name;
        texts.ram = texts.rom = texts.count = 0;
        for (const CArrays::Row &row : definition.rows) {
            texts.rom += row.textBytes;
            texts.count += row.textBytes > 0 ? 1 : 0;
        }
        if (texts.count == 0)
            return;
        addTo(texts.line, texts.area, 0, texts.rom);
        addArray(texts);
    }

    void addArray(const FootprintArray &array)
    {
        result.ram += array.ram;
        result.rom += array.rom;
        result.arrays.push_back(array);
    }

    void addTo(std::optional<int> line, const QString &area, qint64 ram, qint64 rom)
    {
        auto &bytes = areas[{line.value_or(-1), area}];
        bytes.first += ram;
        bytes.second += rom;
    }

    const StructSizes &sizes;
    Footprint result;
    std::map<std::pair<int, QString>, std::pair<qint64, qint64>> areas; ///< RAM and ROM
    QSet<QString> unknown;                                              ///< types
};

} // namespace

Footprint footprintOf(const std::vector<FootprintSource> &sources, int pointerBytes)
{
    StructSizes::Target target;
    target.pointer = pointerBytes;
    for (const FootprintSource &source : sources) {
        if (source.name == QLatin1String(kDefinitions))
            CArrays::readMacros(source.text, &target.macros);
    }
    std::vector<std::pair<QString, CArrays::Definition>> definitions;
    Owners owners;
    for (const FootprintSource &source : sources) {
        if (!source.name.endsWith(QLatin1String(".c")))
            continue;
        for (CArrays::Definition &definition : CArrays::definitionsIn(source.text, target.macros)) {
            owners.add(definition);
            target.isRouting = target.isRouting || isRouting(definition);
            definitions.emplace_back(source.name, std::move(definition));
        }
    }
    const StructSizes sizes(target);
    Counter counter(sizes);
    for (auto &[file, definition] : definitions) {
        owners.complete(&definition);
        counter.add(file, definition);
    }
    return counter.finish();
}

Footprint footprintOfFiles(const QStringList &paths, int pointerBytes)
{
    std::vector<FootprintSource> sources;
    QSet<QString> known;
    for (const QString &path : paths) {
        const QString name = QFileInfo(path).fileName();
        const bool isSource =
            name.startsWith(QLatin1String("gen_")) &&
            (name.endsWith(QLatin1String(".c")) || name == QLatin1String(kDefinitions));
        QFile file(path);
        if (!isSource || known.contains(path) || !file.open(QIODevice::ReadOnly))
            continue;
        known << path;
        sources.push_back({name, file.readAll()});
    }
    return footprintOf(sources, pointerBytes);
}

} // namespace Overview
