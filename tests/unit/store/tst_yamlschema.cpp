// The schema of the YAML form and its reader: what one takes and refuses, the other does as well.
#include "formats/yamlreader.h"
#include "store/yaml/yamlproject.h"
#include "store/yaml/yamlschema.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/jsonschema.h"
#include "tests/fixtures/randomproject.h"

#include <QBuffer>

namespace
{

/// Whose errors a project has.
enum Verdict { Good, Bad, BadForReader };

/// Mistakes that the schema does not see: numbers that have as many digits as the highest one, what
/// stands twice, and what depends on other keys.
const QStringList kOnlyForReader = {
    "line/not there",          "line/doubled number", "line/both setting places",
    "objects/doubled index",   "objects/no value",    "members/subindex beyond",
    "members/key of a member", "short/and long",      "frames/doubled"};

const JsonSchema &schema()
{
    static const JsonSchema instance(YamlSchema::text());
    return instance;
}

QByteArray ofLine(const QByteArray &keys)
{
    return "tessarine: 1\nlines: {0: {" + keys + "}}\n";
}

QByteArray ofProject(const QByteArray &key)
{
    return "tessarine: 1\nlines: {}\n" + key + "\n";
}

QByteArray ofObject(const QByteArray &keys)
{
    return ofLine("objects: {0x2000: {" + keys + "}}");
}

} // namespace

Q_DECLARE_METATYPE(Verdict)

class tst_YamlSchema : public QObject
{
    Q_OBJECT

private slots:
    void agreesWithReader_data()
    {
        columns<QByteArray, Verdict>("text", "verdict");
        const auto row = [](const char *name, Verdict verdict, const QByteArray &text) {
            QTest::newRow(name) << text << verdict;
        };
        row("least", Good, "tessarine: 1\nlines: {}");
        row("version_in_quotes", Good, "tessarine: '0x1'\nlines: {}");
        row("version_missing", Bad, "lines: {}");
        row("version_other", Bad, "tessarine: 2\nlines: {}");
        row("lines_missing", Bad, "tessarine: 1");
        row("unknown_key", Bad, "tessarine: 1\nlines: {}\nline: {}");
        row("settings_any_key", Good,
            ofProject("settings: {limit_check: 1, my_own: yes, other: ''}"));
        row("settings_list", Bad, ofProject("settings: {limit_check: [1, 1]}"));
        row("settings_no_map", Bad, ofProject("settings: 1"));
        row("setting_without_value", BadForReader, ofProject("settings: {limit_check: }"));
        row("key_spellings", Good,
            "tessarine: 1\nlines: {0x0: {}, 1: {}, 002: {}, 0X3: {}, '4': {}}");
        row("key_of_line_too_great", BadForReader, "tessarine: 1\nlines: {999: {}}");
        row("key_of_line_far_too_great", Bad, "tessarine: 1\nlines: {1000: {}}");
        row("key_is_no_number", Bad, "tessarine: 1\nlines: {one: {}}");
        row("key_doubled_by_value", BadForReader, "tessarine: 1\nlines: {16: {}, 0x10: {}}");
        row("line_no_map", Bad, "tessarine: 1\nlines: {0: CANopen}");
        row("line_unknown_key", Bad, ofLine("protocl: CANopen"));
        row("line_node", Good,
            ofLine("protocol: raw CAN, name: 12, master: True, tpdo-count: 0x10, prefix: ~"));
        row("line_settings", Good,
            ofLine("node-id: 12, nmt-master: 0, j1939: {startaddress: 0x80}"));
        row("line_setting_list", Bad, ofLine("node-id: [12]"));
        row("number_too_great", Bad, ofLine("tpdo-count: 65536"));
        row("number_in_quotes_too_great", BadForReader, ofLine("tpdo-count: '65536'"));
        row("number_negative", Bad, ofLine("tpdo-count: -1"));
        row("number_with_fraction", Bad, ofLine("tpdo-count: 1.5"));
        row("number_is_word", Bad, ofLine("tpdo-count: many"));
        row("number_octal", BadForReader, ofLine("tpdo-count: 0o17"));
        row("flag_words", Good,
            ofLine("master: yes, mpdo: OFF, static-pdos: 0, lss-slave: 'true'"));
        row("flag_number", Bad, ofLine("master: 2"));
        row("flag_word", Bad, ofLine("master: maybe"));
        row("object", Good,
            ofObject("name: A, type: U16, access: rww, default: 0, limits: [0, 3600], pdo: rpdo"));
        row("object_odd", Good,
            ofObject("type: unsigned16, access: odd, code: NULL, pdo: 4, metadata: {a: 1}"));
        row("object_type_unknown", Bad, ofObject("type: U17"));
        row("object_word_unknown", Bad, ofObject("pdo: both"));
        row("object_word_number", Bad, ofObject("pdo: 5"));
        row("object_key_unknown", Bad, ofObject("acess: ro"));
        row("object_array", Good,
            ofObject("array: 8, type: U32, members: {3: {default: 5}, 0: {access: ro}}"));
        row("object_array_empty", Bad, ofObject("array: 0"));
        row("object_members", Good, ofObject("members: {0: none, 0x1: {name: Current}}"));
        row("object_member_unknown_key", Bad, ofObject("members: {1: {members: {}}}"));
        row("object_limits_one", Bad, ofObject("limits: [1]"));
        row("object_limits_text", Bad, ofObject("limits: 1"));
        row("object_defaults", Good,
            ofLine("object-defaults: {limits: type, allowed-access: '', implementation: 0}"));
        row("object_defaults_limits", Good, ofLine("object-defaults: {limits: ['', 5]}"));
        row("object_defaults_word", Bad, ofLine("object-defaults: {limits: types}"));
        row("object_defaults_other", Bad, ofLine("object-defaults: {access: rw}"));
        row("standard", Good,
            ofLine("device-type: 0x191, identity: {vendor: 1, serial: {variable: s}}, heartbeat: "
                   "1000"));
        row("standard_key_unknown", Bad, ofLine("identity: {vendro: 1}"));
        row("standard_wrong_kind", Bad, ofLine("heartbeat: [1000]"));
        row("pdo", Good,
            ofLine("tpdo: {1: {cob-id: $NODEID+0x180, transmission: 1, map: [0x2011, 0x2012:1]}}"));
        row("standard_description", Good,
            ofLine(
                "identity: {description: of it}, heartbeat-consumers: {description: x, 0x2: 5}"));
        row("standard_variable_in_map", Good,
            ofLine("emcy: {inhibit: {name: x, code: VAR, default: 1}}"));
        row("standard_variable_of_record", Bad, ofLine("identity: {vendor: {code: VAR}}"));
        row("pdo_slots", Good,
            ofLine("rpdo: {1: {map-slots: 8, map: [0x20110110], map-description: x}}"));
        row("pdo_slots_too_many", Bad, ofLine("rpdo: {1: {map-slots: 65}}"));
        row("pdo_number", Bad, ofLine("tpdo: {1000: {}}"));
        row("pdo_map_no_list", Bad, ofLine("tpdo: {1: {map: 0x2011}}"));
        row("rpdo_key_of_tpdo", Bad, ofLine("rpdo: {1: {sync-start: 1}}"));
        row("groups", Good,
            ofLine("groups: {transmit: {0xFEEE: {cycle: 100, signals: [{spn: 1, type: U8}, {skip: "
                   "8}]}}}"));
        row("groups_several", Good, ofLine("groups: {0x77: {65262: [{name: A}, {name: B}]}}"));
        row("groups_direction", Bad, ofLine("groups: {sent: {}}"));
        row("groups_elements", Bad, ofLine("groups: {transmit: {1: {elements: []}}}"));
        row("signal_of_element_key", Bad,
            ofLine("groups: {transmit: {1: {signals: [{number: 1}]}}}"));
        row("frames", Good,
            ofLine("frames: {receive: {0x123: {elements: [{number: 1, bits: 7}]}}}"));
        row("frame_priority", Bad, ofLine("frames: {receive: {0x123: {priority: 1}}}"));
        row("skip_and_more", Bad,
            ofLine("frames: {receive: {1: {elements: [{skip: 8, name: x}]}}}"));
        row("skip_none", Bad, ofLine("frames: {receive: {1: {elements: [{skip: 0}]}}}"));
        row("other_signals", Good,
            ofLine("other-signals: [{spn: 1, group: 0xFEEE, direction: transmit}]"));
        row("services", Good,
            ofLine("uds: {ecu-reset: {active: true, sessions: [1, 3]}, 62: {levels: '1,2'}}"));
        row("error_register", Good, ofLine("error-register: true"));
        row("error_register_value", Good, ofLine("error-register: 0x81"));
        row("error_register_word", Bad, ofLine("error-register: {defalt: 1}"));
        row("all_services", Good, ofLine("uds: all"));
        row("services_word", Bad, ofLine("uds: {reset: {}}"));
        row("signals", Good, ofLine("signals: {1: {name: Speed, type: U16, event-timer: 10}}"));
        row("locks", Good, ofLine("locks: {pdos: [0x1800], mappings: [6656]}"));
        row("connections", Good,
            ofProject("connections: [{from: 0/0x2010:1, to: 1/0x2011:0, priority: 3}]"));
        row("connection_key", Bad, ofProject("connections: [{form: 0/0x2010:1}]"));
        row("line_groups", Good, ofProject("line-groups: [{name: A, lines: [0, 1]}]"));
        row("virtual_nodes", Good, ofProject("virtual-nodes: {1: {line: 0, node: 5, name: x}}"));
    }
    void agreesWithReader()
    {
        const auto [text, verdict] = fetchRow<QByteArray, Verdict>();
        YamlDocument document;
        YamlProblems problems("project.yaml");
        ProjectRecord project;
        QVERIFY(YamlReader::read(text, &document, &problems));
        (void)YamlProject::read(document, &project, &problems); // the problems tell
        QVERIFY2(problems.isEmpty() == (verdict == Good), qPrintable(problems.lines().join('\n')));
        QCOMPARE(schema().accepts(jsonOf(document.root())), verdict != Bad);
    }

    void mistakes_data() { addCases(TEST_CASES "/yamlmistakes.txt"); }
    void mistakes()
    {
        const auto [text, told] = fetchRow<QString, QString>();
        YamlDocument document;
        YamlProblems problems("project.yaml");
        if (!YamlReader::read(text.toUtf8(), &document, &problems) || !problems.isEmpty())
            return; // editors tell of that without a schema
        const bool isAccepted = schema().accepts(jsonOf(document.root()));
        QCOMPARE(isAccepted, kOnlyForReader.contains(QTest::currentDataTag()));
    }

    void acceptsWhatIsWritten()
    {
        RandomProject projects(testSeed(), {});
        for (int i = 0; i < 50; ++i) {
            QBuffer file;
            QVERIFY(file.open(QIODevice::WriteOnly) && YamlProject::write(projects.make(), &file));
            YamlDocument document;
            YamlProblems problems("project.yaml");
            QVERIFY(YamlReader::read(file.data(), &document, &problems));
            QVERIFY2(schema().accepts(jsonOf(document.root())), file.data());
        }
    }
};

QTEST_APPLESS_MAIN(tst_YamlSchema)
#include "tst_yamlschema.moc"
