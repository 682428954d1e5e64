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
    for (int number = 0; number < count; ++number) {
        SubIndexData &sub = object.subs[quint8(random.bounded(4) ? number : random.bounded(256))];
        sub.name = object.data.name;
        sub.dataType = object.data.dataType;
        for (int i = random.bounded(4); i > 0; --i)
            shake(kSubIndexYaml, &sub, random);
    }
    return object;
}

/// All objects that a project may have in short form.
QByteArray shortForms()
{
    return "";
}

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
        row("count_of_record",
            "objects:\n  0x2012:\n    name: Ramps\n    members:\n      1: {name: Up}\n"
            "      3: {name: Down, type: U32}\n",
            0x2012, 0, "Highest subindex supported/5/const/3/1//0");
        row("array_member",
            "objects:\n  0x2040: {name: Log, array: 8, type: U32, variable: \"log[2]\"}\n", 0x2040,
            8, "Log 8/7/ro//2/log[9]/0");
        row("array_count", "objects:\n  0x2040: {name: Log, array: 8}\n", 0x2040, 0,
            "Highest subindex supported/5/const/8/1//0");
        row("array_with_one_other",
            "objects:\n  0x2040:\n    name: Log\n    array: 3\n    type: U32\n    members:\n"
            "      2: {name: Old, access: rw}\n",
            0x2040, 2, "Old/7/rw//0//0");
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

    void anyObjectsComeBack()
    {
        QRandomGenerator random(testSeed());
        for (int round = 0; round < 300; ++round) {
            Objects objects = read(shortForms()).objects;
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
