// Opening, upgrading and saving of project files.
#include "store/temporaryfiles.h"
#include "support/problems.h"
#include "support/replacefile.h"
#include "tests/fixtures/storefixture.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

class TestProjectLifecycle : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        store.reset();
        fixture = std::make_unique<StoreFixture>();
        file = fixture->path("p.tsrp");
        const auto made = makeStore();
        made->setGeneralSettingsValue("line0type", "1");
        made->addIndex(0, 0x2000, {});
        made->addSubIndex(0, 0x2000, 0, makeSub("a", 5, "1"));
        made->addSubIndex(0, 0x2000, 1, makeSub("b", 6, "2"));
        QVERIFY(made->saveDataBase(file));
    }

    void badFilesAreNoProject_data()
    {
        // clang-format off
        columns<QString, QString>("schema", "rule");
        QTest::newRow("missing") << "" << "not-read";
        QTest::newRow("folder") << "" << "not-read";
        for (const char *kind : {"empty", "noise", "text", "foreign", "no nodes", "foreign nodes"})
            QTest::newRow(kind) << "" << "no-project";
        for (const char *kind : {"cut in half", "cut by little", "cut head", "noise behind it"})
            QTest::newRow(kind) << "" << "damaged-project";
        for (const char *kind : {"-wal", "-journal", "begun change"})
            QTest::newRow(kind) << "" << "pending-changes";
        const QMap<const char *, QString> schemas = {
            {"endless view", "create view V as with recursive n(i) as (select 1 union all select i "
                             "from n) select i from n"},
            {"trigger", "create trigger T after insert on Nodes begin delete from Nodes; end"},
            {"computed column", "create table X (a, b as (abs(a)))"},
            {"check", "create table X (a, check (a > 0))"},
            {"index of an expression", "create index I on Nodes(nodeId + 1)"},
            {"index of some rows", "create index I on Nodes(name) where nodeId > 0"},
            {"computed default", "create table X (a default (abs(1)))"},
            {"virtual table", "create virtual table X using rtree(i, a, b)"}};
        for (auto schema = schemas.cbegin(); schema != schemas.cend(); ++schema)
            QTest::newRow(schema.key()) << *schema << "foreign-schema";
        // clang-format on
    }
    void badFilesAreNoProject()
    {
        const QString kind = QTest::currentDataTag();
        QFETCH(QString, schema);
        const QByteArray good = readFile(file);
        const QMap<QString, QByteArray> contents = {
            {"empty", ""},
            {"noise", readFile(QCoreApplication::applicationFilePath()).left(5000)},
            {"text", "[Nodes]\n0\\name=\n"},
            {"cut in half", good.left(good.size() / 2)},
            {"cut by little", good.chopped(100)},
            {"cut head", good.left(50)},
            {"noise behind it", good.left(8192) + QByteArray(good.size() - 8192, 'x')}};
        if (contents.contains(kind))
            QVERIFY(writeFile(file, contents.value(kind)));
        else if (kind == "no nodes")
            QVERIFY(StoreFixture::runSql(file, {"delete from Nodes"}));
        else if (kind.startsWith('-'))
            QVERIFY(writeFile(file + kind, "x"));
        else if (!schema.isEmpty())
            QVERIFY(StoreFixture::runSql(file, {schema}));
        else if (kind != "begun change")
            QVERIFY(QFile::remove(file));
        if (kind == "folder")
            QVERIFY(QDir().mkpath(file));
        else if (kind == "foreign")
            QVERIFY(StoreFixture::runSql(file, {"create table Cars (id integer)"}));
        else if (kind == "foreign nodes")
            QVERIFY(StoreFixture::runSql(
                file, {"create table Nodes (nodeId, city)", "insert into Nodes values(0, 1)"}));
        // Of its own, as that of another process, unlike those that SQLite takes in this one.
        QFile editor(kind == "begun change" ? file : QString());
        struct flock lock = {F_WRLCK, SEEK_SET, 0x40000001, 1, 0};
        if (kind == "begun change")
            QVERIFY(editor.open(QIODevice::ReadWrite) &&
                    ::fcntl(editor.handle(), F_OFD_SETLK, &lock) == 0);
        QStringList rules;
        const auto former = Problems::setHandler(
            [&rules](const Problems::Problem &problem) { rules << problem.rule; });
        const auto restore = qScopeGuard([&former] { (void)Problems::setHandler(former); });
        QVERIFY(!open());
        QTEST(rules.join(' '), "rule");
        QCOMPARE(store->getLastErrorString(), "");
        QVERIFY(!store->saveDataBase(QString())); // what is in the file stays
        store.reset();
        QVERIFY(fixture->temporaryCopies().isEmpty());
    }

    void oddButSoundProjectsOpen()
    {
        // A journal that begins with zeros is of a change that was finished, an empty file of none.
        QVERIFY(writeFile(file + "-journal", QByteArray(512, '\0')) &&
                writeFile(file + "-wal", ""));
        QVERIFY(open());
        QVERIFY(QFile::remove(file + "-journal") && QFile::remove(file + "-wal"));
        QVERIFY(open({"create table \"check\" (a text default 'as' /* check ( */, [as] integer "
                      "default -1, \"it\"\"s select\" unique, c default current_timestamp)",
                      "create unique index I on Nodes(\"name\" collate nocase desc, edspath)"}));
    }

    /// What a damaged file is taken for is saved as a project that opens again.
    void damageIsRefusedOrMended()
    {
        const QByteArray good = readFile(file);
        int refused = 0;
        for (int at = 0; at < good.size(); at += 1777) {
            QByteArray damaged = good;
            damaged[at] = char(~damaged[at]);
            QVERIFY(writeFile(file, damaged));
            const bool isOpen = open();
            refused += isOpen ? 0 : 1;
            if (!isOpen || !store->saveDataBase(QString()))
                QCOMPARE(readFile(file), damaged);
            else
                QVERIFY2(open(), qPrintable(QString::number(at)));
        }
        QVERIFY(refused > 0);
    }

    void temporaryCopiesGoWithTheStore()
    {
        QVERIFY(open());
        QVERIFY(store->openDataBase(file));
        QCOMPARE(fixture->temporaryCopies().size(), 2);
        store.reset();
        QVERIFY(fixture->temporaryCopies().isEmpty());
    }

    void leftoverOfKilledRunIsSweptOnlyWhenFree()
    {
        // The sweep runs once a process, so another process makes it: this one has done it already.
        TemporaryFiles held;
        const QString inUse = held.create();
        const QString left = QFileInfo(inUse).path() + "/tsedatatemp_1_1";
        const QString beside = inUse + "-journal";
        const QString leftBeside = QFileInfo(inUse).path() + "/tsedatatemp_1_2-wal";
        for (const QString &name : {left, beside, leftBeside})
            QVERIFY(writeFile(name, {}));

        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("SWEEP_HOME", qgetenv("XDG_DATA_HOME"));
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(), QStringList());
        QVERIFY(child.waitForFinished(kLongestWaitMs));
        QCOMPARE(child.exitCode(), 0);
        QVERIFY(QFile::exists(inUse) && QFile::exists(beside));
        QVERIFY(!QFile::exists(left) && !QFile::exists(leftBeside));
    }

    void readOnlyProjectOpens()
    {
        QVERIFY(QFile::setPermissions(file, QFileDevice::ReadOwner));
        QVERIFY(open());
        QVERIFY(store->addIndex(0, 0x3000, {}));
        QCOMPARE(store->getIndices(0, 0x2000, 0xFFFF).size(), 2);
    }

    void secondOpenChangesNothing()
    {
        const auto openAndSave = [this]() {
            if (!open() || !store->saveDataBase(QString()))
                return QStringList();
            QStringList lines = ask("select name, sql from sqlite_master order by name");
            for (const QString table : {"GeneralSettings", "DescriptionSettings", "MiscSettings",
                                        "Strings", "Objects0", "SubObjects0", "UDSSettings0"})
                lines += ask("select * from " + table);
            return lines;
        };
        const QStringList first = openAndSave();
        QVERIFY(first.size() > 60);
        QCOMPARE(openAndSave(), first);
    }

    void saveKeepsOneGeneration()
    {
        QVERIFY(QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner));
        const auto ofOwnerOnly = QFile::permissions(file);
        QVERIFY(open());
        for (const char *generation : {"2", "3"}) {
            store->setMiscSettingsValue("generation", generation);
            QVERIFY(store->saveDataBase(QString()));
            QCOMPARE(QFile::permissions(file), ofOwnerOnly);
        }
        ObjectDataBase saved;
        QVERIFY(saved.openDataBase(file + ".bak"));
        QCOMPARE(saved.getMiscSettingsValue("generation"), "2");
        QVERIFY(saved.openDataBase(file));
        QCOMPARE(saved.getMiscSettingsValue("generation"), "3");
        QCOMPARE(QDir(fixture->path()).entryList({"p.*"}, QDir::Files),
                 (QStringList{"p.tsrp", "p.tsrp.bak"}));
    }

    void saveDropsScratchLinesAndUnusedTexts()
    {
        store = makeStore();
        store->addNode(254, {});
        store->addNode(255, {});
        store->getStringId("unused");
        store->delNode(254);
        const QString table = QString("1,").repeated(299) + '2';
        store->setGeneralSettingsValue("table", table);
        store->addNode(255, {});
        store->delNode(255);
        QCOMPARE(store->getGeneralSettingsValue("table").size(), table.size() - 2);
        store->setGeneralSettingsValue("table", table);
        QVERIFY(store->saveDataBase(fixture->path("p.tsrt")) && store->saveDataBase(file));
        QCOMPARE(store->getGeneralSettingsValue("table"), table);
        ObjectDataBase saved;
        QVERIFY(saved.openDataBase(file));
        QCOMPARE(saved.getNodes(), QList<quint8>{0});
        QVERIFY(!saved.existSubIndexName(0, "unused"));
        QCOMPARE(saved.getMiscSettingsValue("SaveToolType"), "CANopen Tessarine");
        QCOMPARE(saved.getMiscSettingsValue("DatabaseVersion"), "104");
    }

    void failedSaveLeavesTheProject()
    {
        QVERIFY(open());
        // A folder where the new file is to be made stops the save even for the super user.
        QVERIFY(QDir().mkpath(file + ".tessarine-new/x"));
        QVERIFY(!store->saveDataBase(QString()));
        ObjectDataBase saved;
        QVERIFY(saved.openDataBase(file));
        QVERIFY(!QFile::exists(file + ".bak"));
        QVERIFY(!store->saveDataBase(fixture->path("no/such/folder/p.tsrp")));
        QCOMPARE(store->getProjectFileName(), file);
    }

    void saveLeavesAProjectWithPendingChanges()
    {
        QVERIFY(open());
        const QByteArray before = readFile(file);
        QVERIFY(writeFile(file + "-journal", "x"));
        QVERIFY(!store->saveDataBase(QString()));
        QVERIFY(store->getLastErrorString().startsWith("p.tsrp-journal beside it holds changes"));
        QCOMPARE(readFile(file), before);
        QVERIFY(QFile::remove(file + "-journal") && store->saveDataBase(QString()));
    }

    void saveWaitsForAnotherRun()
    {
        const QString fresh = file + ".tessarine-new";
        const int other = ::open(QFile::encodeName(fresh), O_RDWR | O_CREAT, 0600);
        QVERIFY(::flock(other, LOCK_EX) == 0);
        QVERIFY(open());
        ReplaceFile::removeLeftover(file); // what another run is writing is no leftover
        QVERIFY(QFile::exists(fresh));
        std::atomic<bool> isOver{false};
        std::unique_ptr<QThread> otherRun(QThread::create([&isOver, other] {
            QThread::msleep(100);
            isOver = true;
            ::close(other);
        }));
        otherRun->start();
        QVERIFY(store->saveDataBase(QString()));
        QVERIFY(isOver && !QFile::exists(fresh));
        QVERIFY(otherRun->wait(kLongestWaitMs));
    }

    void projectBehindALink()
    {
        const QString link = fixture->path("link.tsrp");
        QVERIFY(QFile::link(file, link));
        ObjectDataBase linked;
        QVERIFY(linked.openDataBase(link));
        linked.setMiscSettingsValue("mark", "1");
        QVERIFY(linked.saveDataBase(QString()));
        QVERIFY(QFileInfo(link).isSymLink());
        QVERIFY(open());
        QCOMPARE(store->getMiscSettingsValue("mark"), "1");
    }

    void dataFileResetsUserMarks()
    {
        store = makeStore();
        Sub sub = makeSub("a", 5, {});
        sub.changedByUser = true;
        store->addSubIndex(0, 0x2000, 0, sub);
        QVERIFY(store->saveDataBase(fixture->path("p.data")));
        QVERIFY(store->getSubIndexData(0, 0x2000, 0, sub));
        QVERIFY(!sub.changedByUser);
        QCOMPARE(sub.wizardSource, quint16(454));
    }

    void upgrades_data()
    {
        columns<QString, bool, bool, QString>("version", "uniqueSubs", "uniqueUds", "spnDirection");
        QTest::newRow("none") << "" << true << true << "119";
        QTest::newRow("99") << "99" << true << true << "119";
        QTest::newRow("100") << "100" << true << true << "0";
        QTest::newRow("102") << "102" << false << true << "0";
        QTest::newRow("103") << "103" << false << false << "0";
    }
    void upgrades()
    {
        QFETCH(QString, version);
        QStringList statements = {
            "drop table Groups",
            "delete from MiscSettings where item='SaveToolType'",
            "update MiscSettings set value='" + version + "' where item='DatabaseVersion'",
            "update GeneralSettings set value='2' where item='line0type'",
            "insert into PGNs0 (number,direction,mappingcount) values(100,119,1)",
            "insert into SPNs0 (pgnnumber,spnnumber,direction) values(100,1,0)"};
        for (const QString table : {"SubObjects0", "UDSSettings0"}) // a copy has no constraints
            statements += {"create table copy as select * from " + table, "drop table " + table,
                           "alter table copy rename to " + table};
        QVERIFY(open(statements));
        const auto declaration = [this](const QString &table) {
            return ask("select sql from sqlite_master where name='" + table + "'").join("");
        };
        QVERIFY(declaration("Groups").contains("groupid integer primary key"));
        QTEST(declaration("SubObjects0").contains("UNIQUE"), "uniqueSubs");
        QTEST(declaration("UDSSettings0").contains("UNIQUE"), "uniqueUds");
        QCOMPARE(store->getSubIndices(0, 0x2000, 0), (QList<quint8>{0, 1}));
        QCOMPARE(store->getSubIndexValue(0, 0x2000, 1), "2");
        QVERIFY(store->isUDSServiceActive(0, 34));
        QTEST(ask("select direction from SPNs0").value(0).trimmed(), "spnDirection");
    }

    void oldTableLosesNoRow()
    {
        // A table from the time before the later columns, which come in another order, with a row
        // twice, and NULL where none may be today.
        QVERIFY(
            open({"update MiscSettings set value='90' where item='DatabaseVersion'",
                  "drop table SubObjects0",
                  "create table SubObjects0 (objectindex integer not null, subindex integer not "
                  "null, name integer, datatype integer, accesstype text, "
                  "nvstorage integer, implementation integer, defaultvalue text, extra "
                  "text)",
                  "insert into SubObjects0 values(8192,0,0,7,'rw',1,2,'first','x')",
                  "insert into SubObjects0 values(8192,0,0,7,'rw',1,2,'second','x')",
                  "insert into SubObjects0 values(8192,1,0,null,null,1,null,'third',null)"}));
        QCOMPARE(ask("select defaultvalue from SubObjects0"), (QStringList{"first ", "third "}));
        const Sub sub = subOf(*store, 0, 0x2000, 0);
        QCOMPARE(joined(sub.defaultValue, sub.accessType, sub.implementation, sub.nvStorage),
                 "first/rw/2/true");
        QVERIFY(store->addSubIndex(0, 0x2000, 0, sub));
    }

    void signalsOfAllLinesAreUpgraded()
    {
        QVERIFY(open({"update MiscSettings set value='99' where item='DatabaseVersion'",
                      "insert into Nodes (nodeId) values(4)",
                      "insert into GeneralSettings values('line4type','2')",
                      "create table PGNs4 (number integer not null, direction integer)",
                      "create table SPNs4 (pgnnumber integer not null, spnnumber integer not null)",
                      "insert into PGNs4 values(100,119)", "insert into SPNs4 values(100,7)"}));
        QCOMPARE(store->getSPNs(4, 100, 0x77), QList<quint32>{7});
    }

    void lineTypeIsDerived()
    {
        const auto typeOf = [this](int objects, const QString &maker) { // beside three groups
            const auto made = makeStore();
            for (int i = 0; i < objects; ++i)
                made->addIndex(0, quint16(0x1000 + i), {});
            made->setMiscSettingsValue("CreateToolVersion", maker);
            made->executeSql("insert into PGNs0 (number,direction) values(0,85),(1,85),(2,85)");
            return made->saveDataBase(file) && open() ? store->getGeneralSettingsValue("line0type")
                                                      : "failed";
        };
        QCOMPARE(typeOf(3, "other"), "2");
        QCOMPARE(typeOf(4, "other"), "1");
        QCOMPARE(typeOf(0, "CANopen Tessarine"), "1");
        QCOMPARE(typeOf(4, "J1939 Tessarine"), "2");
    }

    void wrongToolIsRefused()
    {
        // A project of CANopen lines opens, whoever saved it.
        QVERIFY(
            open({"update MiscSettings set value='J1939 Tessarine' where item='SaveToolType'"}));
        QVERIFY(StoreFixture::runSql(
            file, {"update GeneralSettings set value='5' where item='line0type'"}));
        QSignalSpy spy(store.get(), &ObjectDataBase::wrongTool);
        QVERIFY(!store->openDataBase(file));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(store->getLastErrorString(), "File was not created with this tool.");
    }

    void faultyMappingCountIsRepaired()
    {
        QVERIFY(open({"insert into PGNs0 (number,direction,mappingcount) values(100,119,3)",
                      "insert into PGNs0 (number,direction,mappingcount) values(100,85,256)",
                      "insert into SPNs0 (pgnnumber,spnnumber,direction) values(100,1,119)",
                      "insert into SPNs0 (pgnnumber,spnnumber,direction) values(100,2,119)"}));
        // Only the low byte counts, so 256 signals in the record match none in the table.
        QCOMPARE(ask("select mappingcount from PGNs0 order by direction"),
                 (QStringList{"256 ", "2 "}));
        QVERIFY(store->delPGN(0, 100, 0x77));
        QCOMPARE(store->getPGNs(0, 0, false), QList<quint32>{100});
    }

    void exportMakesPathsRelative()
    {
        store = makeStore();
        Node node;
        node.edsPath = "/somewhere/else/device.eds";
        store->addNode(0, node);
        QVERIFY(store->exportDatabase(file));
        QVERIFY(store->getNodeData(0, node));
        QCOMPARE(node.edsPath, "/somewhere/else/device.eds");
        ObjectDataBase saved;
        QVERIFY(saved.openDataBase(file));
        QVERIFY(saved.getNodeData(0, node));
        QCOMPARE(node.edsPath, "./device.eds");
    }

private:
    /// Runs statements on the project's file, and opens it in a new store.
    bool open(const QStringList &statements = {})
    {
        store = std::make_unique<ObjectDataBase>();
        return (statements.isEmpty() || StoreFixture::runSql(file, statements)) &&
               store->openDataBase(file);
    }

    QStringList ask(const QString &statement)
    {
        store->executeSql(statement);
        return store->getSqlResultLines();
    }

    std::unique_ptr<StoreFixture> fixture;
    std::unique_ptr<ObjectDataBase> store;
    QString file; ///< a small project of this tool with one object
};

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    TestProjectLifecycle test;
    if (qEnvironmentVariableIsSet("SWEEP_HOME")) {
        const StoreFixture names; // of the program
        qputenv("XDG_DATA_HOME", qgetenv("SWEEP_HOME"));
        return TemporaryFiles().create().isEmpty() ? 1 : 0;
    }
    return QTest::qExec(&test, argc, argv);
}
#include "tst_projectlifecycle.moc"
