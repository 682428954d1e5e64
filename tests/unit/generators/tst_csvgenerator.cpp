// The tables of the object dictionary, and that the import reads them back.
#include "generators/descriptions/csvgenerator.h"
#include "generators/descriptions/icsvgenerator.h"
#include "import/csvimporter.h"
#include "support/cohelper.h"
#include "tests/fixtures/storefixture.h"

class TestCsvGenerator : public StoreTest
{
    Q_OBJECT

private slots:
    void init()
    {
        store = makeStore();
        line = 0;
    }

    void files()
    {
        Object motor = fullObject();
        motor.name = "M\u00F6tor";
        store->addIndex(0, 0x2A00, motor);
        store->addIndex(0, 0x2A01, Object());
        store->addIndex(0, 0x0FFF, Object());
        Sub speed = fullSub();
        speed.name = "Speed; \"fast\"";
        store->addSubIndex(0, 0x2A00, 0x1F, speed);
        store->addSubIndex(0, 0x2A00, 0, Sub());
        store->cacheAllSubs(0, 0);
        const QString columns =
            "index;sub;line;objectcode;edsname;datatype;access;mapable;value;hasdefault;"
            "defaultineds;haslimit;lowlimit;uplimit;size;implementation;varname;nvstorage;"
            "description";
        const QString row0 = "0x2a00;0x00;0;RECORD;unnamed subindex;UNSIGNED8;ro;no;;1;1;no;0;0;"
                             "0;managedvariable;;no;";
        const QString row1 = "0x2a00;0x1f;0;RECORD;\"Speed; \"\"fast\"\"\";UNSIGNED32;rww;RPDO;5;"
                             "0;2;yes;-1;9;10;variable;v;yes;";
        CSVGenerator csv;
        QCOMPARE(generateWith(csv, "demo", "demo.csv"),
                 columns + '\n' + row0 + '\n' + row1 + "d\n");
        const auto grouped = [&](const QString &ofObject, const QString &ofSub) {
            return columns +
                   ";denotation;metadata\n0x2a00;;0;RECORD;M\u00F6tor;UNSIGNED16;;;;;;;;;;;;;" +
                   ofObject + ";;\"{\"\"eds_define\"\":\"\"\u00E4\"\"}\"\n" + row0 + ";;\n" + row1 +
                   ofSub +
                   ";shown;\"{\"\"k\"\":\"\"v\"\"}\"\n"
                   "0x2a01;;0;VAR;unnamed object;UNSIGNED8;;;;;;;;;;;;;;;\n";
        };
        ICSVGenerator icsv;
        QCOMPARE(generateWith(icsv, "demo", "demo.icsv"), grouped("\"two\nlines\"", "d"));
        icsv.setIncludeDescription(false);
        QCOMPARE(generateWith(icsv, "demo", "demo.icsv"), grouped("", ""));
    }

    void multiLineFiles()
    {
        store->addNode(3, Node());
        store->addIndex(3, 0x2000, Object());
        store->addSubIndex(3, 0x2000, 0, Sub());
        CSVGenerator csv;
        QVERIFY(generateWith(csv, "demo", "demo_3.csv", 3, true).contains("\n0x2000;0x00;3;"));
        QVERIFY(store->setMiscSettingsValue("generateML", "true"));
        ICSVGenerator icsv;
        QVERIFY(generateWith(icsv, "demo", "demo_3.icsv", 3).contains("\n0x2000;;3;"));
    }

    void roundTrip_data()
    {
        columns<bool, int>("grouped", "sourceLine");
        QTest::newRow("csv") << false << 0;
        QTest::newRow("icsv") << true << 0;
        QTest::newRow("line_that_the_reader_lacks") << true << 1;
    }
    void roundTrip()
    {
        QFETCH(bool, grouped);
        QFETCH(int, sourceLine);
        line = static_cast<quint8>(sourceLine);
        if (line > 0)
            store->addNode(line, Node());
        fillProject();
        CSVGenerator csv;
        ICSVGenerator icsv;
        const QString name = grouped ? "demo.icsv" : "demo.csv";
        AbstractGenerator &generator = grouped ? static_cast<AbstractGenerator &>(icsv) : csv;
        QVERIFY(!generateWith(generator, "demo", name, line).isEmpty());
        const auto source = std::move(store);
        store = makeStore();
        QVERIFY(importTable(fixture.path(name)));
        QCOMPARE(store->getIndices(0, 0, 0xFFFF), source->getIndices(line, 0, 0xFFFF));
        for (const quint16 index : source->getIndices(line, 0, 0xFFFF)) {
            const Object object = objectOf(*source, line, index);
            Object read = objectOf(*store, 0, index);
            if (!grouped) { // those the plain table does not carry
                read.name = object.name;
                read.metadata = object.metadata;
                read.description = object.description;
            }
            QVERIFY2(object == read, qPrintable(QString::number(index, 16)));
            QCOMPARE(store->getSubIndices(0, index, 0), source->getSubIndices(line, index, 0));
            for (const quint8 sub : source->getSubIndices(line, index, 0)) {
                Sub data = subOf(*source, line, index, sub);
                if (!grouped) {
                    data.denotation.clear();
                    data.metadata.clear();
                }
                const QString place = QString("%1:%2").arg(index, 0, 16).arg(sub);
                QVERIFY2(data == subOf(*store, 0, index, sub), qPrintable(place));
            }
        }
    }

private:
    bool importTable(const QString &fileName)
    {
        CsvImporter importer;
        importer.setDatabase(store.get());
        importer.setImportFileName(fileName);
        importer.startImport();
        importer.wait();
        return importer.getLastError().isEmpty();
    }

    void add(quint16 index, CANopen::ObjectCode code, quint16 dataType, const QList<Sub> &subs)
    {
        Object object = makeObject("object " + QString::number(index), code);
        object.dataType = dataType;
        object.description = "of \"" + object.name + "\"\nand; more\r\n";
        object.metadata = {{"eds_define", "A;B \"\u00FC\"\n"}};
        store->addIndex(line, index, object);
        for (int i = 0; i < subs.size(); ++i)
            store->addSubIndex(line, index, static_cast<quint8>(i), subs.at(i));
    }

    void fillProject()
    {
        using CANopen::ObjectCode;
        quint16 index = 0x1000;
        for (quint16 type = 0; type <= 200; ++type) { // one row a known type, and some unknown ones
            if (COHelper::index2DataTypeString(type).isEmpty() && type != 0 && type != 200)
                continue;
            QList<Sub> subs;
            for (const char *access : {"const", "ro", "rw", "wo", "rww", "rwr"}) {
                Sub sub = makeSub(QString("It's \u00E4, %1;").arg(index), type, "'1'; \"2\"\t");
                sub.accessType = access;
                sub.implementation = static_cast<quint8>(subs.size() % 4);
                sub.pdoMapping = PDOMapping::fromUInt(static_cast<quint32>(subs.size() % 5));
                sub.varName = subs.size() % 4 == 2 ? QString("a[%1];\"x\"").arg(type) : QString();
                sub.size = type;
                subs << sub;
            }
            add(index++, ObjectCode::Record, type, subs);
        }
        Sub full = fullSub(); // with the defaults in the fields that no table carries
        full.currentValue.clear();
        full.refuseRead = full.refuseWrite = full.dcfComponent = full.cyclicRead = false;
        full.changedByUser = full.sharedLines = false;
        full.allowedAccessTypes = Sub().allowedAccessTypes;
        full.category = Sub().category;
        full.wizardSource = Sub().wizardSource;
        full.description = "a\nb\r\n\"c\";\n#d\n";
        Sub limited = makeSub("no low limit", 3, "-5");
        limited.lowLimit.clear();
        limited.upLimit = "0x7F";
        Sub unbound = makeSub("no variable", 9, "");
        unbound.implementation = 2;
        add(0x2000, ObjectCode::Var, full.dataType, {full});
        add(0x2001, ObjectCode::Array, 3, {makeSub("count", 5, "1"), limited});
        add(0x2003, ObjectCode::Var, 9, {unbound});
        add(0x2002, ObjectCode::Domain, 5, {makeSub("", 5, "")});
        add(0xBFFF, ObjectCode::Null, 5, {makeSub(" blanks ", 5, "\"")});
    }

    quint8 line = 0; ///< the one that is filled
};

QTEST_GUILESS_MAIN(TestCsvGenerator)
#include "tst_csvgenerator.moc"
