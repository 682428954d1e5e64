// The settings stores of a project in the YAML form: those with an element for each line stand with
// the line, and what every opened project has is left out.
#pragma once

#include "formats/yamlwriter.h"
#include "store/linetype.h"
#include "store/projectrecords.h"
#include "store/yaml/yamlcontext.h"
#include "store/yaml/yamlforms.h"

#include <QMap>
#include <QPair>
#include <QStringList>
#include <QVector>

#include <array>
#include <map>
#include <optional>
#include <vector>

/// What the key "protocol" of a line can be. Another number may stand there as well.
inline constexpr YamlWord kProtocolWords[] = {
    {qint64(LineType::CANopen), "CANopen"},
    {qint64(LineType::J1939), "J1939"},
    {qint64(LineType::RawCan), "raw CAN"},
    {qint64(LineType::CANopenAndJ1939), "CANopen and J1939"},
};

/// Takes the settings of a project apart, or puts them together.
///
/// A comma list with an element for each line is in the file a key of each line. It is one exactly
/// if its last element is that of the last line, and each element of a line that the project does
/// not have is a blank, as the store fills gaps. An empty element is left out, and what is left out
/// is empty. All other texts of such settings, as one value for all lines, stand below "settings"
/// or "j1939" as they are.
class YamlSettings
{
public:
    // --- Reading: the project's keys and those of all lines, in any order, then finish() ---

    /// False if the key is not about settings. One that is, but belongs elsewhere, is told.
    bool readOfProject(const YamlNode::Entry &entry, YamlContext &context);
    bool readOfLine(quint8 line, const YamlNode::Entry &entry, YamlContext &context);
    /// Puts all into the five stores of \a project, whose lines are all there. A setting that every
    /// opened project has, and the file does not name, gets its default.
    void finish(ProjectRecord *project, YamlContext &context);

    // --- Writing ---

    explicit YamlSettings(const ProjectRecord &project);
    YamlSettings() = default;
    void writeOfProject(YamlWriter &writer) const;
    /// The protocol, which is the first key of a line.
    void writeProtocol(quint8 line, YamlWriter &writer) const;
    /// All other settings that stand with the line.
    void writeOfLine(quint8 line, YamlWriter &writer) const;

    /// The keys that readOfProject() and readOfLine() take.
    static QStringList keysOfProject();
    static QStringList keysOfLine();
    /// Those of the map "j1939" of a line.
    static QStringList j1939KeysOfLine();

    /// The key of a line's map by which the general setting \a key stands there, as "node-id" does
    /// for "co_node_id"; empty if it has no element for each line.
    static QString wordOfLineKey(const QString &key);

    /// Where the file with that root sets \a key of the store \a table, such as "GeneralSettings",
    /// for that line; for the first one that has it if \a line is -1. No place if it does not.
    static YamlPlace placeOf(YamlNode root, const QString &table, const QString &key, int line);

private:
    static constexpr int kStores = 5;

    struct Value {
        QString text;
        YamlPlace place; ///< of its key
    };

    /// A value of a line that is a setting of its own in the store.
    struct LineValue {
        int store;
        QString key;  ///< in the store
        QString word; ///< in the file
        Value value;
    };

    /// What a line's map gets.
    struct LineTexts {
        std::optional<YamlValue> protocol;
        QVector<QPair<QString, YamlValue>> values;
        YamlValue j1939 = YamlValue::map();
        YamlValue description = YamlValue::map();
    };

    void readMap(int store, YamlNode map, YamlContext &context);
    void readProtocol(quint8 line, const YamlNode::Entry &entry, YamlContext &context);
    void readDescription(quint8 line, YamlNode map, YamlContext &context);
    void readJ1939(quint8 line, YamlNode map, YamlContext &context);
    void readElement(int listKey, quint8 line, const YamlNode::Entry &entry, YamlContext &context);
    void put(const LineValue &found, YamlContext &context);
    void putLists(const ProjectRecord &project, YamlContext &context);

    /// Gives the setting to the lines; false if it stands with the project.
    bool giveToLines(const ProjectRecord &project, int store, const QString &key,
                     const QString &text);
    bool giveProtocol(quint8 line, const QString &text);
    bool giveList(const ProjectRecord &project, int listKey, const QString &text);

    std::array<QMap<QString, Value>, kStores> stores; ///< what stands with the project
    std::vector<LineValue> lineValues;
    QMap<int, QMap<quint8, Value>> lists; ///< elements by key and line
    std::map<quint8, LineTexts> lines;    ///< to write
};
