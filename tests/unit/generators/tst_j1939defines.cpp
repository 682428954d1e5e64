// The J1939 section of gen_define.h, alone and beside those of CANopen.
#include "generators/defines/codefinegenerator.h"
#include "generators/defines/gendefinegenerator.h"
#include "generators/defines/j1939defines.h"
#include "tests/fixtures/casefile.h"
#include "tests/unit/generators/definefixture.h"

using Defines::generateJ1939Defines;

class tst_J1939Defines : public QObject
{
    Q_OBJECT

private slots:
    void cases_data() { addCases(TEST_CASES "/j1939defines.txt"); }
    void cases()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        DefineProject device("line 0 2\n" + project);
        const QString text = device.text(generateJ1939Defines);
        const QByteArray difference = mismatch(text, expected);
        QVERIFY2(difference.isEmpty(), difference);
        QCOMPARE(device.text(generateJ1939Defines, DefineProject::v4), inV4(text));
        // The message objects of several protocols have a section of their own.
        QVERIFY(!device.text(generateJ1939Defines, DefineProject::classic, true).contains("COB"));
    }

    void otherLines()
    {
        DefineProject device("line 0 4; tx 5; rx 6");
        QCOMPARE(device.text(generateJ1939Defines), QString());
        device.change("line 1 5; rx 7");
        const QString text = device.text(generateJ1939Defines);
        QVERIFY(text.startsWith("/* J1939 Defines */\n#define CO_MULTI_LINE\t1u\n"));
        QVERIFY(text.contains("#define J1939_RECEIVE_PGN_COUNTS\t 0u, 1u\n"
                              "#define J1939_TRANSMIT_PGN_COUNTS\t 0u, 0u\n"));
    }

    /// A second definition of a name, even an equal one, would be a second opinion.
    void eachNameIsDefinedOnce_data()
    {
        columns<QString, QString>("rows", "line");
        // clang-format off
        QTest::newRow("J1939") << "line 1 2" << "#define CO_SDO_CLIENT_CNT\t2u\n";
        QTest::newRow("forced lists") << "misc:generateML=true" << "#define J1939_SSDO_COUNTS\t1u\n";
        QTest::newRow("CANopen and J1939") << "line 1; 1000:0 U32 ro 0 0; 1280 rec ro 0,0,0; 1800 rec ro 5*0"
            << "#define CO_SDO_CLIENT_CNT\t2u\n";
        QTest::newRow("both on a line") << "line0type=5; 1000:0 U32 ro 0 0; misc:generateML=true"
            << "#define CO_SDO_CLIENT_CNT\t1u\n";
        QTest::newRow("FD") << "set line0type=5 canfd_supported=1; 1000:0 U32 ro 0 0; line 1 2"
            << "#define CO_SDO_SERVER_CNT\t1u\n";
        QTest::newRow("raw CAN and J1939") << "line 1 4" << "#define CO_EXTENDED_DATA_TYPES\t\t1u\n";
        QTest::newRow("events off") << "enable_dynamic=0; line 1" << "#define CO_EVENT_DYNAMIC_SDO_SERVER_READ\t1u\n";
        QTest::newRow("events on") << "line 1" << "#define CO_EVENT_DYNAMIC_SDO_SERVER_READ\t3u\n";
        // clang-format on
    }

    void eachNameIsDefinedOnce()
    {
        const auto [rows, line] = fetchRow<QString, QString>();
        DefineProject project(
            "line 0 2; set event_sdo_server_read=3 event_sdo_client_write=2 event_can=4\n"
            "set j1939:canindication_cnt=2 j1939:dynsupport=1 j1939:cia510serversupport=1\n"
            "set j1939:cia510clientsupport=1 limit_check=1; 2000:0 U64 ro 0 0\n" +
            rows);
        CoDefineGenerator classic;
        GenDefineGenerator v4;
        for (DefineGenerator *generator :
             {static_cast<DefineGenerator *>(&classic), static_cast<DefineGenerator *>(&v4)}) {
            const QString header = generate(*generator, project);
            QVERIFY2(header.contains(line), qPrintable(header));
            QCOMPARE(header.contains("J1939_TIMER_INTERVAL"), generator == &classic);
            QSet<QString> names;
            static const QRegularExpression define("^#define (\\w+)",
                                                   QRegularExpression::MultilineOption);
            for (auto match = define.globalMatch(header); match.hasNext();) {
                const QString name = match.next().captured(1);
                QVERIFY2(!names.contains(name), qPrintable(name + " in\n" + header));
                names << name;
            }
        }
    }

private:
    static QString generate(DefineGenerator &generator, DefineProject &project)
    {
        const QList<quint8> lines = project.store.getNodes();
        QSet<QString> types;
        for (const quint8 line : lines)
            types << project.store.getGeneralSettingsValue(QStringLiteral("line%1type").arg(line));
        generator.j1939Present = true;
        generator.multiProtocol = types != QSet<QString>{"2"};
        (void)runJob(generator, project.store, project.files.path(), {});
        return readFile(project.files.path() + "/gen_define.h");
    }
};

QTEST_GUILESS_MAIN(tst_J1939Defines)
#include "tst_j1939defines.moc"
