// Tests of the start-up functions: their texts, the order of their calls, and the arguments.
#include "generators/objdict/objdictinit.h"
#include "tests/fixtures/objdictsections.h"

using namespace ObjDict;

class tst_ObjDictInit : public StoreTest
{
    Q_OBJECT

private slots:
    void init();
    void writesSingleLine();
    void startsServicesInOrder();
    void followsSettings_data();
    void followsSettings();
    void writesHeads_data();
    void writesHeads();
    void setsModesOfCanFd_data();
    void setsModesOfCanFd();
    void countsRowsOfAllLines();
    void startsLinesWithGaps();
    void ignoresUnusedParameters();
    void startsNoLine();
    void startsRouting();
    void startsSdoServerOfJ1939();
    void startsUdsOfExistingLine();
    void overwritesCobIds_data();
    void overwritesCobIds();
    void overwritesCobIdsOfLines();

private:
    /// "key=value,key=value"; a comma inside a value is written as ";".
    void set(const QString &settings);
    /// An object for each service, on \a line.
    void addServices(quint8 line);
};

namespace
{

const char *const kCheck = "    if (retVal != RET_OK) {\n"
                           "        return(retVal);\n"
                           "    }\n"
                           "    CO_HANDLE_WATCHDOG\n";

/// Without the calls that every start-up has in front.
QStringList callsBehind(const QStringList &calls, const QString &name)
{
    const int last = calls.lastIndexOf(QRegularExpression(name + "\\(.*"));
    return calls.mid(last + 1);
}

} // namespace

void tst_ObjDictInit::init()
{
    store = makeStore();
    addSub(*store, 0, 0x1000, 0, 7, "0");
    addSub(*store, 0, 0x1001, 0, 5, "0");
}

void tst_ObjDictInit::set(const QString &settings)
{
    const QStringList all = settings.split(',', Qt::SkipEmptyParts);
    for (QString text : all) {
        const QStringList parts = text.replace(';', ',').split('=');
        if (parts[0] == "generateML")
            store->setMiscSettingsValue(parts[0], parts[1]);
        else
            store->setGeneralSettingsValue(parts[0], parts[1]);
    }
}

void tst_ObjDictInit::addServices(quint8 line)
{
    addLine(*store, line);
    for (const quint16 index : {0x1201, 0x127F, 0x1280, 0x12FF, 0x1014, 0x1300, 0x1301, 0x1340,
                                0x1341, 0x1800, 0x1400, 0x1F10, 0x1F81})
        addSub(*store, line, index, 0, 5, "0");
    addSub(*store, line, 0x1005, 0, 7, "0x80");
    addSub(*store, line, 0x1006, 0, 7, "0");
    addSub(*store, line, 0x1017, 0, 6, "0");
    for (const quint8 sub : {0, 1, 2}) {
        addSub(*store, line, 0x1016, sub, 7, "0");
        addSub(*store, line, 0x1028, sub, 7, "0");
    }
    addSub(*store, line, 0x1012, 0, 7, "0x80000100");
}

void tst_ObjDictInit::writesSingleLine()
{
    Sections sections(*store, classicDialect());
    initObjectDictionary(sections.context);
    QCOMPARE(
        sections.text(),
        QString("\nRET_T coCanOpenStackInit(\n"
                "         CO_EVENT_STORE_T pLoadFunction\n"
                "    )\n{\n    RET_T retVal;\n\n"
                "    CO_SERVICE_INIT_VAL_T\tserviceInitVars = {\n"
                "       { CO_OBJECT_COUNTS },\n       { CO_TXPDO_COUNTS },\n"
                "       { CO_RXPDO_COUNTS },\n"
                "#ifdef CO_SRDO_SUPPORTED\n       { CO_SRDO_COUNTS },\n"
                "#endif /* CO_SRDO_SUPPORTED */\n"
                "       { CO_SSDO_COUNTS },\n       { CO_CSDO_COUNTS },\n"
                "       { CO_ERR_CTRL_COUNTS },\n       { CO_ERR_HIST_COUNTS },\n"
                "       { CO_ACT_ERR_HIST_COUNTS },\n       { CO_EMCY_CONS_COUNTS },\n"
                "#ifdef CO_NETWORK_ROUTING_CNT\n       { CO_NETWORK_ROUTING_COUNTS }, \n"
                "#endif /* CO_NETWORK_ROUTING_CNT */\n"
                "       { CO_ASSIGN_COUNTS },\n       { CO_GUARDING_COUNTS },\n"
                "       { CO_NODE_IDS }, \n       { CO_NODE_ID_FUNCTIONS } \n    };\n\n"
                "    /* variable initialization */\n"
                "    retVal = coCanOpenStackVarInit(&serviceInitVars);\n%1\n"
                "    /* initialize object dictionary variables and pointers */\n"
                "    coOdInitOdPtr(&od_assign[0], CO_OD_ASSIGN_CNT, &od_description[0], "
                "CO_OBJ_DESC_CNT, NULL, &od_data_variables);\n\n"
                "    /* initialize sdo server(s) */\n    retVal = coSdoServerInit(1u);\n%1"
                "\n    /* initialize load parameter function */\n"
                "#if defined(CO_EVENT_DYNAMIC_STORE) || defined(CO_EVENT_PROFILE_STORE)\n"
                "    retVal = coEventRegister_LOAD_PARA(pLoadFunction);\n"
                "    if (retVal != RET_OK) {\n        return(retVal);\n    }\n#else\n"
                "    if (pLoadFunction != NULL) {\n        return(RET_INVALID_PARAMETER);\n    }\n"
                "#endif /* CO_EVENT_DYNAMIC_STORE || CO_EVENT_PROFILE_STORE */\n"
                "    /* initialize NMT slave */ \n    retVal = coNmtInit(0u);\n%1"
                "    return(RET_OK);\n}\n")
            .arg(kCheck));
}

void tst_ObjDictInit::startsServicesInOrder()
{
    addServices(0);
    set("event_led=1,isotp_connection_cnt=0x1,idnego_supported=1,lss_supported=1,nmtmaster=1,"
        "canfd_supported=1,usdo_client_cnt=1,new_init_structure=1");
    Sections sections(*store, v4Dialect());
    sections.placeConstant(0, 0x1017, 0, 4);
    sections.placeConstant(0, 0x1005, 0, 9);
    initObjectDictionary(sections.context);
    const QStringList expected = {
        "coreStackInit(&commonInitVars)",
        "coCanOpenStackVarInit(&serviceInitVars)",
        "coOdInitOdPtr(&od_assign[0],CO_OD_ASSIGN_CNT,&od_description[0],CO_OBJ_DESC_CNT,NULL,"
        "&od_data_variables)",
        "coLedInit()",
        "coUsdoServerInit()",
        "coSdoServerInit(1)",
        "coSdoServerInit(2u)",
        "coSdoServerInit(128u)",
        "coUsdoClientInit()",
        "coSdoClientInit(1u)",
        "coSdoClientInit(128u)",
        "coErrorCtrlInit(od_const_u16[4],2u)",
        "coEmcyProducerInit()",
        "coSyncInit(od_const_u32[9])",
        "coEmcyConsumerInit(2u)",
        "coTimeInit(CO_FALSE,CO_TRUE)",
        "coPdoTransmitInit(1u,0u,0u,0u,0u,NULL)",
        "coPdoReceiveInit(1u,0u,0u,0u,NULL)",
        "coSrdInit()",
        "coGfcInit(CO_TRUE,CO_TRUE)",
        "coSrdoInit(1u)",
        "coSrdoInit(64u)",
        "isoTpInit()",
        "coIdNegoInit()",
        "coGuardingInit()",
        "coLssMasterInit()",
        "coNmtInit(1u)",
    };
    QCOMPARE(sections.calls(), expected);
}

void tst_ObjDictInit::followsSettings_data()
{
    columns<QString, QString>("settings", "calls"); // of the only line, behind its SDO server
    // clang-format off
    QTest::newRow("slave")                << "nmtmaster=0"                                << "coNmtInit(0u)";
    QTest::newRow("lss_slave")            << "nmtmaster=0,lss_supported=1"                << "coLssInit() coNmtInit(0u)";
    QTest::newRow("lss_master")           << "nmtmaster=1,lss_supported=1"                << "coLssMasterInit() coNmtInit(1u)";
    QTest::newRow("options")              << "nmtmaster=2"                                << "coNmtInit(1u) coNmtInit(0u)";
    QTest::newRow("lss_and_options")      << "nmtmaster=2,lss_supported=1"                << "coLssMasterInit() coNmtInit(1u) coLssInit() coNmtInit(0u)";
    QTest::newRow("isotp_count_in_8_bits")<< "isotp_connection_cnt=256"                   << "coNmtInit(0u)";
    QTest::newRow("usdo_needs_can_fd")    << "usdo_client_cnt=1"                          << "coNmtInit(0u)";
    QTest::newRow("ml_slave")             << "generateML=true,lss_supported=1"            << "coLssInit(canLine) coNmtInit(canLine,0u)";
    QTest::newRow("ml_lss_master")        << "generateML=true,lss_supported=1,nmtmaster=1"<< "coLssMasterInit(canLine) coNmtInit(canLine,1u)";
    QTest::newRow("ml_options")           << "generateML=true,nmtmaster=2"                << "coNmtInit(canLine,1u) coLssMasterInit(canLine) coNmtInit(canLine,0u)";
    QTest::newRow("ml_lss_and_options")   << "generateML=true,nmtmaster=2,lss_supported=1"<< "coNmtInit(canLine,1u) coLssMasterInit(canLine) coNmtInit(canLine,0u) coLssInit(canLine)";
    // clang-format on
}

void tst_ObjDictInit::followsSettings()
{
    QFETCH(QString, settings);
    QFETCH(QString, calls);
    set(settings);
    Sections sections(*store, classicDialect());
    if (sections.context.form.multiLine)
        initObjectDictionaryMultiLine(sections.context);
    else
        initObjectDictionary(sections.context);
    QCOMPARE(callsBehind(sections.calls(), "coSdoServerInit").join(' '), calls);
}

void tst_ObjDictInit::writesHeads_data()
{
    columns<QString, QString>("settings", "head");
    const QString plain = "\nRET_T coCanOpenStackInit(\n         CO_EVENT_STORE_T pLoadFunction";
    const QString withOptions = "RET_T coCanOpenStackInitPara(\n"
                                "         CO_EVENT_STORE_T pLoadFunction,\n"
                                "         CO_INIT_OPTION_T *pCoOptions\n";
    const QString modes = "         , BOOL_T *pModes\n";
    // clang-format off
    QTest::newRow("can_fd")            << "canfd_supported=1"                                << plain + ",\n         BOOL_T *pModes\n    )\n";
    QTest::newRow("options")           << "nmtmaster=2"                                      << withOptions + "    )\n";
    QTest::newRow("options_can_fd")    << "nmtmaster=2,canfd_supported=1"                    << withOptions + modes + "    )\n";
    QTest::newRow("ml")                << "generateML=true"                                  << plain + "\n    )\n";
    QTest::newRow("ml_can_fd")         << "generateML=true,canfd_supported=1"                << plain + "\n" + modes + "    )\n";
    QTest::newRow("ml_options")        << "generateML=true,nmtmaster=0;2"                    << withOptions + "    )\n";
    QTest::newRow("ml_options_can_fd") << "generateML=true,nmtmaster=0;2,canfd_supported=1" << withOptions + modes + "    )\n";
    // clang-format on
}

void tst_ObjDictInit::writesHeads()
{
    QFETCH(QString, settings);
    QFETCH(QString, head);
    set(settings);
    Sections sections(*store, classicDialect());
    if (sections.context.form.multiLine)
        initObjectDictionaryMultiLine(sections.context);
    else
        initObjectDictionary(sections.context);
    const QString text = sections.text();
    QVERIFY2(text.contains(head), qPrintable(text));
}

void tst_ObjDictInit::setsModesOfCanFd_data()
{
    columns<QString, QString>("settings", "text");
    const QString oldEnd = "       { CO_NODE_ID_FUNCTIONS }, \n       { CO_TRUE }\n    };\n";
    const QString newEnd = "       { CO_NODE_ID_FUNCTIONS } \n    };\n";
    // clang-format off
    QTest::newRow("old_initialiser")    << "new_init_structure=0"                 << oldEnd;
    QTest::newRow("new_initialiser")    << "new_init_structure=1"                 << newEnd;
    QTest::newRow("old_test")           << "new_init_structure=0"                 << "    if (serviceInitVars.fdMode[0] == CO_TRUE) {\n       retVal = coUsdoServerInit();\n";
    QTest::newRow("new_test")           << "new_init_structure=1"                 << "    if (commonInitVars.fdMode[0] == CO_TRUE) {\n       retVal = coUsdoServerInit();\n";
    QTest::newRow("old_mode")           << "new_init_structure=0"                 << "        serviceInitVars.fdMode[0] = pModes[0];\n";
    QTest::newRow("version")            << "new_init_structure=1"                 << "serviceInitVars = {\n       5u,\n       { CO_OBJECT_COUNTS },\n";
    QTest::newRow("ml_old_initialiser") << "generateML=true"                      << oldEnd;
    QTest::newRow("ml_version")         << "generateML=true,new_init_structure=1" << "serviceInitVars = {\n       5,\n       { CO_OBJECT_COUNTS },\n";
    QTest::newRow("ml_loop")            << "generateML=true,new_init_structure=1" << "    for (CO_LINE = 0; CO_LINE < CAN_MULTI_LINE_CNT; CO_LINE ++)\n    {\n        commonInitVars.fdMode[CO_LINE] = CO_TRUE;\n        if (pModes != NULL) {\n            commonInitVars.fdMode[CO_LINE] = pModes[CO_LINE];\n        }\n    }\n";
    QTest::newRow("ml_old_loop")        << "generateML=true"                      << "            serviceInitVars.fdMode[CO_LINE] = pModes[CO_LINE];\n";
    QTest::newRow("ml_result")          << "generateML=true,lss_supported=1"      << "       )\n{\n    RET_T retVal;\n    (void) pCoOptions; /* currently unused */\n\n";
    QTest::newRow("ml_bare_check")      << "generateML=true,idnego_supported=1"   << "       )\n{\n    RET_T retVal = RET_OK;\n    (void) pCoOptions;";
    QTest::newRow("ml_bare_lss_check")  << "generateML=true,lss_supported=1,nmtmaster=2" << "       )\n{\n    RET_T retVal = RET_OK;\n    /*";
    // clang-format on
}

void tst_ObjDictInit::setsModesOfCanFd()
{
    QFETCH(QString, settings);
    set("canfd_supported=1," + settings);
    Sections sections(*store, v4Dialect());
    if (sections.context.form.multiLine)
        initObjectDictionaryMultiLine(sections.context);
    else
        initObjectDictionary(sections.context);
    QFETCH(QString, text);
    const QString written = sections.text();
    QVERIFY2(written.contains(text), qPrintable(written));
}

// Line 1 has one object, which is not started; one of line 0 is virtual.
void tst_ObjDictInit::countsRowsOfAllLines()
{
    addSub(*store, 0, 0x2000, 0, 5, "0", "rw", 3);
    addLine(*store, 1);
    addSub(*store, 1, 0x1000, 0, 7, "0");
    addLine(*store, 2);
    addSub(*store, 2, 0x1000, 0, 7, "0");
    addSub(*store, 2, 0x1018, 0, 5, "1");
    addSub(*store, 2, 0x1018, 1, 7, "0");
    Sections sections(*store, classicDialect());
    initObjectDictionaryMultiLine(sections.context);
    const QString text = sections.text();
    QVERIFY(text.contains("(canLine, &od_assign[0], 2, od_description, 3, NULL,"));
    QVERIFY(text.contains("(canLine, &od_assign[3], 2, od_description, 3, NULL,"));
    QVERIFY(!text.contains("_line1("));
    QVERIFY(text.contains("canLineTable[CO_LINE_ARRAY_DECL] = {0, 1, 2 };\n"));
}

void tst_ObjDictInit::startsLinesWithGaps()
{
    addServices(2);
    addLine(*store, 27); // 2 is less than the count of lines by one, and not the last
    set("canfd_supported=1");
    Sections sections(*store, classicDialect());
    initObjectDictionaryMultiLine(sections.context);
    const QString text = sections.text();
    QVERIFY(text.startsWith("\nUNSIGNED8 canLineTable[CO_LINE_ARRAY_DECL] = {0, 2, 27,  };\n\n"));
    QVERIFY(text.contains("serviceInitVars.fdMode[CO_LINE] = pModes[canLineTable[CO_LINE]];\n"));
    QVERIFY(text.contains("        retVal = coCanOpenStackInit_line2(2, pCoInitOpt, pModes);\n"));
    QVERIFY(text.contains("   \tcase 2:\n   \t\tretVal = coCanOpenStackInit_line2(canLine, "
                          "pCoOptions, pModes);\n   \t\tbreak;\n"));
}

void tst_ObjDictInit::ignoresUnusedParameters()
{
    addServices(1);
    set("nmtmaster=0;2,fct_store=load");
    Sections sections(*store, classicDialect());
    initObjectDictionaryMultiLine(sections.context);
    const QString text = sections.text();
    QCOMPARE(text.count("(void) pCoOptions;"), 1);
    QVERIFY(text.indexOf("(void) pCoOptions;") < text.indexOf("line << 1"));
    QVERIFY(text.contains("        pCoInitOpt = &pCoOptions[1];\n"));
    QVERIFY(text.contains("#else\n    (void) pLoadFunction;\n#endif"));
}

void tst_ObjDictInit::startsNoLine()
{
    store->delIndex(0, 0x1001, false);
    set("generateML=true,nmtmaster=2,canfd_supported=1");
    Sections sections(*store, classicDialect());
    initObjectDictionaryMultiLine(sections.context);
    const QString text = sections.text();
    QVERIFY(text.contains("RET_T retVal;\n    (void) pCoInitOpt;\n    (void) pCoOptions;\n"));
    QVERIFY(text.contains("RET_T retVal;\n    (void) pCoOptions;\n    (void) pModes;\n"));
}

void tst_ObjDictInit::startsRouting()
{
    addLine(*store, 1);
    addSub(*store, 0, 0x1F2C, 1, 7, "0");
    addSub(*store, 1, 0x1001, 0, 5, "0");
    addSub(*store, 1, 0x1600, 0, 5, "0", "ro");
    for (const bool isDynamic : {false, true}) {
        addSub(*store, 1, 0x1600, 0, 5, "0", isDynamic ? "rw" : "ro");
        Sections sections(*store, classicDialect());
        initObjectDictionaryMultiLine(sections.context);
        QCOMPARE(sections.calls().contains("coPdoNetworkRouting()"), isDynamic);
    }
}

void tst_ObjDictInit::startsSdoServerOfJ1939()
{
    set("generateML=true");
    Sections single(*store, classicDialect());
    initCamod(single.context);
    QCOMPARE(single.text(), QString("\nRET_T\tj1939OdInit(void)\n{\n"
                                    "\tcoOdInitOdPtr(&od_assign[0], CO_OD_ASSIGN_CNT, "
                                    "&od_description[0], CO_OBJ_DESC_CNT, NULL, "
                                    "&od_data_variables);\n\n\treturn(RET_OK);\n}\n"));
    addSub(*store, 0, 0x2000, 0, 5, "0", "rw", 3);
    addLine(*store, 3);
    addSub(*store, 3, 0x1000, 0, 7, "0");
    Sections several(*store, classicDialect());
    initCamod(several.context);
    const QString call = "\t\tcase %1:\n"
                         "\t\t/* initialize object dictionary variables and pointers */\n"
                         "\t\tcoOdInitOdPtr(canLine, &od_assign[%2], %3, od_description, %4, NULL, "
                         "&od_data_variables);\n\n\t\tbreak;\n";
    QCOMPARE(several.text(), "\nRET_T\tj1939OdInit(\n\tUNSIGNED8 canLine\n)\n{\n"
                             "\tswitch (canLine) {\n" +
                                 call.arg(0).arg(0).arg(2).arg(3) +
                                 call.arg(3).arg(2).arg(1).arg(1) +
                                 "\tdefault:\n\tbreak;\n\t}\n\treturn(RET_OK);\n}\n");
}

void tst_ObjDictInit::startsUdsOfExistingLine()
{
    addServices(2);
    set("udsclient_supported=1");
    Sections several(*store, classicDialect());
    initObjectDictionaryMultiLine(several.context);
    QVERIFY(several.text().contains("udsStackInit_line(2, &udsLine2);\n"));
    store->delNode(0);
    set("udsclient_supported=1"); // went with the line
    Sections single(*store, classicDialect());
    initObjectDictionary(single.context);
    const QString text = single.text();
    QVERIFY(text.contains("udsStackInit_line(&udsLine2);\n"));
    QVERIFY(text.contains("coSrdoInit(1u);\n"));
    QVERIFY(text.contains("coGuardingInit();\n"));
}

void tst_ObjDictInit::overwritesCobIds_data()
{
    columns<QString, QString>("objects", "body"); // elements are index, subindex, COB-ID
    const QString cobId = "\tUNSIGNED32 cobId = 0ul;\n";
    const QString nodeId = "\tUNSIGNED8 nodeId = coNmtGetNodeId();\n";
    const QString plain = "\tret = coOdGetDefaultVal_u32(0x%1, &cobId);\n"
                          "\tif (ret == RET_OK) {\n"
                          "\t\tret = coOdSetCobid(0x%1, cobId);\n"
                          "\t}\n";
    const QString relative = "\tcobId = nodeId + %2;\n\tret = coOdSetCobid(0x%1, cobId);\n\n";
    const QString rpdos = "\n\t/* RxPDO COB IDs */\n";
    const QString tpdos = "\n\t/* TxPDO COB IDs */\n";
    const QString servers = "\n\t/* SDO server COB IDs */\n";
    const QString clients = "\n\t/* SDO client COB IDs */\n";
    // clang-format off
    QTest::newRow("nothing")       << "1600 1 $NODEID+1"                           << QString();
    QTest::newRow("plain")         << "1400 1 0x200"                               << cobId + rpdos + plain.arg("1400, 1");
    QTest::newRow("node_id")       << "1401 1 0x80000000+$NodeId+0x200"            << cobId + nodeId + rpdos + relative.arg("1401, 1", "0x200");
    QTest::newRow("tpdo_alone")    << "18ab 1 $NODEID+0x180"                       << cobId + nodeId + tpdos + relative.arg("18ab, 1", "0x180");
    QTest::newRow("server")        << "1201 1 $NODEID+0x600"                       << cobId + nodeId + servers + relative.arg("1201, 1", "0x600") + plain.arg("1201, 2");
    QTest::newRow("order")         << "1801 1 1,1400 1 1,1280 1 1,1202 1 1"        << cobId + servers + plain.arg("1202, 1") + plain.arg("1202, 2") + clients + plain.arg("1280, 1") + plain.arg("1280, 2") + rpdos + plain.arg("1400, 1") + tpdos + plain.arg("1801, 1");
    QTest::newRow("not_octal")     << "1400 1 $NODEID+0200"                        << cobId + nodeId + rpdos + relative.arg("1400, 1", "200");
    QTest::newRow("no_number")     << "1400 1 $NODEID+x;"                          << cobId + nodeId + rpdos + relative.arg("1400, 1", "0");
    QTest::newRow("no_offset")     << "1400 1 $NODEID+"                            << cobId + nodeId + rpdos + relative.arg("1400, 1", "0");
    // clang-format on
}

void tst_ObjDictInit::overwritesCobIds()
{
    QFETCH(QString, objects);
    QFETCH(QString, body);
    const QStringList all = objects.split(',');
    for (const QString &text : all) {
        const QStringList object = text.split(' ');
        addSub(*store, 0, object[0].toUShort(nullptr, 16), quint8(object[1].toInt()), 7, object[2]);
    }
    Sections sections(*store, classicDialect());
    store->setGeneralSettingsValue("overwrite_predef", "256");
    overwrite301(sections.context);
    QCOMPARE(sections.text(), QString());
    store->setGeneralSettingsValue("overwrite_predef", "257");
    overwrite301(sections.context);
    QCOMPARE(sections.text(),
             "\n/* Please be careful - this function overwrite the COB-ids of the\n"
             "* predefined connection set with values setting up by the TSR\n"
             "* It should to be called inside the load indication function.\n*/\n"
             "RET_T userOverwriteCobIdSettings(void)\n{\n\tRET_T ret = RET_OK;\n" +
                 body + "\treturn ret;\n}\n");
}

void tst_ObjDictInit::overwritesCobIdsOfLines()
{
    for (const quint8 line : {1, 2, 3})
        addLine(*store, line);
    addSub(*store, 0, 0x1400, 1, 7, "$NODEID+0x200");
    addSub(*store, 1, 0x1800, 1, 7, "$NODEID+0x180");
    addSub(*store, 3, 0x1201, 1, 7, "0x640");
    for (const bool withNodeId : {true, false}) {
        set(withNodeId ? "overwrite_predef=0;1;0;1" : "overwrite_predef=0;0;0;1");
        Sections sections(*store, classicDialect());
        overwrite301(sections.context);
        const QString text = sections.text();
        const QString ofLine1 = "\tUNSIGNED8 nodeId = coNmtGetNodeId(1);\n"
                                "\n\t/* TxPDO COB IDs */\n"
                                "\tcobId = (UNSIGNED32)nodeId + (UNSIGNED32)0x180;\n"
                                "\tret = coOdSetCobid(1, 0x1800, 1, cobId);\n\n"
                                "\tnodeId = coNmtGetNodeId(3);\n";
        QVERIFY(text.endsWith("\tUNSIGNED32 cobId = 0ul;\n" + (withNodeId ? ofLine1 : QString()) +
                              "\n\t/* SDO server COB IDs starting at 2nd SDO server */\n"
                              "\tret = coOdGetDefaultVal_u32(3, 0x1201, 1, &cobId);\n"
                              "\tif (ret == RET_OK) {\n"
                              "\t\tret = coOdSetCobid(3, 0x1201, 1, cobId);\n"
                              "\t}\n"
                              "\tret = coOdGetDefaultVal_u32(3, 0x1201, 2, &cobId);\n"
                              "\tif (ret == RET_OK) {\n"
                              "\t\tret = coOdSetCobid(3, 0x1201, 2, cobId);\n"
                              "\t}\n"
                              "\treturn ret;\n}\n"));
    }
}

QTEST_GUILESS_MAIN(tst_ObjDictInit)
#include "tst_objdictinit.moc"
