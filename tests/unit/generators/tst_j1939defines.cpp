// The J1939 section of gen_define.h, alone and beside those of CANopen.
#include "generators/defines/codefinegenerator.h"
#include "generators/defines/gendefinegenerator.h"
#include "generators/defines/j1939defines.h"
#include "tests/unit/generators/definefixture.h"

#include <QRegularExpression>

using Defines::generateJ1939Defines;

namespace
{

const QString kBuffers = "\n/* Number of receive/transmit buffer entries per line */\n"
                         "#define CO_REC_BUFFER_CNT\t10u\n"
                         "#define CO_TR_BUFFER_CNT\t5u\n"
                         "#define CO_REC_BUFFER_COUNTS\t10u\n"
                         "#define CO_TR_BUFFER_COUNTS\t5u\n";

/// A classic text as the V4 generation has it.
QString inV4(QString text)
{
    text.replace("CO_MULTI_LINE", "CAN_MULTI_LINE");
    for (const QString word :
         {"REC_BUFFER_C", "TR_BUFFER_C", "COB_C", "INHIBIT_SUPPORTED", "EVENT_DYNAMIC_CAN"})
        text.replace("CO_" + word, "CORE_" + word);
    return text;
}

} // namespace

class tst_J1939Defines : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        project = std::make_unique<DefineProject>();
        project->change("set line0type=2");
    }

    void oneLine()
    {
        project->change("pgn 0 tx 60928 inhibit=250; pgn 0 tx 65226; pgn 0 rx 61444; "
                        "j1939 cia510serversupport=1; set additional_cob_count=2; "
                        "set isotp_supported=1; set isotp_client_con=3; set isotp_server_con=0x4");
        const QString expected = "/* J1939 Defines */\n"
                                 "#define J1939_SUPPORTED\t1u\n"
                                 "#define J1939_CAM11_CAM21_SUPPORTED\t1u\n"
                                 "#define J1939_RECEIVE_PGN_CNT\t1u\n"
                                 "#define J1939_TRANSMIT_PGN_CNT\t1u\n"
                                 "#define J1939_RECEIVE_PGN_COUNTS\t1u\n"
                                 "#define J1939_TRANSMIT_PGN_COUNTS\t1u\n"
                                 "#define J1939_SSDO_COUNTS\t1u\n"
                                 "#define CO_SDO_SERVER_CNT\t1u\n"
                                 "#define J1939_CSDO_COUNTS\t0u\n"
                                 "\n"
                                 "#define CO_INHIBIT_SUPPORTED\t1u\n"
                                 "\n"
                                 "#define CO_EVENT_DYNAMIC_SDO_SERVER_READ\t1u\n"
                                 "#define CO_EVENT_DYNAMIC_SDO_SERVER_WRITE\t1u\n"
                                 "\n"
                                 "/* COB definitions */\n"
                                 "#define CO_COB_CNT \t20u ,\n"
                                 "#define CO_COB_COUNTS\tCO_COB_CNT\n"
                                 "\n" +
                                 kBuffers;
        QCOMPARE(text(), expected);
        QCOMPARE(project->text(generateJ1939Defines, DefineProject::v4), inV4(expected));
    }

    void severalLines()
    {
        project->change("line 1 4; line 3 2; line 4 5; pgn 0 tx 65226 safe; pgn 3 tx 65227; "
                        "pgn 3 tx 60928; pgn 3 rx 1; record 4/1200 2; record 4/1280 3; "
                        "record 4/1281 3; j1939 cia510serversupport=1; "
                        "j1939 cia510clientsupport=1; set udsserver_supported=1; "
                        "set isotp_client_con=1,0; j1939 safetysupport=1; "
                        "set receivebuffersize=1,2,3,4,5,6; set transmitbuffersize=7");
        const QString expected = "/* J1939 Defines */\n"
                                 "#define CO_MULTI_LINE\t1u\n"
                                 "#define CO_MULTI_LINE_CNT\t4u\n"
                                 "#define J1939_SUPPORTED\t1u\n"
                                 "#define J1939_CAM11_CAM21_SUPPORTED\t1u\n"
                                 "#define J1939_RECEIVE_PGN_CNT\t1u\n"
                                 "#define J1939_TRANSMIT_PGN_CNT\t1u\n"
                                 "#define J1939_RECEIVE_PGN_COUNTS\t 0u, 0u, 1u, 0u\n"
                                 "#define J1939_TRANSMIT_PGN_COUNTS\t 0u, 0u, 1u, 0u\n"
                                 "#define J1939_SSDO_COUNTS\t1u,0u,1u,1u\n"
                                 "#define J1939_CSDO_COUNTS\t1u,0u,1u,2u\n"
                                 "#define CO_SDO_SERVER_CNT\t2u\n"
                                 "#define CO_SDO_CLIENT_CNT\t2u\n"
                                 "#define J1939_SDG_TRANS_CNT\t1u\n"
                                 "#define J1939_SDG_TRANS_COUNTS\t 1u, 0u, 0u, 0u\n"
                                 "#define J1939_SDG_REC_COUNTS\t 0u, 0u, 0u, 0u\n"
                                 "#define J1939_SDG_SUPPORTED\t1u\n"
                                 "\n"
                                 "\n"
                                 "#define CO_EVENT_DYNAMIC_SDO_SERVER_READ\t1u\n"
                                 "#define CO_EVENT_DYNAMIC_SDO_SERVER_WRITE\t1u\n"
                                 "#define CO_EVENT_DYNAMIC_SDO_CLIENT_READ\t1u\n"
                                 "#define CO_EVENT_DYNAMIC_SDO_CLIENT_WRITE\t1u\n"
                                 "\n"
                                 "/* COB definitions */\n"
                                 "#define CO_COB_CNT \t43u ,\n"
                                 "#define CO_COB_COUNTS\t12, 9, 13, 9\n"
                                 "\n"
                                 "\n"
                                 "/* Number of receive/transmit buffer entries per line */\n"
                                 "#define CO_REC_BUFFER_CNT\t1,2,4,5u\n"
                                 "#define CO_TR_BUFFER_CNT\t7u\n"
                                 "#define CO_REC_BUFFER_COUNTS\t1,2,4,5u\n"
                                 "#define CO_TR_BUFFER_COUNTS\t7u\n";
        QCOMPARE(text(), expected);
        QCOMPARE(project->text(generateJ1939Defines, DefineProject::v4), inV4(expected));
        // The message objects of several protocols have a section of their own.
        QVERIFY(!project->text(generateJ1939Defines, DefineProject::classic, true).contains("COB"));
    }

    void settings_data()
    {
        columns<QString, QString>("changes", "lines");
        // clang-format off
        QTest::newRow("zero is off") << "j1939 bamsupport=0; j1939 rxindication_cnt=0; j1939 txindication_cnt=-1; j1939 diagsupport=x; j1939 bamcycletime=50; j1939 cmdtpackets=4" << "\n\n";
        QTest::newRow("safe groups without safety") << "pgn 0 rx 5 safe; pgn 0 tx 6 safe" << "#define J1939_RECEIVE_PGN_CNT\t1u\n#define J1939_TRANSMIT_PGN_CNT\t1u\n";
        QTest::newRow("safety without groups") << "j1939 safetysupport=1; j1939 sdm_timer_interval=0" << "#define J1939_CSDO_COUNTS\t0u\n#define J1939_SDG_TRANS_COUNTS\t0u\n#define J1939_SDG_REC_COUNTS\t0u\n#define J1939_SDG_SUPPORTED\t1u\n\n";
        QTest::newRow("safe groups") << "pgn 0 rx 5 safe; pgn 0 rx 6 safe; pgn 0 tx 60928 safe; j1939 safetysupport=1; j1939 sdm_timer_interval=10"
            << "#define J1939_TRANSMIT_PGN_CNT\t0u\n#define J1939_RECEIVE_PGN_COUNTS\t0u\n#define J1939_TRANSMIT_PGN_COUNTS\t0u\n#define J1939_SSDO_COUNTS\t0u\n#define J1939_CSDO_COUNTS\t0u\n#define J1939_SDG_TRANS_CNT\t1u\n#define J1939_SDG_TRANS_COUNTS\t1u\n#define J1939_SDG_REC_CNT\t2u\n#define J1939_SDG_REC_COUNTS\t2u\n#define J1939_SDG_SUPPORTED\t1u\n#define J1939_SDG_TIMER_INTERVAL\t10u\n\n";
        QTest::newRow("safe groups of a raw line") << "line 1 4; pgn 1 rx 5 safe; j1939 safetysupport=1" << "#define J1939_SDG_TRANS_COUNTS\t 0u, 0u\n#define J1939_SDG_REC_COUNTS\t 0u, 0u\n#define J1939_SDG_SUPPORTED\t1u\n";
        QTest::newRow("inhibit time of a received group") << "pgn 0 rx 5 inhibit=20" << "#define J1939_CSDO_COUNTS\t0u\n\n\n\n/* COB";
        QTest::newRow("dynamic groups") << "j1939 dynsupport=1" << "\n\n#define CO_INHIBIT_SUPPORTED\t1u\n\n#define J1939_DYNAMIC_PGN\t1u\n\n/* COB";
        QTest::newRow("multi-PG needs FD") << "j1939 j1939fd_11bitmultipg=1; j1939 j1939fd_multipgbuffer=2" << "#define J1939_CSDO_COUNTS\t0u\n\n\n";
        QTest::newRow("multi-PG") << "set canfd_supported=1; j1939 j1939fd_11bitmultipg=0x101" << "\n\n#define J1939_MULTI_PG_11BIT\t1u\n#define J1939_DEST_BUFFER_CNT\t1u\n#define J1939_DEST_BUFFER_COUNTS\t1u\n\n";
        QTest::newRow("buffers of one line") << "set canfd_supported=1; j1939 j1939fd_multipgbuffer=4" << "\n\n#define J1939_DEST_BUFFER_CNT\t4u\n#define J1939_DEST_BUFFER_COUNTS\t4u\n\n";
        QTest::newRow("buffers of lines that are not") << "set canfd_supported=1; j1939 j1939fd_multipgbuffer=4,5" << "#define J1939_DEST_BUFFER_CNT\t4u\n#define J1939_DEST_BUFFER_COUNTS\t4u\n\n";
        QTest::newRow("buffers of lines") << "set canfd_supported=1; j1939 j1939fd_multipgbuffer=4,,5; line 1 2; line 2 2" << "#define J1939_DEST_BUFFER_CNT\t9u\n#define J1939_DEST_BUFFER_COUNTS\t4u,0u,5u\n\n";
        QTest::newRow("a buffer for each line") << "set canfd_supported=1; line 1 2; line 2 2" << "#define J1939_DEST_BUFFER_CNT\t3u\n#define J1939_DEST_BUFFER_COUNTS\t1u,1u,1u\n\n";
        QTest::newRow("last buffer goes on") << "set canfd_supported=1; j1939 j1939fd_multipgbuffer=2; line 1 2" << "#define J1939_DEST_BUFFER_CNT\t4u\n#define J1939_DEST_BUFFER_COUNTS\t2u,2u\n\n";
        QTest::newRow("indications") << "j1939 rxindication_cnt=1; j1939 rxcheckindication_cnt=2; j1939 txindication_cnt=3; j1939 requestindication_cnt=4; j1939 requestsupport=1; j1939 acknowledgeindication_cnt=5; j1939 canindication_cnt=6; j1939 nmea2000groupindication_cnt=7; set event_can=8"
            << "\n\n#define J1939_REC_PGN_INDICATION_CNT\t1u\n#define J1939_REC_PGN_CHECK_INDICATION_CNT\t2u\n#define J1939_TR_PGN_INDICATION_CNT\t3u\n#define J1939_REQ_PGN_INDICATION_CNT\t4u\n#define J1939_ACK_PGN_INDICATION_CNT\t5u\n#define CO_EVENT_DYNAMIC_CAN\t6u\n#define J1939_NMEA_GROUP_INDICATION_CNT\t7u\n\n#define J1939_REQUEST_SUPPORTED\t1u\n\n/* COB";
        QTest::newRow("indication without requests") << "j1939 requestindication_cnt=4" << "#define J1939_CSDO_COUNTS\t0u\n\n\n\n";
        QTest::newRow("modules") << "j1939 recalladdrclaims=1; j1939 bamsupport=1; j1939 bamcycletime=0x132; j1939 nmea2000support=1; j1939 cmdtsupport=1; j1939 cmdtpackets=16; set event_can=2; j1939 propsupport=1; j1939 bitwisemapping=1; set isotp_connection_cnt=0x103"
            << "\n\n\n#define J1939_REC_ALL_CLAIM_SUPPORT\t1u\n#define J1939_BAM_SUPPORTED\t1u\n#define J1939_BAM_CYLE_TIME\t50u\n#define J1939_NMEA2000_SUPPORTED\t1u\n#define J1939_CMDT_SUPPORTED\t1u\n#define J1939_CMDT_MAX_PACKETS\t16u\n#define CO_EVENT_DYNAMIC_CAN\t2u\n#define J1939_PROPRIETARY_SUPPORTED\t1u\n#define BITWISE_MAPPING\t1u\n#define ISOTP_SUPPORTED\t1u\n#define ISOTP_CONNECTION_CNT\t3u\n\n/* COB";
        QTest::newRow("no number is zero") << "j1939 cmdtsupport=1; j1939 diagsupport=1; j1939 dm_receivesize= " << "#define J1939_CMDT_MAX_PACKETS\t0u\n#define J1939_DIAGNOSTIC_SUPPORTED\t1u\n#define J1939_DIAG_REC_BUF_SIZE\t0u\n#define J1939_DIAG_TR_BUF_SIZE\t0u\n\n/* COB";
        QTest::newRow("diagnostics") << "j1939 diagsupport=1; j1939 dm_receivesize=20u; j1939 dm_transmitsize=30; j1939 diagsupport_dm1=1; j1939 diagsupport_dm2=0; j1939 diagsupport_dm64=1; j1939 diagsupport_dm65=1; j1939 diagtoolsupport=1; j1939 dmtool_receivesize=40; j1939 dmtool_transmitsize=50; j1939 diagsupport_dmtool3=1"
            << "#define J1939_DIAGNOSTIC_SUPPORTED\t1u\n#define J1939_DIAG_REC_BUF_SIZE\t20u\n#define J1939_DIAG_TR_BUF_SIZE\t30u\n#define J1939_DIAGNOSTIC_DM1_SUPPORTED\t1u\n#define J1939_DIAGNOSTIC_DM64_SUPPORTED\t1u\n#define J1939_DIAGNOSTIC_TOOL_SUPPORTED\t1u\n#define J1939_DIAGTOOL_REC_BUF_SIZE\t40u\n#define J1939_DIAGTOOL_TR_BUF_SIZE\t50u\n#define J1939_DIAGNOSTIC_TOOL_DM3_SUPPORTED\t1u\n\n/* COB";
        QTest::newRow("tables of an SDO server") << "j1939 cia510serversupport=0x1; set limit_check=1; var 2000 0; put 2000:0 type 27; var 2001 x; put 2001:0 type 124"
            << "_WRITE\t1u\n#define CO_CONFIG_LIMIT_CHECK\t\t1u\n#define CO_EXTENDED_DATA_TYPES\t\t1u\n#define CO_UTF8_DATA_TYPE\t\t1u\n\n/* COB";
        QTest::newRow("objects without a server") << "set limit_check=1; var 2000 0; put 2000:0 type 27; j1939 cia510clientsupport=1" << "_WRITE\t1u\n\n/* COB";
        // clang-format on
    }

    void settings()
    {
        QFETCH(QString, changes);
        QFETCH(QString, lines);
        project->change(changes);
        QVERIFY2(text().contains(lines), qPrintable(text()));
    }

    void otherLines()
    {
        project->change("set line0type=4; pgn 0 tx 5; pgn 0 rx 6");
        QCOMPARE(text(), QString());
        project->change("line 1 5; pgn 1 rx 7");
        QVERIFY(text().startsWith("/* J1939 Defines */\n#define CO_MULTI_LINE\t1u\n"));
        QVERIFY(text().contains("#define J1939_RECEIVE_PGN_COUNTS\t 0u, 1u\n"
                                "#define J1939_TRANSMIT_PGN_COUNTS\t 0u, 0u\n"));
    }

    /// A second definition of a name, even an equal one, would be a second opinion.
    void eachNameIsDefinedOnce_data()
    {
        columns<QString, QString>("changes", "line");
        // clang-format off
        QTest::newRow("J1939") << "line 1 2" << "#define CO_SDO_CLIENT_CNT\t2u\n";
        QTest::newRow("forced lists") << "misc generateML=true" << "#define J1939_SSDO_COUNTS\t1u\n";
        QTest::newRow("CANopen and J1939") << "line 1 1; var 1/1000 0; record 1/1280 3; record 1/1800 5" << "#define CO_SDO_CLIENT_CNT\t2u\n";
        QTest::newRow("both on a line") << "set line0type=5; var 1000 0; misc generateML=true" << "#define CO_SDO_CLIENT_CNT\t1u\n";
        QTest::newRow("FD") << "set line0type=5; set canfd_supported=1; var 1000 0; line 1 2" << "#define CO_SDO_SERVER_CNT\t1u\n";
        QTest::newRow("raw CAN and J1939") << "line 1 4" << "#define CO_EXTENDED_DATA_TYPES\t\t1u\n";
        QTest::newRow("events off") << "line 1 1; set enable_dynamic=0" << "#define CO_EVENT_DYNAMIC_SDO_SERVER_READ\t1u\n";
        QTest::newRow("events on") << "line 1 1" << "#define CO_EVENT_DYNAMIC_SDO_SERVER_READ\t3u\n";
        // clang-format on
    }

    void eachNameIsDefinedOnce()
    {
        QFETCH(QString, changes);
        QFETCH(QString, line);
        project->change("set event_sdo_server_read=3; set event_sdo_client_write=2; "
                        "set event_can=4; j1939 canindication_cnt=2; j1939 dynsupport=1; "
                        "j1939 cia510serversupport=1; j1939 cia510clientsupport=1; "
                        "var 2000 0; put 2000:0 type 27; set limit_check=1");
        project->change(changes);
        CoDefineGenerator classic;
        GenDefineGenerator v4;
        for (DefineGenerator *generator :
             {static_cast<DefineGenerator *>(&classic), static_cast<DefineGenerator *>(&v4)}) {
            const QString header = generate(*generator);
            QVERIFY2(header.contains(line), qPrintable(header));
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
    QString text() { return project->text(generateJ1939Defines); }

    QString generate(DefineGenerator &generator)
    {
        const QList<quint8> lines = project->store.getNodes();
        QSet<QString> types;
        for (const quint8 line : lines)
            types << project->store.getGeneralSettingsValue(QStringLiteral("line%1type").arg(line));
        generator.j1939Present = true;
        generator.multiProtocol = types != QSet<QString>{"2"};
        generator.setDataBase(&project->store);
        generator.setOutputDirectory(project->files.path());
        generator.startGeneration();
        generator.wait();
        return readFile(project->files.path() + "/gen_define.h");
    }

    std::unique_ptr<DefineProject> project;
};

QTEST_GUILESS_MAIN(tst_J1939Defines)
#include "tst_j1939defines.moc"
