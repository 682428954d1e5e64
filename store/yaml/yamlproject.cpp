// A whole project in the YAML form.
#include "store/yaml/yamlproject.h"

#include "store/yaml/yamlframes.h"
#include "store/yaml/yamlkeys.h"
#include "store/yaml/yamlnetwork.h"
#include "store/yaml/yamlobjects.h"
#include "store/yaml/yamlrecord.h"
#include "store/yaml/yamlsettings.h"

namespace
{

constexpr qint64 kHighestLine = 253; // no file holds the scratch lines

const QStringList &keysOfLine()
{
    static const QStringList keys = YamlRecord::words(kNodeYaml) + YamlSettings::keysOfLine() +
                                    YamlObjects::keys() + YamlFrames::keys() +
                                    YamlNetwork::keysOfLine();
    return keys;
}

class ProjectReader
{
public:
    ProjectReader(ProjectRecord *target, YamlProblems *problems)
        : context(problems), project(target), network(target, context)
    {
    }

    void read(YamlNode root);

private:
    bool isOurs(YamlNode root);
    void readEntry(const YamlNode::Entry &entry);
    void readLines(YamlNode map);
    void readLine(quint8 number, YamlNode map);
    void refuseInLine(YamlNode key);

    YamlContext context;
    ProjectRecord *project;
    YamlSettings settings;
    YamlNetwork network;
};

void ProjectReader::read(YamlNode root)
{
    if (!context.isMap(root,
                       QStringLiteral("a project is a map that begins with \"tessarine: 1\"")) ||
        !isOurs(root))
        return;
    const QVector<YamlNode::Entry> entries = root.entries();
    for (const YamlNode::Entry &entry : entries)
        readEntry(entry);
    if (!root.value(YamlKeys::kLines))
        context.wrongValue(root, QStringLiteral("a project has a line at least: add \"lines: {0: "
                                                "{protocol: CANopen}}\""));
    settings.finish(project, context);
}

/// What another kind of file holds is not looked at. One that has lines only lacks the version.
bool ProjectReader::isOurs(YamlNode root)
{
    const YamlNode version = root.value(YamlKeys::kVersion);
    if (!version) {
        context.problems->add("yaml-version", {1, 1},
                              QStringLiteral("a project begins with \"tessarine: 1\", which is "
                                             "missing"));
        return bool(root.value(YamlKeys::kLines));
    }
    const QString text = version.text();
    const std::optional<qint64> number = YamlNumber::parse(text);
    if (!number)
        context.problems->add(
            "yaml-version", version.place(),
            QStringLiteral("the version of the form is 1, not %1").arg(YamlContext::quoted(text)));
    if (!number || *number == YamlKeys::kVersionNumber)
        return true;
    context.problems->add("yaml-version", version.place(),
                          QStringLiteral("this file has form %1, this tool reads form %2: take a "
                                         "newer tool")
                              .arg(*number)
                              .arg(YamlKeys::kVersionNumber));
    return false;
}

void ProjectReader::readEntry(const YamlNode::Entry &entry)
{
    if (entry.key.is(YamlKeys::kVersion))
        return;
    if (entry.key.is(YamlKeys::kLines))
        return readLines(entry.value);
    if (network.readOfProject(entry) || settings.readOfProject(entry, context))
        return;
    const QString where = QStringLiteral("a project");
    if (keysOfLine().contains(entry.key.text()))
        return context.misplacedKey(entry.key, where, QStringLiteral("a line"));
    const QStringList known = QStringList{YamlKeys::kVersion, YamlKeys::kLines} +
                              YamlSettings::keysOfProject() + YamlNetwork::keysOfProject();
    context.unknownKey(entry.key, where, known);
}

void ProjectReader::readLines(YamlNode map)
{
    if (!context.isMap(map, QStringLiteral("lines are a map by numbers")))
        return;
    const auto lines = context.numbered(map, 0, kHighestLine, QStringLiteral("line"));
    for (const YamlContext::Numbered &line : lines) {
        if (context.isOver())
            break;
        readLine(quint8(line.number), line.value);
    }
}

void ProjectReader::readLine(quint8 number, YamlNode map)
{
    LineRecord &line = project->lines[number];
    if (!context.isMap(map, QStringLiteral("a line is a map")))
        return;
    QVector<YamlNode::Entry> entries = YamlObjects::read(map.entries(), &line.objects, context);
    entries = YamlFrames::read(entries, &line, context);
    for (const YamlNode::Entry &entry : qAsConst(entries)) {
        if (context.problems->isFull())
            return;
        if (!YamlRecord::readColumn(kNodeYaml, entry.key, entry.value, &line.node, context) &&
            !network.readOfLine(number, entry) && !settings.readOfLine(number, entry, context))
            refuseInLine(entry.key);
    }
}

void ProjectReader::refuseInLine(YamlNode key)
{
    const bool isOfObject =
        YamlRecord::find(kIndexYaml, key) >= 0 || YamlRecord::find(kSubIndexYaml, key) >= 0;
    const QString where = QStringLiteral("a line");
    if (isOfObject)
        context.misplacedKey(key, where, QStringLiteral("an object"));
    else
        context.unknownKey(key, where, keysOfLine());
}

void writeNode(const NodeData &node, YamlWriter &writer)
{
    const NodeData base;
    for (int i = 0; i < kNodeYaml.count; ++i) {
        const YamlColumn &column = kNodeYaml.words[i];
        if (!YamlRecord::isEqual(kNodeYaml.columns[i], node, base))
            writer.value(QLatin1String(column.word),
                         YamlCells::toYaml(column, kNodeYaml.columns[i].get(node)));
    }
}

} // namespace

bool YamlProject::read(const YamlDocument &document, ProjectRecord *project, YamlProblems *problems)
{
    const int before = problems->count();
    ProjectReader(project, problems).read(document.root());
    return problems->count() == before;
}

bool YamlProject::write(const ProjectRecord &project, QIODevice *device)
{
    YamlWriter writer(device);
    const YamlSettings settings(project);
    writer.value(YamlKeys::kVersion, YamlValue::number(YamlKeys::kVersionNumber));
    settings.writeOfProject(writer);
    YamlNetwork::writeBeforeLines(project, writer);
    writer.begin(YamlKeys::kLines);
    for (const auto &[number, line] : project.lines) {
        writer.begin(QString::number(number));
        settings.writeProtocol(number, writer);
        writeNode(line.node, writer);
        settings.writeOfLine(number, writer);
        YamlObjects::write(line.objects, writer);
        YamlFrames::write(line, writer);
        YamlNetwork::writeOfLine(project, number, writer);
        writer.end();
    }
    writer.end();
    YamlNetwork::writeAfterLines(project, writer);
    return writer.finish();
}
