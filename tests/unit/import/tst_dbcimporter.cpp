// DBC files as lines of J1939 and raw CAN: what becomes of messages and signals, what is told of
// it, and that the DBC file made of the line is the one that was imported.
#include "generators/descriptions/dbcgenerator.h"
#include "import/dbcimporter.h"
#include "support/cohelper.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/problemrecorder.h"
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/storefixture.h"

#include <random>

using Type = CAN::CANopenDataType;

class tst_DbcImporter : public StoreTest
{
    Q_OBJECT

private slots:
    void init()
    {
        store = makeStore();
        file = fixture.path("network.dbc");
    }

    void cases_data() { addCases(TEST_CASES "/dbcimporter.txt"); }
    void cases()
    {
        const auto [text, expected] = fetchRow<QString, QString>();
        const bool isNew = caseGroup() == "new";
        const bool isTold = isNew || caseGroup() == "told";
        const QString type = caseGroup() == "raw" ? "4" : isNew ? "" : "2";
        store->setGeneralSettingsValue("line0type", type);
        const ProblemRecorder problems;
        const QString error = import(text);
        QString found = isTold ? problems.lines.join('\n').remove(file) + '\n'
                               : shown() + (error.isEmpty() ? "" : error + '\n');
        QVERIFY2(found == expected, qPrintable(found));
        (void)import(text); // gives the same once more
        if (!isTold)
            QCOMPARE(shown() + (error.isEmpty() ? "" : error + '\n'), found);
    }

    void typesOfLines_data()
    {
        columns<QString, int, int>("text", "line", "type");
        const QString standard = "BO_ 1 A: 8 X\n";
        const QString extended = "BO_ 2147483650 B: 8 X\n";
        const QString attribute =
            "BA_DEF_ \"ProtocolType\" STRING; BA_ \"ProtocolType\" \"J1939\";\n";
        QTest::newRow("new") << extended << 0 << 4;
        QTest::newRow("new_j1939") << extended + attribute << 0 << 2;
        QTest::newRow("raw") << extended + attribute << 4 << 2;
        const QString spn = "BA_DEF_ SG_ \"SPN\" INT 0 524287;\n";
        QTest::newRow("new_with_numbers") << extended + spn << 0 << 2;
        QTest::newRow("new_with_names")
            << extended + "BA_DEF_ BU_ \"NmJ1939AAC\" INT 0 1;" << 0 << 2;
        QTest::newRow("new_mixed_with_numbers") << standard + extended + spn << 0 << 4;
        QTest::newRow("new_of_other_protocol")
            << extended + spn + QString(attribute).replace("\"J1939", "\"CAN") << 0 << 4;
        QTest::newRow("raw_with_numbers") << extended + spn << 4 << 4;
        QTest::newRow("j1939") << standard + extended << 2 << 2;
        QTest::newRow("mixed") << extended << 5 << 2;
        QTest::newRow("j1939_without_use") << standard << 2 << 4;
    }
    void typesOfLines()
    {
        const auto [text, line] = fetchRow<QString, int>();
        if (line != 0)
            store->setGeneralSettingsValue("line0type", QString::number(line));
        DbcImporter importer;
        QVERIFY(prepare(&importer, text));
        QTEST(int(importer.lineTypeOfFile()), "type");
    }

    void refusals_data()
    {
        columns<QString, QString, QString>("text", "node", "reason");
        const QString text = "BU_: Pump Valve\nBO_ 1 A: 8 Hidden\n";
        QTest::newRow("no_dbc") << "[1000]\n"
                                << ""
                                << "it holds no statement of a DBC file";
        QTest::newRow("node") << text << "pump"
                              << "it has no node \"pump\"; the file has \"Pump\", \"Valve\"";
        QTest::newRow("known_node") << text << "Valve"
                                    << "";
        QTest::newRow("undeclared_node") << text << "Hidden"
                                         << "";
    }
    void refusals()
    {
        const auto [text, node, reason] = fetchRow<QString, QString, QString>();
        DbcImporter importer;
        QVERIFY(prepare(&importer, text));
        importer.setOwnNode(node);
        (void)importer.lineTypeOfFile();
        QCOMPARE(importer.getLastError().section(": ", 1), reason);
    }

    /// A setting without comma is that of all lines.
    void keepsNamesOfOtherLines()
    {
        buildProject(*store, "line 0 2; line 1 2; j1939:function=7");
        QVERIFY(
            import("BU_: Own\nBO_ 2566844926 A: 8 Own\nBA_DEF_ BU_ \"NmJ1939Function\" INT 0 9;\n"
                   "BA_ \"NmJ1939Function\" BU_ Own 8;\n")
                .isEmpty());
        QCOMPARE(store->getJ1939SettingsValue("function"), "8,7");
    }

    /// What stands in the project keeps its place, its numbers and its variables.
    void keepsOthers()
    {
        buildProject(*store, "line 0 2\nrx 0xF004 0 0 6 name=Old\n"
                             "spn 520192 U8 2 name=a var=m_s\nrx 0xF005 0 0 6 name=Gone\n"
                             "spn 9 U8 2 name=b var=m_t1\nspn 8 U8 2 name=c\n");
        QVERIFY(import("BO_ 2565867006 M: 1 X\n SG_ s : 0|4@1+ (1,0) [0|0] \"\" X\n"
                       " SG_ t1 : 4|4@1+ (1,0) [0|0] \"\" X\n")
                    .isEmpty());
        QCOMPARE(store->getPGNs(0, 0x77, false), QList<quint32>({0xF004, 0xF005}));
        QCOMPARE(store->getPGNName(0, 0xF004, 0x77), "Old");
        QStringList found;
        for (const auto &spn : store->getSPNRecords(0, 0xF005, 0x77))
            found << joined(spn.number, spn.varName);
        QCOMPARE(found, QStringList({"520193/m_s_2", "520194/m_t1"}));
    }

    /// Signals of all places and widths come out of the line as they came in.
    void roundTrip()
    {
        std::mt19937 random(testSeed());
        const auto below = [&random](quint32 limit) { return quint32(random() % limit); };
        QString text = "BU_: Own Other\n";
        QStringList expected;
        for (quint32 group = 0; group < 60; ++group) {
            const bool isSent = below(2) == 1;
            const quint32 priority = below(8);
            // PDU1 to the own address 0, or PDU2; other nodes are the null address in the result.
            const quint32 pgn = below(2) == 1 ? 0xFF00 + group : (0x8000 + (group << 8));
            const quint32 id = (priority * 0x40000 + pgn) * 0x100 + (isSent ? 0 : 0xFE);
            const quint32 bytes = 1 + below(12);
            text += QString("BO_ %1 G%2: %3 %4\n")
                        .arg(0x80000000 | id)
                        .arg(group)
                        .arg(bytes)
                        .arg(isSent ? "Own" : "Other");
            for (quint32 start = 0; start < bytes * 8;) {
                const quint32 bits = qMin(1 + below(below(4) == 0 ? 70 : 33), bytes * 8 - start);
                if (below(3) > 0) {
                    text += QString(" SG_ S%1 : %1|%2@1%3 (1,0) [0|0] \"\" X\n")
                                .arg(start)
                                .arg(bits)
                                .arg(below(2) ? '+' : '-');
                    expected << joined(id, QString("S%1").arg(start), start, bits);
                }
                start += bits;
            }
        }
        store->setGeneralSettingsValue("line0type", "2");
        QVERIFY(import(text, "Own").isEmpty());
        DBCGenerator generator;
        (void)generateWith(generator, "out", "out.dbc");
        DbcReader back;
        QVERIFY(back.read(fixture.path("out.dbc")));
        QStringList found;
        for (const DbcMessage &message : back.file().messages) {
            for (const DbcSignal &signal : message.signalList) {
                if (message.name != "Address_Claiming")
                    found << joined(message.identifier, signal.name, signal.startBit, signal.bits);
            }
        }
        found.sort();
        expected.sort();
        QCOMPARE(found, expected);
    }

    void readsPortableFiles_data()
    {
        columns<QString, QString>("line", "project");
        QTest::newRow("groups") << "line 0 2; misc:description_form=portable"
                                << R"(
            identity 1,7; j1939:startaddress=0x80; rx 0xEF00 0 0 6 name=Ask desc=all%20of%20it; spn 1 U8 0 name=a
            tx 0xFF12 100 0 3 name=Tell; spn 2 120 0 bits=72 name=zero desc=own%0a; spn 3 I16 0 name=b
            spn 4 121 0 bits=40 name=star; tx 0xFF13 0 0 3 name=None desc=nothing)";
        QTest::newRow("frames") << "line 0 4; misc:description_form=portable"
                                << R"(
            txid 0x800 100 0 name=wide; item 1 U16 0 name=a value=7; rxid 0x12 0 0 name=short
            item 1 I8 0 name=b)";
    }
    /// What we write, we take back: of a line that is made of the file, the file is the same.
    void readsPortableFiles()
    {
        const auto [line, project] = fetchRow<QString, QString>();
        buildProject(*store, line + "; text:ProductName=Own\n" + project);
        const QByteArray written = portableFile();
        store = makeStore();
        buildProject(*store, line);
        const ProblemRecorder problems;
        QVERIFY(import(written).isEmpty());
        QVERIFY2(problems.lines.filter("octet").isEmpty(), qPrintable(problems.lines.join('\n')));
        QCOMPARE(portableFile(), written);
    }

    /// Whatever signals a message has, its frame is as long, and nothing in it has one name twice.
    void wildMessages()
    {
        std::mt19937 random(testSeed());
        QString text;
        for (int i = 0; i < 300; ++i) {
            text += QString("BO_ %1 M: %2 X\n").arg(0x98F00000 + (quint32(i) << 8)).arg(i % 65);
            for (quint32 s = 0; s < random() % 12; ++s)
                text += QString(" SG_ s%1 %2: %3|%4@%5%6 (1,0) [0|0] \"\" X\n")
                            .arg(s)
                            .arg(random() % 9 ? "" : "m1 ")
                            .arg(random() % 70)
                            .arg(random() % (random() % 4 ? 20 : 90))
                            .arg(random() % 2)
                            .arg(random() % 2 ? '+' : '-');
        }
        DbcReader reader;
        QVERIFY(reader.parse(text.toUtf8(), QString()));
        DbcTally tally;
        DbcFrames frames(reader.file(), DbcFrames::Protocol::RawCan, QString(), &tally);
        DbcFrames groups(reader.file(), DbcFrames::Protocol::J1939, QString(), &tally);
        QSet<QString> variables;
        checkLayouts(frames.canFrames(), frames.choices(), &variables);
        variables.clear();
        checkLayouts(groups.groups(), groups.choices(), &variables);
    }

private:
    template <class Records>
    static void checkLayouts(const Records &records, const QVector<DbcFrames::Choice> &choices,
                             QSet<QString> *variables)
    {
        QCOMPARE(int(records.size()), choices.size());
        for (size_t i = 0; i < records.size(); ++i) {
            quint32 bits = 0;
            QSet<quint32> numbers;
            for (const SignalData &signal : records[i].signalsOf) {
                const int ofType = COHelper::getDataLengthBits(Type(signal.dataType));
                bits += ofType != 0 ? ofType : signal.bitSize;
                numbers.insert(signal.number);
                QVERIFY2(signal.varName.isEmpty() || !variables->contains(signal.varName),
                         qPrintable(signal.varName));
                variables->insert(signal.varName);
            }
            QCOMPARE(bits, choices.at(int(i)).message->size * 8);
            QCOMPARE(size_t(numbers.size()), records[i].signalsOf.size());
        }
    }

    bool prepare(DbcImporter *importer, const QString &text)
    {
        importer->setDatabase(store.get());
        return writeFile(file, text.toUtf8()) && importer->setImportFileName(file);
    }

    QByteArray portableFile()
    {
        DBCGenerator generator;
        return generateWith(generator, "out", "out.dbc").toUtf8();
    }

    /// The error.
    QString import(const QString &text, const QString &node = "Own")
    {
        DbcImporter importer;
        if (!prepare(&importer, text))
            return "no file";
        importer.setOwnNode(text.contains("BU_: Own") ? node : "");
        const LineType type = importer.lineTypeOfFile();
        if (store->getGeneralSettingsValue("line0type").isEmpty())
            store->setGeneralSettingsValue("line0type", QString::number(int(type)));
        importer.startImport();
        importer.wait();
        return importer.getLastError().section(": ", 1);
    }

    template <class Signal>
    static QString shown(const Signal &signal)
    {
        const bool isManaged = signal.implementation == 0;
        return QString("  %1 %2 %3:%4")
                   .arg(signal.number)
                   .arg(signal.name)
                   .arg(signal.dataType)
                   .arg(signal.bitSize) +
               (isManaged ? "" : ' ' + signal.varName) +
               (signal.defaultValue == "0" ? "" : " =" + signal.defaultValue) +
               (signal.description.isEmpty() ? "" : " \"" + signal.description + '"') + '\n';
    }

    /// A line for each frame and signal, and for the settings that are not 0.
    QString shown()
    {
        QString text;
        for (const quint8 direction : {0x55, 0x77}) {
            const QString way = direction == 0x55 ? "tx" : "rx";
            const auto head = [&](quint32 number, const ObjectDataBase::PGN &frame) {
                return QString("%1 %2 %3 %4 %5")
                           .arg(way)
                           .arg(number, 0, 16)
                           .arg(frame.name)
                           .arg(frame.priority)
                           .arg(frame.cycleTimeMs) +
                       (frame.description.isEmpty() ? "" : " \"" + frame.description + '"') + '\n';
            };
            for (const quint32 number : store->getPGNs(0, direction, false)) {
                ObjectDataBase::PGN group;
                (void)store->getPGNData(0, number, direction, group);
                text += head(number, group);
                for (const auto &spn : store->getSPNRecords(0, number, direction))
                    text += shown(spn);
            }
            for (const quint32 number : store->getCANIDs(0, direction)) {
                ObjectDataBase::CANID id;
                (void)store->getCANIDData(0, number, direction, id);
                ObjectDataBase::PGN frame;
                static_cast<FrameData &>(frame) = id;
                text += head(number, frame);
                for (const auto &element : store->getDataElementRecords(0, number, direction))
                    text += shown(element);
            }
        }
        QStringList settings;
        for (const QString &key : store->getJ1939SettingsKeys()) {
            if (store->getJ1939SettingsValue(key) != "0")
                settings << key + '=' + store->getJ1939SettingsValue(key);
        }
        settings.sort();
        return text + (settings.isEmpty() ? "" : settings.join(' ') + '\n');
    }

    QString file;
};

QTEST_GUILESS_MAIN(tst_DbcImporter)
#include "tst_dbcimporter.moc"
