// Texts that generators of start-up code share.
#include "generators/commongeneratorhelper.h"
#include "tests/fixtures/storefixture.h"

class tst_CommonGeneratorHelper : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void commonInitVars_data()
    {
        columns<QStringList, QString>("settings", "text");
        const QString counts = "{ ISOTP_CLIENT_COUNTS },\n\t{ ISOTP_SERVER_COUNTS },\n";
        // clang-format off
        QTest::newRow("plain") << QStringList{"line0type=1"} << "MP_PROT_TYPE_CANOPEN}};\n\n";
        QTest::newRow("can_fd") << QStringList{"line0type=5", "canfd_supported=1"} << "MP_PROT_TYPE_J1939 | MP_PROT_TYPE_CANOPEN},\n\t{ CO_TRUE }\n};\n\n";
        QTest::newRow("one_comma_with_uds_and_can_fd") << QStringList{"line0type=2", "udsserver_supported=1", "canfd_supported=2"} << "MP_PROT_TYPE_J1939 | MP_PROT_TYPE_UDS},\n\t" + counts + "\t{ CO_TRUE }\n};\n\n";
        QTest::newRow("unknown_type") << QStringList{"line0type=3", "udsserver_supported=2"} << "MP_PROT_TYPE_UNKNOWN}};\n\n";
        // clang-format on
    }

    void commonInitVars()
    {
        QFETCH(QStringList, settings);
        set(settings);
        QTEST(CommonGeneratorHelper(store.get())
                  .getCommonInitVars()
                  .section("COB_COUNTS }, \n\t{ ", 1),
              "text");
    }

    void noUdsTextWithoutUds()
    {
        set({"udsserver_supported=2", "udsclient_supported=0"});
        const CommonGeneratorHelper helper(store.get());
        QCOMPARE(helper.getUDSInit_common() + helper.getUDSInit_lines(0, true) +
                     helper.getUDSInitStructures() + helper.getUDSSessionTable(0),
                 "");
    }

    void tablesHoldAsManyRowsAsTheirSizeTells()
    {
        set({"udsserver_supported=1"});
        for (int sid = 16; sid < 255; ++sid) // 0x85 has no name, and no row
            store->setUDSServiceActive(0, quint8(sid), sid == 0x11 || sid == 0x22 || sid == 0x85);
        store->setUDSServiceSessions(0, 0x11, "1, 65,x,300");
        store->setUDSServiceSessions(0, 0x22, "");
        store->setUDSServiceUserLevels(0, 0x11, "2,3");
        const CommonGeneratorHelper helper(store.get());
        const QString sessions = helper.getUDSSessionTable(0);
        QCOMPARE(
            sessions.count("\t\t\t{UDS_SUB_SESSION_DS, UDS_SUB_SESSION_MANU_40 + 0x01}, 2u},\n"),
            3);
        QVERIFY(sessions.endsWith(
            "\t\t/* ReadDataByIdentifier */\n\t\t{ 0x22, 0u,\n\t\t\t{0u}, 0u},\n\n\t};\n\n"));
        QCOMPARE(helper.getUDSSessionTableSize(0), "4");
        const QString levels = helper.getUDSSecurityTable(0);
        QCOMPARE(levels.count("\t\t\t{2, 3}, 2u},\n"), 3);
        QVERIFY(!levels.contains("0x22"));
        QCOMPARE(helper.getUDSSecurityTableSize(0), "3");
    }

    void structuresOfLines()
    {
        store->addNode(1, {});
        for (int sid = 16; sid < 255; ++sid)
            store->setUDSServiceActive(1, quint8(sid), false);
        set({"udsclient_supported=1", "udsserver_version=0x03", "uds_client_cnt=4,",
             "uds_physical_request_id=0x7E0,015", "uds_physical_response_id=", // the rest is 0
             "uds_functional_request_ext_addr=7,", "uds_ext_addressing=1,2",
             "uds_server_active=2,0"});
        const QString text = CommonGeneratorHelper(store.get()).getUDSInitStructures();
        QVERIFY2(text.contains("\n\t\t3u,\n\t\t{4,0,},\n\t};\n"), qPrintable(text));
        const auto valuesOf = [&text](const QString &line) {
            return text.section(line + " = {\n", 1).section("\n\t};", 0, 0).simplified();
        };
        const QString first = valuesOf("udsLine0");
        QVERIFY2(first.startsWith("0x7E0u, 0u, 0u, 0u, 0u, 7u, ISOTP_FORMAT_NORMAL_FIXED, "),
                 qPrintable(first));
        QVERIFY(first.endsWith(", CO_TRUE"));
        QCOMPARE(valuesOf("udsLine1"),
                 "15u, 0u, 0u, 0u, 0u, 0u, ISOTP_FORMAT_EXTENDED, NULL, 0, NULL, 0, CO_FALSE");
    }

    void sessions()
    {
        const auto define = CommonGeneratorHelper::convertSessionToStackDefine;
        QCOMPARE(define(1), "UDS_SUB_SESSION_DS");
        QCOMPARE(define(5), "0x05"); // not known
        QCOMPARE(define(64), "UDS_SUB_SESSION_MANU_40");
        QCOMPARE(define(255), "UDS_SUB_SESSION_MANU_40 + 0xbf");
    }

private:
    void set(const QStringList &settings)
    {
        for (const QString &setting : settings)
            store->setGeneralSettingsValue(setting.section('=', 0, 0), setting.section('=', 1));
    }
};

QTEST_GUILESS_MAIN(tst_CommonGeneratorHelper)
#include "tst_commongeneratorhelper.moc"
