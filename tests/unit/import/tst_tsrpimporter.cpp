// Import of a line of another project.
#include "import/tsrpimporter.h"
#include "tests/fixtures/projectcompare.h"
#include "tests/fixtures/randomproject.h"
#include "tests/fixtures/storefixture.h"

#include <QSignalSpy>

#include <algorithm>
#include <tuple>

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

    void losesNothingOfALine()
    {
        RandomProject projects(testSeed(), {});
        for (int i = 0; i < 20; ++i) {
            const auto made = makeStore();
            QVERIFY(made->putRecords(projects.make()) &&
                    made->saveDataBase(fixture.path("random.tsrp")));
            ObjectDataBase other;
            QVERIFY(other.openDataBase(fixture.path("random.tsrp")));
            for (const quint8 line : other.getNodes()) {
                init();
                if (i % 2 == 0)
                    store->addNode(line, Node());
                QCOMPARE(import("random.tsrp", line, line), QString());
                const QString lost = firstDifference(ofLine(other, line), ofLine(*store, line));
                QVERIFY2(lost.isEmpty(), qPrintable(QString("project %1: %2").arg(i).arg(lost)));
            }
        }
    }

    /// In the middle of a project, whose other lines keep theirs.
    void settingsOfLines_data()
    {
        // clang-format off
        columns<QString, QString, QString, QString>("key", "own", "theirs", "result");
        QTest::newRow("last_repeats") << "uds_client_cnt" << "1" << "0,2" << "1,2,1";
        QTest::newRow("alike") << "uds_client_cnt" << "2" << "0,2" << "2";
        QTest::newRow("none") << "uds_client_cnt" << "1" << "" << "1";
        QTest::newRow("one_for_all") << "additional_cob_count" << "4" << "7" << "4,7,4";
        QTest::newRow("j1939") << "J1939:addresscapable" << "" << "1" << ",1,";
        // clang-format on
    }
    void settingsOfLines()
    {
        const auto [key, own, theirs, result] = fetchRow<QString, QString, QString, QString>();
        const QString name = key.section(':', -1);
        const bool isJ1939 = name != key;
        const auto set = isJ1939 ? &ObjectDataBase::setJ1939SettingsValue
                                 : &ObjectDataBase::setGeneralSettingsValue;
        const auto other = makeStore();
        for (ObjectDataBase *project : {store.get(), other.get()}) {
            for (const quint8 line : {1, 2})
                project->addNode(line, Node());
            (project->*set)(name, project == store.get() ? own : theirs);
        }
        QVERIFY(other->saveDataBase(fixture.path("other.tsrp")));
        QCOMPARE(import("other.tsrp", 1, 1), QString());
        QCOMPARE(isJ1939 ? store->getJ1939SettingsValue(name)
                         : store->getGeneralSettingsValue(name),
                 result);
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
    /// What a project holds of one line, but for the numbers of texts and signals in its store.
    static ProjectRecord ofLine(const ObjectDataBase &project, quint8 line)
    {
        ProjectRecord all;
        if (!project.readRecords(&all))
            qFatal("not read");
        ProjectRecord part;
        part.lines[line] = all.lines[line];
        for (auto &object : part.lines[line].objects) {
            for (auto &sub : object.second.subs) {
                sub.second.signalId = 0;
                sub.second.managedByOlm = false;
            }
        }
        if (all.locks.count(line) > 0)
            part.locks[line] = all.locks[line];
        qint64 number = 0;
        for (const auto &node : all.virtualNodes) {
            if (node.second.line == line)
                part.virtualNodes[number++] = node.second;
        }
        for (const ConnectionData &link : all.connections) {
            if (link.prodNode == line && link.conNode == line)
                part.connections.push_back(link);
        }
        std::sort(part.connections.begin(), part.connections.end(),
                  [](const ConnectionData &a, const ConnectionData &b) {
                      return std::tie(a.prodIndex, a.prodSub, a.conIndex, a.conSub, a.priority) <
                             std::tie(b.prodIndex, b.prodSub, b.conIndex, b.conSub, b.priority);
                  });
        return part;
    }

    /// The importer's error text.
    QString import(const QString &name, quint8 line, int lineOfFile = -1)
    {
        TSRPImporter importer;
        if (lineOfFile >= 0) {
            importer.setLineOfFile(quint8(lineOfFile));
            importer.setIndexRange(0, 0xFFFFFFFF);
        }
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
