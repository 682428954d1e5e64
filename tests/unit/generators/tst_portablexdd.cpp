// XML device descriptions in the portable form: they follow the schema, and our importer takes back
// all that they hold.
#include "generators/descriptions/classicalxddgenerator.h"
#include "generators/descriptions/edsportable.h"
#include "generators/descriptions/xddgenerator.h"
#include "import/edsimporter.h"
#include "store/projectrecords.h"
#include "tests/fixtures/randomproject.h"
#include "tests/fixtures/storefixture.h"
#include "tests/fixtures/strictxdd.h"

#include <QLoggingCategory>

class tst_PortableXdd : public StoreTest
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qputenv("SOURCE_DATE_EPOCH", "43200");
        QLoggingCategory::setFilterRules("tessarine.*=false"); // odd projects make generators talk
    }

    void values_data()
    {
        columns<int, QString, QString>("type", "value", "told");
        // clang-format off
        QTest::newRow("hex") << 7 << "0X0000abCD" << "7 0x0000abCD";
        QTest::newRow("real_as_it_is") << 8 << "1.50" << "8 1.50";
        QTest::newRow("real_of_c") << 8 << "0.1f" << "8 0.1";
        QTest::newRow("hex_is_no_pattern") << 17 << "0x10" << "17 16";
        QTest::newRow("time_of_day") << 12 << "5" << "12 5";
        QTest::newRow("all_letters") << 9 << QString(" p\u00fc;#\n") << QString("9  p\u00fc;#\n");
        QTest::newRow("no_such_letter") << 9 << "a\x01" << "9";
        QTest::newRow("bits") << 100 << "3" << "5 3 0..3";
        // clang-format on
    }
    void values()
    {
        const auto [type, value] = fetchRow<int, QString>();
        const EdsSubTexts texts =
            EdsPortable::xddTexts(makeSub("x", quint16(type), value), EdsRole::Value);
        QString told = QString::number(texts.dataType);
        if (texts.defaultValue)
            told += ' ' + *texts.defaultValue;
        if (texts.lowLimit || texts.highLimit)
            told += ' ' + texts.lowLimit.value_or("") + ".." + texts.highLimit.value_or("");
        QTEST(told, "told");
    }

    void descriptions_data()
    {
        columns<int, QString, QString, QString>("code", "object", "member", "told");
        // clang-format off
        QTest::newRow("both_in_one") << 7 << "a" << " b " << "b \na";
        QTest::newRow("once") << 7 << "a" << "a" << "a";
        QTest::newRow("other_letters") << 9 << QString("\u6e29") << QString("\u538b") << QString("\u6e29|\u538b");
        // clang-format on
    }
    void descriptions()
    {
        const auto [code, object, member] = fetchRow<int, QString, QString>();
        ProjectRecord project;
        auto &record = project.lines[0].objects[0x2000];
        record.data = makeObject("x", CANopen::ObjectCode(code));
        record.data.description = object;
        record.subs[0] = makeSub("x", 5, "0");
        record.subs[0].description = member;
        fill(project);
        QStringList told = QString::fromUtf8(generate(0)).split("<description lang=\"en\">").mid(1);
        for (QString &one : told)
            one = one.section('<', 0, 0);
        QTEST(told.join('|'), "told");
    }

    /// The same file after an import, which is one of the rules of the schema.
    void random()
    {
        // Always the same: of others an import leaves out limits that no check takes.
        constexpr quint32 kSeed = 1;
        RandomProject projects(kSeed, {});
        for (int i = 0; i < 40; ++i) {
            const ProjectRecord project = sane(projects.make());
            for (const auto &line : project.lines) {
                fill(project);
                const EdsVariants variants(*store, line.first);
                for (const QString &define : variants.defines())
                    compareFaults(generate(line.first, define));
                const QByteArray text = generate(line.first);
                fill({});
                EDSImporter importer;
                importer.setDatabase(store.get());
                QVERIFY(importer.setImportFileName(fixture.path("back.xdd")) &&
                        importer.startImport());
                importer.wait();
                compare(generate(0), text);
                if (QTest::currentTestFailed())
                    return;
            }
        }
    }

    void canFd()
    {
        fill({});
        XDDGenerator generator;
        const QString text = generateWith(generator, "back", "back_00000000.xdd");
        for (const char *words : {" fileCreationDate=\"1970-01-01\"", "<characteristicsList>",
                                  "\"ProfileBody_CommunicationNetwork_CANopenFD\""})
            QVERIFY2(text.contains(words), words);
    }

private:
    /// With objects that an import takes as they are, of all types.
    static ProjectRecord sane(ProjectRecord project)
    {
        static const QVector<quint16> types = {11, 12, 13, 18, 25, 100, 106, 117, 120, 124, 200, 0};
        int count = 0;
        for (auto &[number, line] : project.lines) {
            for (auto object = line.objects.begin(); object != line.objects.end();) {
                const bool isTaken = object->first >= 0x2000 && object->first < 0xC000;
                for (auto &[sub, data] : object->second.subs) {
                    if (++count % 4 == 0)
                        data.dataType = types[count / 4 % types.size()];
                    if (count % 9 == 0)
                        data.metadata["eds_datatype"] = QString::number(count % 30);
                    data.pdoMapping = PDOMapping::fromUInt(quint32(count % 5));
                }
                const auto code = object->second.data.objectCode;
                const bool isValue =
                    code == CANopen::ObjectCode::Var || code == CANopen::ObjectCode::Domain ||
                    (code != CANopen::ObjectCode::Array && code != CANopen::ObjectCode::Record &&
                     (object->second.subs.empty() || object->second.subs.rbegin()->first == 0));
                if (!isValue)
                    object->second.subs[0].writeDefaultToEds = 2; // else the import makes it
                object = isTaken ? std::next(object) : line.objects.erase(object);
            }
            for (const quint16 index : {0x1000, 0x1001}) {
                line.objects[index].data = makeObject("x", CANopen::ObjectCode::Var);
                line.objects[index].subs[0] = makeSub("x", 7, "5");
            }
            line.objects[0x1018].data = makeObject("x", CANopen::ObjectCode::Record);
            line.objects[0x1018].subs[0] = makeSub("x", 5, "1");
            line.objects[0x1018].subs[1] = makeSub("x", 7, "0x00f0e1d2");
        }
        return project;
    }

    /// A new store with \a project, whose description settings are those of line 0.
    void fill(ProjectRecord project)
    {
        project.misc["description_form"] = "portable";
        project.misc.remove("generateML"); // which names files
        project.lines[0];
        store = makeStore();
        QVERIFY(store->putRecords(project));
        store->setDescriptionSettingsLine(0);
    }

    QByteArray generate(quint8 line, const QString &define = {})
    {
        const EdsVariants variants(*store, line);
        ClassicalXddGenerator generator(variants, define, false);
        (void)runJob(generator, *store, fixture.path(), "back", line);
        return readFile(generator.targetFile());
    }

    static void compareFaults(const QByteArray &text)
    {
        QCOMPARE(xddFaults(text).join('\n').left(1000), QString());
    }

    /// An import writes whole numbers of REAL types so that none takes them for others.
    static void compare(QByteArray text, QByteArray former)
    {
        const QList<QByteArray> lines = text.replace(".0\"", "\"").split('\n');
        const QList<QByteArray> formerLines = former.replace(".0\"", "\"").split('\n');
        for (int i = 0; i < qMax(lines.size(), formerLines.size()); ++i)
            QCOMPARE(lines.value(i), formerLines.value(i));
    }
};

QTEST_GUILESS_MAIN(tst_PortableXdd)
#include "tst_portablexdd.moc"
