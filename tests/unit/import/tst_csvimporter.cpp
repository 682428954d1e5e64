// The import of tables of objects.
#include "import/csvimporter.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/problemrecorder.h"
#include "tests/fixtures/storefixture.h"

class TestCsvImporter : public StoreTest
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QLoggingCategory::setFilterRules("tessarine.*.debug=false");
        file = fixture.path("table.csv");
    }
    void init() { store = makeStore(); }

    void cases_data() { addCases(TEST_CASES "/csvimporter.txt"); }
    void cases()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        if (caseGroup() == "tables" || caseGroup() == "problems") {
            const ProblemRecorder problems;
            QVERIFY(import(project.toUtf8()));
            if (caseGroup() == "problems") {
                QCOMPARE(problems.lines.join('\n').remove(file) + '\n', expected);
                return;
            }
            QCOMPARE(names() + '\n', expected);
            return;
        }
        QVERIFY(import("index;sub;value;datatype;access;mapable;hasdefault;defaultineds;haslimit;"
                       "lowlimit;uplimit;size;implementation;varname;nvstorage\n0x2000;3;abc;" +
                       project.toUtf8()));
        QCOMPARE(text(subOf(*store, 0, 0x2000, 3)) + '\n', expected);
    }

    /// Bytes that no text file keeps.
    void tables_data()
    {
        columns<QByteArray, QString>("table", "expected"); // expected: see names()
        const QByteArray head = "index;sub;edsname;value\n";
        // clang-format off
        QTest::newRow("crlf_and_mark") << QByteArray("\xEF\xBB\xBFindex;sub;edsname;value\r\n0x2000;;\xC3\xA4;1\r\n")
            << QString::fromUtf8("2000/0/\xC3\xA4/1");
        QTest::newRow("windows_1252") << head + "0x2000;0;\xE4;1" << QString::fromUtf8("2000/0/\xC3\xA4/1");
        QTest::newRow("nul_bytes") << head + QByteArray("0x2000;0;a\0b;1", 14) << "2000/0/a b/1";
        QTest::newRow("quoted") << head + "\"0x2000\";0;\"a;\"\"b\"\"\nc\";\"1\"\r\n0x2001;0;\"\";\n"
            << "2000/0/a;\"b\"\nc/1 2001/0//";
        QTest::newRow("never_closed") << head + "0x2000;0;\"a;1\n0x2001;0;b;\"2" << "2000/0/\"a/1 2001/0/b/\"2";
        // clang-format on
    }
    void tables()
    {
        QFETCH(QByteArray, table);
        QVERIFY(import(table));
        QTEST(names(), "expected");
    }

    void objects()
    {
        store->addIndex(0, 0x2001, makeObject("present", CANopen::ObjectCode::Var));
        store->addSubIndex(0, 0x2004, 7, makeSub("old", 5, "1"));
        QVERIFY(import("index;sub;edsname;objectcode;datatype;description\n"
                       "0x20ab;1;;RECORD;U16;d\n0x2001;0;new;ARRAY;U16;d\n"
                       "0x2002;0;count;array;U8;d\n0x2002;1;first;array;I16;x\n"
                       "0x2003;9;high;ARRAY;I8;\n0x2003;2;low;ARRAY;I16;\n"
                       "0x2004;1;first;ARRAY;U8;\n0x2005;0;v;;U8;\n0x2006;1;n;what;U8;\n"));
        const auto objectText = [this](quint16 index) {
            const Object object = objectOf(*store, 0, index);
            return joined(object.name, int(object.objectCode), object.dataType, object.description);
        };
        QCOMPARE(objectText(0x20AB), "Object_20ab/9/6/d");
        QCOMPARE(objectText(0x2001), "present/7/5/");
        QCOMPARE(objectText(0x2002), "count/8/3/d"); // an array has the type of its elements
        QCOMPARE(objectText(0x2003), "high/8/2/");
        QCOMPARE(objectText(0x2005), "v/7/5/");
        QCOMPARE(objectText(0x2006), "n/0/5/");
        const Sub count = subOf(*store, 0, 0x2003, 0);
        QCOMPARE(count.name, "Highest Subindex supported");
        QCOMPARE(text(count), "5/const/0/1/1/0/0/255/0/1//0");
        QCOMPARE(count.defaultValue, "9");
        QCOMPARE(subOf(*store, 0, 0x2004, 0).defaultValue, "7");
        QVERIFY(!store->existSubIndex(0, 0x20AB, 0)); // only arrays get one
    }

    void otherLines()
    {
        store->addNode(2, Node());
        QVERIFY(import("index;sub;line;edsname\n0x2000;0;2;a\n0x2001;0;1;b\n0x2002;0;258;c\n"
                       "0x2003;0;;d\n0x2004;0;2;e\n"));
        QCOMPARE(store->getIndices(0, 0x1000, 0xFFFF), QList<quint16>({0x2003}));
        QCOMPARE(store->getIndices(2, 0x1000, 0xFFFF), QList<quint16>({0x2000, 0x2004}));
        QCOMPARE(store->getNodes(), QList<quint8>({0, 2}));
    }

    void groupedTable()
    {
        const QByteArray rows = "0x2000;;obj;ARRAY;;\"{\"\"k\"\":\"\"v\"\"}\"\n"
                                "0x2000;1;sub;ARRAY;shown;[no object\n";
        QVERIFY(import("index;sub;edsname;objectcode;denotation;metadata\n" + rows));
        QCOMPARE(objectOf(*store, 0, 0x2000).name, "obj");
        QCOMPARE(objectOf(*store, 0, 0x2000).metadata, Metadata({{"k", "v"}}));
        QCOMPARE(subOf(*store, 0, 0x2000, 1).denotation, "shown");
        QCOMPARE(subOf(*store, 0, 0x2000, 0).defaultValue, "1");

        store = makeStore(); // without both columns a line without a number is subindex 0
        QVERIFY(import("index;sub;edsname;objectcode;denotation;other\n" + rows));
        QCOMPARE(subOf(*store, 0, 0x2000, 0).name, "obj");
        QCOMPARE(subOf(*store, 0, 0x2000, 1).denotation, "");
    }

    void copyAndDeleteLists()
    {
        QVERIFY(writeFile(file, "index;sub;x;y\nd;0x2000\ndel;8193;0x02\nd;1;2;3\nd;0x10000\n"
                                "c;0x2000;0x2001\ncopy;0x2002;0x2003;4\nc;1\n"));
        CsvImporter importer;
        run(importer);
        QList<BaseDataImporter::SubAddress> list;
        importer.getDeleteList(list);
        QCOMPARE(listText(list), "2000:0 2001:2");
        importer.getCopyList(list);
        QCOMPARE(listText(list), "2000:0 2001:0 2002:4 2003:4");
    }

    void missingFile()
    {
        QVERIFY(writeFile(file, "index"));
        CsvImporter importer;
        importer.setImportFileName(file);
        QVERIFY(QFile::remove(file));
        importer.setDatabase(store.get());
        const ProblemRecorder problems;
        importer.startImport();
        importer.wait();
        QCOMPARE(importer.getLastError(), "Could not open " + file);
        QCOMPARE(problems.lines.join('\n'), file + ": error: could not be imported: there is no "
                                                   "such file [not-imported]");
    }

    /// What takes more than linear time does not end before the time limit of the test.
    void hugeTables_data()
    {
        columns<QByteArray, int>("table", "objects");
        const QByteArray head = "index;sub;edsname;value\n";
        QByteArray rows;
        for (int i = 0; i < 25000; ++i)
            rows += "0x" + QByteArray::number(0x2000 + i / 250, 16) + ';' +
                    QByteArray::number(i % 250) + ";name;\"1\n";
        QTest::newRow("never_closed_quotes") << head + rows << 100;
        QTest::newRow("closed_and_opened") << head + QByteArray("x\";\"b\n").repeated(200000) << 0;
        QTest::newRow("quotes") << head + QByteArray(4000001, '"') << 0;
    }
    void hugeTables()
    {
        QFETCH(QByteArray, table);
        QVERIFY(import(table));
        QTEST(store->getIndices(0, 0x1000, 0xFFFF).size(), "objects");
    }

private:
    void run(CsvImporter &importer)
    {
        importer.setDatabase(store.get());
        importer.setImportFileName(file);
        importer.startImport();
        importer.wait();
    }

    bool import(const QByteArray &table)
    {
        CsvImporter importer;
        if (!writeFile(file, table))
            return false;
        run(importer);
        return importer.getLastError().isEmpty() && !store->blockUpdates();
    }

    /// "2000/0/name/value 2001/..." of all subindices of line 0.
    QString names() const
    {
        QStringList result;
        for (const quint16 index : store->getIndices(0, 0x1000, 0xFFFF)) {
            for (const quint8 sub : store->getSubIndices(0, index, 0)) {
                const Sub data = subOf(*store, 0, index, sub);
                result << joined(QString::number(index, 16), sub, data.name, data.defaultValue);
            }
        }
        return result.join(' ');
    }

    static QString text(const Sub &data)
    {
        return joined(data.dataType, data.accessType, data.pdoMapping.toUInt(),
                      int(data.defaultInEds), data.writeDefaultToEds, int(data.limitInEds),
                      data.lowLimit, data.upLimit, data.size, data.implementation, data.varName,
                      int(data.nvStorage));
    }

    static QString listText(const QList<BaseDataImporter::SubAddress> &list)
    {
        QStringList result;
        for (const auto &address : list)
            result << QString::number(address.index, 16) + ':' + QString::number(address.subindex);
        return result.join(' ');
    }

    QString file;
};

QTEST_GUILESS_MAIN(TestCsvImporter)
#include "tst_csvimporter.moc"
