// The import reads back the tables of the object dictionary.
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

    void roundTrip_data()
    {
        columns<bool, int>("grouped", "sourceLine");
        QTest::newRow("csv") << false << 0;
        QTest::newRow("icsv") << true << 0;
        QTest::newRow("line_that_the_reader_lacks") << true << 1;
    }
    void roundTrip()
    {
        const auto [grouped, sourceLine] = fetchRow<bool, int>();
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
        limited.description = "a\rb";
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
