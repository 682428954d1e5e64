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
        const QString head = "CO_COMMON_INIT_VAL_T    commonInitVars = {\n\t1u,\n"
                             "\t{ CO_REC_BUFFER_COUNTS },\n\t{ CO_TR_BUFFER_COUNTS },\n"
                             "\t{ CO_COB_COUNTS }, \n";
        const QString isotp = ",\n\t{ ISOTP_CLIENT_COUNTS },\n\t{ ISOTP_SERVER_COUNTS },\n";
        // clang-format off
        QTest::newRow("plain") << QStringList{"line0type=1"} << head + "\t{ MP_PROT_TYPE_CANOPEN}};\n\n";
        QTest::newRow("raw_with_uds") << QStringList{"line0type=4", "udsclient_supported=1"}
            << head + "\t{ MP_PROT_TYPE_RAWCAN | MP_PROT_TYPE_UDS}" + isotp + "};\n\n";
        QTest::newRow("can_fd") << QStringList{"line0type=5", "canfd_supported=1"}
            << head + "\t{ MP_PROT_TYPE_J1939 | MP_PROT_TYPE_CANOPEN},\n\t{ CO_TRUE }\n};\n\n";
        QTest::newRow("one_comma_with_uds_and_can_fd") << QStringList{"line0type=2", "udsserver_supported=1", "canfd_supported=2"}
            << head + "\t{ MP_PROT_TYPE_J1939 | MP_PROT_TYPE_UDS}" + isotp + "\t{ CO_TRUE }\n};\n\n";
        QTest::newRow("unknown_type") << QStringList{"line0type=3", "udsserver_supported=2"} << head + "\t{ MP_PROT_TYPE_UNKNOWN}};\n\n";
        // clang-format on
    }

    void commonInitVars()
    {
        QFETCH(QStringList, settings);
        set(settings);
        QTEST(CommonGeneratorHelper(store.get()).getCommonInitVars(), "text");
    }

    void commonInitVarsOfV4CountLinesWithGaps()
    {
        store->addNode(2, {});
        set({"line0type=1", "line2type=4", "canfd_supported=1"});
        QCOMPARE(CommonGeneratorHelperV4(store.get()).getCommonInitVars(),
                 "CORE_COMMON_INIT_VAL_T    commonInitVars = {\n\t2u,\n"
                 "\t{ CORE_REC_BUFFER_COUNTS },\n\t{ CORE_TR_BUFFER_COUNTS },\n"
                 "\t{ CORE_COB_COUNTS }, \n\t{ MP_PROT_TYPE_CANOPEN, MP_PROT_TYPE_RAWCAN},\n"
                 "\t{ CO_TRUE, CO_TRUE }\n};\n\n");
    }

    void noUdsTextWithoutUds()
    {
        set({"udsserver_supported=2", "udsclient_supported=0"});
        const CommonGeneratorHelper helper(store.get());
        QCOMPARE(helper.getUDSInit_common() + helper.getUDSInit_lines(0, true) +
                     helper.getUDSInitStructures() + helper.getUDSSessionTable(0),
                 "");
    }

    void lineCall()
    {
        set({"udsserver_supported=1"});
        const QString test = "\tif (retVal != RET_OK) {\n\t\treturn(retVal);\n\t}\n\n";
        const CommonGeneratorHelper helper(store.get());
        QCOMPARE(helper.getUDSInit_lines(3, false),
                 "\t/* UDS line initialization */ \n\tretVal = udsStackInit_line(&udsLine3);\n" +
                     test);
        QCOMPARE(helper.getUDSInit_lines(3, true),
                 "\t/* UDS line initialization */ \n\tretVal = udsStackInit_line(3, &udsLine3);\n" +
                     test);
    }

    void tablesHoldAsManyRowsAsTheirSizeTells()
    {
        set({"udsserver_supported=1"});
        activateOnly({0x11, 0x22, 0x85}); // the last has no name, and no row
        store->setUDSServiceSessions(0, 0x11, "1, 65,x,300");
        store->setUDSServiceSessions(0, 0x22, "");
        store->setUDSServiceUserLevels(0, 0x11, "2,3");
        const CommonGeneratorHelper helper(store.get());
        QCOMPARE(helper.getUDSSessionTable(0),
                 "\tstatic UDS_REQ_SESSION_TYPE_TABLE_T\tudsSessionTbl_0[] = {\n"
                 "\t\t/* ECUReset */\n"
                 "\t\t{ 0x11, UDS_SUB_RESET_HR,\n"
                 "\t\t\t{UDS_SUB_SESSION_DS, UDS_SUB_SESSION_MANU_40 + 0x01}, 2u},\n"
                 "\t\t{ 0x11, UDS_SUB_RESET_KOFFONR,\n"
                 "\t\t\t{UDS_SUB_SESSION_DS, UDS_SUB_SESSION_MANU_40 + 0x01}, 2u},\n"
                 "\t\t{ 0x11, UDS_SUB_RESET_SR,\n"
                 "\t\t\t{UDS_SUB_SESSION_DS, UDS_SUB_SESSION_MANU_40 + 0x01}, 2u},\n"
                 "\t\t/* ReadDataByIdentifier */\n"
                 "\t\t{ 0x22, 0u,\n"
                 "\t\t\t{0u}, 0u},\n"
                 "\n\t};\n\n");
        QCOMPARE(helper.getUDSSessionTableSize(0), "4");
        const QString levels = helper.getUDSSecurityTable(0);
        QVERIFY(levels.startsWith("\tstatic UDS_SECURITY_LEVEL_TABLE_T\tsecurityLvlTbl_0[] = {\n"));
        QCOMPARE(levels.count("\t\t\t{2, 3}, 2u},\n"), 3);
        QVERIFY(!levels.contains("0x22"));
        QCOMPARE(helper.getUDSSecurityTableSize(0), "3");
    }

    void structuresReferToTheTablesOfTheirLine()
    {
        store->addNode(1, {});
        activateOnly({0x31});
        store->setUDSServiceUserLevels(0, 0x31, "1");
        for (int sid = 16; sid < 255; ++sid)
            store->setUDSServiceActive(1, quint8(sid), false);
        set({"udsserver_supported=1", "udsserver_version=0x03", "uds_client_cnt=4,5",
             "uds_physical_request_id=0x7E0,015", "uds_physical_response_id=", // the rest is 0
             "uds_functional_request_ext_addr=7,", "uds_ext_addressing=1,2",
             "uds_server_active=2,0"});
        const QString text = CommonGeneratorHelper(store.get()).getUDSInitStructures();
        QVERIFY(text.startsWith("\t/* UDS common initialization structure */ \n"
                                "\tconst UDS_SERVICE_INIT_VAL_T udsServiceInitVars = {\n"
                                "\t\t3u,\n\t\t{0,0,},\n\t};\n\n"
                                "\tstatic UDS_REQ_SESSION_TYPE_TABLE_T\tudsSessionTbl_0[] = {\n"));
        QVERIFY(text.contains("\n\t};\n\n\n\tstatic UDS_SECURITY_LEVEL_TABLE_T\tsecurityLvlTbl_0"));
        QVERIFY(!text.contains("Tbl_1"));
        QCOMPARE(text.mid(text.indexOf("\t/* UDS CAN-IDs")),
                 "\t/* UDS CAN-IDs for line 0 */\n"
                 "\tconst UDS_CONFIG_INIT_VAL_T\tudsLine0 = {\n"
                 "\t\t0x7E0u,\n\t\t0u,\n\t\t0u,\n\t\t0u,\n\t\t0u,\n\t\t7u,\n"
                 "\t\tISOTP_FORMAT_NORMAL_FIXED,\n"
                 "\t\tudsSessionTbl_0,\n\t\t3,\n\t\tsecurityLvlTbl_0,\n\t\t3,\n"
                 "\t\tCO_TRUE\n\t};\n\n"
                 "\t/* UDS CAN-IDs for line 1 */\n"
                 "\tconst UDS_CONFIG_INIT_VAL_T\tudsLine1 = {\n"
                 "\t\t15u,\n\t\t0u,\n\t\t0u,\n\t\t0u,\n\t\t0u,\n\t\t0u,\n"
                 "\t\tISOTP_FORMAT_EXTENDED,\n"
                 "\t\tNULL,\n\t\t0,\n\t\tNULL,\n\t\t0,\n"
                 "\t\tCO_FALSE\n\t};\n\n");
    }

    void clientCountsOfEachLine()
    {
        store->addNode(1, {});
        set({"udsclient_supported=1", "uds_client_cnt=4,"});
        QVERIFY(
            CommonGeneratorHelper(store.get()).getUDSInitStructures().contains("\t\t{4,0,},\n"));
    }

    void sessions_data()
    {
        columns<int, QString>("session", "text");
        // clang-format off
        QTest::newRow("default")      << 1   << "UDS_SUB_SESSION_DS";
        QTest::newRow("unknown")      << 5   << "0x05";
        QTest::newRow("first_manu")   << 64  << "UDS_SUB_SESSION_MANU_40";
        QTest::newRow("last")         << 255 << "UDS_SUB_SESSION_MANU_40 + 0xbf";
        // clang-format on
    }

    void sessions()
    {
        QFETCH(int, session);
        QTEST(CommonGeneratorHelper::convertSessionToStackDefine(quint8(session)), "text");
    }

private:
    void set(const QStringList &settings)
    {
        for (const QString &setting : settings)
            store->setGeneralSettingsValue(setting.section('=', 0, 0), setting.section('=', 1));
    }

    void activateOnly(const QList<int> &services)
    {
        for (int sid = 16; sid < 255; ++sid)
            store->setUDSServiceActive(0, quint8(sid), services.contains(sid));
    }
};

QTEST_GUILESS_MAIN(tst_CommonGeneratorHelper)
#include "tst_commongeneratorhelper.moc"
