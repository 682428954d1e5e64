// Objects of a line in the YAML form: what each way to write them stands for, what is told, and
// that any objects come back as they were.
#include "store/yaml/yamlobjects.h"
#include "store/yaml/yamlrecord.h"
#include "tests/fixtures/testkit.h"
#include "tests/fixtures/yamlkit.h"

using Objects = std::map<quint16, ObjectRecord>;

namespace
{

struct Reading {
    Objects objects;
    QStringList errors;
};

Reading read(const QByteArray &yaml)
{
    YamlText text(yaml);
    Reading result;
    const auto others = YamlObjects::read(text.entries(), &result.objects, text.context);
    for (const YamlNode::Entry &entry : others)
        text.context.unknownKey(entry.key, "a line", YamlObjects::keys());
    result.errors = text.errors();
    return result;
}

QByteArray written(const Objects &objects)
{
    return yamlOf([&](YamlWriter &writer) { YamlObjects::write(objects, writer); });
}

QString describe(const SubIndexData &sub)
{
    return joined(sub.name, sub.dataType, sub.accessType, sub.defaultValue, sub.implementation,
                  sub.varName, sub.size);
}

/// The first difference; empty if there is none.
QString difference(const Objects &one, const Objects &other)
{
    if (one.size() != other.size())
        return QString("%1 and %2 objects").arg(one.size()).arg(other.size());
    for (const auto &[index, object] : one) {
        const QString place = QString::number(index, 16);
        const auto found = other.find(index);
        if (found == other.end() || object.subs.size() != found->second.subs.size())
            return place + ": members";
        if (object.exists != found->second.exists ||
            !YamlRecord::isEqual(kIndexYaml, object.data, found->second.data))
            return place + ": object";
        for (const auto &[number, sub] : object.subs) {
            const auto twin = found->second.subs.find(number);
            if (twin == found->second.subs.end() ||
                !YamlRecord::isEqual(kSubIndexYaml, sub, twin->second))
                return QString("%1: %2").arg(place).arg(number);
        }
    }
    return QString();
}

/// Any value that the column can hold, often one that means something.
template <class Record>
void shake(const YamlTable<Record> &table, Record *record, QRandomGenerator &random)
{
    static const QStringList texts{"", "0", "no", "0x0A", "rw", "x[3]", "Motor 1", "$NODEID+0x80"};
    const int place = random.bounded(table.count);
    const YamlForm form = table.words[place].form;
    const Column<Record> &column = table.columns[place];
    if (form == YamlForm::Map)
        column.set(*record, packMetadata({{texts.at(random.bounded(1, 8)), texts.at(3)}}));
    else if (form == YamlForm::Text || form == YamlForm::Written || form == YamlForm::WordText)
        column.set(*record, texts.at(random.bounded(texts.size())));
    else
        column.set(*record, random.bounded(random.bounded(2) ? 10 : 70000) - random.bounded(3));
}

ObjectRecord randomObject(QRandomGenerator &random)
{
    ObjectRecord object;
    object.exists = random.bounded(20) > 0;
    for (int i = random.bounded(4); object.exists && i > 0; --i)
        shake(kIndexYaml, &object.data, random);
    const int count = random.bounded(2) ? 1 : random.bounded(12);
    const bool isArray = random.bounded(2) == 0;
    if (isArray && object.exists)
        object.data.objectCode = CANopen::ObjectCode::Array;
    for (int number = 0; number < count; ++number) {
        const bool isNext = isArray || random.bounded(4) > 0;
        SubIndexData &sub = object.subs[quint8(isNext ? number : random.bounded(256))];
        if (isArray && number > 1)
            sub = object.subs[1];
        sub.name = object.data.name + (isArray ? " " + QString::number(number) : QString());
        sub.dataType = object.data.dataType;
        for (int i = random.bounded(4); i > 0; --i)
            shake(kSubIndexYaml, &sub, random);
    }
    return object;
}

/// Every short form, in canonical spelling.
constexpr char kShortForms[] =
    "device-type: 0x00020191\n"
    "error-register: true\n"
    "sync: {cob-id: 0x80, cycle: 10000, window: 0}\n"
    "manufacturer: {device-name: BT-40 Pump, hardware: Rev. C, software: 3.4.1}\n"
    "emcy: {cob-id: $NODEID+0x80, inhibit: {default: 100, description: In 100 us}}\n"
    "heartbeat: 1000\n"
    "heartbeat-consumers: {1: {name: Plant, default: 0x000105dc}, 3: 0}\n"
    "identity: {vendor: 0x0319, product: 0x40, serial: {variable: sn, default: 0}}\n"
    "sdo-server:\n"
    "  1: {request: $NODEID+0x600, response: $NODEID+0x580}\n"
    "  2: {request: 0x80000000, response: 0x80000000, node: 3}\n"
    "sdo-client:\n"
    "  128: {request: 0x601, response: 0x581, node: 1}\n"
    "rpdo:\n"
    "  1: {cob-id: $NODEID+0x200, transmission: 255, map: [0x2011, 0x0005], map-slots: 4}\n"
    "  512: {description: Never, cob-id: 0x80000000, transmission: 1, event-timer: 5, map: []}\n"
    "tpdo:\n"
    "  1:\n"
    "    cob-id: $NODEID+0x180\n"
    "    transmission: 255\n"
    "    event-timer: 100\n"
    "    map: [0x2011, 0x2012:1, 0x20130000, 0x20AB, 0]\n"
    "    map-description: Speed and current\n"
    "objects:\n"
    "  0x2011: {name: Speed, type: I16, pdo: tpdo}\n"
    "  0x2012: {name: Log, array: 2, type: U32, access: rw}\n"
    "  0x20AB: {name: Text, type: VS, access: const, default: Hello}\n";

} // namespace

class tst_YamlObjects : public QObject
{
    Q_OBJECT

private slots:
    void meansTheRecords_data()
    {
        columns<QByteArray, int, int, QString>("yaml", "index", "sub", "expected");
        const auto row = [](const char *title, const char *yaml, int index, int sub,
                            const char *expected) {
            QTest::newRow(title) << QByteArray(yaml) << index << sub << QString(expected);
        };
        row("variable",
            "objects:\n  0x2010: {name: Speed, type: U16, access: rww, default: 0x10}\n", 0x2010, 0,
            "Speed/6/rww/0x10/0//0");
        row("variable_of_application",
            "objects:\n  0x2010: {name: Speed, variable: pump.speed, default: 7}\n", 0x2010, 0,
            "Speed/5/ro/7/2/pump.speed/0");
        row("text_has_its_size", "objects:\n  0x2010: {name: Text, type: VS, default: Hello}\n",
            0x2010, 0, "Text/9/ro/Hello/0//5");
        row("constant", "objects: {0x2010: {name: Size, access: const, default: 7}}\n", 0x2010, 0,
            "Size/5/const/7/1//0");
        row("count_of_record",
            "objects:\n  0x2012:\n    name: Ramps\n    members:\n      1: {name: Up}\n"
            "      3: {name: Down, type: U32}\n",
            0x2012, 0, "Highest subindex supported/5/const/3/1//0");
        row("array_member",
            "objects:\n  0x2040: {name: Log, array: 8, type: U32, variable: \"log[2]\"}\n", 0x2040,
            8, "Log 8/7/ro//2/log[9]/0");
        row("array_names_follow_the_first",
            "objects: {0x2040: {name: Log, array: 8, members: {1: {name: Entry 1}}}}\n", 0x2040, 8,
            "Entry 8/5/ro//0//0");
        row("array_count", "objects:\n  0x2040: {name: Log, array: 8}\n", 0x2040, 0,
            "Highest subindex supported/5/const/8/1//0");
        row("array_with_one_other",
            "objects:\n  0x2040:\n    name: Log\n    array: 3\n    type: U32\n    members:\n"
            "      2: {name: Old, access: rw}\n",
            0x2040, 2, "Old/7/rw//0//0");
        row("value", "heartbeat: 1000\n", 0x1017, 0, "Producer heartbeat time/6/rw/1000/0//0");
        row("value_with_words", "heartbeat: {default: 1000, variable: hb}\n", 0x1017, 0,
            "Producer heartbeat time/6/rw/1000/2/hb/0");
        row("text_in_short", "manufacturer: {software: 3.4.1}\n", 0x100A, 0,
            "Manufacturer software version/9/const/3.4.1/1//5");
        row("identity_counts_what_is_there", "identity: {vendor: 0x319, revision: 1}\n", 0x1018, 0,
            "Highest subindex supported/5/const/3/1//0");
        row("identity_has_a_vendor", "identity: {revision: 1}\n", 0x1018, 1,
            "Vendor-ID/7/ro/0/1//0");
        row("second_sdo_server", "sdo-server: {2: {node: 4}}\n", 0x1201, 1,
            "COB-ID client to server/7/rw/0x80000000/0//0");
        row("mapping_before_objects",
            "tpdo: {1: {cob-id: $NODEID+0x180, transmission: 255, event-timer: 100, map: [0x2011, "
            "\"0x2012:1\"]}}\nobjects: {0x2012: {name: Log, array: 2, type: I16}}\n",
            0x1A00, 2, "Mapped object 2/7/const/0x20120110/1//0");
        row("mapping_of_nothing", "tpdo: {3: {map: [0x2011]}}\n", 0x1A02, 1,
            "Mapped object 1/7/const/0x20110000/1//0");
        row("mapping_of_dummy", "rpdo: {1: {map: [5]}}\n", 0x1600, 1,
            "Mapped object 1/7/const/0x00050008/1//0");
        row("mapping_that_may_change", "rpdo: {1: {map: [5], map-slots: 8}}\n", 0x1600, 8,
            "Mapped object 8/7/rw/0/0//0");
        row("range_of_the_type",
            "objects: {0x2010: {members: {1: {type: I8, limits: [0, 1]}, 2: {type: I8}}}}\n"
            "object-defaults: {limits: type, implementation: managedvariable}\n",
            0x2010, 0, "Highest subindex supported/5/const/2/0//0");
        row("subindices_only", "objects:\n  0x2040: {object: none, members: {2: {name: Lost}}}\n",
            0x2040, 2, "Lost/5/ro//0//0");
    }
    void meansTheRecords()
    {
        const auto [yaml, index, sub, expected] = fetchRow<QByteArray, int, int, QString>();
        const Reading reading = read(yaml);
        QCOMPARE(reading.errors, QStringList());
        QCOMPARE(describe(reading.objects.at(quint16(index)).subs.at(quint8(sub))), expected);
        const Reading again = read(written(reading.objects));
        QCOMPARE(difference(again.objects, reading.objects), QString());
    }

    void variableHasTheRangeOfItsType()
    {
        const Reading reading = read("object-defaults: {limits: type}\n"
                                     "objects: {0x2010: {type: I16}}\n");
        const SubIndexData sub = reading.objects.at(0x2010).subs.at(0);
        QCOMPARE(sub.lowLimit + '/' + sub.upLimit, QString("-32768/32767"));
    }

    void staysInShort_data()
    {
        columns<QByteArray>("defaults");
        QTest::newRow("new") << QByteArray();
        QTest::newRow("of_text_projects")
            << QByteArray("object-defaults: {limits: [\"\", \"\"], allowed-access: \"\"}\n");
        QTest::newRow("of_imports")
            << QByteArray("object-defaults: {limits: type, implementation: managedvariable}\n");
    }
    void staysInShort()
    {
        const auto [defaults] = fetchRow<QByteArray>();
        const Reading reading = read(defaults + kShortForms);
        QCOMPARE(reading.errors, QStringList());
        QCOMPARE(QString(written(reading.objects)).split(QChar(10)),
                 QString(defaults + kShortForms).split(QChar(10)));
    }

    void tells_data()
    {
        columns<QByteArray, QString>("yaml", "expected");
        const auto row = [](const char *title, const char *yaml, const char *expected) {
            QTest::newRow(title) << QByteArray(yaml) << QString(expected);
        };
        row("in_short_and_in_full", "heartbeat: 1\nobjects: {0x1017: {name: Heartbeat}}\n",
            "2:11: object 0x1017 stands here and in line 1; take one of them away");
        row("mapping_twice", "objects: {0x1A00: {members: {}}}\ntpdo: {1: {map: []}}\n",
            "2:8: object 0x1a00 stands here and in line 1; take one of them away");
        row("key_of_form", "identity: {vender: 1}\n",
            "1:12: there is no key \"vender\" in identity; did you mean \"vendor\"");
        row("key_of_object", "objects: {0x2000: {acess: ro}}\n",
            "1:20: there is no key \"acess\" in an object; did you mean \"access\"");
        row("key_of_member", "objects: {0x2000: {members: {1: {limit: [1, 2]}}}}\n",
            "1:34: there is no key \"limit\" in a member; did you mean \"limits\"");
        row("member_beyond_array", "objects: {0x2000: {array: 2, members: {3: {}}}}\n",
            "1:40: member is a number from 0 to 2, not \"3\"");
        row("length_of_array", "objects: {0x2000: {array: 255}}\n",
            "1:27: the length of an array is a number from 1 to 254, not \"255\"");
        row("one_limit", "objects: {0x2000: {limits: [1]}}\n",
            "1:28: limits are a list of the least and the greatest value");
        row("too_much_for_its_slots", "tpdo: {1: {map: [5, 5], map-slots: 1}}\n",
            "1:17: the mapping has at most 1 entries, not 2");
        row("number_of_pdo", "tpdo: {513: {}}\n",
            "1:8: tpdo is a number from 1 to 512, not \"513\"");
    }
    void tells()
    {
        const auto [yaml, expected] = fetchRow<QByteArray, QString>();
        QCOMPARE(read(yaml).errors.join('\n'), expected);
    }

    void anyObjectsComeBack()
    {
        QRandomGenerator random(testSeed());
        for (int round = 0; round < 60; ++round) {
            const char *const limits[] = {"[0, 0]", "[5, 9]", "type"};
            Objects objects = read(QByteArray("object-defaults: {limits: ") +
                                   limits[random.bounded(3)] + "}\n" + kShortForms)
                                  .objects;
            for (auto &[index, object] : objects) {
                if (random.bounded(3) == 0)
                    shake(kIndexYaml, &object.data, random);
                for (auto &[number, sub] : object.subs) {
                    if (random.bounded(20) == 0)
                        shake(kSubIndexYaml, &sub, random);
                }
                if (random.bounded(10) == 0)
                    object.subs.erase(quint8(random.bounded(4)));
            }
            for (int i = random.bounded(1, 10); i > 0; --i)
                objects[quint16(random.bounded(65536))] = randomObject(random);
            const QByteArray yaml = written(objects);
            const Reading reading = read(yaml);
            QVERIFY2(reading.errors.isEmpty(), qPrintable(reading.errors.join('\n') + yaml));
            QVERIFY2(difference(reading.objects, objects).isEmpty(),
                     qPrintable(difference(reading.objects, objects) + "\n" + yaml));
            QCOMPARE(written(reading.objects), yaml);
        }
    }
};

QTEST_GUILESS_MAIN(tst_YamlObjects)
#include "tst_yamlobjects.moc"
