// Groups, frames and diagnostic services of a line in the YAML form: what texts mean, how records
// are written, and that one undoes the other whatever the records are.
#include "store/yaml/yamlframes.h"
#include "store/yaml/yamlrecord.h"
#include "support/udssiddefinitions.h"
#include "tests/fixtures/yamlkit.h"

#include <QRandomGenerator>
#include <QTest>

namespace
{

/// The columns that differ from those of a record made anew.
template <class Record, size_t N>
QString dump(const Column<Record> (&columns)[N], const Record &record)
{
    QStringList cells;
    for (const Column<Record> &column : columns) {
        if (column.get(record) != column.get(Record()))
            cells << QString(column.name) + '=' + column.get(record).toString();
    }
    return cells.join(' ');
}

template <class Records, class FrameColumns, class SignalColumns>
void dumpFrames(const Records &records, const FrameColumns &frames, const SignalColumns &all,
                QStringList *lines)
{
    for (const auto &record : records) {
        *lines << dump(frames, record.frame);
        for (const auto &signal : record.signalsOf)
            *lines << "- " + dump(all, signal);
    }
}

/// Each record on a line, without services as a new line has them.
QStringList dump(const LineRecord &line)
{
    QStringList lines;
    dumpFrames(line.groups, kPgnColumns, kSpnColumns, &lines);
    for (const SpnData &signal : line.otherSignals)
        lines << "* " + dump(kSpnColumns, signal);
    dumpFrames(line.frames, kCanIdColumns, kDataElementColumns, &lines);
    for (const DataElementData &element : line.otherElements)
        lines << "* " + dump(kDataElementColumns, element);
    for (const auto &[sid, service] : line.services)
        lines << QString("%1: ").arg(sid) + dump(kUdsServiceColumns, service);
    return lines;
}

QByteArray written(const LineRecord &line)
{
    return yamlOf([&](YamlWriter &writer) { YamlFrames::write(line, writer); });
}

LineRecord readBack(YamlText &text, QStringList *others = nullptr)
{
    LineRecord line;
    const auto left = YamlFrames::read(text.entries(), &line, text.context);
    for (const YamlNode::Entry &entry : left) {
        if (others)
            *others << entry.key.text();
    }
    return line;
}

template <class Record>
void fill(const YamlTable<Record> &table, QRandomGenerator &random, Record *record)
{
    static const QStringList texts{"",     "0",   "0xFF", "dummy",   "a: b",
                                   "x\ny", "1,3", "1,,3", "transmit"};
    for (int i = 0; i < table.count; ++i) {
        const Column<Record> &column = table.columns[i];
        const bool isText = column.get(Record()).type() == QVariant::String;
        if (random.bounded(3) == 0)
            column.set(*record, isText
                                    ? QVariant(texts.at(random.bounded(texts.size())))
                                    : QVariant(qint64(random.generate64() >> random.bounded(64))));
    }
}

/// Frames of few numbers and directions, so that several have the same.
template <class Frame, class Signal>
void fillFrames(const YamlTable<Frame> &frames, quint32 Frame::*number,
                const YamlTable<Signal> &all, QRandomGenerator &random,
                std::vector<FrameRecord<Frame, Signal>> *records, std::vector<Signal> *others)
{
    std::map<std::pair<quint8, quint32>, std::vector<FrameRecord<Frame, Signal>>> byKey;
    for (int i = random.bounded(5); i > 0; --i) {
        FrameRecord<Frame, Signal> record;
        fill(frames, random, &record.frame);
        record.frame.*number %= 3;
        for (int k = random.bounded(4); k > 0; --k)
            fill(all, random, &record.signalsOf.emplace_back());
        byKey[{record.frame.direction, record.frame.*number}].push_back(record);
    }
    for (const auto &[key, list] : byKey)
        records->insert(records->end(), list.begin(), list.end());
    for (int k = random.bounded(3); k > 0; --k)
        fill(all, random, &others->emplace_back());
}

} // namespace

class tst_YamlFrames : public QObject
{
    Q_OBJECT

private slots:
    void means_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QStringList>("records");
        QTest::addColumn<QByteArray>("canonical"); // empty: as the text
        const auto row = [](const char *title, const QByteArray &text, QStringList records,
                            const QByteArray &canonical = {}) {
            if (!text.contains("uds")) {
                for (const int sid : {16, 17, 34, 46, 62})
                    records << QString("%1: active=1 sessions=1").arg(sid);
            }
            QTest::newRow(title) << text << records << canonical;
        };
        row("nothing_said", "", {});
        row("group",
            "groups:\n  transmit:\n    0xFEEE:\n      name: Engine Temperature 1\n      cycle: "
            "1000\n"
            "      priority: 6\n      signals:\n"
            "        - {spn: 110, name: Coolant temperature, type: U8, default: 0xFF}\n"
            "        - {skip: 24}\n"
            "        - {spn: 175, name: Oil temperature, type: U16, variable: engine.oil}\n",
            {"number=65262 priority=6 cycletime_ms=1000 mappingcount=3 direction=85 "
             "name=Engine Temperature 1",
             "- pgnnumber=65262 spnnumber=110 datatype=5 implementation=0 defaultvalue=0xFF "
             "name=Coolant temperature direction=85",
             "- pgnnumber=65262 spnnumber=524289 datatype=22 implementation=0 name=dummy pos=1 "
             "direction=85",
             "- pgnnumber=65262 spnnumber=175 datatype=6 varname=engine.oil name=Oil temperature "
             "pos=2 direction=85"});
        row("frame",
            "frames:\n  receive:\n    0x123:\n      name: Doors\n      elements:\n        - {skip: "
            "4}\n"
            "        - {name: Left, type: B}\n        - {number: 7, type: U16, pos: 4}\n"
            "        - {type: I8, implementation: virtualobject}\n",
            {"id=291 mappingcount=4 direction=119 name=Doors",
             "- canid=291 number=1 datatype=102 implementation=0 name=dummy direction=119",
             "- canid=291 number=2 datatype=1 implementation=0 name=Left pos=1 direction=119",
             "- canid=291 number=7 datatype=6 implementation=0 pos=4 direction=119",
             "- canid=291 number=8 datatype=2 implementation=3 pos=5 direction=119"});
        row("gap_of_no_type", "groups: {transmit: {5: {signals: [skip: 20, skip: 65]}}}",
            {"number=5 mappingcount=4 direction=85",
             "- pgnnumber=5 spnnumber=524288 datatype=6 implementation=0 name=dummy direction=85",
             "- pgnnumber=5 spnnumber=524289 datatype=102 implementation=0 name=dummy pos=1 "
             "direction=85",
             "- pgnnumber=5 spnnumber=524290 datatype=27 implementation=0 name=dummy pos=2 "
             "direction=85",
             "- pgnnumber=5 spnnumber=524291 datatype=1 implementation=0 name=dummy pos=3 "
             "direction=85"},
            "groups:\n  transmit:\n    0x0005:\n      signals:\n        - {skip: 16}\n"
            "        - {skip: 4}\n        - {skip: 64}\n        - {skip: 1}\n");
        row("own_filler_is_none",
            "frames:\n  transmit:\n    0x1:\n      elements:\n"
            "        - {name: dummy, type: U8, default: 0xFF}\n",
            {"id=1 mappingcount=1 direction=85", "- canid=1 number=1 datatype=5 implementation=0 "
                                                 "defaultvalue=0xFF name=dummy direction=85"});
        row("several_of_a_number",
            "groups:\n  transmit:\n    0x0001:\n      - signals:\n          - {spn: 9}\n"
            "      - {name: second, count: 4}\n",
            {"number=1 mappingcount=1 direction=85",
             "- pgnnumber=1 spnnumber=9 implementation=0 direction=85",
             "number=1 mappingcount=4 direction=85 name=second"});
        row("other_direction_and_order",
            "groups: {receive: {9: {}, 0x2: {}}, transmit: {4294967295: {count: 2}}, 3: {1: {}}}",
            {"number=1 direction=3", "number=4294967295 mappingcount=2 direction=85",
             "number=2 direction=119", "number=9 direction=119"},
            "groups:\n  3:\n    0x0001: {}\n  transmit:\n    0xFFFFFFFF: {count: 2}\n  receive:\n"
            "    0x0002: {}\n    0x0009: {}\n");
        row("without_frame",
            "other-signals:\n  - {group: 0xFEEE, direction: transmit, spn: 1, pos: 3}\n"
            "  - {direction: 3}\nother-elements:\n  - {frame: 0x10, direction: receive}\n",
            {"* pgnnumber=65262 spnnumber=1 implementation=0 pos=3 direction=85",
             "* implementation=0 direction=3",
             "* canid=16 number=1 implementation=0 direction=119"});
        row("no_services", "uds: {}\n", {});
        QStringList all;
        for (const auto &service : UDS::kAllServices)
            all << QString("%1: active=1 sessions=%2").arg(int(service.sid)).arg(service.sessions);
        std::sort(all.begin(), all.end());
        row("all_services", "uds: all\n", all);
        row("services",
            "uds:\n  1: {}\n  session-control: {sessions: [1, 3], levels: [2]}\n"
            "  tester-present: {active: false, sessions: \"1,,3\"}\n",
            {"1: active=1", "16: active=1 sessions=1,3 userlevels=2", "62: sessions=1,,3"});
        row("services_of_new_line_are_left_out",
            "uds: {16: {sessions: 1}, 17: {sessions: [1]}, 34: {sessions: [1]}, 46: {sessions: "
            "[1]}, "
            "62: {sessions: [1]}, }",
            {"16: active=1 sessions=1", "17: active=1 sessions=1", "34: active=1 sessions=1",
             "46: active=1 sessions=1", "62: active=1 sessions=1"},
            "\n");
    }
    void means()
    {
        QFETCH(QByteArray, text);
        QFETCH(QStringList, records);
        QFETCH(QByteArray, canonical);
        YamlText yaml("x: 1\n" + text);
        QStringList others;
        const LineRecord line = readBack(yaml, &others);
        QCOMPARE(yaml.errors(), QStringList());
        QCOMPARE(others, QStringList("x"));
        QCOMPARE(dump(line), records);
        QCOMPARE(written(line).trimmed(), (canonical.isEmpty() ? text : canonical).trimmed());
    }

    void undoesWriting()
    {
        QRandomGenerator random(7);
        for (int run = 0; run < 100; ++run) {
            LineRecord line;
            fillFrames(kPgnYaml, &PgnData::number, kSpnYaml, random, &line.groups,
                       &line.otherSignals);
            fillFrames(kCanIdYaml, &CanIdData::id, kDataElementYaml, random, &line.frames,
                       &line.otherElements);
            for (int i = random.bounded(3); i > 0; --i)
                fill(kUdsServiceYaml, random, &line.services[quint8(random.bounded(256))]);
            YamlText text(written(line) + "x: 1\n");
            const LineRecord back = readBack(text);
            QCOMPARE(text.errors(), QStringList());
            QCOMPARE(dump(back), dump(line));
            QCOMPARE(written(back), written(line));
        }
    }

    void refuses_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char *title, const char *text, const QStringList &expected) {
            QTest::newRow(title) << QByteArray(text) << expected;
        };
        row("services", "uds: {sesion-control: {},\n 16: {session: 1},\n session-control: {}, 5: }",
            {"1:7: there is no diagnostic service 'sesion-control'; did you mean 'session-control'",
             "2:7: there is no key 'session' in a diagnostic service; did you mean 'sessions'",
             "3:2: diagnostic service session-control stands here a second time; line 2 has it "
             "first",
             "3:26: a diagnostic service is a map, but here is nothing"});
        row("directions", "groups: {tx: {},\n 0xFEEE: {},\n transmit: {},\n 85: {}}",
            {"1:10: there is no direction 'tx'; it is one of transmit, receive",
             "2:2: there is no direction '0xFEEE'; it is one of transmit, receive",
             "4:2: direction 85 stands here a second time; line 3 has it first"});
        row("numbers", "frames: {receive: {0x10: {},\n 16: {},\n 0x100000000: {}}}",
            {"2:2: CAN frame 16 stands here a second time; line 1 has it first",
             "3:2: CAN frame is a number from 0x0 to 0xFFFFFFFF, not '0x100000000'"});
        row("frames",
            "frames: {receive: {1: {signals: []},\n 2: {cicle: 1},\n 3: {elements: {}}, 4: }}",
            {"1:24: a CAN frame has 'elements', not 'signals'",
             "2:6: there is no key 'cicle' in a CAN frame; did you mean 'cycle'",
             "3:16: the elements of a CAN frame are a list, in the order of the frame, but here is "
             "a "
             "map",
             "3:24: a CAN frame is a map, but here is nothing"});
        row("gaps",
            "groups: {receive: {1: {signals: [{skip: 0},\n {skip: 8, spn: 1}]}}}\n"
            "other-signals: [{skip: 8}]",
            {"1:41: skip is a number from 1 to 14280, not '0'",
             "2:12: there is no key 'spn' in an item that skips bits",
             "3:18: there is no key 'skip' in a signal"});
    }
    void refuses()
    {
        QFETCH(QByteArray, text);
        QFETCH(QStringList, expected);
        YamlText yaml(text);
        readBack(yaml);
        QCOMPARE(yaml.errors(), expected.replaceInStrings("'", "\""));
    }
};

QTEST_APPLESS_MAIN(tst_YamlFrames)
#include "tst_yamlframes.moc"
