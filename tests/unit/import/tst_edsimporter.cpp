// The import of device descriptions into a project, and what all importers share.
#include "import/edsimporter.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/problemrecorder.h"
#include "tests/fixtures/storefixture.h"

class TestEdsImporter : public StoreTest
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QLoggingCategory::setFilterRules("tessarine.*.debug=false");
        file = fixture.path("device.eds");
    }
    void init() { store = makeStore(); }

    void typesFromBits()
    {
        QStringList types;
        for (const quint16 bits : {0, 2, 8, 9, 16, 24, 32, 64, 65})
            types << joined(bits, BaseDataImporter::getDataTypeFromBitLength(bits, false),
                            BaseDataImporter::getDataTypeFromBitLength(bits, true));
        QCOMPARE(types.join(' '), "0/121/121 2/100/100 8/5/2 9/10/10 16/6/3 24/22/22 32/7/4 "
                                  "64/27/27 65/10/10");
    }

    void proposedNames()
    {
        EDSImporter importer;
        const QString text = "Motor Speed (rpm)";
        QCOMPARE(importer.proposeVarname(0x2000, text), "motorspeedrpm");
        QCOMPARE(importer.proposeVarname(0x2A01, text), "motorspeedrpm_2a01");
        QCOMPARE(importer.proposeVarname(0x2A01, text), "motorspeedrpm_2a01");
        QCOMPARE(importer.proposeVarname(0x2002, "-#().,/ "), "");
        QCOMPARE(importer.proposeVarname(0x2003, "a_B:1"), "a_b:1");
    }

    void runOfAJob()
    {
        QVERIFY(writeFile(file, "[2000]\nParameterName=x\n"));
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

    void filesThatCannotBeRead()
    {
        QVERIFY(writeFile(file, "[2000]\nParameterName=x\n"));
        EDSImporter importer;
        importer.setDatabase(store.get());
        QVERIFY(!importer.setImportFileName(fixture.path("none.eds")));
        QVERIFY(!importer.setImportFileName(fixture.path()));
        QVERIFY(importer.setImportFileName(file));
        QVERIFY(QFile::remove(file));
        QVERIFY(importer.startImport());
        importer.wait();
        QCOMPARE(importer.getLastError(), "Could not open " + file);
        QVERIFY(!store->blockUpdates());
        QVERIFY(store->addIndex(0, 0x2000, {})); // the store is open for others again
    }

    void variables_data() { addCases(TEST_CASES "/edsimporter.txt"); }
    void variables()
    {
        QFETCH(QString, project);
        QFETCH(QString, expected);
        QVERIFY(import("[2000]\nParameterName=x\n" + project.toUtf8()));
        QCOMPARE(text(0x2000, 0) + '\n', expected);
        QCOMPARE(object(0x2000).name, sub(0x2000, 0).name);
        QCOMPARE(object(0x2000).dataType, sub(0x2000, 0).dataType);
        QVERIFY(object(0x2000).objectCode == CANopen::ObjectCode::Var);
    }

    void storage()
    {
        const auto storageOf = [this](const QByteArray &entries) {
            const bool isDone = import("[2000]\n" + entries + "\n");
            const Sub data = isDone ? sub(0x2000, 0) : Sub(); // implementation, size, variable
            return joined(data.implementation, data.size, data.varName);
        };
        QCOMPARE(storageOf("DataType=7\nAccessType=ro"), "0/0/");
        QCOMPARE(storageOf("DataType=9\nAccessType=const\nDefaultValue=abc"), "1/3/");
        QCOMPARE(storageOf("DataType=10\nAccessType=ro"), "1/1/");
        QCOMPARE(storageOf("DataType=124\nAccessType=ro\nDefaultValue=\xC2\xB5m"), "1/3/");
        QCOMPARE(storageOf("DataType=9\nAccessType=rw\nDefaultValue=ab"), "2/2/v_81920");
        QCOMPARE(storageOf("DataType=15\nAccessType=ro"), "2/1/v_81920");
        QCOMPARE(storageOf("ObjectType=2\nAccessType=const"), "2/1/v_81920");
    }

    void members()
    {
        QVERIFY(import("[1000]\nObjectType=9\n[1000sub0B]\nDataType=15\n"
                       "[A001]\nObjectType=9\n[A001sub1]\nDataType=15\n"
                       "[2000]\nObjectType=8\n[2000sub0]\nDataType=5\n[2000sub1]\nDataType=7\n"
                       "[2000sub2]\nDataType=6\n"));
        QCOMPARE(sub(0x1000, 11).varName, "v_409611");
        QCOMPARE(sub(0xA001, 1).varName, "v_40961_1"); // else that of the other member
        QCOMPARE(object(0x1000).dataType, quint16(5));
        QCOMPARE(object(0x2000).dataType, quint16(7)); // an array has the type of its elements
    }

    void compactMembers()
    {
        QVERIFY(import("[2000]\nParameterName=Gain\nObjectType=8\nDataType=3\nAccessType=rwr\n"
                       "PDOMapping=1\nDefaultValue=3\nHighLimit=9\nObjFlags=2\nCompactSubObj=3\n"
                       ";;the gains\n"
                       "[2000Name]\n2=Second\n[2000Value]\n3=5\n[2000Denotation]\n1=One\n"
                       "[2001]\nObjectType=9\nDataType=9\nAccessType=rw\nCompactSubObj=254\n"
                       "[2001sub2]\nParameterName=Own\nDataType=9\nAccessType=rw\n"));
        QCOMPARE(object(0x2000).dataType, quint16(3));
        QCOMPARE(store->getSubIndices(0, 0x2000, 0).size(), 4);
        QCOMPARE(text(0x2000, 0), "Highest subindex supported//5/ro/3//0/255/0E");
        QCOMPARE(text(0x2000, 1), "Gain 1/One/3/rwr/3//-32768/9/4ELR");
        QCOMPARE(sub(0x2000, 1).description, "");
        QCOMPARE(text(0x2000, 2), "Second//3/rwr/3//-32768/9/4ELR");
        QCOMPARE(text(0x2000, 3), "Gain 3//3/rwr/3/5/-32768/9/4ELRD");

        QCOMPARE(store->getSubIndices(0, 0x2001, 0).size(), 255);
        QCOMPARE(sub(0x2001, 254).varName, "v_8193254");
        QCOMPARE(sub(0x2001, 2).name, "Own"); // its own section comes later
        QCOMPARE(sub(0x2001, 2).varName, "v_81932");
    }

    void indexRange()
    {
        QVERIFY(import("[0FFF]\n;;x\n[1000]\n[BFFF]\n[C000]\nObjectType=8\nCompactSubObj=2\n"
                       "[D000sub1]\n;;y\n"));
        QCOMPARE(store->getIndices(0, 0, 0xFFFF), (QList<quint16>{0x1000, 0xBFFF}));
        QVERIFY(!store->existSubIndex(0, 0xD000, 1));
        QVERIFY(!store->existSubIndex(0, 0xC000, 1));
    }

    void comments()
    {
        QStringList found;
        QVERIFY(import(";;above\n[2000]\nParameterName=x\n\n"
                       "[2001]\nObjectType=9\n;;of the record\n[2001sub0]\nDataType=5\n\n"
                       ";;of one\n;; two lines\n[2001sub1]\nDataType=5\n"
                       "[2002]\nObjectType=9\n;;object\n[2002sub0]\nDataType=5\n;;count\n"));
        for (const quint16 index : {0x2000, 0x2001, 0x2002})
            found << object(index).description << sub(index, 0).description;
        QCOMPARE(found.join('/'), "above/above/of the record/of the record/object/count");
        QCOMPARE(sub(0x2001, 1).description, "of one\n two lines");
    }

    void deviceInformation()
    {
        QVERIFY(import("[FILEINFO]\nfileversion=0x03\nCreatedBy=A; B, C\nEDSVersion=4.0\n"
                       "[DummyUsage]\nDummy0002=1\nDummy0004=1\n"
                       "[DeviceInfo]\nVendorname=\"M\" & Co\nBaudrate_500=1 ; fast\n"
                       "LSS_Supported=1\nNrOfRxPDO=0\nOrderCode=\n[2000]\n"));
        store->setDescriptionSettingsLine(0);
        QStringList found;
        for (const QString key :
             {"FileVersion", "CreatedBy", "Dummy0002", "Dummy0004", "VendorName", "BaudRate_500",
              "LSS_Supported", "NrOfRXPDO", "OrderCode"})
            found << setting(key);
        QCOMPARE(found.join('|'), "0x03|A; B, C|1|0|\"M\" & Co|1|1|0|");
        for (const char *key : {"Dummy004", "EDSVersion", "Vendorname"})
            QVERIFY2(!store->existDescriptionSettingsValue(key), key);
    }

    void commentOfTheFile()
    {
        const auto commentOf = [this](const QByteArray &section) {
            import("[Comments]\n" + section + "[2000]\n");
            store->setDescriptionSettingsLine(0);
            return setting("Comment");
        };
        QCOMPARE(commentOf("Lines=3\nLine1=a\nLine2=\nLine3=c, \"d\"; e\n"), "a\n\nc, \"d\"; e");
        QCOMPARE(commentOf("Lines=11\nLine10=j\nLine9=i\n"), "i\nj");
        QCOMPARE(commentOf("Lines=1\nLine1=a\nLine2=b\n"), "a"); // more than told
        QCOMPARE(commentOf("Lines=4000000000\nLine1=b\n"), "b");
    }

    void problems_data()
    {
        columns<QByteArray, QString>("text", "expected");
        const QByteArray object = "\n[2000]\nParameterName=a\nDataType=5\nAccessType=ro\n";
        const QByteArray pdo = "[1400]\nParameterName=a\nObjectType=9\n[1600]\nParameterName=a\n"
                               "ObjectType=9\n";
        // clang-format off
        QTest::newRow("pdos") << "[DeviceInfo]\nNrOfRXPDO=2" + object + pdo
            << ":2: warning: NrOfRXPDO promises objects from 0x1400 on that the file lacks, and 1 are made with default values: give them a use, or mend the number [eds-pdo]\n"
               ":2: warning: NrOfRXPDO promises objects from 0x1600 on that the file lacks, and 1 are made with default values: give them a use, or mend the number [eds-pdo]";
        QTest::newRow("as_many_pdos") << "[DeviceInfo]\nNrOfRXPDO=1" + object + pdo << "";
        QTest::newRow("numbers") << "[DeviceInfo]\nBaudRate_10=yes\nBaudRate_20=\nLSS_Supported=1 ; x" + object
            << ":2: warning: BaudRate_10 \"yes\" is no number, and is taken as it is [eds-value]";
        QTest::newRow("comment") << "[Comments]\nLines=1\nLine1=a\nLyne2=b" + object
            << ":4: warning: \"Lyne2=b\" is no line of the comment, and is passed over: use Line1, Line2 and so on [eds-line]";
        QTest::newRow("no_object") << QByteArray("[DeviceInfo]\nVendorName=a\n[0005]\nParameterName=a\nDataType=5\nAccessType=ro\n")
            << ": error: has no section of an object from 0x1000 to 0xBFFF, and the objects of the project stay as they are [nothing-imported]";
        // clang-format on
    }
    void problems()
    {
        QFETCH(QByteArray, text);
        const ProblemRecorder recorder;
        (void)import(text); // what comes of it is looked at elsewhere
        QTEST(recorder.lines.join('\n').remove(file), "expected");
    }

    void promisedPdos()
    {
        const auto placesOf = [this](const QByteArray &text) { // receive, mappings, transmit
            store = makeStore();
            import("[2000]\n" + text + "\n");
            return places(0x1400) + '|' + places(0x1600) + '|' + places(0x1800) +
                   (places(0x1A00) == places(0x1800) ? "" : " without mappings");
        };
        QCOMPARE(placesOf(""), "||");
        QCOMPARE(placesOf("[DeviceInfo]\nNrOfRXPDO=2\nNrOfTXPDO=0x1\n"), "0 1|0 1|0");
        // Gaps are filled first, but any place counts, and so does a mapping that is held.
        QCOMPARE(placesOf("[1401]\n[1403]\n[DeviceInfo]\nNrOfRxPDO=3\n"), "0 1 3|0 1 3|");
        QCOMPARE(placesOf("[1405]\n[15FF]\n[DeviceInfo]\nNrOfRXPDO=2"), "5 511|5 511|");
        QCOMPARE(placesOf("[1402]\n[1600]\n[DeviceInfo]\nNrOfRXPDO=2"), "0 2|0 2|");
        QCOMPARE(placesOf("[1400]\n[1401]\n[1605]\n[1606]\n[DeviceInfo]\nNrOfRXPDO=2"), "0 1|5 6|");
        QCOMPARE(placesOf("[1801]\n[DeviceInfo]\nNrOfTXPDO=2\n"), "||0 1");
    }

    void defaultPdoObjects()
    {
        QVERIFY(import("[2000]\n[DeviceInfo]\nNrOfRXPDO=999999\nNrOfTXPDO=1\n"));
        QCOMPARE(store->getIndices(0, 0x1400, 0x17FF).size(), 1024);
        QCOMPARE(object(0x1401).name, "Receive PDO parameter 2");
        QVERIFY(object(0x1401).objectCode == CANopen::ObjectCode::Record);
        QCOMPARE(object(0x1800).name, "Transmit PDO parameter 1");
        QCOMPARE(object(0x1A00).name, "Mapping Parameter");
        QCOMPARE(store->getSubIndices(0, 0x1401, 0), (QList<quint8>{0, 1, 2}));
        QCOMPARE(store->getSubIndices(0, 0x1800, 0), (QList<quint8>{0, 1, 2, 3, 5}));
        QCOMPARE(store->getSubIndices(0, 0x1A00, 0).size(), 9);
        QCOMPARE(text(0x1401, 0), "Number of Entries//5/ro/2/2/0/2/0E");
        QCOMPARE(text(0x1401, 1), "COB-ID//7/rw/0x80000000//0/4294967295/0E");
        QCOMPARE(text(0x1401, 2), "Transmission Type//5/rw/0xFF/0xFF/0/255/0E");
        QCOMPARE(text(0x1800, 0), "Number of Entries//5/ro/5/5/0/5/0E");
        QCOMPARE(text(0x1800, 3), "Inhibit Time//6/rw/0/0/0/65535/0E");
        QCOMPARE(text(0x1800, 5), "Event Timer//6/rw/0/0/0/65535/0E");
        QCOMPARE(text(0x1A00, 0), "Number of Entries//5/rw/8/8/0/8/0E");
        QCOMPARE(text(0x1A00, 8), "Mappping Entry 8//7/rw/0x00000000//0/4294967295/0E");
    }

    void fileWithoutObjects()
    {
        QVERIFY(import("[DeviceInfo]\nVendorName=M\n"));
        QVERIFY(store->getIndices(0, 0, 0xFFFF).isEmpty());
        QVERIFY(import(QByteArray("\x7F\xFF\0[\xFE=", 6)));
        QVERIFY(import(QByteArray()));
        QVERIFY(!store->blockUpdates());
    }

    /// Their names could take hundreds of times the memory of the file.
    void longNamesOfCompactMembers()
    {
        ProblemRecorder told;
        const QString name(100000, 'x');
        for (const QByteArray index : {"2000", "2001"})
            QVERIFY(import('[' + index + "]\nParameterName=" + name.toUtf8() +
                           "\nObjectType=8\nDataType=5\nAccessType=ro\nCompactSubObj=254\n"));
        QCOMPARE(sub(0x2001, 1).name, name + " 1");
        QCOMPARE(sub(0x2001, 254).name, name.left(237) + " 254");
        const QString text = file +
                             ": warning: the names of members of compact objects take too much "
                             "memory; from here on they are cut to 241 characters [names-cut]";
        QCOMPARE(told.lines, (QStringList{text, text}));
    }

    void secondLine()
    {
        QVERIFY(store->addNode(1, {}));
        QVERIFY(import("[DeviceInfo]\nVendorName=M\n[2000]\nParameterName=x\n", 1));
        QCOMPARE(subOf(*store, 1, 0x2000, 0).name, "x");
        QVERIFY(!store->existIndex(0, 0x2000));
        QCOMPARE(setting("VendorName"), "M"); // the importer chose the line
        store->setDescriptionSettingsLine(0);
        QCOMPARE(setting("VendorName"), "");
    }

private:
    /// Imports \a content and waits.
    bool import(const QByteArray &content, quint8 line = 0)
    {
        EDSImporter importer;
        importer.setActiveLine(line);
        importer.setDatabase(store.get());
        const bool isReady = writeFile(file, content) && importer.setImportFileName(file);
        const bool isStarted = importer.startImport();
        importer.wait();
        const bool isOpen = !store->blockUpdates();
        store->setBlockUpdates(false); // else the test would wait for it without end
        return isReady && isStarted && isOpen && importer.getLastError().isEmpty();
    }
    Sub sub(quint16 index, quint8 number) const { return subOf(*store, 0, index, number); }
    Object object(quint16 index) const { return objectOf(*store, 0, index); }
    QString setting(const QString &key) const { return store->getDescriptionSettingsValue(key); }

    /// "name/denotation/type/access/default/current/low/high/mapping", and a letter for each mark:
    /// default value in the EDS, limits in the EDS, refused writes and reads, part of the DCF.
    QString text(quint16 index, quint8 number) const
    {
        const Sub data = sub(index, number);
        const QString flags = QString(data.writeDefaultToEds == 1 ? "E" : "") +
                              (data.limitInEds ? "L" : "") + (data.refuseWrite ? "W" : "") +
                              (data.refuseRead ? "R" : "") + (data.dcfComponent ? "D" : "");
        return joined(data.name, data.denotation, data.dataType, data.accessType, data.defaultValue,
                      data.currentValue, data.lowLimit, data.upLimit, data.pdoMapping.toUInt()) +
               flags;
    }

    /// "0 2 5": the objects from \a first on, counted from there.
    QString places(quint16 first) const
    {
        QStringList list;
        for (const quint16 index : store->getIndices(0, first, first + 0x1FF))
            list << QString::number(index - first);
        return list.join(' ');
    }

    QString file;
};

QTEST_GUILESS_MAIN(TestEdsImporter)
#include "tst_edsimporter.moc"
