// Tests of the start-up functions: what C does not notice in their texts. Their calls, and the
// order of these, are told by tst_generatedc, which runs them.
#include "generators/objdict/objdictinit.h"
#include "tests/fixtures/objdictsections.h"

using namespace ObjDict;

class tst_ObjDictInit : public StoreTest
{
    Q_OBJECT

private slots:
    void init();
    void writes_data();
    void writes();
    void startsSdoServerOfJ1939();
    void overwritesCobIds();
    void overwritesCobIdsOfLines();

private:
    /// "key=value,key=value"; a comma inside a value is written as ";".
    void set(const QString &settings);
    /// What a start-up looks at, on \a line.
    void addServices(quint8 line);
};

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
    for (const quint16 index : {0x1201, 0x1280, 0x1014, 0x1300, 0x1301})
        addSub(*store, line, index, 0, 5, "0");
}

void tst_ObjDictInit::writes_data()
{
    columns<QString, QString, QString>("line", "settings", "text"); // a line with services
    const QString check = "    if (retVal != RET_OK) {\n        return(retVal);\n    }\n"
                          "    CORE_HANDLE_WATCHDOG\n";
    const QString init = "\nRET_T coCanOpenStackInit(\n         CO_EVENT_STORE_T pLoadFunction";
    const QString para = "RET_T coCanOpenStackInitPara(\n"
                         "         CO_EVENT_STORE_T pLoadFunction,\n"
                         "         CO_INIT_OPTION_T *pCoOptions\n";
    const QString modes = "         , BOOL_T *pModes\n";
    // clang-format off
    QTest::newRow("bound_load")       << "" << "fct_store=load"                                  << QString("#else\n    (void) pLoadFunction;\n#endif");
    QTest::newRow("head")             << "" << ""                                                << init + "\n    )\n{\n    RET_T retVal;\n\n    CO_SERVICE_INIT_VAL_T\tserviceInitVars = {\n       { CO_OBJECT_COUNTS },\n";
    QTest::newRow("head_fd")          << "" << "canfd_supported=1"                               << init + ",\n         BOOL_T *pModes\n    )\n";
    QTest::newRow("head_options_fd")  << "" << "nmtmaster=2,canfd_supported=1"                   << para + modes + "    )\n";
    QTest::newRow("head_lines_fd")    << "" << "generateML=true,canfd_supported=1"               << init + "\n" + modes + "    )\n";
    QTest::newRow("head_options_of_a_line") << "" << "generateML=true,nmtmaster=0;2"             << para + "    )\n";
    QTest::newRow("blanks_in_counts") << "" << ""                                                << "       { CO_NETWORK_ROUTING_COUNTS }, \n#endif /* CO_NETWORK_ROUTING_CNT */\n";
    QTest::newRow("blanks_at_end")    << "" << ""                                                << "       { CO_NODE_IDS }, \n       { CO_NODE_ID_FUNCTIONS } \n    };\n\n    /* variable initialization */\n";
    QTest::newRow("sdo_server")       << "" << ""                                                << "\n    /* initialize sdo server(s) */\n    retVal = coSdoServerInit(1u);\n" + check + "\n    /* initialize load parameter function */\n#if defined";
    QTest::newRow("nmt")              << "" << ""                                                << "    /* initialize NMT slave */ \n    retVal = coNmtInit(0u);\n" + check + "    return(RET_OK);\n}\n";
    QTest::newRow("old_initialiser")  << "" << "canfd_supported=1"                               << "       { CO_NODE_ID_FUNCTIONS }, \n       { CO_TRUE }\n    };\n";
    QTest::newRow("old_test")         << "" << "canfd_supported=1"                               << "    if (serviceInitVars.fdMode[0] == CO_TRUE) {\n       retVal = coUsdoServerInit();\n";
    QTest::newRow("version")          << "" << "new_init_structure=1"                            << "serviceInitVars = {\n       5u,\n";
    QTest::newRow("version_of_lines") << "" << "generateML=true,new_init_structure=1"            << "serviceInitVars = {\n       5,\n";
    QTest::newRow("loop")             << "" << "generateML=true,canfd_supported=1"               << "    for (CO_LINE = 0; CO_LINE < CAN_MULTI_LINE_CNT; CO_LINE ++)\n    {\n        serviceInitVars.fdMode[CO_LINE] = CO_TRUE;\n        if (pModes != NULL) {\n            serviceInitVars.fdMode[CO_LINE] = pModes[CO_LINE];\n        }\n    }\n";
    QTest::newRow("loop_with_gaps")   << "7" << "canfd_supported=1"                              << "serviceInitVars.fdMode[CO_LINE] = pModes[canLineTable[CO_LINE]];\n";
    QTest::newRow("line_table")       << "2" << ""                                               << "\nUNSIGNED8 canLineTable[CO_LINE_ARRAY_DECL] = {0, 2,  };\n\n";
    QTest::newRow("result_of_check")  << "" << "generateML=true,canfd_supported=1,idnego_supported=1" << "       )\n{\n    RET_T retVal = RET_OK;\n    (void) pCoOptions; /* currently unused */\n\n";
    QTest::newRow("result_of_lss")    << "" << "generateML=true,canfd_supported=1,lss_supported=1,nmtmaster=2" << "       )\n{\n    RET_T retVal = RET_OK;\n    /*";
    QTest::newRow("result_of_call")   << "" << "generateML=true,canfd_supported=1,lss_supported=1" << "       )\n{\n    RET_T retVal;\n    (void) pCoOptions;";
    QTest::newRow("options_by_line")  << "1" << "nmtmaster=0;2"                                  << "        pCoInitOpt = &pCoOptions[1];\n";
    QTest::newRow("case_of_line")     << "2" << "canfd_supported=1"                              << "   \tcase 2:\n   \t\tretVal = coCanOpenStackInit_line2(canLine, pCoOptions, pModes);\n   \t\tbreak;\n";
    // clang-format on
}

void tst_ObjDictInit::writes()
{
    QFETCH(QString, line);
    QFETCH(QString, settings);
    QFETCH(QString, text);
    if (!line.isEmpty())
        addServices(quint8(line.toUInt()));
    set(settings);
    Sections sections(*store, v4Dialect());
    if (sections.context.form.multiLine)
        initObjectDictionaryMultiLine(sections.context);
    else
        initObjectDictionary(sections.context);
    const QString written = sections.text();
    QVERIFY2(written.contains(text), qPrintable(written));
}

void tst_ObjDictInit::startsSdoServerOfJ1939()
{
    Sections single(*store, classicDialect());
    initCamod(single.context);
    QVERIFY(single.text().startsWith("\nRET_T\tj1939OdInit(void)\n{\n\tcoOdInitOdPtr(&od_ass"));
    addLine(*store, 3);
    addSub(*store, 3, 0x1000, 0, 7, "0"); // a single object is enough here
    Sections several(*store, classicDialect());
    initCamod(several.context);
    QVERIFY(several.text().endsWith(
        "\t\tcase 3:\n\t\t/* initialize object dictionary variables and pointers */\n"
        "\t\tcoOdInitOdPtr(canLine, &od_assign[2], 1, od_description, 1, NULL, "
        "&od_data_variables);\n\n\t\tbreak;\n"
        "\tdefault:\n\tbreak;\n\t}\n\treturn(RET_OK);\n}\n"));
}

void tst_ObjDictInit::overwritesCobIds()
{
    addSub(*store, 0, 0x1800, 1, 7, "0x80000000+$NodeId+0x180");
    for (const quint16 index : {0x1201, 0x1280, 0x1400})
        addSub(*store, 0, index, 1, 7, "1");
    Sections sections(*store, classicDialect());
    set("overwrite_predef=256"); // read in 8 bits
    overwrite301(sections.context);
    QCOMPARE(sections.text(), QString());
    set("overwrite_predef=257");
    overwrite301(sections.context);
    const QString text = sections.text();
    QVERIFY(text.startsWith(
        "\n/* Please be careful - this function overwrite the COB-ids of the\n"
        "* predefined connection set with values setting up by the TSR\n"
        "* It should to be called inside the load indication function.\n*/\n"
        "RET_T userOverwriteCobIdSettings(void)\n{\n\tRET_T ret = RET_OK;\n"
        "\tUNSIGNED32 cobId = 0ul;\n\tUNSIGNED8 nodeId = coNmtGetNodeId();\n"
        "\n\t/* SDO server COB IDs */\n\tret = coOdGetDefaultVal_u32(0x1201, 1, &cobId);\n"));
    QVERIFY(text.contains("\n\t/* SDO client COB IDs */\n"));
    QVERIFY(text.endsWith("\n\t/* RxPDO COB IDs */\n"
                          "\tret = coOdGetDefaultVal_u32(0x1400, 1, &cobId);\n"
                          "\tif (ret == RET_OK) {\n\t\tret = coOdSetCobid(0x1400, 1, cobId);\n\t}\n"
                          "\n\t/* TxPDO COB IDs */\n\tcobId = nodeId + 0x180;\n"
                          "\tret = coOdSetCobid(0x1800, 1, cobId);\n\n\treturn ret;\n}\n"));
}

void tst_ObjDictInit::overwritesCobIdsOfLines()
{
    addLine(*store, 1);
    addLine(*store, 3);
    addSub(*store, 1, 0x1800, 1, 7, "$NODEID+0x180");
    addSub(*store, 3, 0x1201, 1, 7, "0x640");
    set("overwrite_predef=0;1;0;1");
    Sections sections(*store, classicDialect());
    overwrite301(sections.context);
    QVERIFY(sections.text().contains("\n\t/* TxPDO COB IDs */\n"
                                     "\tcobId = (UNSIGNED32)nodeId + (UNSIGNED32)0x180;\n"
                                     "\tret = coOdSetCobid(1, 0x1800, 1, cobId);\n\n"
                                     "\tnodeId = coNmtGetNodeId(3);\n"
                                     "\n\t/* SDO server COB IDs starting at 2nd SDO server */\n"));
}

QTEST_GUILESS_MAIN(tst_ObjDictInit)
#include "tst_objdictinit.moc"
