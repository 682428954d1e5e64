// The text form of a project.
#include "storefixture.h"

#include <QtTest>

class TestTextProject : public QObject
{
    Q_OBJECT

private slots:
    void roundTrip();
    void whatTheFormLeavesOut();
    void secondSaveChangesNothing();
    void handWrittenProject();
    void linesByWholeNumber();
    void whatIsNoProjectIsNotOverwritten_data();
    void whatIsNoProjectIsNotOverwritten();

private:
    QString write(const QByteArray &text);
    QByteArray read(const QString &file);

    StoreFixture fixture;
};

QString TestTextProject::write(const QByteArray &text)
{
    QFile file(fixture.path(QStringLiteral("p.tsrt")));
    if (!file.open(QIODevice::WriteOnly))
        return QString();
    file.write(text);
    return file.fileName();
}

QByteArray TestTextProject::read(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestTextProject::roundTrip()
{
    ObjectDataBase store;
    store.createNewDataBase();
    store.addNode(1, {});
    ObjectDataBase::INDEX_DATA_T object;
    object.name = QStringLiteral("Größe, \"quoted\"; a=b");
    object.description = QStringLiteral("line 1\nline 2");
    object.deviceClass = QStringLiteral("drive");
    object.objectCode = CANopen::ObjectCode::Array;
    object.metadata = {{QStringLiteral("eds_define"), QStringLiteral("ä")}};
    auto sub = makeSub(QStringLiteral("@name"), 9, QStringLiteral("a,b"));
    sub.description = QStringLiteral("text");
    sub.pdoMapping = PDOMapping(PDOMappingType::Rpdo);
    sub.writeDefaultToEds = 2;
    sub.metadata = object.metadata;
    store.addIndex(1, 0x2000, object);
    store.addSubIndex(1, 0x2000, 0x10, sub);
    store.setGeneralSettingsValue(QStringLiteral("nmtmaster"), QStringLiteral("1,0"));
    store.setDescriptionSettingsLine(1);
    store.setDescriptionSettingsValue(QStringLiteral("Comment"), QStringLiteral("x\ny"));
    const QString file = fixture.path(QStringLiteral("round.tsrt"));
    QVERIFY(store.saveDataBase(file));
    QVERIFY(read(file).contains("\n0x2000\\0x10\\pdomapping=3\n"));

    ObjectDataBase opened;
    QVERIFY(opened.openDataBase(file, true));
    QCOMPARE(opened.getNodes(), (QList<quint8>{0, 1}));
    ObjectDataBase::INDEX_DATA_T readObject;
    QVERIFY(opened.getIndexData(1, 0x2000, readObject));
    QVERIFY(readObject == object);
    ObjectDataBase::SUBINDEX_DATA_T readSub;
    QVERIFY(opened.getSubIndexData(1, 0x2000, 0x10, readSub));
    QVERIFY(readSub == sub);
    QCOMPARE(opened.getGeneralSettingsValue(QStringLiteral("nmtmaster")), QStringLiteral("1,0"));
    opened.setDescriptionSettingsLine(1);
    QCOMPARE(opened.getDescriptionSettingsValue(QStringLiteral("Comment")), QStringLiteral("x\ny"));
}

void TestTextProject::whatTheFormLeavesOut()
{
    ObjectDataBase store;
    store.createNewDataBase();
    ObjectDataBase::NODE_DATA_T node;
    node.name = QStringLiteral("pump");
    node.edsPath = QStringLiteral("pump.eds");
    store.addNode(0, node);
    auto sub = makeSub(QStringLiteral("a"), 5, QStringLiteral("1"));
    sub.varName = QStringLiteral("v");
    sub.denotation = QStringLiteral("shown");
    store.addIndex(0, 0x2000, {});
    store.addSubIndex(0, 0x2000, 0, sub);
    store.setJ1939SettingsValue(QStringLiteral("function"), QStringLiteral("1"));
    store.executeSql(QStringLiteral("insert into Connections values(0,8192,0,1,8192,0,0)"));
    store.executeSql(QStringLiteral("insert into PGNs0 (number,direction) values(100,85)"));
    const QString file = fixture.path(QStringLiteral("less.tsrt"));
    QVERIFY(store.saveDataBase(file));

    ObjectDataBase opened;
    QVERIFY(opened.openDataBase(file, true));
    QVERIFY(opened.getNodeData(0, node));
    QCOMPARE(node.name, QString());
    QCOMPARE(node.edsPath, QStringLiteral("pump.eds"));
    QVERIFY(opened.getSubIndexData(0, 0x2000, 0, sub));
    QCOMPARE(sub.denotation, QString());
    QCOMPARE(sub.varName, QStringLiteral("v"));
    QVERIFY(!opened.existJ1939SettingsValue(QStringLiteral("function")));
    QVERIFY(opened.getPGNs(0, 0, false).isEmpty());
    opened.executeSql(QStringLiteral("select * from Connections"));
    QVERIFY(opened.getSqlResultLines().isEmpty());
}

void TestTextProject::secondSaveChangesNothing()
{
    const QString file = write("[Nodes]\n0\\prefix=_\n[Objects0]\n0x2000\\name=a\n"
                               "[SubObjects0]\n0x2000\\0x0\\name=b\n0x2000\\0x0\\datatype=7\n");
    QByteArray saved;
    for (int i = 0; i < 2; ++i) {
        ObjectDataBase store;
        QVERIFY(store.openDataBase(file, true));
        QVERIFY(store.saveDataBase(QString()));
        if (i == 0)
            saved = read(file);
    }
    QVERIFY(saved.contains("0x2000\\0x0\\allowedaccesstypes=\n")); // empty cells are explicit
    QVERIFY(saved.contains("0x2000\\0x0\\size=0\n"));
    QVERIFY(saved.contains("0x2000\\0x0\\metadata=0\n"));
    QCOMPARE(read(file), saved);
}

void TestTextProject::handWrittenProject()
{
    const QString file =
        write("[GeneralSettings]\r\nnmtmaster=1, 0\r\nline0type=1\r\n"
              "[Objects0]\r\n0x2000\\name=\"it's, one\"\r\n8193\\name=two\r\n"
              "0x2000\\nosuchcolumn=1\r\nword\\name=three\r\n0x12345\\name=four\r\n"
              "[SubObjects0]\r\n0x2000\\0x1\\defaultvalue=  x   y \r\n"
              "0x2001\\0x0\\name=s\r\n0x2000\\0x1\\size=4\r\n0x2000\\300\\size=4\r\n");
    ObjectDataBase store;
    QVERIFY(store.openDataBase(file, true));
    QCOMPARE(store.getGeneralSettingsValue(QStringLiteral("nmtmaster")), QStringLiteral("1,0"));
    QCOMPARE(store.getIndices(0, 0, 0xFFFF), (QList<quint16>{0x2000, 0x2001}));
    QCOMPARE(store.getIndexName(0, 0x2000), QStringLiteral("it's, one"));
    ObjectDataBase::SUBINDEX_DATA_T sub;
    QVERIFY(store.getSubIndexData(0, 0x2000, 1, sub));
    QCOMPARE(sub.defaultValue, QStringLiteral("x y"));
    QCOMPARE(sub.size, 4u); // cells of a row may stand apart
    QCOMPARE(store.getSubIndices(0, 0x2000, 0), QList<quint8>{1});
}

void TestTextProject::linesByWholeNumber()
{
    const QString file = write("[Nodes]\n0\\prefix=_\n12\\prefix=_\n[Objects12]\n0x2000\\name=a\n"
                               "[Objects2]\n0x2001\\name=b\n[Objects012]\n0x2002\\name=c\n");
    ObjectDataBase store;
    QVERIFY(store.openDataBase(file, true));
    QCOMPARE(store.getNodes(), (QList<quint8>{0, 12}));
    QCOMPARE(store.getIndices(12, 0, 0xFFFF), QList<quint16>{0x2000});
    QVERIFY(store.getIndices(0, 0, 0xFFFF).isEmpty());
}

void TestTextProject::whatIsNoProjectIsNotOverwritten_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("noise") << QByteArray("\x00\xff noise \n[[[\n=\n", 16);
    QTest::newRow("another ini") << QByteArray("[Colours]\nred=1\n");
    QTest::newRow("merge conflict") << QByteArray("[Nodes]\n0\\prefix=_\n<<<<<<< mine\n");
    QTest::newRow("empty") << QByteArray();
}

void TestTextProject::whatIsNoProjectIsNotOverwritten()
{
    QFETCH(QByteArray, text);
    const QString file = write(text);
    ObjectDataBase store;
    QVERIFY(store.openDataBase(file, true)); // and goes on with what was understood
    QVERIFY(!store.saveDataBase(QString()));
    QCOMPARE(read(file), text);
    QVERIFY(store.saveDataBase(fixture.path(QStringLiteral("other.tsrp"))));
}

QTEST_GUILESS_MAIN(TestTextProject)
#include "tst_textproject.moc"
