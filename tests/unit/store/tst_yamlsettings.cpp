// Settings in the YAML form: what a file says is what the stores get, and the other way round.
#include "store/yaml/yamlcolumns.h"
#include "store/yaml/yamlsettings.h"
#include "support/settingscatalogue.h"
#include "tests/fixtures/testkit.h"
#include "tests/fixtures/yamlkit.h"

#include <QRandomGenerator>

namespace
{

constexpr const char *kNames[] = {"description", "general", "j1939", "energybus", "misc"};
constexpr Settings ProjectRecord::*kStores[] = {&ProjectRecord::description,
                                                &ProjectRecord::general, &ProjectRecord::j1939,
                                                &ProjectRecord::energyBus, &ProjectRecord::misc};

/// Of a project with these lines; more lines than the file has may be there.
ProjectRecord read(YamlText &text, const QString &lines)
{
    YamlSettings settings;
    ProjectRecord project;
    for (const QString &line : lines.split(',', Qt::SkipEmptyParts))
        project.lines[quint8(line.toUInt())] = {};
    for (const YamlNode::Entry &entry : text.entries()) {
        if (!entry.key.is("lines") && !settings.readOfProject(entry, text.context))
            text.context.unknownKey(entry.key, "a project", YamlSettings::keysOfProject());
        for (const auto &line :
             entry.key.is("lines") ? entry.value.entries() : QVector<YamlNode::Entry>()) {
            for (const YamlNode::Entry &value : line.value.entries()) {
                if (!settings.readOfLine(quint8(line.key.text().toInt()), value, text.context))
                    text.context.unknownKey(value.key, "a line", YamlSettings::keysOfLine());
            }
        }
    }
    settings.finish(&project, text.context);
    return project;
}

QByteArray write(const ProjectRecord &project)
{
    const YamlSettings settings(project);
    return yamlOf([&](YamlWriter &writer) {
        settings.writeOfProject(writer);
        writer.begin("lines");
        for (const auto &line : project.lines) {
            writer.begin(QString::number(line.first));
            settings.writeProtocol(line.first, writer);
            settings.writeOfLine(line.first, writer);
            writer.end();
        }
        writer.end();
    });
}

ProjectRecord read(const QByteArray &text, const QString &lines)
{
    YamlText yaml(text);
    return read(yaml, lines);
}

/// What the stores have beside the settings of a project without any.
QStringList dump(const ProjectRecord &project, const ProjectRecord &empty)
{
    QStringList result;
    for (int i = 0; i < 5; ++i) {
        const Settings &settings = project.*kStores[i];
        const Settings &usual = empty.*kStores[i];
        for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
            if (!usual.contains(it.key()) || usual.value(it.key()) != *it)
                result << QString("%1 %2=%3").arg(kNames[i], it.key(), *it);
        }
        for (auto it = usual.cbegin(); it != usual.cend(); ++it) {
            if (!settings.contains(it.key()))
                result << QString("%1 no %2").arg(kNames[i], it.key());
        }
    }
    return result;
}

/// As one line; texts that are not bare in quotes.
QString flat(const YamlNode &node)
{
    QStringList parts;
    for (const YamlNode::Entry &entry : node.entries())
        parts << flat(entry.key) + ": " + flat(entry.value);
    if (node.isMap())
        return '{' + parts.join(", ") + '}';
    return node.isPlain() ? node.text() : '\'' + node.text() + '\'';
}

template <typename List>
auto anyOf(const List &list, QRandomGenerator &random)
{
    return list.at(random.bounded(int(list.size())));
}

} // namespace

class TestYamlSettings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCoreApplication::setApplicationName("CANopen Tessarine");
        QCoreApplication::setApplicationVersion("3.11.2");
    }

    void forms_data()
    {
        // What stands in a project with these lines, what the stores get, and what is written then
        // if it is something else.
        columns<QString, QString, QString, QString>("lines", "text", "settings", "written");
        const auto row = [](const char *name, const char *lines, const char *text,
                            const char *settings, const char *written = nullptr) {
            QTest::newRow(name) << QString(lines) << QString(text) << QString(settings)
                                << QString(written ? written : text);
        };
        // clang-format off
        row("one line", "0", "{lines: {0: {protocol: CANopen, node-id: 12}}}",
            "general co_node_id=12|general line0type=1");
        row("each line", "0,1", "{lines: {0: {node-id: 12}, 1: {node-id: NODE, uds_client_cnt: 2}}}",
            "general co_node_id=12,NODE|general uds_client_cnt=,2");
        row("not set for line 1", "0,1", "{lines: {0: {nmt-master: 1}, 1: {}}}", "general nmtmaster=1,");
        row("gap", "0,2", "{lines: {0: {receive-buffer: 20}, 2: {receive-buffer: 5}}}",
            "general receivebuffersize=20, ,5");
        row("all lines", "0,1", "{settings: {nmtmaster: 1}, lines: {0: {}, 1: {}}}", "general nmtmaster=1");
        row("short", "0,2", "{settings: {nmtmaster: '1,0'}, lines: {0: {}, 2: {}}}", "general nmtmaster=1,0");
        row("long", "0", "{settings: {co_node_id: '1,2'}, lines: {0: {}}}", "general co_node_id=1,2");
        row("no gap", "0,2", "{settings: {co_node_id: '1,,2'}, lines: {0: {}, 2: {}}}", "general co_node_id=1,,2");
        row("list in the settings", "0,1", "{settings: {co_node_id: '1,'}, lines: {0: {}, 1: {}}}",
            "general co_node_id=1,", "{lines: {0: {node-id: 1}, 1: {}}}");
        row("empty list", "0,1", "{settings: {co_node_id: ','}, lines: {0: {}, 1: {}}}", "general co_node_id=,");
        row("empty text", "0", "{lines: {0: {node-id: ''}}}", "", "{lines: {0: {}}}");
        row("blank", "0,1", "{lines: {0: {node-id: ' '}, 1: {}}}", "general co_node_id= ,");
        row("j1939", "0,1", "{j1939: {requestsupport: yes}, lines: {0: {}, 1: {j1939: {function: 0x82}}}}",
            "j1939 function=,0x82|j1939 requestsupport=1",
            "{j1939: {requestsupport: 1}, lines: {0: {}, 1: {j1939: {function: 0x82}}}}");
        row("truths", "0", "{settings: {dynod: Off, endian: 'true', limit_check: true, nobody: true, user_tx_cob: yes},"
            " misc: {generateML: on, postGenEnabled: no}, lines: {0: {uds_server_active: true}}}",
            "general dynod=0|general endian=true|general limit_check=1|general nobody=true|general uds_server_active=1|"
            "general user_tx_cob=yes|misc generateML=true|misc postGenEnabled=false",
            "{settings: {dynod: 0, endian: 'true', limit_check: 1, nobody: 'true', user_tx_cob: 'yes'},"
            " misc: {generateML: 'true', postGenEnabled: 'false'}, lines: {0: {uds_server_active: 1}}}");
        row("texts", "0", "{settings: {'': '', a: '1_000', b: '0o7', c: ' x ', d.e: 'null', f': 007}, lines: {0: {}}}",
            "general =|general a=1_000|general b=0o7|general c= x |general d.e=null|general f'=007",
            "{settings: {'': '', a: '1_000', b: '0o7', c: ' x ', d.e: 'null', f': '007'}, lines: {0: {}}}");
        row("protocols", "0,1,2,3", "{lines: {0: {protocol: J1939}, 1: {protocol: 4}, 2: {protocol: CANopen and J1939},"
            " 3: {protocol: 0x1}}}",
            "general line0type=2|general line1type=4|general line2type=5|general line3type=0x1",
            "{lines: {0: {protocol: J1939}, 1: {protocol: raw CAN}, 2: {protocol: CANopen and J1939},"
            " 3: {protocol: 0x1}}}");
        row("no protocol", "0", "{settings: {line00type: 1, line0type: CANopen, line1type: 1}, lines: {0: {}}}",
            "general line00type=1|general line0type=CANopen|general line1type=1");
        row("description", "0,1", "{description: {VendorName: A, VendorName_2: C},"
            " lines: {0: {}, 1: {description: {NrOfRXPDO: 1, VendorName: B}}}}",
            "description NrOfRXPDO_1=1|description VendorName=A|description VendorName_1=B|description VendorName_2=C");
        row("key that ends as that of a line", "1,10", "{description: {BaudRate_10: 1},"
            " lines: {1: {description: {BaudRate_10: 1}}, 10: {description: {BaudRate_10: 1}}}}",
            "description BaudRate_10=1|description BaudRate_10_1=1|description BaudRate_10_10=1");
        row("default", "0", "{description: {BaudRate_125: 1, VendorName: ''}, lines: {0: {}}}", "", "{lines: {0: {}}}");
        row("description of line 0", "0,1", "{lines: {0: {description: {VendorName: A}}, 1: {description: {Odd: B}}}}",
            "description Odd_1=B|description VendorName=A",
            "{description: {Odd_1: B, VendorName: A}, lines: {0: {}, 1: {}}}");
        row("tool", "0", "{misc: {SaveToolType: CANopen Tessarine, SaveToolVersion: 3.0.0}, lines: {0: {}}}",
            "misc SaveToolVersion=3.0.0", "{misc: {SaveToolVersion: 3.0.0}, lines: {0: {}}}");
        row("portable", "0", "{misc: {description_form: portable}, lines: {0: {}}}", "", "{lines: {0: {}}}");
        row("classic", "0", "{misc: {description_form: classic}, lines: {0: {}}}", "misc no description_form");
        row("no lines", "", "{settings: {co_node_id: '', line0type: 1}, lines: {}}",
            "general co_node_id=|general line0type=1");
        // clang-format on
    }

    void forms()
    {
        const auto [lines, text, settings, written] =
            fetchRow<QString, QString, QString, QString>();
        YamlText yaml(text.toUtf8());
        const ProjectRecord project = read(yaml, lines);
        QCOMPARE(yaml.errors(), QStringList());
        QCOMPARE(dump(project, read("", lines)).join('|'), settings);
        YamlText again(write(project));
        QCOMPARE(flat(again.root()), written);
        const ProjectRecord other = read(again, lines);
        QCOMPARE(dump(other, project) + dump(project, other), QStringList());
    }

    void anySettingsComeBack()
    {
        QRandomGenerator random(testSeed());
        const QStringList values{"",      " ",       "1",           ",",       " ,",   "1,2",
                                 "1, ,3", " , ,0x1", ",,",          "1,2,3,4", "true", "classic",
                                 "a: b",  "a\n b\n", "'",           "\\",      "\t",   "CANopen",
                                 "5",     "#",       "0815-BUY-ME", "3.11.2"};
        QStringList keys{"",
                         "_1",
                         "a.b",
                         "\"",
                         "\n",
                         "<<",
                         "~",
                         "line0type",
                         "line2type",
                         "line9type",
                         "line-1type",
                         "node-id",
                         "lines",
                         "protocol",
                         "description_form",
                         "SaveToolType",
                         "VendorName_01"};
        for (const SettingTopic &topic : SettingsCatalogue::topics()) {
            for (const Setting &row : topic) {
                for (const char *suffix : {"", "_1", "_2", "_7"})
                    keys << row.key + QString(suffix);
            }
        }
        for (int round = 0; round < 200; ++round) {
            const QString lines =
                anyOf(QStringList{"", "0", "2", "0,1", "0,2", "0,1,2", "1,7"}, random);
            ProjectRecord project = read("", lines);
            for (int i = 0; i < 100; ++i)
                (project.*kStores[i % 5])[anyOf(keys, random)] = anyOf(values, random);
            if (round % 2 || project.misc.value("description_form") == "classic")
                project.misc.remove("description_form");
            const QByteArray text = write(project);
            YamlText yaml(text);
            const ProjectRecord other = read(yaml, lines);
            QCOMPARE(yaml.errors(), QStringList());
            QCOMPARE(dump(other, project) + dump(project, other), QStringList());
            QCOMPARE(write(other), text);
        }
    }

    void mistakes_data()
    {
        columns<QByteArray, QString>("text", "error");
        const auto row = [](const char *name, const char *text, const char *error) {
            QTest::newRow(name) << QByteArray(text) << QString(error).replace('\'', '"');
        };
        // clang-format off
        row("list", "settings: {co_node_id: [1, 2]}",
            "1:24: the setting 'co_node_id' is a single value, but here is a list");
        row("no map", "settings: 1",
            "1:11: what stands below 'settings' is a map of settings, but here is a single value");
        row("no value", "lines: {0: {node-id: }}",
            "1:22: the setting 'node-id' has no value; write '' for an empty text");
        row("comma", "lines: {0: {nmt-master: '1,0'}}",
            "1:25: 'nmt-master' is the value of one line, and cannot hold a comma");
        row("in both places", "lines:\n  0: {nmt-master: 1}\nsettings:\n  nmtmaster: 0",
            "2:7: 'nmt-master' is set here, and as 'nmtmaster' in line 4; remove one of them");
        row("protocol in both places", "lines: {0: {protocol: 1}}\nsettings: {line0type: 1}",
            "1:13: 'protocol' is set here, and as 'line0type' in line 2; remove one of them");
        row("description in both places", "lines: {1: {description: {Comment: a}}}\ndescription: {Comment_1: a}",
            "1:27: 'Comment' is set here, and as 'Comment_1' in line 2; remove one of them");
        row("case", "lines: {0: {protocol: canopen}}", "1:23: there is no protocol 'canopen'; did you mean 'CANopen'");
        row("no protocol", "lines: {0: {protocol: LIN}}",
            "1:23: there is no protocol 'LIN'; it is one of 'CANopen', 'J1939', 'raw CAN', 'CANopen and J1939'");
        row("key of the store", "lines: {0: {co_node_id: 1}}", "1:13: 'co_node_id' is written as 'node-id', in a line");
        row("not of a line", "lines: {0: {limit_check: 1}}",
            "1:13: there is no key 'limit_check' in a line; it belongs to 'settings'");
        row("of a line", "node-id: 1", "1:1: there is no key 'node-id' in a project; it belongs to a line");
        row("unknown", "lines: {0: {node-idd: 1, j1939: {functoin: 1, requestsupport: 1}}}",
            "1:13: there is no key 'node-idd' in a line; did you mean 'node-id'|"
            "1:34: there is no key 'functoin' in the J1939 settings of a line; did you mean 'function'|"
            "1:47: there is no key 'requestsupport' in the J1939 settings of a line; "
            "it belongs to 'j1939' of the project");
        // clang-format on
    }

    void mistakes()
    {
        const auto [text, error] = fetchRow<QByteArray, QString>();
        YamlText yaml(text);
        (void)read(yaml, "0,1");
        QCOMPARE(yaml.errors().join('|'), error);
    }

    void places()
    {
        const YamlText yaml(
            "settings: {co_node_id: 1, name: x}\ndescription: {Comment: a, Comment_2: b}\nlines:\n"
            "  0x0:\n    name: y\n    nmt-master: 0\n  2:\n    protocol: 1\n    node-id: 3\n"
            "    j1939: {function: 1}\n    description:\n      Comment: c\n      OrderCode: d\n");
        const auto lineOf = [&yaml](const char *table, const char *key, int line) {
            return YamlSettings::placeOf(yaml.root(), table, key, line).line;
        };
        QCOMPARE(joined(lineOf("GeneralSettings", "co_node_id", 2),
                        lineOf("GeneralSettings", "co_node_id", 0),
                        lineOf("GeneralSettings", "nmtmaster", -1),
                        lineOf("GeneralSettings", "name", 0),
                        lineOf("GeneralSettings", "line2type", -1),
                        lineOf("J1939Settings", "function", -1)),
                 "9/1/6/1/8/10");
        QCOMPARE(joined(lineOf("DescriptionSettings", "Comment", -1),
                        lineOf("DescriptionSettings", "Comment_2", -1),
                        lineOf("DescriptionSettings", "OrderCode", 2),
                        lineOf("DescriptionSettings", "OrderCode", 0),
                        lineOf("GeneralSettings", "endian", 0), lineOf("Nodes", "name", 0)),
                 "2/12/13/0/0/0");
    }

    void keysHaveOneMeaning()
    {
        // A key of a line, or a setting that is told to belong elsewhere, must be no column's.
        const QByteArray page = readFile(TESSARINE_EXAMPLES "/../docs/settings.md");
        QStringList keys = YamlSettings::keysOfLine();
        for (const SettingTopic &topic : SettingsCatalogue::topics()) {
            for (const Setting &row : topic) {
                keys << row.key;
                const QString word = YamlSettings::wordOfLineKey(row.key);
                if (topic.store == SettingStore::General && !word.isEmpty() && word != row.key)
                    QVERIFY2(page.contains("| `" + keys.last().toUtf8() + "` | `" + word.toUtf8()),
                             row.key);
            }
        }
        for (const YamlColumn &column : kNodeWords)
            QVERIFY2(!keys.contains(column.word), column.word);
        YamlText example(page.mid(page.indexOf("```yaml") + 7).split('`').first());
        (void)read(example, "0,1");
        QCOMPARE(example.entries().size(), 3);
        QCOMPARE(example.errors(), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestYamlSettings)
#include "tst_yamlsettings.moc"
