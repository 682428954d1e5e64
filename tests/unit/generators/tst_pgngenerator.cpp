// The source of a J1939 device, section by section.
#include "generators/j1939/pgngenerator.h"
#include "generators/j1939/pgninit.h"
#include "generators/j1939/pgnsections.h"
#include "tests/fixtures/storefixture.h"

#include <QBuffer>

namespace
{

constexpr quint8 kTx = 0x55;
constexpr quint8 kRx = 0x77;

/// All that \a sections write for \a store.
QString written(ObjectDataBase &store, const QVector<void (*)(Pgn::Context &)> &sections,
                const Pgn::Dialect &dialect = Pgn::classicDialect())
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    TextWriter out(&buffer);
    Pgn::Context context = Pgn::makeContext(store, out, dialect);
    for (const auto section : sections)
        section(context);
    out.finish();
    return QString::fromUtf8(buffer.data());
}

/// What follows \a start in \a text, up to \a end.
QString between(const QString &text, const QString &start, const QString &end)
{
    const int from = text.indexOf(start);
    return from < 0 ? "not there" : text.mid(from + start.size()).section(end, 0, 0);
}

} // namespace

class tst_PgnGenerator : public StoreTest
{
    Q_OBJECT

private slots:
    void init()
    {
        store = makeStore();
        set({"line0type=2", "new_init_structure=1"});
    }

    void variablesStartAsNotAvailable()
    {
        set({"init_static_variables=1"});
        addSpn(0xF004, kTx, 190, 6);
        addSpn(0xF004, kTx, 5, 105);
        addSpn(0xF004, kTx, 7, 24);
        addSpn(0xF004, kTx, 8, 3); // has no such value
        addSpn(0xF004, kTx, 9, 8);
        addSpn(0xF004, kRx, 190, 6); // the same number the other way
        addSpn(0xF004, kRx, 191, 6);
        QCOMPARE(written(*store, {Pgn::defineManagedVariables}),
                 "\n/* definition of managed variables */\n"
                 "static UNSIGNED8\tmv_u8[1]= {\n\t(UNSIGNED8)63u /* 61444:5 */};\n"
                 "static UNSIGNED16\tmv_u16[3]= {\n\t(UNSIGNED16)65535u /* 61444:190 */,\n"
                 "\t(UNSIGNED16)65535u /* 61444:191 */,\n"
                 "\t(UNSIGNED16)65535u /* 61444:190 */};\n"
                 "static INTEGER16\tmv_i16[1]= {\n\t(INTEGER16)0u /* 61444:8 */};\n"
                 "static UNSIGNED64\tmv_u64[1]= {\n"
                 "\tU64_SET(0x00,0x00,0x00,0xff,0xff,0xff,0xff,0xff) /* 61444:7 */};\n"
                 "static REAL32\tmv_r32[1]= {\n"
                 "\t(REAL32)0.00000000e+00f /* 61444:9 */};\n");
        const QString mappings =
            written(*store, {Pgn::defineManagedVariables, Pgn::declareMappings});
        QCOMPARE(between(mappings, "tx_mapping_61444[] = {\n", ","), "\t{ &mv_u16[2]");
        QCOMPARE(between(mappings, "rx_mapping_61444[] = {\n", ","), "\t{ &mv_u16[0]");
    }

    void elementsStartWithTheirDefault()
    {
        set({"line0type=1", "line1type=4", "init_static_variables=1"});
        store->addNode(1, {});
        addElement(0x123, kTx, 1, 2, "-5");
        addElement(0x123, kTx, 2, 16, "0x10");
        addElement(0x123, kTx, 3, 10, "");
        QCOMPARE(written(*store, {Pgn::defineManagedVariables, Pgn::declareMappings}),
                 "\n/* definition of managed variables */\n"
                 "static INTEGER8\tmv_i8[1]= {\n\t(INTEGER8)-5u /* 1-291:1 */};\n"
                 "static INTEGER32\tmv_i32[1]= {\n\t(INTEGER32)16UL /* 1-291:2 */};\n"
                 "\n/*  PGN Mapping Definitions */\n"
                 "/* canid 291/0x0123 id */\n"
                 "static  CO_CONST CORE_MAPPING_T l1_tx_mapping_291[] = {\n"
                 "\t{ &mv_i8[0], 8u, CORE_DTYPE_I8 },\n\t{ &mv_i32[0], 24u, CORE_DTYPE_I24 },\n"
                 "\t{ NULL, 0u, CORE_DTYPE_OS }\n};\n");
    }

    void nameHasItsValuesInAnyCase()
    {
        setJ1939({"functioninstance=010", "addresscapable=1"});
        addSpn(0xF004, kTx, 190, 5);
        Pgn::declareIdentify(*store);
        const QString text = written(*store, {Pgn::defineManagedVariables});
        QVERIFY(text.contains("\t(UNSIGNED8)10u /* 60928:2839 */,\n"));
        QVERIFY(text.contains("\t(UNSIGNED8)1u /* 60928:2844 */,\n"));
        QVERIFY(text.contains("\t(UNSIGNED8)0u /* 61444:190 */};\n"));
    }

    void identityReplacesWhatIsThere()
    {
        setJ1939({"function=7,,8", "ecuinstance=3,4", "identitynumber=9", "addresscapable=2"});
        store->addNode(2, {});
        set({"line2type=5"});
        addSpn(0xEE00, kTx, 1, 5);
        Pgn::declareIdentify(*store);
        Pgn::declareIdentify(*store);
        QCOMPARE(defaultsOfName(0), "2837/119/9 2838/108/ 2840/101/3 2839/103/ 2841/5/7 0/1/0 "
                                    "2842/105/ 2843/102/ 2846/101/ 2844/1/1");
        // A list without an element for the line has no value for it; one value is that of all.
        QCOMPARE(defaultsOfName(2), "2837/119/9 2838/108/ 2840/101/ 2839/103/ 2841/5/8 0/1/0 "
                                    "2842/105/ 2843/102/ 2846/101/ 2844/1/1");
        ObjectDataBase::PGN group;
        QVERIFY(store->getPGNData(2, 0xEE00, kTx, group));
        QCOMPARE(joined(group.name, group.priority, group.inhibitTimeMs, group.cycleTimeMs,
                        group.mappingCount),
                 "Address Claiming/6/250/0/10");
    }

    void mappingRows_data()
    {
        columns<int, int, QString, QString, QString>("type", "implementation", "variable",
                                                     "settings", "row");
        // clang-format off
        QTest::newRow("variable") << 6 << 2 << "speed" << "" << "\t{ &speed, 16u, 190u, CORE_DTYPE_U16 }";
        QTest::newRow("expression") << 106 << 2 << "*p" << "" << "\t{ *p, 9u, 190u, CORE_DTYPE_U16 }";
        QTest::newRow("managed") << 1 << 0 << "x" << "" << "\t{ &mv_u8[0], 1u, 190u, CORE_DTYPE_U1 }";
        QTest::newRow("no_name") << 129 << 2 << " " << "" << "\t{ NULL, 29u, 190u, CORE_DTYPE_U32 }";
        QTest::newRow("string") << 121 << 2 << "vin" << "" << "\t{ vin, 300u, 190u, CORE_DTYPE_STRING_ASTERIKS }";
        QTest::newRow("managed_string") << 120 << 0 << "vin" << "" << "\t{ NULL, 300u, 190u, CORE_DTYPE_STRING_NULL }";
        QTest::newRow("bytes") << 10 << 2 << "data" << "" << "\t{ data, 300u, 190u, CORE_DTYPE_NON_NUMERIC }";
        QTest::newRow("managed_without_array") << 11 << 0 << "x" << "" << "\t{ NULL, 0u, 190u, CORE_DTYPE_US }";
        QTest::newRow("unknown_type") << 99 << 2 << "x" << "" << "\t{ &x, 0u, 190u, CORE_DTYPE_NON_NUMERIC }";
        QTest::newRow("dynamic") << 24 << 2 << "x" << "dynsupport=1" << "\t{ &x, 40u, 190u, CORE_DTYPE_U40, 0u }";
        // clang-format on
    }

    void mappingRows()
    {
        QFETCH(int, type);
        QFETCH(int, implementation);
        QFETCH(QString, variable);
        QFETCH(QString, settings);
        setJ1939({settings});
        addSpn(0xF004, kTx, 190, type, implementation, variable, "a */");
        const QString text = written(*store, {Pgn::defineManagedVariables, Pgn::declareMappings});
        const QString storage = settings.isEmpty() ? " CO_CONST " : "";
        QTEST(between(text, "static " + storage + "J1939_MAPPING_T tx_mapping_61444[] = {\n",
                      "\t/* a * / */\n};\n"),
              "row");
    }

    void tableOfOneLine()
    {
        setJ1939({"safetysupport=1"});
        Pgn::declareIdentify(*store);
        addSpn(0xF004, kTx, 190, 6);
        addGroup(0, 0xF005, kTx, 0); // its record tells of signals that are not there
        addGroup(0, 0xF006, kTx, 1);
        QCOMPARE(written(*store, {Pgn::defineTransmitPGNs, Pgn::defineReceivePGNs}),
                 "\n/*  TX PGN definitions */\n"
                 "static CO_CONST J1939_PGN_CONFIG_T\tjPgnTransmitConfig[J1939_TRANSMIT_PGN_CNT] = "
                 "{\n    {\n\t61444u, /* PGN number */ \n\t&tx_mapping_61444[0], \n"
                 "\t100u, /* cycletime in ms */ \n\t20u, /* inhibit time in ms */ \n"
                 "\t3u, /* priority */ \n\t1u /* number of mappings */\n    },\n"
                 "    {\n\t61445u, /* PGN number */ \n\t&tx_mapping_61445[0], \n"
                 "\t100u, /* cycletime in ms */ \n\t20u, /* inhibit time in ms */ \n"
                 "\t3u, /* priority */ \n\t0u /* number of mappings */\n    }\n};\n\n");
        QVERIFY(written(*store, {Pgn::declareMappings})
                    .contains("tx_mapping_61445[] = {\n\t{ 0 }\n};\n\n"));
    }

    void tablesOfSeveralLines()
    {
        set({"canfd_supported=1", "line1type=5", "line2type=1"});
        setJ1939({"startaddress=0x80,129"});
        for (const quint8 line : {1, 2})
            store->addNode(line, {});
        Pgn::declareIdentify(*store);
        addGroup(1, 0xF004, kRx, 1); // safe, but an ordinary one without support for safety
        addGroup(1, 0xEE00, kRx, 0);
        addGroup(2, 0xF004, kRx, 0); // of a line that speaks no J1939
        const QString text =
            written(*store,
                    {Pgn::declareMappings, Pgn::defineTransmitPGNs, Pgn::defineReceivePGNs,
                     Pgn::defineIdentify, Pgn::defineJ1939Config},
                    Pgn::v4Dialect());
        QVERIFY(!text.contains("rx_mapping_60928"));
        QVERIFY(!text.contains("_l2"));
        QCOMPARE(text.count("static  CORE_CONST J1939_MAPPING_T"), 3);
        QCOMPARE(between(text, "static CORE_CONST J1939_PGN_CONFIG_T\tjPgnReceiveConfig_l1[1]= {\n",
                         "};\n"),
                 "    {\n\t61444u, /* PGN number */ \n\t&l1_rx_mapping_61444[0], \n"
                 "\t100u, /* cycletime in ms */ \n\t20u, /* inhibit time in ms */ \n"
                 "\t3u, /* priority */ \n\t0u, /* number of mappings */\n"
                 "\tJ1939_ATF_MANU_CYBERSEC_64,\n\tINVALID_VALUE,\n\t12u\n    }\n");
        QCOMPARE(between(text, "J1939_CONFIG_T  j1939Config_l0 = {\n", "};\n"),
                 "\t0, \n\t0, \n\t0, \n\t0, \n\t&addrTrCfg_l0,\n\t0x80u \n");
        QCOMPARE(between(text, "J1939_CONFIG_T  j1939Config_l1 = {\n", "};\n"),
                 "\t0, \n\t0, \n\t&jPgnReceiveConfig_l1[0], \n\t1, \n\t&addrTrCfg_l1,\n\t129u \n");
        QCOMPARE(between(text, "addrTrCfg_l1 = {\n", "};\n"),
                 "\t60928u, /* PGN number */\n\t&l1_tx_mapping_60928[0],\n"
                 "\t0u, /* cycletime in ms */\n\t250u, /* inhibitime in us */\n"
                 "\t6u, /* priority */\n\t10u, /* number of mappings */\n"
                 "\tJ1939_ATF_SAE_NONE,\n\tJ1939_ADT_NONE,\n\t0\n");
    }

    void arraysOfSafeSignalsAloneAreLeftOut()
    {
        setJ1939({"safetysupport=1"});
        addSpn(0xF004, kTx, 190, 6);
        addGroup(0, 0xF004, kTx, 1);
        QCOMPARE(written(*store, {Pgn::defineManagedVariables}),
                 "\n/* definition of managed variables */\n");
    }

    void startAddress_data()
    {
        columns<QString, int, QString>("setting", "secondLine", "address");
        // clang-format off
        QTest::newRow("number") << "128" << 0 << "128u";
        QTest::newRow("suffix_stands") << "0x80u" << 0 << "0x80u";
        QTest::newRow("never_octal") << "010" << 0 << "10u";
        QTest::newRow("empty") << "" << 0 << "254";
        QTest::newRow("list_for_one_line") << "128,129" << 0 << "128u";
        QTest::newRow("one_for_all_lines") << "128" << 1 << "128";
        QTest::newRow("list") << "1, 129 " << 1 << "129u";
        QTest::newRow("list_by_number") << "1,2,3,131" << 3 << "131u";
        QTest::newRow("short_list") << "," << 1 << "254";
        // clang-format on
    }

    void startAddress()
    {
        QFETCH(QString, setting);
        QFETCH(int, secondLine);
        setJ1939({"startaddress=" + setting});
        if (secondLine > 0) {
            store->addNode(quint8(secondLine), {});
            set({"line0type=1", QString("line%1type=2").arg(secondLine)});
        }
        const QString text = written(*store, {Pgn::defineJ1939Config});
        QTEST(text.section("&addrTrCfg", 1).section("\n\t", 1).section(" \n", 0, 0), "address");
    }

    void startOfOneLine()
    {
        setJ1939({"cia510serversupport=1", "safetysupport=1"});
        const QString text = written(*store, {Pgn::generateStackInit});
        const QString test = "\tif (retVal != RET_OK) {\n\t\treturn(retVal);\n\t}\n";
        QVERIFY(text.startsWith("\n/*  J1939 stack initialization function */\n\n"
                                "RET_T j1939StackInit(\n\tvoid\n\t)\n{\nRET_T retVal;\n"
                                "CO_COMMON_INIT_VAL_T "));
        QCOMPARE(text.section("CO_CONST J1939", 1),
                 "_SERVICE_INIT_VAL_T\tserviceInitVars = {\n\t5u,\n"
                 "\t{ J1939_RECEIVE_PGN_COUNTS },\n\t{ J1939_TRANSMIT_PGN_COUNTS },\n"
                 "\t{ J1939_SSDO_COUNTS },\n\t{ J1939_CSDO_COUNTS },\n"
                 "\t{ J1939_SDG_TRANS_COUNTS },\n\t{ J1939_SDG_REC_COUNTS }};\n\n"
                 "\tretVal = commonStackInit(&commonInitVars);\n" +
                     test + "\tCO_HANDLE_WATCHDOG\n" +
                     "\tretVal = j1939StackInit_common(&serviceInitVars);\n" + test +
                     "\tCO_HANDLE_WATCHDOG\n\tretVal = j1939StackInit_line(&j1939Config);\n" +
                     test + "\tCO_HANDLE_WATCHDOG\n" +
                     "\n\t/* initialize object dictionary for CiA510 server */\n"
                     "\tretVal = j1939OdInit();\n" +
                     test + "\n\treturn RET_OK;\n}\n");
    }

    void startOfSeveralLines()
    {
        for (const quint8 line : {1, 3})
            store->addNode(line, {});
        set({"line1type=1", "line3type=5", "canfd_supported=1", "udsserver_supported=1"});
        const QString text = written(*store, {Pgn::generateStackInit}, Pgn::v4Dialect());
        QVERIFY(text.contains("\tBOOL_T *pModes\n\t)\n{\nRET_T retVal;\nUNSIGNED8 i;\n"
                              "CORE_COMMON_INIT_VAL_T "));
        QVERIFY(text.contains("\t{ J1939_CSDO_COUNTS },\n\t{ J1939_DEST_BUFFER_COUNTS }\n};\n\n"
                              "\tif (pModes != NULL) {\n"
                              "\t\tfor (i = 0; i < CAN_MULTI_LINE_CNT; i++)  {\n"
                              "\t\t\tcommonInitVars.fdMode[i] = pModes[i];\n\t\t}\n\t}\n"));
        QStringList calls;
        for (const QString &line : text.split('\n')) {
            if (line.startsWith("\tretVal = "))
                calls << line.mid(10);
        }
        QCOMPARE(
            calls,
            QStringList(
                {"coreStackInit(&commonInitVars);", "j1939StackInit_common(&serviceInitVars);",
                 "udsStackInit_common(&udsServiceInitVars);",
                 "j1939StackInit_line(0, &j1939Config_l0);", "udsStackInit_line(0, &udsLine0);",
                 "j1939StackInit_line(3, &j1939Config_l3);", "udsStackInit_line(3, &udsLine3);"}));
    }

    void oldStructureNamesNothingOfTheNew()
    {
        set({"new_init_structure=0", "canfd_supported=1"});
        const QString text = written(*store, {Pgn::generateStackInit});
        QVERIFY(text.contains("serviceInitVars = {\n\t3u,\n\t{ CO_REC_BUFFER_COUNTS },\n"
                              "\t{ CO_TR_BUFFER_COUNTS },\n\t{ CO_COB_COUNTS },\n"
                              "\t{ J1939_RECEIVE_PGN_COUNTS },\n"
                              "\t{ J1939_TRANSMIT_PGN_COUNTS }\n};\n\n\t(void)pModes;\n"
                              "\tretVal = j1939StackInit_common("));
        QVERIFY(!text.contains("commonInitVars"));
    }

    void file()
    {
        set({"udsclient_supported=1"});
        QVERIFY(writeFile(fixture.path("no_stdlib_include.txt"), {}));
        PGNGeneratorV4 generator;
        const QString text = generateWith(generator, "digger */", "gen_pgn.c");
        QVERIFY(text.startsWith("/*\n * J1939 PGN definitions for digger * / - generated by "
                                "CANopen Tessarine 3.11.2 (V4)\n * "));
        QVERIFY(text.section('\n', 3).startsWith(
            " */\n\n#include <gen_define.h>\n#include <j1939_j1939.h>\n#include <iso_tp.h>\n"
            "#include <uds_uds.h>\n#include <gen_extern_decl.h>\n\n"
            "/* definition of memory specifier */\n#ifndef CORE_CONST\n#define CORE_CONST const\n"
            "#endif\n\n/* definition of watchdog handle during initialization */\n"
            "#ifndef CORE_HANDLE_WATCHDOG\n#define CORE_HANDLE_WATCHDOG\n"
            "#endif /* CORE_HANDLE_WATCHDOG */\n\n\n\n/* definition of managed variables */\n"));
        QVERIFY(text.contains("\t&tx_mapping_60928[0],\n"));
        QVERIFY(store->existsPGN(0, 0xEE00, kTx));
    }

private:
    void set(const QStringList &settings)
    {
        for (const QString &setting : settings)
            store->setGeneralSettingsValue(setting.section('=', 0, 0), setting.section('=', 1));
    }

    void setJ1939(const QStringList &settings)
    {
        for (const QString &setting : settings)
            store->setJ1939SettingsValue(setting.section('=', 0, 0), setting.section('=', 1));
    }

    void addGroup(quint8 line, quint32 number, quint8 direction, quint32 isSafe)
    {
        ObjectDataBase::PGN group;
        group.number = number;
        group.direction = direction;
        group.cycleTimeMs = 100;
        group.inhibitTimeMs = 20;
        group.priority = 3;
        group.mappingCount = 9;
        group.isSafe = isSafe;
        group.fdTrailerFormat = 2;
        group.fdAssuranceType = 4;
        group.fdAssuranceDataSize = 12;
        QVERIFY(store->addPGN(line, number, group));
    }

    /// A signal of line 0, and its group if it is not there.
    void addSpn(quint32 pgn, quint8 direction, quint32 number, int type, int implementation = 0,
                const QString &variable = QString(), const QString &name = QString())
    {
        if (!store->existsPGN(0, pgn, direction))
            addGroup(0, pgn, direction, 0);
        ObjectDataBase::SPN spn;
        spn.pos = qint16(store->getSPNs(0, pgn, direction).size());
        spn.name = name;
        spn.dataType = quint32(type);
        spn.implementation = quint32(implementation);
        spn.varName = variable;
        spn.bitSize = 300;
        QVERIFY(store->addSPN(0, pgn, direction, number, spn));
    }

    /// A managed element of line 1, and its identifier.
    void addElement(quint32 id, quint8 direction, quint32 number, quint32 type,
                    const QString &value)
    {
        ObjectDataBase::CANID identifier;
        identifier.name = "id";
        identifier.id = id;
        identifier.direction = direction;
        QVERIFY(store->addCANID(1, id, identifier));
        ObjectDataBase::DataElement element;
        element.dataType = type;
        element.implementation = 0;
        element.defaultValue = value;
        QVERIFY(store->addDataElement(1, id, direction, number, element));
    }

    /// "number/type/default" of the signals of the address claim.
    QString defaultsOfName(quint8 line)
    {
        QStringList rows;
        for (const auto &spn : store->getSPNRecords(line, 0xEE00, kTx))
            rows << joined(spn.number, spn.dataType, spn.defaultValue);
        return rows.join(' ');
    }
};

QTEST_GUILESS_MAIN(tst_PgnGenerator)
#include "tst_pgngenerator.moc"
