// DBC files of J1939 lines, and the strict form that other tools read.
#include "formats/dbcreader.h"
#include "formats/kvadblib.h"
#include "generators/addressclaim.h"
#include "generators/descriptions/dbcgenerator.h"
#include "store/linetype.h"
#include "support/cohelper.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/problemrecorder.h"
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/randomproject.h"
#include "tests/fixtures/storefixture.h"
#include "tests/unit/generators/dbcreader.h"

namespace
{

using StrictDbc::Form;

/// All that is told of a file, a row for each node, message and signal, by the strict reader.
QString told(const StrictDbc::DbcReader &file)
{
    const auto values = [](QMap<QString, QString> attributes) {
        QString words;
        for (auto it = attributes.begin(); it != attributes.end(); ++it)
            words += ' ' + it.key() + '=' + it.value();
        return words + '\n';
    };
    QString text = "bus" + values(file.attributes);
    for (auto node = file.nodes.begin(); node != file.nodes.end(); ++node)
        text += "node " + node.key() + values(*node);
    for (auto message = file.messages.begin(); message != file.messages.end(); ++message) {
        text += QString::number(message.key(), 16) + ' ' + message->name + ' ' +
                QString::number(message->size) + ' ' + message->sender +
                values(message->attributes);
        for (const StrictDbc::DbcSignal &one : qAsConst(message->signalList)) {
            text += QString("  %1 %2|%3%4%5 ")
                        .arg(one.name)
                        .arg(one.start)
                        .arg(one.bits)
                        .arg(one.isSigned ? "-" : "+")
                        .arg(one.valueType) +
                    one.low + ".." + one.high + ' ' + one.receiver;
            for (auto value = one.values.begin(); value != one.values.end(); ++value)
                text += QString(" %1:%2").arg(value.key()).arg(*value);
            text += values(one.attributes);
        }
    }
    return text;
}

/// What both readers tell of a file, in one form.
QStringList common(const StrictDbc::DbcReader &file)
{
    QStringList rows;
    for (auto it = file.messages.begin(); it != file.messages.end(); ++it) {
        rows << joined(it.key(), it->attributes.value("SystemMessageLongSymbol", it->name),
                       it->size, it->sender, it->attributes.value("CM_"),
                       it->attributes.value("GenMsgCycleTime", "0"));
        for (const StrictDbc::DbcSignal &one : qAsConst(it->signalList))
            rows << joined(one.attributes.value("SystemSignalLongSymbol", one.name), one.start,
                           one.bits, one.isSigned, one.low.toDouble(), one.high.toDouble(),
                           one.receiver, one.valueType, one.attributes.value("CM_"),
                           one.attributes.value("GenSigStartValue", "0"), one.values.size());
    }
    return rows;
}

QStringList common(const DbcFile &file)
{
    const auto nobody = [](const QString &node) { return node.isEmpty() ? "Vector__XXX" : node; };
    QMap<quint32, QStringList> rows;
    for (const DbcMessage &message : file.messages) {
        QStringList &list = rows[message.reference];
        list << joined(message.reference, message.longName, message.size, nobody(message.sender),
                       message.comment, file.attribute(message, "GenMsgCycleTime"));
        for (const DbcSignal &one : message.signalList)
            list << joined(one.longName, one.startBit, one.bits, one.isSigned, one.minimum,
                           one.maximum, nobody(one.receivers.value(0)), int(one.valueType),
                           one.comment, file.attribute(one, "GenSigStartValue"), one.values.size());
    }
    QStringList all;
    for (const QStringList &list : qAsConst(rows))
        all += list;
    return all;
}

/// The objects of the standards in a real project.
std::map<quint16, ObjectRecord> standardObjects()
{
    ObjectDataBase store;
    store.openDataBase(TESSARINE_EXAMPLES "/pump/pump.yaml");
    ProjectRecord project;
    (void)store.readRecords(&project); // a test of the objects fails without
    std::map<quint16, ObjectRecord> objects = project.lines[0].objects;
    objects.erase(objects.lower_bound(0x2000), objects.end());
    return objects;
}

} // namespace

class tst_DbcGenerator : public StoreTest
{
    Q_OBJECT

private slots:
    void init()
    {
        store = makeStore();
        buildProject(*store, "identity 1,7");
    }

    void declaresTheNameOfTheDevice()
    {
        Dbc::declareIdentify(*store, 0);
        Dbc::declareIdentify(*store, 0); // a second run changes nothing
        ObjectDataBase::PGN group;
        QVERIFY(store->getPGNData(0, 0xEE00, 0x55, group));
        QCOMPARE(joined(group.name, group.priority, group.cycleTimeMs, group.inhibitTimeMs),
                 "Address Claiming/6/0/250");
        QStringList spns;
        for (const auto &spn : store->getSPNRecords(0, 0xEE00, 0x55))
            spns << joined(spn.number, spn.dataType, spn.name, spn.implementation,
                           spn.defaultValue);
        const QStringList expected = {"2837/119/Identity Number/0/1",
                                      "2838/108/Manufacturer Code/0/1",
                                      "2840/101/ECU Instance/0/1",
                                      "2839/103/Function Instance/0/1",
                                      "2841/1/reserved/0/0",
                                      "2842/105/Vehicle System/0/1",
                                      "2843/102/Vehicle System Instance/0/1",
                                      "2846/101/Industry Group/0/1",
                                      "2844/1/Addr Claiming Supported/0/1"};
        QCOMPARE(spns, expected);
    }

    void addresses_data()
    {
        columns<QString, int, int>("setting", "line", "address");
        QTest::newRow("of_the_line") << "0x80, 129 " << 1 << 129;
        QTest::newRow("first_of_a_short_list") << " 0x80 ,129" << 2 << 0x80;
        QTest::newRow("none") << "" << 0 << 0xFE;
        QTest::newRow("eight_bits") << "0x181" << 0 << 0x81;
    }
    void addresses()
    {
        const auto [setting, line] = fetchRow<QString, int>();
        store->setJ1939SettingsValue("startaddress", setting);
        QTEST(int(AddressClaim::addressOf(*store, quint8(line))), "address");
    }

    void writesGroups()
    {
        buildProject(*store, R"(
            line 0 2; j1939:startaddress=0x80
            rx 0xEF00 100 0 6 name=Lamp%20state-1 desc=say%20"on"%20\%20off
            spn 0 U8 2 name=level var=v.x; spn 1 I8 2 name=dummy1
            spn 2 121 2 name=text bits=5120; spn 3 OS 2 name=level bits=264
            tx 0xFF12 0 0 6 name=9*)");
        const QString text = generate();
        const quint32 received = 0x80000000 | ((6 * 0x40000 + 0xEF00) * 0x100 + 0xFE + 0x8000);
        const quint32 sent = 0x80000000 | ((6 * 0x40000 + 0xFF12) * 0x100 + 0x80);
        const QString rx = QString::number(received);
        QVERIFY2(text.contains(
                     "\nBU_:\n\nBO_ " + rx +
                     " Lamp_state_1: 8 Vector__XXX\n"
                     " SG_ level : 0|8@1+ (1,0) [0|255] \"\" Vector__XXX\n"
                     " SG_ text : 16|8@1+ (1,0) [0|255] \"\" Vector__XXX\n"
                     " SG_ level1 : 24|264@1+ (1,0) [0|18446744073709551615] \"\" Vector__XXX\n"
                     "\nBO_ "),
                 qPrintable(text));
        const StrictDbc::DbcReader file(readFile(fixture.path("lamp.dbc")));
        QVERIFY2(file.fault.isEmpty(), qPrintable(file.fault));
        QCOMPARE(file.messages[sent].name, "_9*");
        QCOMPARE(file.messages[sent].attributes["GenMsgSendType"], "8");
        const StrictDbc::DbcMessage &lamp = file.messages[received];
        const QMap<QString, QString> ofLamp = {{"CM_", "say \"on\" \\ off"},
                                               {"GenMsgCycleTime", "100"},
                                               {"GenMsgSendType", "0"},
                                               {"VFrameFormat", "3"}};
        QCOMPARE(lamp.attributes, ofLamp);
        const QMap<QString, QString> ofText = {
            {"korvel_bitsize", "5120"}, {"SigType", "8"}, {"SPN", "2"}};
        QCOMPARE(lamp.signalList.value(1).attributes, ofText);
        QVERIFY(text.contains("\nBA_DEF_DEF_ \"korvel_bitsize\" 64;\n"));
        QVERIFY(!text.contains("dummy") && !text.contains("korvel_variable_name"));

        QSettings settings("Korvel", "CANopen Tessarine");
        settings.setValue("General/implinfo", 1); // tells the implementation
        const QString told = generate();
        settings.clear();
        for (const QString &line : {"korvel_implementation_type\" SG_ " + rx + " level 1;",
                                    "korvel_variable_name\" SG_ " + rx + " level \"v.x\";"})
            QVERIFY2(told.contains("\nBA_ \"" + line + '\n'), qPrintable(line + '\n' + told));
    }

    void portable_data() { addCases(TEST_CASES "/dbcgenerator.txt"); }
    void portable()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        buildProject(*store, "misc:description_form=portable");
        buildProject(*store, project);
        const ProblemRecorder recorder;
        const StrictDbc::DbcReader file(portableFile(0, caseGroup() == "canopen"), Form::Portable);
        QVERIFY2(file.fault.isEmpty(), qPrintable(file.fault));
        QString text = told(file) + recorder.lines.join('\n');
        text.replace(fixture.path(), "");
        const QByteArray fault = mismatch(text.trimmed() + '\n', expected.trimmed() + '\n');
        QVERIFY2(fault.isEmpty(), fault);
    }

    /// Strict readers take the files of any project, and ours tells the same of them.
    void portableOfRandomProjects()
    {
        constexpr int kProjects = 60;
        RandomProject projects(testSeed(), standardObjects());
        for (int i = 0; i < kProjects; ++i) {
            store = makeStore();
            QVERIFY(store->putRecords(projects.make()));
            buildProject(*store, "misc:description_form=portable; misc:generateML=false");
            const QList<quint8> lines = store->getNodes();
            for (const quint8 line : lines) {
                for (const bool isCanopen : {false, true})
                    checkPortable(portableFile(line, isCanopen), i);
            }
        }
    }

    /// What a reader of the file is told is what the project holds.
    void tellsTheExcavator()
    {
        QVERIFY(store->openDataBase(TESSARINE_EXAMPLES "/excavator/excavator.yaml"));
        store->setMiscSettingsValue("description_form", "classic");
        generate();
        const StrictDbc::DbcReader file(readFile(fixture.path("lamp.dbc")));
        QVERIFY2(file.fault.isEmpty(), qPrintable(file.fault));
        QCOMPARE(file.attributes.value("ProtocolType"), "J1939");
        for (const quint8 direction : {0x77, 0x55}) {
            for (const quint32 pgn : store->getPGNs(0, direction, false))
                checkGroup(file, pgn, direction);
        }
        QCOMPARE(file.messages.size(), store->getPGNs(0, 0, false).size());
    }

    void isAFileForAllUsers()
    {
        store->setMiscSettingsValue("generateML", "true");
        generate();
        QVERIFY(writeFile(fixture.path("plain"), "x"));
        QCOMPARE(QFile::permissions(fixture.path("lamp_0.dbc")),
                 QFile::permissions(fixture.path("plain")));
    }

    void reportsWhatCannotBeWritten()
    {
        QFile::remove(fixture.path("lamp.dbc"));
        QVERIFY(QDir(fixture.path()).mkpath("lamp.dbc/in"));
        DBCGenerator generator;
        (void)generateWith(generator, "lamp", "lamp.dbc"); // is a folder
        QVERIFY(generator.getLastErrorString().startsWith("Could not copy output file. "));
        QVERIFY(QDir(fixture.path("lamp.dbc")).removeRecursively());
    }

    void shortensNames()
    {
        KvaDbHnd database = nullptr;
        QCOMPARE(kvaDbOpen(&database), kvaDbOK);
        QCOMPARE(kvaDbWriteFile(database, fixture.path("x.dbc")), kvaDbErr_NoDatabase);
        QCOMPARE(kvaDbCreate(database, "x", nullptr), kvaDbOK);
        const QString stem(31, 'n');
        for (const QString &name : {stem + "ab", stem + "ac", stem + "ac", QString("m"),
                                    QString("m"), QString("FILTER"), "1" + stem}) {
            KvaDbMessageHnd message = nullptr;
            QCOMPARE(kvaDbAddMsg(database, &message), kvaDbOK);
            QCOMPARE(kvaDbSetMsgName(message, name), kvaDbOK);
            QCOMPARE(kvaDbSetMsgComment(message, QString::fromUtf8("ä€☃")), kvaDbOK);
        }
        QCOMPARE(kvaDbWriteFile(database, fixture.path("x.dbc")), kvaDbOK);
        QCOMPARE(kvaDbClose(database), kvaDbOK);
        const QByteArray text = readFile(fixture.path("x.dbc"));
        const QByteArray bytes = stem.toLatin1();
        for (const QByteArray &part :
             {"BO_ 0 " + bytes + "a: 0", "BO_ 0 " + bytes + "1: 0", QByteArray("BO_ 0 m: 0"),
              QByteArray("BO_ 0 m1: 0"), QByteArray("BO_ 0 _FILTER: 0"),
              QByteArray("\"\xE4\x80?\";"),
              QByteArray("\nBA_DEF_ BO_ \"SystemMessageLongSymbol\" STRING;\n"),
              "\nBA_ \"SystemMessageLongSymbol\" BO_ 0 \"" + bytes + "ac\";\n",
              "\nBA_ \"SystemMessageLongSymbol\" BO_ 0 \"" + bytes + "ac1\";\n",
              "\nBA_ \"SystemMessageLongSymbol\" BO_ 0 \"_1" + bytes + "\";\n"})
            QVERIFY2(text.contains(part), part + "\n" + text);
    }

private:
    /// Of a device with the address 39.
    void checkGroup(const StrictDbc::DbcReader &file, quint32 pgn, quint8 direction)
    {
        ObjectDataBase::PGN group;
        QVERIFY(store->getPGNData(0, pgn, direction, group));
        const quint32 sender = direction == 0x77 ? 0x27FE : 0x27;
        const StrictDbc::DbcMessage message =
            file.messages.value(0x80000000 + (group.priority << 26) + (pgn << 8) + sender);
        QCOMPARE(message.name, Dbc::symbolName(group.name));
        QCOMPARE(message.attributes.value("CM_"), group.description);
        QCOMPARE(message.attributes.value("GenMsgCycleTime").toInt(), int(group.cycleTimeMs));
        const QRegularExpression count("\\d$"); // tells signals of one name apart
        QStringList told;
        for (const StrictDbc::DbcSignal &one : message.signalList)
            told << joined(
                one.attributes.value("SPN"), one.start, one.bits,
                QString(one.attributes.value("SystemSignalLongSymbol", one.name)).remove(count));
        QStringList expected;
        int start = 0;
        for (const auto &spn : store->getSPNRecords(0, pgn, direction)) {
            const bool isDelimited = spn.dataType == 121;
            const auto type = static_cast<CAN::CANopenDataType>(spn.dataType);
            const int bits = isDelimited ? 8 : int(COHelper::getDataLengthBits(type));
            if (bits != 0)
                expected << joined(spn.number, start, bits,
                                   Dbc::symbolName(spn.name).remove(count));
            start += bits;
        }
        QCOMPARE(told, expected);
    }

    QByteArray portableFile(quint8 line, bool isCanopen)
    {
        const auto generator = isCanopen
                                   ? std::unique_ptr<AbstractGenerator>(new CanopenDbcGenerator)
                                   : std::make_unique<DBCGenerator>();
        const QString file = isCanopen ? QString("lamp_%1_canopen.dbc").arg(line) : "lamp.dbc";
        QFile::remove(fixture.path(file));
        // A file that is not there has no head.
        (void)runJob(*generator, *store, fixture.path(), "lamp", line);
        return readFile(fixture.path(file));
    }

    static void checkPortable(const QByteArray &bytes, int project)
    {
        const StrictDbc::DbcReader strict(bytes, Form::Portable);
        QVERIFY2(strict.fault.isEmpty(),
                 qPrintable(QString("project %1: %2").arg(project).arg(strict.fault.left(500))));
        const ProblemRecorder recorder;
        DbcReader reader;
        QVERIFY(reader.parse(bytes, "lamp.dbc"));
        reader.tellProblems();
        QCOMPARE(recorder.lines, QStringList());
        QCOMPARE(common(reader.file()), common(strict));
    }

    QString generate()
    {
        DBCGenerator generator;
        return generateWith(generator, "lamp", "lamp.dbc");
    }
};

QTEST_GUILESS_MAIN(tst_DbcGenerator)
#include "tst_dbcgenerator.moc"
