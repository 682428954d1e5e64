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
    void init()
    {
        store = makeStore();
        Object object; // else they would be made by each import
        object.name = "of the project";
        for (const quint16 index : {0x1000, 0x1001, 0x1018})
            QVERIFY(store->addIndex(0, index, object));
    }

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

    void cases_data() { addCases(TEST_CASES "/edsimporter.txt"); }
    void cases()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        const bool isVariable = caseGroup() == "variables";
        const ProblemRecorder recorder;
        QVERIFY(import((isVariable ? "[2000]\nParameterName=x\n" : "") + project.toUtf8()));
        const QByteArray difference =
            mismatch(isVariable ? text(0x2000, 0) + '\n' : told() + notesOf(recorder), expected);
        QVERIFY2(difference.isEmpty(), difference);
        if (!isVariable)
            return;
        QCOMPARE(object(0x2000).name, sub(0x2000, 0).name);
        QCOMPARE(object(0x2000).dataType, sub(0x2000, 0).dataType);
        QVERIFY(object(0x2000).objectCode == CANopen::ObjectCode::Var);
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
            << ":2: warning: NrOfRXPDO promises objects from 0x1400 on that the file lacks, and 1 are made with "
                "default values: give them a use, or mend the number [eds-pdo]\n"
               ":2: warning: NrOfRXPDO promises objects from 0x1600 on that the file lacks, and 1 are made with "
               "default values: give them a use, or mend the number [eds-pdo]";
        QTest::newRow("as_many_pdos") << "[DeviceInfo]\nNrOfRXPDO=1" + object + pdo << "";
        QTest::newRow("numbers") << "[DeviceInfo]\nBaudRate_10=yes\nBaudRate_20=\nLSS_Supported=1 ; x" + object
            << ":2: warning: BaudRate_10 \"yes\" is no number, and is taken as it is [eds-value]";
        QTest::newRow("comment") << "[Comments]\nLines=1\nLine1=a\nLyne2=b" + object
            << ":4: warning: \"Lyne2=b\" is no line of the comment, and is passed over: use Line1, Line2 and so on "
                "[eds-line]";
        QTest::newRow("no_object")
            << QByteArray("[DeviceInfo]\nVendorName=a\n[0005]\nParameterName=a\nDataType=5\nAccessType=ro\n")
            << ": error: has no section of an object from 0x1000 to 0xBFFF, and the objects of the project stay as "
                "they are [nothing-imported]";
        // clang-format on
    }
    void problems()
    {
        QFETCH(QByteArray, text);
        const ProblemRecorder recorder;
        (void)import(text); // what comes of it is looked at elsewhere
        const QRegularExpression others(": (error|warning): ");
        QTEST(recorder.lines.filter(others).join('\n').remove(file), "expected");
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
        QVERIFY(import("[2000]\n[DeviceInfo]\nNrOfRXPDO=999999\nNrOfTXPDO=1\n"));
        QCOMPARE(store->getIndices(0, 0x1400, 0x17FF).size(), 1024);
    }

    void mandatoryObjects()
    {
        const auto valuesAfter = [this](const QByteArray &text, int fd = 0) {
            store = makeStore();
            store->setGeneralSettingsValue("canfd_supported", QString::number(fd));
            import(text);
            QStringList values;
            for (const quint16 index : store->getIndices(0, 0x1000, 0x1FFF)) {
                values << QString::number(index, 16);
                for (const quint8 number : store->getSubIndices(0, index, 0))
                    values << '.' + sub(index, number).defaultValue;
            }
            return values.join("");
        };
        QCOMPARE(valuesAfter("[2000]\n"), "1000.01001.01018.1.0");
        QCOMPARE(valuesAfter("[2000]\n", 1), "1001.01018.1.0"); // there 0x1000 is an array
        QCOMPARE(valuesAfter("[DeviceInfo]\nVendorNumber=5f\nProductNumber=7\n[1001]\n"),
                 "1000.01001.1018.1.0x5f");
        QCOMPARE(valuesAfter("[DeviceInfo]\nVendorNumber=5\n"), ""); // no object, nothing to mend
    }

    void granularity()
    {
        const auto granularityAfter = [this](const QString &before, const QByteArray &stated) {
            store->setDescriptionSettingsLine(0);
            store->setDescriptionSettingsValue("Granularity", before);
            import("[2000]\n[DeviceInfo]\nGranularity=" + stated + "\n");
            store->setDescriptionSettingsLine(0);
            return setting("Granularity");
        };
        QCOMPARE(granularityAfter("", "0x1"), "1");
        QCOMPARE(granularityAfter("0", "64"), "64");
        QCOMPARE(granularityAfter("8", "1"), "8");
        for (const char *stated : {"0", "65", "", "x"})
            QCOMPARE(granularityAfter("", stated), "");
        store->setMiscSettingsValue("description_form", "portable");
        QCOMPARE(granularityAfter("8", "0"), "0");
    }

    void fileWithoutObjects()
    {
        QVERIFY(import("[DeviceInfo]\nVendorName=M\n"));
        QCOMPARE(told(), "\n0 subindices\n");
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
        QVERIFY(import(
            "[DeviceInfo]\nVendorName=M\n[2000]\nParameterName=x\nDataType=9\nAccessType=rw\n", 1));
        QCOMPARE(subOf(*store, 1, 0x2000, 0).name, "x");
        QCOMPARE(subOf(*store, 1, 0x2000, 0).varName, "v1_81920");
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

    /// "index name/code/type/description" of each object, and below it of each subindex
    /// "  number text()/implementation/size/variable/description"; last the number of subindices.
    QString told() const
    {
        QStringList rows;
        for (const quint16 index : store->getIndices(0, 0, 0xFFFF)) {
            const Object data = object(index);
            if (data.name == "of the project")
                continue;
            rows << QString::number(index, 16) + ' ' +
                        joined(data.name, int(data.objectCode), data.dataType, data.description);
            for (const quint8 number : store->getSubIndices(0, index, 0)) {
                const Sub entry = sub(index, number);
                rows << QString("  %1 ").arg(number) + joined(text(index, number),
                                                              entry.implementation, entry.size,
                                                              entry.varName, entry.description);
            }
        }
        const int all = store->getSubsByProperty(0, "1", "1").size(); // some may have no object
        return rows.join('\n') + QString("\n%1 subindices\n").arg(all);
    }

    QString notesOf(const ProblemRecorder &recorder) const
    {
        const QString notes = recorder.lines.filter(": note: ").join('\n').remove(file);
        return notes.isEmpty() ? notes : notes + '\n';
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
