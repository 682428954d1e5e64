// The import of device descriptions into a project, and what all importers share.
#include "import/edsimporter.h"
#include "store/objectdatabase.h"

#include <QtTest>

class TestEdsImporter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void typesFromBits_data();
    void typesFromBits();
    void proposedNames();
    void fileNames();
    void runOfAJob();
    void fileThatVanished();

    void variable();
    void valuesOfADcf();
    void mappingByAccess_data();
    void mappingByAccess();
    void limits_data();
    void limits();
    void storage_data();
    void storage();
    void variableNamesDiffer();
    void arrayTakesTheTypeOfItsElements();
    void compactMembers();
    void indexRange();
    void comments();

    void deviceInformation();
    void commentOfTheFile_data();
    void commentOfTheFile();
    void promisedPdos_data();
    void promisedPdos();
    void defaultPdoObjects();
    void fileWithoutObjectsAddsNone();
    void secondLine();

private:
    using SubData = ObjectDataBase::SUBINDEX_DATA_T;

    bool writeFile(const QByteArray &text);
    /// Imports \a text into line 0 and waits.
    bool import(const QByteArray &text);
    SubData sub(quint16 index, quint8 number, quint8 line = 0) const;
    ObjectDataBase::INDEX_DATA_T object(quint16 index) const;
    QString setting(const char *key) const
    {
        return store->getDescriptionSettingsValue(QLatin1String(key));
    }
    /// "0 2 5": the objects from \a first on, counted from there.
    QString places(quint16 first) const;

    QTemporaryDir folder;
    QString file;
    std::unique_ptr<ObjectDataBase> store;
};

void TestEdsImporter::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QLoggingCategory::setFilterRules(QStringLiteral("tessarine.*.debug=false"));
    file = folder.filePath(QStringLiteral("device.eds"));
}

void TestEdsImporter::init()
{
    store = std::make_unique<ObjectDataBase>();
    QVERIFY(store->createNewDataBase());
}

bool TestEdsImporter::writeFile(const QByteArray &text)
{
    QFile target(file);
    return target.open(QIODevice::WriteOnly) && target.write(text) == text.size();
}

bool TestEdsImporter::import(const QByteArray &text)
{
    EDSImporter importer;
    importer.setActiveLine(0);
    importer.setDatabase(store.get());
    const bool isReady = writeFile(text) && importer.setImportFileName(file);
    const bool isStarted = importer.startImport();
    importer.wait();
    return isReady && isStarted && importer.isFinished() && importer.getLastError().isEmpty();
}

TestEdsImporter::SubData TestEdsImporter::sub(quint16 index, quint8 number, quint8 line) const
{
    SubData data;
    data.name = QStringLiteral("not there");
    (void)store->getSubIndexData(line, index, number, data); // the name tells
    return data;
}

ObjectDataBase::INDEX_DATA_T TestEdsImporter::object(quint16 index) const
{
    ObjectDataBase::INDEX_DATA_T data;
    data.name = QStringLiteral("not there");
    (void)store->getIndexData(0, index, data); // the name tells
    return data;
}

QString TestEdsImporter::places(quint16 first) const
{
    QStringList list;
    for (const quint16 index : store->getIndices(0, first, first + 0x1FF))
        list << QString::number(index - first);
    return list.join(QLatin1Char(' '));
}

void TestEdsImporter::typesFromBits_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("unsignedType");
    QTest::addColumn<int>("signedType");

    QTest::newRow("none") << 0 << 121 << 121;
    QTest::newRow("2") << 2 << 100 << 100;
    QTest::newRow("8") << 8 << 5 << 2;
    QTest::newRow("9_has_no_type") << 9 << 10 << 10;
    QTest::newRow("16") << 16 << 6 << 3;
    QTest::newRow("24_is_unsigned") << 24 << 22 << 22;
    QTest::newRow("32") << 32 << 7 << 4;
    QTest::newRow("64") << 64 << 27 << 27;
    QTest::newRow("65") << 65 << 10 << 10;
}

void TestEdsImporter::typesFromBits()
{
    QFETCH(int, bits);
    const auto count = static_cast<quint16>(bits);
    QTEST(int(BaseDataImporter::getDataTypeFromBitLength(count, false)), "unsignedType");
    QTEST(int(BaseDataImporter::getDataTypeFromBitLength(count, true)), "signedType");
}

void TestEdsImporter::proposedNames()
{
    EDSImporter importer;
    const QString text = QStringLiteral("Motor Speed (rpm)");
    QCOMPARE(importer.proposeVarname(0x2000, text), QStringLiteral("motorspeedrpm"));
    QCOMPARE(importer.proposeVarname(0x2A01, text), QStringLiteral("motorspeedrpm_2a01"));
    QCOMPARE(importer.proposeVarname(0x2A01, text), QStringLiteral("motorspeedrpm_2a01"));
    QCOMPARE(importer.proposeVarname(0x2002, QStringLiteral("-#().,/ ")), QString());
    QCOMPARE(importer.proposeVarname(0x2003, QStringLiteral("a_B:1")), QStringLiteral("a_b:1"));
}

void TestEdsImporter::fileNames()
{
    QVERIFY(writeFile("x"));
    EDSImporter importer;
    QVERIFY(importer.setImportFileName(file));
    QVERIFY(!importer.setImportFileName(folder.filePath(QStringLiteral("none.eds"))));
    QVERIFY(!importer.setImportFileName(folder.path()));
}

void TestEdsImporter::runOfAJob()
{
    QVERIFY(writeFile("[2000]\nParameterName=x\n"));
    EDSImporter importer;
    importer.setDatabase(store.get());
    QVERIFY(importer.setImportFileName(file));
    importer.wait(); // nothing was started
    QVERIFY(!importer.isFinished());
    quint8 last = 0;
    connect(&importer, &BaseDataImporter::progress, this, [&last](quint8 percent) {
        QVERIFY(QThread::currentThread() == QCoreApplication::instance()->thread());
        last = percent;
    });
    QVERIFY(importer.startImport());
    QVERIFY(!importer.startImport());
    importer.wait();
    QVERIFY(importer.isFinished());
    QCOMPARE(last, quint8(100));
    QVERIFY(!store->blockUpdates());
}

void TestEdsImporter::fileThatVanished()
{
    QVERIFY(writeFile("[2000]\nParameterName=x\n"));
    EDSImporter importer;
    importer.setDatabase(store.get());
    QVERIFY(importer.setImportFileName(file));
    QVERIFY(QFile::remove(file));
    QVERIFY(importer.startImport());
    importer.wait();
    QCOMPARE(importer.getLastError(), QLatin1String("Could not open ") + file);
    QVERIFY(!store->blockUpdates());
    QVERIFY(store->addIndex(0, 0x2000, {})); // the store is open for others again
}

void TestEdsImporter::variable()
{
    QVERIFY(import("[2000]\nParameterName=It's 5 % \"x\"\nDataType=6\nAccessType=rw\n"
                   "DefaultValue=$nodeid+1\nObjFlags=1\n[2001]\nParameterName=y\nObjFlags=2\n"));
    QCOMPARE(object(0x2000).name, QStringLiteral("It's 5 % \"x\""));
    QCOMPARE(object(0x2000).dataType, quint16(6));
    QVERIFY(object(0x2000).objectCode == CANopen::ObjectCode::Var);

    SubData expected;
    expected.name = QStringLiteral("It's 5 % \"x\"");
    expected.dataType = 6;
    expected.accessType = QStringLiteral("rw");
    expected.defaultValue = QStringLiteral("$NODEID+1");
    expected.upLimit = QStringLiteral("65535");
    expected.refuseWrite = true;
    QVERIFY(sub(0x2000, 0) == expected);
    QCOMPARE(sub(0x2001, 0).writeDefaultToEds, quint8(0));
    QVERIFY(sub(0x2001, 0).refuseRead);
}

void TestEdsImporter::valuesOfADcf()
{
    QVERIFY(import("[2000]\nParameterName=x\nParameterValue=0\nDenotation=Left pump\n"
                   "[2001]\nParameterName=y\nParameterValue=\n"));
    QCOMPARE(sub(0x2000, 0).currentValue, QStringLiteral("0"));
    QVERIFY(sub(0x2000, 0).dcfComponent);
    QCOMPARE(sub(0x2000, 0).denotation, QStringLiteral("Left pump"));
    QVERIFY(!sub(0x2001, 0).dcfComponent);
}

void TestEdsImporter::mappingByAccess_data()
{
    QTest::addColumn<QByteArray>("access");
    QTest::addColumn<quint32>("mapping");

    QTest::newRow("ro") << QByteArray("ro") << 4u;
    QTest::newRow("rwr") << QByteArray("rwr") << 4u;
    QTest::newRow("wo") << QByteArray("wo") << 3u;
    QTest::newRow("rww") << QByteArray("rww") << 3u;
    QTest::newRow("rw") << QByteArray("rw") << 1u;
    QTest::newRow("const") << QByteArray("const") << 1u;
}

void TestEdsImporter::mappingByAccess()
{
    QFETCH(QByteArray, access);
    QVERIFY(import("[2000]\nPDOMapping=1\nAccessType=" + access + "\n[2001]\nPDOMapping=0\n"));
    QTEST(sub(0x2000, 0).pdoMapping.toUInt(), "mapping");
    QCOMPARE(sub(0x2001, 0).pdoMapping.toUInt(), 0u);
}

void TestEdsImporter::limits_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("inEds");

    QTest::newRow("none") << QByteArray("DataType=3") << "-32768..32767" << false;
    QTest::newRow("both") << QByteArray("DataType=6\nLowLimit=1\nHighLimit=9") << "1..9" << true;
    QTest::newRow("high") << QByteArray("DataType=2\nHighLimit=0xFE") << "-128..-2" << true;
    QTest::newRow("type_without_range") << QByteArray("DataType=8\nLowLimit=1") << "1.." << true;
}

void TestEdsImporter::limits()
{
    QFETCH(QByteArray, entries);
    QVERIFY(import("[2000]\n" + entries + "\n"));
    const SubData data = sub(0x2000, 0);
    QTEST(data.lowLimit + QLatin1String("..") + data.upLimit, "expected");
    QTEST(data.limitInEds, "inEds");
}

void TestEdsImporter::storage_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<int>("implementation");
    QTest::addColumn<QString>("varName");
    QTest::addColumn<quint32>("size");

    const QString none;
    const QString variable = QStringLiteral("v_81920");
    QTest::newRow("number") << QByteArray("DataType=7\nAccessType=ro") << 0 << none << 0u;
    QTest::newRow("constant_string")
        << QByteArray("DataType=9\nAccessType=const\nDefaultValue=abc") << 1 << none << 3u;
    QTest::newRow("read_only_octets")
        << QByteArray("DataType=10\nAccessType=ro") << 1 << none << 1u;
    QTest::newRow("utf8_counts_bytes")
        << QByteArray("DataType=124\nAccessType=ro\nDefaultValue=\xC2\xB5m") << 1 << none << 3u;
    QTest::newRow("writable_string")
        << QByteArray("DataType=9\nAccessType=rw\nDefaultValue=ab") << 2 << variable << 2u;
    QTest::newRow("domain") << QByteArray("DataType=15\nAccessType=ro") << 2 << variable << 1u;
    QTest::newRow("domain_by_code")
        << QByteArray("ObjectType=2\nAccessType=const") << 2 << variable << 1u;
}

void TestEdsImporter::storage()
{
    QFETCH(QByteArray, entries);
    QVERIFY(import("[2000]\n" + entries + "\n"));
    const SubData data = sub(0x2000, 0);
    QTEST(int(data.implementation), "implementation");
    QTEST(data.varName, "varName");
    QTEST(data.size, "size");
}

void TestEdsImporter::variableNamesDiffer()
{
    QVERIFY(import("[1000]\nObjectType=9\n[1000sub0B]\nDataType=15\n"
                   "[A001]\nObjectType=9\n[A001sub1]\nDataType=15\n"));
    QCOMPARE(sub(0x1000, 11).varName, QStringLiteral("v_409611"));
    QCOMPARE(sub(0xA001, 1).varName, QStringLiteral("v_40961_1"));
}

void TestEdsImporter::arrayTakesTheTypeOfItsElements()
{
    QVERIFY(import("[2000]\nObjectType=8\n[2000sub0]\nDataType=5\n[2000sub1]\nDataType=7\n"
                   "[2001]\nObjectType=9\n[2001sub1]\nDataType=7\n"));
    QCOMPARE(object(0x2000).dataType, quint16(7));
    QCOMPARE(object(0x2001).dataType, quint16(5));
}

void TestEdsImporter::compactMembers()
{
    QVERIFY(import("[2000]\nParameterName=Gain\nObjectType=8\nDataType=3\nAccessType=rwr\n"
                   "PDOMapping=1\nDefaultValue=3\nHighLimit=9\nObjFlags=2\nCompactSubObj=3\n"
                   ";;the gains\n[2000Name]\n2=Second\n[2000Value]\n3=5\n[2000Denotation]\n1=One\n"
                   "[2001]\nObjectType=9\nDataType=9\nAccessType=rw\nCompactSubObj=254\n"
                   "[2001sub2]\nParameterName=Own\nDataType=9\nAccessType=rw\n"));
    QCOMPARE(object(0x2000).dataType, quint16(3));
    QCOMPARE(store->getSubIndices(0, 0x2000, 0).size(), 4);
    const SubData count = sub(0x2000, 0);
    QCOMPARE(count.name, QStringLiteral("Highest subindex supported"));
    QCOMPARE(count.dataType, quint16(5));
    QCOMPARE(count.accessType, QStringLiteral("ro"));
    QCOMPARE(count.defaultValue, QStringLiteral("3"));
    QCOMPARE(count.pdoMapping.toUInt(), 0u);

    SubData expected;
    expected.name = QStringLiteral("Gain 1");
    expected.denotation = QStringLiteral("One");
    expected.dataType = 3;
    expected.accessType = QStringLiteral("rwr");
    expected.defaultValue = QStringLiteral("3");
    expected.pdoMapping = PDOMappingType::Tpdo;
    expected.lowLimit = QStringLiteral("-32768");
    expected.upLimit = QStringLiteral("9");
    expected.limitInEds = true;
    expected.refuseRead = true;
    QVERIFY(sub(0x2000, 1) == expected);
    QCOMPARE(sub(0x2000, 2).name, QStringLiteral("Second"));
    QCOMPARE(sub(0x2000, 3).currentValue, QStringLiteral("5"));
    QVERIFY(sub(0x2000, 3).dcfComponent);

    QCOMPARE(store->getSubIndices(0, 0x2001, 0).size(), 255);
    QCOMPARE(sub(0x2001, 254).varName, QStringLiteral("v_8193254"));
    QCOMPARE(sub(0x2001, 2).name, QStringLiteral("Own")); // its own section comes behind
    QCOMPARE(sub(0x2001, 2).varName, QStringLiteral("v_81932"));
}

void TestEdsImporter::indexRange()
{
    QVERIFY(import("[0FFF]\n;;x\n[1000]\n[BFFF]\n[C000]\nObjectType=8\nCompactSubObj=2\n"
                   "[D000sub1]\n;;y\n"));
    QCOMPARE(store->getIndices(0, 0, 0xFFFF), (QList<quint16>{0x1000, 0xBFFF}));
    QVERIFY(!store->existSubIndex(0, 0xD000, 1));
    QVERIFY(!store->existSubIndex(0, 0xC000, 1));
}

void TestEdsImporter::comments()
{
    QVERIFY(import(";;above\n[2000]\nParameterName=x\n\n[2001]\nObjectType=9\n;;of the record\n"
                   "[2001sub0]\nDataType=5\n\n;;of one\n;; two lines\n[2001sub1]\nDataType=5\n"
                   "[2002]\nObjectType=9\n;;object\n[2002sub0]\nDataType=5\n;;count\n"));
    QCOMPARE(object(0x2000).description, QStringLiteral("above"));
    QCOMPARE(sub(0x2000, 0).description, QStringLiteral("above"));
    QCOMPARE(object(0x2001).description, QStringLiteral("of the record"));
    QCOMPARE(sub(0x2001, 0).description, QStringLiteral("of the record"));
    QCOMPARE(sub(0x2001, 1).description, QStringLiteral("of one\n two lines"));
    QCOMPARE(object(0x2002).description, QStringLiteral("object"));
    QCOMPARE(sub(0x2002, 0).description, QStringLiteral("count"));
}

void TestEdsImporter::deviceInformation()
{
    QVERIFY(import("[FILEINFO]\nfileversion=0x03\nCreatedBy=A; B, C\nEDSVersion=4.0\n"
                   "[DummyUsage]\nDummy0002=1\nDummy0004=1\n"
                   "[DeviceInfo]\nVendorname=\"M\" & Co\nBaudrate_500=1 ; fast\nLSS_Supported=1\n"
                   "NrOfRxPDO=0\nOrderCode=\n[2000]\n"));
    store->setDescriptionSettingsLine(0);
    QCOMPARE(setting("FileVersion"), QStringLiteral("0x03"));
    QCOMPARE(setting("CreatedBy"), QStringLiteral("A; B, C"));
    QCOMPARE(setting("Dummy0002"), QStringLiteral("1"));
    QCOMPARE(setting("Dummy0004"), QStringLiteral("0"));
    QVERIFY(!store->existDescriptionSettingsValue(QStringLiteral("Dummy004")));
    QCOMPARE(setting("VendorName"), QStringLiteral("\"M\" & Co"));
    QCOMPARE(setting("BaudRate_500"), QStringLiteral("1"));
    QCOMPARE(setting("LSS_Supported"), QStringLiteral("1"));
    QCOMPARE(setting("NrOfRXPDO"), QStringLiteral("0"));
    QCOMPARE(setting("OrderCode"), QString());
    QVERIFY(!store->existDescriptionSettingsValue(QStringLiteral("EDSVersion")));
    QVERIFY(!store->existDescriptionSettingsValue(QStringLiteral("Vendorname")));
}

void TestEdsImporter::commentOfTheFile_data()
{
    QTest::addColumn<QByteArray>("section");
    QTest::addColumn<QString>("comment");

    QTest::newRow("lines") << QByteArray("Lines=3\nLine1=a\nLine2=\nLine3=c, \"d\"; e\n")
                           << "a\n\nc, \"d\"; e";
    QTest::newRow("order_is_that_of_the_numbers")
        << QByteArray("Lines=11\nLine10=j\nLine9=i\n") << "i\nj";
    QTest::newRow("more_lines_than_told") << QByteArray("Lines=1\nLine1=a\nLine2=b\n") << "a";
    QTest::newRow("huge_count") << QByteArray("Lines=4000000000\nLine1=a\n") << "a";
}

void TestEdsImporter::commentOfTheFile()
{
    QFETCH(QByteArray, section);
    QVERIFY(import("[Comments]\n" + section + "[2000]\n"));
    store->setDescriptionSettingsLine(0);
    QTEST(setting("Comment"), "comment");
}

void TestEdsImporter::promisedPdos_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("receive");
    QTest::addColumn<QString>("receiveMappings");
    QTest::addColumn<QString>("transmit");

    QTest::newRow("none_promised") << QByteArray("[2000]\n") << ""
                                   << ""
                                   << "";
    QTest::newRow("none_held") << QByteArray("[2000]\n[DeviceInfo]\nNrOfRXPDO=2\nNrOfTXPDO=0x1\n")
                               << "0 1"
                               << "0 1"
                               << "0";
    QTest::newRow("gaps_are_filled_first")
        << QByteArray("[1401]\n[1403]\n[DeviceInfo]\nNrOfRxPDO=3\n") << "0 1 3"
        << "0 1 3"
        << "";
    QTest::newRow("enough_held_anywhere")
        << QByteArray("[1405]\n[15FF]\n[DeviceInfo]\nNrOfRXPDO=2\n") << "5 511"
        << "5 511"
        << "";
    QTest::newRow("mapping_that_is_held_counts")
        << QByteArray("[1402]\n[1600]\n[DeviceInfo]\nNrOfRXPDO=2\n") << "0 2"
        << "0 2"
        << "";
    QTest::newRow("mapping_without_parameter_object")
        << QByteArray("[1400]\n[1401]\n[1605]\n[1606]\n[DeviceInfo]\nNrOfRXPDO=2\n") << "0 1"
        << "5 6"
        << "";
    QTest::newRow("transmit") << QByteArray("[1801]\n[DeviceInfo]\nNrOfTXPDO=2\n") << ""
                              << ""
                              << "0 1";
}

void TestEdsImporter::promisedPdos()
{
    QFETCH(QByteArray, text);
    QVERIFY(import(text));
    QTEST(places(0x1400), "receive");
    QTEST(places(0x1600), "receiveMappings");
    QTEST(places(0x1800), "transmit");
    QTEST(places(0x1A00), "transmit");
}

void TestEdsImporter::defaultPdoObjects()
{
    QVERIFY(import("[2000]\n[DeviceInfo]\nNrOfRXPDO=999999\nNrOfTXPDO=1\n"));
    QCOMPARE(store->getIndices(0, 0x1400, 0x17FF).size(), 1024);
    QCOMPARE(object(0x1401).name, QStringLiteral("Receive PDO parameter 2"));
    QVERIFY(object(0x1401).objectCode == CANopen::ObjectCode::Record);
    QCOMPARE(object(0x1800).name, QStringLiteral("Transmit PDO parameter 1"));
    QCOMPARE(object(0x1A00).name, QStringLiteral("Mapping Parameter"));
    QCOMPARE(store->getSubIndices(0, 0x1401, 0), (QList<quint8>{0, 1, 2}));
    QCOMPARE(store->getSubIndices(0, 0x1800, 0), (QList<quint8>{0, 1, 2, 3, 5}));
    QCOMPARE(store->getSubIndices(0, 0x1A00, 0).size(), 9);

    const auto text = [this](quint16 index, quint8 number) {
        const SubData data = sub(index, number);
        return QStringList{data.name,         QString::number(data.dataType),
                           data.accessType,   data.defaultValue,
                           data.currentValue, data.lowLimit,
                           data.upLimit}
            .join(QLatin1Char('/'));
    };
    QCOMPARE(text(0x1401, 0), QStringLiteral("Number of Entries/5/ro/2/2/0/2"));
    QCOMPARE(text(0x1401, 1), QStringLiteral("COB-ID/7/rw/0x80000000//0/4294967295"));
    QCOMPARE(text(0x1401, 2), QStringLiteral("Transmission Type/5/rw/0xFF/0xFF/0/255"));
    QCOMPARE(text(0x1800, 0), QStringLiteral("Number of Entries/5/ro/5/5/0/5"));
    QCOMPARE(text(0x1800, 3), QStringLiteral("Inhibit Time/6/rw/0/0/0/65535"));
    QCOMPARE(text(0x1800, 5), QStringLiteral("Event Timer/6/rw/0/0/0/65535"));
    QCOMPARE(text(0x1A00, 0), QStringLiteral("Number of Entries/5/rw/8/8/0/8"));
    QCOMPARE(text(0x1A00, 8), QStringLiteral("Mappping Entry 8/7/rw/0x00000000//0/4294967295"));
}

void TestEdsImporter::fileWithoutObjectsAddsNone()
{
    QVERIFY(import("[DeviceInfo]\nVendorName=M\nNrOfRXPDO=2\n"));
    QVERIFY(store->getIndices(0, 0, 0xFFFF).isEmpty());
    QVERIFY(import(QByteArray("\x7F\xFF\0[\xFE=", 6)));
    QVERIFY(import(QByteArray()));
    QVERIFY(!store->blockUpdates());
}

void TestEdsImporter::secondLine()
{
    QVERIFY(store->addNode(1, {}));
    QVERIFY(writeFile("[DeviceInfo]\nVendorName=M\n[2000]\nParameterName=x\n"));
    EDSImporter importer;
    importer.setActiveLine(1);
    importer.setDatabase(store.get());
    QVERIFY(importer.setImportFileName(file));
    QVERIFY(importer.startImport());
    importer.wait();
    QCOMPARE(sub(0x2000, 0, 1).name, QStringLiteral("x"));
    QVERIFY(!store->existIndex(0, 0x2000));
    QCOMPARE(setting("VendorName"), QStringLiteral("M")); // the importer chose the line
    store->setDescriptionSettingsLine(0);
    QCOMPARE(setting("VendorName"), QString());
}

QTEST_GUILESS_MAIN(TestEdsImporter)
#include "tst_edsimporter.moc"
