// Data sheets and configurations in the portable form: strict readers take them, and ours takes
// back all that they hold.
#include "generators/descriptions/edsform.h"
#include "generators/descriptions/edsgenerator.h"
#include "import/edsimporter.h"
#include "store/projectrecords.h"
#include "tests/fixtures/randomproject.h"
#include "tests/fixtures/storefixture.h"
#include "tests/fixtures/stricteds.h"

#include <QLoggingCategory>

class tst_PortableEds : public StoreTest
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qputenv("SOURCE_DATE_EPOCH", "43200");                 // noon
        QLoggingCategory::setFilterRules("tessarine.*=false"); // odd projects make generators talk
    }

    void values_data()
    {
        columns<int, QString, QString>("type", "value", "told");
        // clang-format off
        const auto row = [](const char *name, int type, const char *value, const char *told) {
            QTest::newRow(name) << type << QString::fromUtf8(value) << QString(told);
        };
        row("decimal_is_no_octal", 5, "012", "5 12");
        row("hex_is_kept", 7, "0X0000abCD", "7 0x0000abCD");
        row("hex_fits_the_type", 5, "0x00000001", "5 0x01");
        row("no_number", 7, "(1 << 4)", "7");
        row("two_hex_prefixes", 7, "0x0x1", "7");
        row("complement", 2, "0xFF", "2 -1");
        row("least", 21, "-9223372036854775808", "21 -9223372036854775808");
        row("greatest", 27, "0xFFFFFFFFFFFFFFFF", "27 0xFFFFFFFFFFFFFFFF");
        row("node_id", 7, "0x180 + $nodeid", "7 $NODEID+0x180");
        row("node_id_alone", 5, "$NODEID", "5 $NODEID+0");
        row("node_id_less", 4, "$NODEID+0xFFFFFFDA", "4");
        row("real", 8, "1.5", "8 [0x3FC00000]");
        row("real_of_c", 17, "-2.0F", "17 [0xC000000000000000]");
        row("real_zero", 8, "0.0", "8 0");
        row("utf8_string", 124, "pump", "9 pump");
        row("text_that_readers_cut", 9, "a ;b", "9");
        row("bytes_of_a_text", 9, "|x4142", "9 AB");
        row("octets_of_a_text", 10, "Ab", "10 4162");
        row("octets", 10, "|x0aF", "10 0A0F");
        row("too_long_for_a_line", 10, QByteArray(122, 'x'), "10");
        row("time_of_day", 12, "0xFFFFFFFFFFFF", "25 0xFFFFFFFFFFFF");
        row("time_difference", 13, "5", "13");
        row("bits", 100, "3", "5 3 0..3");
        row("bits_of_three_bytes", 118, "9", "22 9 0..262143");
        // clang-format on
    }
    void values()
    {
        const auto [type, value] = fetchRow<int, QString>();
        Sub sub = makeSub("x", quint16(type), value);
        QTEST(told(sub), "told");
    }

    void limitsAndOtherTypes()
    {
        Sub sub = makeSub("x", 3, "5");
        sub.limitInEds = true;
        sub.lowLimit = "0x8000";
        sub.upLimit = "";
        QCOMPARE(told(sub), "3 5 -32768..32767");
        sub.upLimit = "4"; // would exclude the value
        QCOMPARE(told(sub), "3 5");
        sub.metadata.insert("eds_datatype", "6");
        sub.lowLimit = sub.upLimit = "5";
        QCOMPARE(told(sub), "6 5 5..5");
        sub.defaultValue = "-1"; // does not fit
        QCOMPARE(told(sub), "3 -1");
        sub.metadata.insert("eds_datatype", "0x10006");
        QCOMPARE(told(sub), "3 -1");
    }

    void head()
    {
        fill(RandomProject(1, {}).make());
        setDescription("OrderCode", "0815-BUY-ME");
        setDescription("VendorName",
                       QString::fromUtf8(" M\xc3\xbchle #1\n[x]\xe2\x80\x94\xe6\xb8\xa9"));
        setDescription("Comment", "a\n\n;b");
        setDescription("FileRevision", "");
        QString sections = "x=1\n[Own]\nk =v\nK=w\n[own]\n;c";
        for (const char *reserved : {"FileInfo", "DEFAULT", "FADE", "ADC", "2ABCsub1", "2abcName"})
            sections += QString("\n[%1]\nx=1").arg(reserved);
        setDescription("AdditionalSections", sections);
        const QString text = generate(0, false);
        for (const char *line :
             {"OrderCode=", "VendorName=Muhle#1 [x]-?", "Lines=2", "Line2=;b", "FileRevision=0",
              "CreationTime=12:00PM", "CreationDate=01-01-1970", "[Own]", "k=v"})
            QVERIFY2(text.contains(QString("\n%1\n").arg(line)), line);
        QVERIFY(!text.contains("K=w") && !text.contains("[own]") && !text.contains("x=1"));
    }

    /// A configuration says all that a data sheet says, and is the same after an import.
    void random()
    {
        // Always the same: of others an import leaves out limits that no check takes, and a text of
        // apostrophes alone or a description of empty lines is told in another form.
        constexpr quint32 kSeed = 1;
        RandomProject projects(kSeed, {});
        for (int i = 0; i < 40; ++i) {
            const ProjectRecord project = portable(projects.make());
            for (const auto &line : project.lines) {
                fill(project);
                const EdsVariants variants(*store, line.first);
                for (const QString &define : variants.defines())
                    compareFaults(generate(line.first, i % 2, define), false);
                const QString text = generate(line.first, false, {}, true);
                compareFaults(text, true);
                fill({});
                import();
                compare(generate(0, false, {}, true), text);
                if (QTest::currentTestFailed())
                    return;
            }
        }
    }

    /// A project that is not portable takes what it always took.
    void classicImport()
    {
        ProjectRecord project;
        project.general["co_node_id"] = "5";
        project.lines[0].objects[0x2000].subs[0] = makeSub("x", 10, "Ab");
        fill(project);
        (void)generate(0, false, {}, true);
        for (const char *form : {"classic", "portable"}) {
            fill({});
            QVERIFY(store->setMiscSettingsValue("description_form", form));
            import();
            const bool isPortable = QLatin1String(form) == QLatin1String("portable");
            QCOMPARE(store->getGeneralSettingsValue("co_node_id"), isPortable ? "5" : "");
            QCOMPARE(subOf(*store, 0, 0x2000, 0).defaultValue, isPortable ? "|x4162" : "4162");
            QCOMPARE(subOf(*store, 0, 0x2000, 0).size, isPortable ? 2u : 4u);
        }
        QByteArray other = readFile(fixture.path("back.dcf")); // as some tools write it
        other.replace("eComissioning]", "eCommissioning]").replace("NodeID=5", "NodeID=255");
        QVERIFY(writeFile(fixture.path("back.dcf"), other.replace("=4162", "=43 44")));
        import();
        QCOMPARE(store->getGeneralSettingsValue("co_node_id"), "255");
        QCOMPARE(subOf(*store, 0, 0x2000, 0).defaultValue, "|x4344");
    }

private:
    void import()
    {
        EDSImporter importer;
        importer.setDatabase(store.get());
        QVERIFY(importer.setImportFileName(fixture.path("back.dcf")) && importer.startImport());
        importer.wait();
    }

    /// Type, default value, current value if it is another one, limits.
    static QString told(Sub sub)
    {
        sub.currentValue = sub.defaultValue;
        const EdsSubTexts texts = portableEds().texts(sub, EdsRole::Value, true);
        QString result = QString::number(texts.dataType);
        if (texts.defaultValue)
            result += ' ' + *texts.defaultValue;
        if (texts.parameterValue != texts.defaultValue)
            result += " [" + *texts.parameterValue + ']';
        if (texts.lowLimit || texts.highLimit)
            result += ' ' + texts.lowLimit.value_or("") + ".." + texts.highLimit.value_or("");
        return result;
    }

    /// With objects that an import takes as they are, of all types, and with current values.
    static ProjectRecord portable(ProjectRecord project)
    {
        static const QVector<quint16> types = {11,  12,  13,  18,  19,  20,  25,
                                               100, 106, 117, 120, 124, 200, 0};
        int count = 0;
        for (auto &[number, line] : project.lines) {
            for (auto object = line.objects.begin(); object != line.objects.end();) {
                const bool isTaken = object->first >= 0x2000 && object->first < 0xC000;
                for (auto &[sub, data] : object->second.subs) {
                    if (++count % 4 == 0)
                        data.dataType = types[count / 4 % types.size()];
                    if (count % 3 == 0)
                        data.currentValue = data.defaultValue;
                    if (count % 9 == 0)
                        data.metadata["eds_datatype"] = QString::number(count % 30);
                }
                const auto code = object->second.data.objectCode;
                if (code == CANopen::ObjectCode::Array || code == CANopen::ObjectCode::Record ||
                    object->second.subs.upper_bound(0) != object->second.subs.end())
                    object->second.subs[0] = makeSub("n", 5, "1");
                object = isTaken ? std::next(object) : line.objects.erase(object);
            }
            for (const quint16 mandatory : {0x1000, 0x1001}) // else an import would add them
                line.objects[mandatory].subs[0] = makeSub("x", 7, "1");
            ObjectRecord &identity = line.objects[0x1018];
            identity.data.objectCode = CANopen::ObjectCode::Record;
            identity.subs = {{0, makeSub("n", 5, "1")}, {1, makeSub("vendor", 7, "0x1A")}};
        }
        return project;
    }

    /// A new store with \a project, whose description settings are those of line 0.
    void fill(ProjectRecord project)
    {
        project.misc["description_form"] = "portable";
        project.lines[0];
        store = makeStore();
        QVERIFY(store->putRecords(project));
        store->setDescriptionSettingsLine(0);
    }

    QString generate(quint8 line, bool isFd, const QString &define = {}, bool asDcf = false)
    {
        const EdsVariants variants(*store, line);
        EDSGenerator sheet(variants, define, isFd, false);
        DCFGenerator configuration(variants, define, isFd, false);
        EDSGenerator &generator = asDcf ? configuration : sheet;
        (void)runJob(generator, *store, fixture.path(), "back", line);
        return QString::fromUtf8(readFile(generator.targetFile()));
    }

    static void compareFaults(const QString &text, bool isConfiguration)
    {
        QCOMPARE(edsFaults(text.toUtf8(), isConfiguration).join('\n'), QString());
    }

    static void compare(const QString &text, const QString &former)
    {
        const QStringList lines = text.split('\n');
        const QStringList formerLines = former.section("\n[MyOwn]", 0, 0).split('\n');
        for (int i = 0; i < qMax(lines.size(), formerLines.size()); ++i)
            QCOMPARE(lines.value(i), formerLines.value(i));
    }

    static QString linesOf(const QString &text, const QString &pattern)
    {
        return QRegularExpression('\n' + pattern + '\n').match(text).captured(1);
    }
};

QTEST_GUILESS_MAIN(tst_PortableEds)
#include "tst_portableeds.moc"
