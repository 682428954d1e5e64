// The counts behind gen_define.h, as numbers.
#include "generators/defines/definecounts.h"
#include "generators/defines/definelists.h"
#include "tests/unit/generators/definefixture.h"

class tst_DefineCounts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { sink.open(QIODevice::WriteOnly); }

    void cobsOfCANopenLines_data()
    {
        columns<QString, int, int>("changes", "line", "cobs");
        // clang-format off
        QTest::newRow("default SDO server without object") << "var 1000 0" << 0 << 4;
        QTest::newRow("three SDO servers, a client") << "var 1000 0; record 1200 2; record 1201 3; record 127f 3; record 12ff 3" << 0 << 10;
        QTest::newRow("EMCY producer and consumers") << "var 1014 0; array 1028 3" << 0 << 4;
        QTest::newRow("GFC, SYNC, TIME, SRD") << "var 1300 0; var 1005 0; var 1012 0; var 1f10 0" << 0 << 6;
        QTest::newRow("mappings count, communication does not") << "record 1600 1; record 17ff 1; record 1a00 1; record 1400 2; record 1800 2" << 0 << 3;
        QTest::newRow("two heartbeats") << "array 1016 2" << 0 << 2;
        QTest::newRow("two heartbeats in one COB") << "array 1016 2; set only_one_hb_buffer=1" << 0 << 1;
        QTest::newRow("LSS and ID negotiation") << "set lss_supported=1; set idnego_supported=1" << 0 << 4;
        QTest::newRow("slaves by object") << "array 1f81 3; set max_slave_assignment=0" << 0 << 3;
        QTest::newRow("slaves by setting") << "array 1f81 3; set max_slave_assignment= 7 " << 0 << 7;
        QTest::newRow("sleep mode 2") << "set sleep_mode_selection=2" << 0 << 3;
        QTest::newRow("sleep mode 1, slave") << "set sleep_mode_selection=1; set nmtmaster=0,1; line 1 1" << 0 << 2;
        QTest::newRow("sleep mode 1, master") << "set sleep_mode_selection=1; set nmtmaster=0,1; line 1 1" << 1 << 16;
        QTest::newRow("flying master") << "var 1f80 0x2f" << 0 << 10;
        QTest::newRow("NMT start-up only") << "var 1f80 0x0f" << 0 << 0;
        QTest::newRow("CAN FD with USDO clients") << "set canfd_supported=1; set usdo_client_cnt=0x2" << 0 << 4;
        QTest::newRow("ISO-TP, last element for later lines") << "set isotp_supported=1; set isotp_client_con=9,0x1; set isotp_server_con=2; line 4 1" << 4 << 6;
        QTest::newRow("UDS server and client of line 0") << "set udsserver_supported=1; set udsclient_supported=1; set uds_client_cnt=2,9" << 1 << 12;

        QTest::newRow("added") << "set additional_cob_count=7" << 0 << 7;
        QTest::newRow("added, hexadecimal adds nothing") << "set additional_cob_count=0x10" << 0 << 0;
        QTest::newRow("added by line number") << "set additional_cob_count=2, 5; line 1 1" << 1 << 5;
        QTest::newRow("all lines") << "line 2 1; var 1000 0; var 2/1000 0; var 2/1005 0" << 255 << 9;
        QTest::newRow("all lines, added by number") << "line 2 1; var 1000 0; var 2/1000 0; set additional_cob_count=2,9,5" << 255 << 15;
        QTest::newRow("all lines, none with 0x1000") << "var 1005 0; set lss_supported=1" << 255 << 0;
        // clang-format on
    }

    void cobsOfCANopenLines()
    {
        QFETCH(QString, changes);
        QFETCH(int, line);
        DefineProject project(changes);
        TextWriter out(&sink);
        QTEST(int(Defines::getCobCount(project.context(out), quint8(line))), "cobs");
    }

    void multiProtocolLeavesOutTransport()
    {
        DefineProject project(
            "set isotp_supported=1; set isotp_client_con=1; set udsserver_supported=1");
        TextWriter out(&sink);
        DefineContext context = project.context(out);
        QCOMPARE(int(Defines::getCobCount(context, 0)), 8);
        context.multiProtocol = true;
        QCOMPARE(int(Defines::getCobCount(context, 0)), 0);
    }

    void cobsOfJ1939Lines_data()
    {
        columns<QString, int>("changes", "cobs");
        // clang-format off
        QTest::newRow("groups") << "pgn 0 tx 65226; pgn 0 tx 65227; pgn 0 rx 61444" << 3 + 3 + 2;
        QTest::newRow("address claim alone") << "pgn 0 tx 60928" << 3 + 1;
        QTest::newRow("diagnostics") << "j1939 diagsupport=1; j1939 diagsupport_dm7=1; j1939 diagsupport_dm39=1; j1939 diagsupport_dm1=1" << 4 + 2;
        QTest::newRow("messages without diagnostics") << "j1939 diagsupport_dm7=1" << 3;
        QTest::newRow("diagnostic tool") << "j1939 diagtoolsupport=1; j1939 diagsupport_dmtool1=1; j1939 diagsupport_dmtool2=1" << 4 + 2 + 2;
        QTest::newRow("FD with more") << "set canfd_supported=1; pgn 0 tx 65226; pgn 0 tx 65227" << 3 + 3;
        QTest::newRow("requests") << "j1939 requestsupport=1; j1939 acknowledgeindication_cnt=4" << 3 + 2;
        QTest::newRow("transport protocols share") << "j1939 bamsupport=1; j1939 cmdtsupport=1" << 3 + 6;
        QTest::newRow("NMEA, safety, dynamic groups") << "j1939 nmea2000support=1; j1939 safetysupport=1; j1939 dynsupport=1" << 3 + 5;
        QTest::newRow("added, 11 bit multi-PG") << "set additional_cob_count=5; j1939 j1939fd_11bitmultipg=1" << 3 + 6;
        // clang-format on
    }

    void cobsOfJ1939Lines()
    {
        QFETCH(QString, changes);
        DefineProject project(changes);
        TextWriter out(&sink);
        QTEST(int(Defines::getJ1939Cobs(project.context(out), 0)), "cobs");
    }

    void listsByLine_data()
    {
        columns<QString, QList<quint8>, QString>("setting", "lines", "list");
        // clang-format off
        QTest::newRow("empty") << "" << QList<quint8>{0, 1} << "E";
        QTest::newRow("empty first") << ",33" << QList<quint8>{0, 1} << "E,33";
        QTest::newRow("empty last") << "33, " << QList<quint8>{0, 1} << "33,E";
        QTest::newRow("gap") << "1,,3" << QList<quint8>{0, 2} << "1,3";
        QTest::newRow("gap and no longer than the lines") << "1,2,3" << QList<quint8>{0, 2, 3} << "1,3";
        QTest::newRow("gap beyond the list") << "1,2,3" << QList<quint8>{0, 9} << "1";
        QTest::newRow("short") << "1" << QList<quint8>{0, 1} << "1";
        QTest::newRow("all beyond the list") << "1,2" << QList<quint8>{4, 5} << "2";
        QTest::newRow("no lines") << "1,2" << QList<quint8>() << "";
        // clang-format on
    }

    void listsByLine()
    {
        QFETCH(QString, setting);
        QFETCH(QList<quint8>, lines);
        QTEST(Defines::lineList(setting, lines, "E"), "list");
    }

    void combinesBuffers()
    {
        QCOMPARE(Defines::combineCobBufferCounts("10u, 20u"), "30");
        QCOMPARE(Defines::combineCobBufferCounts("0x10,1,x"), "17");
    }

private:
    QBuffer sink;
};

QTEST_GUILESS_MAIN(tst_DefineCounts)
#include "tst_definecounts.moc"
