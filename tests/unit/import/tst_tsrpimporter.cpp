// Import of a line of another project.
#include "import/tsrpimporter.h"
#include "tests/fixtures/storefixture.h"

#include <QSignalSpy>

class tst_TSRPImporter : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void allFormsOfAProject()
    {
        const auto other = makeStore();
        for (const quint16 index : {0x0FFF, 0x1000, 0xBFFF, 0xC000}) {
            other->addIndex(0, index, fullObject());
            other->addSubIndex(0, index, 1, fullSub());
        }
        for (const char *name : {"other.tsrp", "other.tsrt", "other.yaml"}) {
            init();
            QVERIFY(other->saveDataBase(fixture.path(name)));
            store->addNode(1, Node());
            const int copies = fixture.temporaryCopies().size();
            QCOMPARE(import(name, 1), QString());
            QCOMPARE(store->getIndices(1, 0, 0xFFFF), QList<quint16>({0x1000, 0xBFFF}));
            QVERIFY(store->compareLine(1, *other, 0, 0x1000, 0xBFFF).isEmpty());
            QVERIFY(store->getIndices(0, 0, 0xFFFF).isEmpty());
            QCOMPARE(fixture.temporaryCopies().size(), copies);
        }
    }

    void fileThatIsNoProject_data()
    {
        columns<QString, QByteArray, QString>("name", "content", "error");
        // clang-format off
        QTest::newRow("missing")       << "no.tsrp"   << QByteArray()                << "Could not open ";
        QTest::newRow("no database")   << "bad.tsrp"  << QByteArray(4096, 'x')       << "Could not open %1";
        QTest::newRow("wrong yaml")    << "bad.yaml"  << QByteArray("tessarine: x\n") << "Could not open %1";
        QTest::newRow("no text")       << "bad.tsrt"  << QByteArray("\0\xff\1[", 4)  << "Could not copy all of %1";
        // clang-format on
    }
    void fileThatIsNoProject()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        QFETCH(QString, error);
        if (!content.isEmpty())
            QVERIFY(writeFile(fixture.path(name), content));
        store->addIndex(0, 0x2000, fullObject());
        store->setDescriptionSettingsLine(0);
        setDescription("VendorName", "kept");
        QCOMPARE(import(name, 0), error.replace("%1", fixture.path(name)));
        QCOMPARE(objectOf(*store, 0, 0x2000), fullObject());
        QCOMPARE(store->getDescriptionSettingsValue("VendorName"), QString("kept"));
    }

private:
    /// The importer's error text.
    QString import(const QString &name, quint8 line)
    {
        TSRPImporter importer;
        QSignalSpy progress(&importer, &BaseDataImporter::progress);
        importer.setActiveLine(line);
        importer.setDatabase(store.get());
        (void)importer.setImportFileName(fixture.path(name)); // may be missing
        importer.startImport();
        importer.wait();
        if (store->blockUpdates())
            qFatal("the import left its lock");
        const int last = progress.isEmpty() ? -1 : progress.last().first().toInt();
        return last == 100 ? importer.getLastError() : QString("ended at %1").arg(last);
    }
};

QTEST_GUILESS_MAIN(tst_TSRPImporter)
#include "tst_tsrpimporter.moc"
