// Opening, upgrading and saving of project files.
#include "store/temporaryfiles.h"
#include "storefixture.h"

#include <QSignalSpy>
#include <QtTest>

class TestProjectLifecycle : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void badFilesAreNoProject_data();
    void badFilesAreNoProject();
    void temporaryCopiesGoWithTheStore();
    void leftoverOfKilledRunIsSweptOnlyWhenFree();
    void readOnlyProjectOpens();
    void secondOpenChangesNothing();
    void saveKeepsOneGeneration();
    void saveDropsScratchLinesAndUnusedTexts();
    void failedSaveLeavesTheProject();
    void dataFileResetsUserMarks();
    void upgrades_data();
    void upgrades();
    void oldTableLosesNoRow();
    void lineTypeIsDerived_data();
    void lineTypeIsDerived();
    void wrongToolIsRefused();
    void faultyMappingCountIsRepaired();
    void exportMakesPathsRelative();

private:
    QString saveProject(const QString &name);

    std::unique_ptr<StoreFixture> fixture;
};

void TestProjectLifecycle::init()
{
    fixture = std::make_unique<StoreFixture>();
}

/// A small project of this tool with one object, saved under \a name.
QString TestProjectLifecycle::saveProject(const QString &name)
{
    ObjectDataBase store;
    store.createNewDataBase();
    store.setGeneralSettingsValue(QStringLiteral("line0type"), QStringLiteral("1"));
    store.addIndex(0, 0x2000, {});
    store.addSubIndex(0, 0x2000, 0, makeSub(QStringLiteral("a"), 5, QStringLiteral("1")));
    store.addSubIndex(0, 0x2000, 1, makeSub(QStringLiteral("b"), 6, QStringLiteral("2")));
    const QString file = fixture->path(name);
    return store.saveDataBase(file) ? file : QString();
}

void TestProjectLifecycle::badFilesAreNoProject_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"missing", "empty", "noise", "text", "folder", "foreign",
                             "cut in half", "no nodes", "noise behind the head"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void TestProjectLifecycle::badFilesAreNoProject()
{
    QFETCH(QString, kind);
    QString name = fixture->path(QStringLiteral("p.tsrp"));
    QByteArray content;
    if (kind == QLatin1String("noise"))
        for (int i = 0; i < 5000; ++i)
            content += char(i * i);
    else if (kind == QLatin1String("text"))
        content = "[Nodes]\n0\\name=\n";
    else if (kind == QLatin1String("folder"))
        name = fixture->path(QString());
    else if (kind == QLatin1String("foreign"))
        QVERIFY(StoreFixture::runSql(name, {QStringLiteral("create table Cars (id integer)")}));
    else if (kind == QLatin1String("no nodes"))
        QVERIFY(StoreFixture::runSql(saveProject(QStringLiteral("p.tsrp")),
                                     {QStringLiteral("delete from Nodes")}));
    else if (kind != QLatin1String("missing") && kind != QLatin1String("empty")) {
        QFile file(saveProject(QStringLiteral("p.tsrp")));
        QVERIFY(file.open(QIODevice::ReadOnly));
        content = file.readAll();
        if (kind == QLatin1String("cut in half"))
            content.truncate(content.size() / 2);
        else
            content.replace(8192, content.size() - 8192, QByteArray(content.size() - 8192, 'x'));
    }
    if (!content.isEmpty() || kind == QLatin1String("empty")) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    {
        ObjectDataBase store;
        QVERIFY(!store.openDataBase(name, true));
        QCOMPARE(store.getLastErrorString(), QString());
    }
    QVERIFY(fixture->temporaryCopies().isEmpty());
}

void TestProjectLifecycle::temporaryCopiesGoWithTheStore()
{
    const QString file = saveProject(QStringLiteral("p.tsrp"));
    {
        ObjectDataBase store;
        QVERIFY(store.openDataBase(file, true));
        QVERIFY(store.openDataBase(file, true));
        QCOMPARE(fixture->temporaryCopies().size(), 2);
    }
    QVERIFY(fixture->temporaryCopies().isEmpty());
}

void TestProjectLifecycle::leftoverOfKilledRunIsSweptOnlyWhenFree()
{
    // The sweep runs once a process, so another process makes it: this one has done it already.
    TemporaryFiles held;
    const QString inUse = held.create();
    const QString folder = QFileInfo(inUse).path();
    const QDateTime longAgo = QDateTime::currentDateTime().addDays(-2);
    QStringList names{inUse, folder + QStringLiteral("/tsedatatemp_1_1"),
                      folder + QStringLiteral("/tsedatatemp_1_2")};
    for (int i = 0; i < 2; ++i) {
        QFile file(names.at(i));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(longAgo, QFileDevice::FileModificationTime));
    }
    QFile young(names.at(2));
    QVERIFY(young.open(QIODevice::WriteOnly));

    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("SWEEP_CHILD"), QStringLiteral("1"));
    environment.insert(QStringLiteral("SWEEP_HOME"), QString::fromUtf8(qgetenv("XDG_DATA_HOME")));
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), QStringList());
    QVERIFY(child.waitForFinished());
    QCOMPARE(child.exitCode(), 0);
    QVERIFY(QFile::exists(names.at(0)));
    QVERIFY(!QFile::exists(names.at(1)));
    QVERIFY(QFile::exists(names.at(2)));
    young.remove();
}

void TestProjectLifecycle::readOnlyProjectOpens()
{
    const QString file = saveProject(QStringLiteral("p.tsrp"));
    QVERIFY(QFile::setPermissions(file, QFileDevice::ReadOwner));
    ObjectDataBase store;
    QVERIFY(store.openDataBase(file, true));
    QVERIFY(store.addIndex(0, 0x3000, {}));
    QCOMPARE(store.getIndices(0, 0x2000, 0xFFFF).size(), 2);
}

void TestProjectLifecycle::secondOpenChangesNothing()
{
    const QString file = saveProject(QStringLiteral("p.tsrp"));
    const auto openAndSave = [&file]() {
        ObjectDataBase store;
        if (!store.openDataBase(file, true) || !store.saveDataBase(QString()))
            return QStringList();
        store.executeSql(QStringLiteral("select name, sql from sqlite_master order by name"));
        QStringList lines = store.getSqlResultLines();
        for (const char *table : {"GeneralSettings", "DescriptionSettings", "MiscSettings",
                                  "Strings", "Objects0", "SubObjects0", "UDSSettings0"}) {
            store.executeSql(QStringLiteral("select * from %1").arg(QLatin1String(table)));
            lines += store.getSqlResultLines();
        }
        return lines;
    };
    const QStringList first = openAndSave();
    QVERIFY(first.size() > 60);
    QCOMPARE(openAndSave(), first);
}

void TestProjectLifecycle::saveKeepsOneGeneration()
{
    const QString file = saveProject(QStringLiteral("p.tsrp"));
    ObjectDataBase store;
    QVERIFY(store.openDataBase(file, true));
    store.setMiscSettingsValue(QStringLiteral("generation"), QStringLiteral("2"));
    QVERIFY(store.saveDataBase(QString()));
    store.setMiscSettingsValue(QStringLiteral("generation"), QStringLiteral("3"));
    QVERIFY(store.saveDataBase(QString()));
    for (const char *expected : {"2", "3"}) {
        const bool isBackup = *expected == '2';
        ObjectDataBase saved;
        QVERIFY(saved.openDataBase(isBackup ? file + QStringLiteral(".bak") : file, true));
        QCOMPARE(saved.getMiscSettingsValue(QStringLiteral("generation")),
                 QString::fromLatin1(expected));
    }
    QCOMPARE(QDir(fixture->path(QString())).entryList({QStringLiteral("p.*")}, QDir::Files),
             (QStringList{QStringLiteral("p.tsrp"), QStringLiteral("p.tsrp.bak")}));
}

void TestProjectLifecycle::saveDropsScratchLinesAndUnusedTexts()
{
    ObjectDataBase store;
    QVERIFY(store.createNewDataBase());
    store.addNode(254, {});
    store.addNode(255, {});
    store.getStringId(QStringLiteral("unused"));
    const QString file = fixture->path(QStringLiteral("p.tsrp"));
    QVERIFY(store.saveDataBase(file));
    ObjectDataBase saved;
    QVERIFY(saved.openDataBase(file, true));
    QCOMPARE(saved.getNodes(), QList<quint8>{0});
    QVERIFY(!saved.existSubIndexName(0, QStringLiteral("unused")));
    QCOMPARE(saved.getMiscSettingsValue(QStringLiteral("SaveToolType")),
             QStringLiteral("CANopen Tessarine"));
    QCOMPARE(saved.getMiscSettingsValue(QStringLiteral("DatabaseVersion")), QStringLiteral("104"));
}

void TestProjectLifecycle::failedSaveLeavesTheProject()
{
    const QString file = saveProject(QStringLiteral("p.tsrp"));
    ObjectDataBase store;
    QVERIFY(store.openDataBase(file, true));
    // A folder where the new file is to be made stops the save even for the super user.
    QVERIFY(QDir().mkpath(file + QStringLiteral(".new/x")));
    QVERIFY(!store.saveDataBase(QString()));
    ObjectDataBase saved;
    QVERIFY(saved.openDataBase(file, true));
    QVERIFY(!QFile::exists(file + QStringLiteral(".bak")));
    QVERIFY(!store.saveDataBase(fixture->path(QStringLiteral("no/such/folder/p.tsrp"))));
    QCOMPARE(store.getProjectFileName(), file);
}

void TestProjectLifecycle::dataFileResetsUserMarks()
{
    ObjectDataBase store;
    QVERIFY(store.createNewDataBase());
    auto sub = makeSub(QStringLiteral("a"), 5, {});
    sub.changedByUser = true;
    store.addSubIndex(0, 0x2000, 0, sub);
    QVERIFY(store.saveDataBase(fixture->path(QStringLiteral("p.data"))));
    QVERIFY(store.getSubIndexData(0, 0x2000, 0, sub));
    QVERIFY(!sub.changedByUser);
    QCOMPARE(sub.wizardSource, quint16(454));
}

void TestProjectLifecycle::upgrades_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<bool>("uniqueSubs");
    QTest::addColumn<bool>("uniqueUds");
    QTest::addColumn<QString>("spnDirection");
    QTest::newRow("none") << "" << true << true << "119";
    QTest::newRow("99") << "99" << true << true << "119";
    QTest::newRow("100") << "100" << true << true << "0";
    QTest::newRow("102") << "102" << false << true << "0";
    QTest::newRow("103") << "103" << false << false << "0";
}

void TestProjectLifecycle::upgrades()
{
    QFETCH(QString, version);
    QFETCH(bool, uniqueSubs);
    QFETCH(bool, uniqueUds);
    const QString file = saveProject(QStringLiteral("p.tsrp"));
    QVERIFY(StoreFixture::runSql(
        file,
        {QStringLiteral("delete from MiscSettings where item='SaveToolType'"),
         QStringLiteral("update MiscSettings set value='%1' where item='DatabaseVersion'")
             .arg(version),
         QStringLiteral("update GeneralSettings set value='2' where item='line0type'"),
         QStringLiteral("create table s as select * from SubObjects0"),
         QStringLiteral("drop table SubObjects0"),
         QStringLiteral("alter table s rename to SubObjects0"),
         QStringLiteral("create table u as select * from UDSSettings0"),
         QStringLiteral("drop table UDSSettings0"),
         QStringLiteral("alter table u rename to UDSSettings0"),
         QStringLiteral("insert into PGNs0 (number,direction,mappingcount) values(100,119,1)"),
         QStringLiteral("insert into SPNs0 (pgnnumber,spnnumber,direction) values(100,1,0)")}));

    ObjectDataBase store;
    QVERIFY(store.openDataBase(file, true));
    const auto tableIsUnique = [&store](const char *table) {
        store.executeSql(QStringLiteral("select sql from sqlite_master where name='%1'")
                             .arg(QLatin1String(table)));
        return store.getSqlResultLines().join(QString()).contains(QLatin1String("UNIQUE"));
    };
    QCOMPARE(tableIsUnique("SubObjects0"), uniqueSubs);
    QCOMPARE(tableIsUnique("UDSSettings0"), uniqueUds);
    QCOMPARE(store.getSubIndices(0, 0x2000, 0), (QList<quint8>{0, 1}));
    QCOMPARE(store.getSubIndexValue(0, 0x2000, 1), QStringLiteral("2"));
    QVERIFY(store.isUDSServiceActive(0, 34));
    store.executeSql(QStringLiteral("select direction from SPNs0"));
    QTEST(store.getSqlResultLines().value(0).trimmed(), "spnDirection");
}

void TestProjectLifecycle::oldTableLosesNoRow()
{
    // A table from the time before the later columns, which come in another order, with a row
    // twice.
    const QString file = saveProject(QStringLiteral("p.tsrp"));
    QVERIFY(StoreFixture::runSql(
        file,
        {QStringLiteral("update MiscSettings set value='90' where item='DatabaseVersion'"),
         QStringLiteral("drop table SubObjects0"),
         QStringLiteral("create table SubObjects0 (objectindex integer not null, subindex "
                        "integer not null, name integer, datatype integer not null, accesstype "
                        "text not null, nvstorage integer, implementation integer not null, "
                        "defaultvalue text, extra text)"),
         QStringLiteral("insert into SubObjects0 values(8192,0,0,7,'rw',1,2,'first','x')"),
         QStringLiteral("insert into SubObjects0 values(8192,0,0,7,'rw',1,2,'second','x')")}));
    ObjectDataBase store;
    QVERIFY(store.openDataBase(file, true));
    ObjectDataBase::SUBINDEX_DATA_T sub;
    QVERIFY(store.getSubIndexData(0, 0x2000, 0, sub));
    QCOMPARE(sub.defaultValue, QStringLiteral("first"));
    QCOMPARE(sub.accessType, QStringLiteral("rw"));
    QCOMPARE(sub.implementation, quint8(2));
    QVERIFY(sub.nvStorage);
    QVERIFY(store.addSubIndex(0, 0x2000, 0, sub));
}

void TestProjectLifecycle::lineTypeIsDerived_data()
{
    QTest::addColumn<int>("objects");
    QTest::addColumn<QString>("maker");
    QTest::addColumn<QString>("type");
    QTest::newRow("as_many_groups_as_objects") << 3 << "other"
                                               << "2";
    QTest::newRow("more_objects_than_groups") << 4 << "other"
                                              << "1";
    QTest::newRow("canopen_maker") << 0 << "CANopen Tessarine"
                                   << "1";
    QTest::newRow("j1939_maker") << 4 << "J1939 Tessarine"
                                 << "2";
}

void TestProjectLifecycle::lineTypeIsDerived()
{
    QFETCH(int, objects);
    QFETCH(QString, maker);
    const QString file = fixture->path(QStringLiteral("p.tsrp"));
    {
        ObjectDataBase store;
        store.createNewDataBase();
        for (int i = 0; i < objects; ++i)
            store.addIndex(0, quint16(0x1000 + i), {});
        store.setMiscSettingsValue(QStringLiteral("CreateToolVersion"), maker);
        for (int i = 0; i < 3; ++i)
            store.executeSql(
                QStringLiteral("insert into PGNs0 (number,direction) values(%1,85)").arg(i));
        QVERIFY(store.saveDataBase(file));
    }
    ObjectDataBase store;
    QVERIFY(store.openDataBase(file, true));
    QTEST(store.getGeneralSettingsValue(QStringLiteral("line0type")), "type");
}

void TestProjectLifecycle::wrongToolIsRefused()
{
    const QString file = saveProject(QStringLiteral("p.tsrp"));
    const QString otherTool =
        QStringLiteral("update MiscSettings set value='J1939 Tessarine' where item='SaveToolType'");
    QVERIFY(StoreFixture::runSql(file, {otherTool}));
    ObjectDataBase store;
    QVERIFY(store.openDataBase(file, true)); // a CANopen project, whoever saved it
    QVERIFY(StoreFixture::runSql(
        file, {QStringLiteral("update GeneralSettings set value='5' where item='line0type'")}));
    QSignalSpy spy(&store, &ObjectDataBase::wrongTool);
    QVERIFY(!store.openDataBase(file, true));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(store.getLastErrorString(), QStringLiteral("File was not created with this tool."));
}

void TestProjectLifecycle::faultyMappingCountIsRepaired()
{
    const QString file = saveProject(QStringLiteral("p.tsrp"));
    QVERIFY(StoreFixture::runSql(
        file,
        {QStringLiteral("insert into PGNs0 (number,direction,mappingcount) values(100,119,3)"),
         QStringLiteral("insert into PGNs0 (number,direction,mappingcount) values(100,85,256)"),
         QStringLiteral("insert into SPNs0 (pgnnumber,spnnumber,direction) values(100,1,119)"),
         QStringLiteral("insert into SPNs0 (pgnnumber,spnnumber,direction) values(100,2,119)")}));
    ObjectDataBase store;
    QVERIFY(store.openDataBase(file, true));
    store.executeSql(QStringLiteral("select mappingcount from PGNs0 order by direction"));
    // Only the low byte counts, so 256 signals in the record match none in the table.
    QCOMPARE(store.getSqlResultLines(),
             (QStringList{QStringLiteral("256 "), QStringLiteral("2 ")}));
    QVERIFY(store.delPGN(0, 100, 0x77));
    QCOMPARE(store.getPGNs(0, 0, false), QList<quint32>{100});
}

void TestProjectLifecycle::exportMakesPathsRelative()
{
    ObjectDataBase store;
    store.createNewDataBase();
    ObjectDataBase::NODE_DATA_T node;
    node.edsPath = QStringLiteral("/somewhere/else/device.eds");
    store.addNode(0, node);
    const QString file = fixture->path(QStringLiteral("out.tsrp"));
    QVERIFY(store.exportDatabase(file));
    QVERIFY(store.getNodeData(0, node));
    QCOMPARE(node.edsPath, QStringLiteral("/somewhere/else/device.eds"));
    ObjectDataBase saved;
    QVERIFY(saved.openDataBase(file, true));
    QVERIFY(saved.getNodeData(0, node));
    QCOMPARE(node.edsPath, QStringLiteral("./device.eds"));
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    TestProjectLifecycle test;
    if (qEnvironmentVariableIsSet("SWEEP_CHILD")) {
        QCoreApplication::setApplicationName(QStringLiteral("CANopen Tessarine"));
        QCoreApplication::setOrganizationName(QStringLiteral("Korvel"));
        qputenv("XDG_DATA_HOME", qgetenv("SWEEP_HOME"));
        return TemporaryFiles().create().isEmpty() ? 1 : 0;
    }
    return QTest::qExec(&test, argc, argv);
}
#include "tst_projectlifecycle.moc"
