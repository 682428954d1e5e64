// Generated C of devices with lines of several protocols, and of raw CAN: compiled without warnings
// against a stack of our own, linked, run, and asked for the calls of its start and for its tables.
// What it must answer is read from the project alone.
#include "generators/multiproto/multiprogenerator.h"
#include "tests/fixtures/generatorrun.h"
#include "tests/fixtures/storefixture.h"
#include "tests/stack/device.h"
#include "tests/stack/example.h"
#include "tests/stack/expectation_mixed.h"
#include "tests/stack/projects.h"
#include "tests/stack/projecttext.h"

#include <QRegularExpression>

namespace
{

// clang-format off
/// What a line of each type adds; %1 is its number.
const QMap<QChar, QString> kLines = {
    {'1', QString(kSecondLine) + R"(
        1200:0 U8 const 1 2
        1200:1..2 U32 ro 1 0x600,0x580
        1f81:0 U8 const 1 1
        1f81:1 U32 rw 0 1
        set line%1type=1
    )"},
    {'2', R"(
        line %1
        set line%1type=2
        tx 61444 10 5 3
        spn 190 U16 0
        spn 191 U8 2 var=torque%1
        spn 192 I16 0 value=-7
        spn 193 R32 0 value=1
        rx 65280 0 0 6
        spn 194 U24 0
        rx 65281 0 0 6
    )"},
    {'4', R"(
        line %1
        set line%1type=4
        txid 291 100 20
        item 1 U8 0 value=5
        item 2 I8 0 value=-5
        item 3 R32 0 value=2
        item 4 U16 2 var=raw%1
        rxid 448585456
        item 1 U32 0
        item 2 OS 0
        rxid 292
    )"},
    {'9', "line %1\nset line%1type=9\n1000:0 U32 const 1 1\n1001:0 U8 ro 0 0\ntx 65290\nspn 1 U8 0\ntxid 5\nitem 1 U8 0"},
};

constexpr const char *kOptions = "set init_static_variables=1 new_init_structure=1 "
                                 "lss_supported=1 event_led=1 idnego_supported=1\n"
                                 "j1939:startaddress=128,129,130,131\n"
                                 "j1939:function=1,2,3,4\n";
// clang-format on

QString linesText(const QString &types)
{
    QString text;
    for (int line = 0; line < types.size(); ++line) {
        const QChar type = types.at(line);
        QString lineText = kLines.value(type);
        if (type == '5')
            lineText = kLines.value('1') +
                       kLines.value('2').section("type=2", 1).prepend("set line%1type=5");
        text += lineText.replace("%1", QString::number(line));
    }
    return text;
}

void writeApplication(const QString &folder, const MixedExpectation &expected)
{
    QString text = "#include <stdio.h>\n#include \"stack.h\"\n#include <gen_extern_decl.h>\n"
                   "const APP_VARIABLE_T appVariables[] = {\n";
    for (const QString &name : expected.appVariables())
        text += QStringLiteral("    { \"%1\", &%1 },\n").arg(name);
    text += "    { NULL, NULL }\n};\n";
    for (const QString &row : expected.common().indications())
        text += QStringLiteral("void %1(void);\nvoid %1(void) { puts(\"%1\"); }\n")
                    .arg(row.section(' ', 2));
    writeFile(folder + "/app.c", text.toUtf8());
}

QStringList partsOf(const MixedExpectation &expected)
{
    QStringList parts = {"main", "recorder", "signals", "start_mixed", "walk"};
    if (expected.hasCANopen())
        parts << "recorder_canopen";
    if (expected.hasJ1939())
        parts << "recorder_j1939";
    if (expected.hasRaw())
        parts << "recorder_rawcan";
    return parts;
}

QStringList featuresOf(const MixedExpectation &expected)
{
    QStringList flags = expected.common().stackFeatures();
    flags.removeAll("-DSTACK_PARA"); // several lines have their roles from the project
    flags << "-DSTACK_PROTOCOLS=" + expected.protocols();
    if (expected.isRawOnly())
        flags << "-DSTACK_RAW_ONLY";
    if (expected.takesOptions())
        flags << "-DSTACK_PARA";
    return flags;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

/// The line that a call names, -1 if it names none.
int lineOf(const QString &call)
{
    static const QRegularExpression pattern("^call \\S+ line=(\\d+)");
    const QRegularExpressionMatch match = pattern.match(call);
    return match.hasMatch() ? match.captured(1).toInt() : -1;
}

} // namespace

class tst_MixedC : public QObject
{
    Q_OBJECT

private slots:
    void matrix_data()
    {
        columns<QString, QString>("types", "settings");
        for (const char *types :
             {"4", "5", "12", "14", "15", "24", "25", "44", "45", "55", "1245"}) {
            for (int form = 0; form < 8; ++form) {
                const QStringList features = {form & 1 ? "use_core_headers=V4" : "",
                                              form & 2 ? "canfd_supported=1" : "",
                                              form & 4 ? kUds : ""};
                QTest::addRow("%s%s%s%s", types, form & 1 ? "_v4" : "", form & 2 ? "_fd" : "",
                              form & 4 ? "_uds" : "")
                    << types << features.join('\n');
            }
        }
        // Variables that a macro gives are none that the declarations know.
        const QString services =
            QString(QString(kDevice) + kTypes + kServices + kPdos + kIndicationSettings)
                .replace(QRegularExpression("CELL\\w*_OF\\((\\d)\\)"), "cell\\1");
        // clang-format off
        QTest::newRow("forced_raw") << "4" << "misc:generateML=true";
        QTest::newRow("forced_both") << "5" << "misc:generateML=true\ncanfd_supported=1";
        QTest::newRow("master_by_options") << "5" << "nmtmaster=2";
        QTest::newRow("master_by_options_fd_v4") << "5" << "set nmtmaster=2 canfd_supported=1 use_core_headers=V4";
        QTest::newRow("roles") << "1515" << "nmtmaster=1,0,2,2\nco_ml_ms=0,0,0,1";
        QTest::newRow("unknown_lines") << "9192" << kUds;
        QTest::newRow("cia510") << "125" << "j1939:cia510serversupport=1\nline 1\n2000:0 U16 rw 0 9\n1000:0 U32 const 1 3\nset line1type=2";
        QTest::newRow("cia510_one_line") << "5" << "j1939:cia510serversupport=1";
        QTest::newRow("cia510_without_canopen") << "24" << "j1939:cia510serversupport=1";
        QTest::newRow("stale_objects") << "4215" << "set isotp_connection_cnt=1 overwrite_predef=1\nline 0\n1000:0 U32 const 1 3\n1001:0 U8 rw 0 3\nline 1\n1000:0 U32 const 1 3\npdo 1800 $NODEID+0x180 1\n1a00:0 U8 const 1 1\n1a00:1 U32 const 1 0x10000020\nset line0type=4 line1type=2";
        QTest::newRow("gap") << "1245" << "unline 1\ncanfd_supported=1";
        QTest::newRow("gap_lists") << "1 25" << "set receivebuffersize=20,21,22,23 transmitbuffersize=7,8,9";
        QTest::newRow("one_name_for_all") << "125" << "j1939:manufacturercode=700\nj1939:function=7\nj1939:startaddress=140";
        QTest::newRow("other_number") << " 5" << "canfd_supported=1" + QString(kUds);
        QTest::newRow("other_number_raw") << " 4" << kUds;
        QTest::newRow("services") << "1524" << "line 0" + services + kUds;
        QTest::newRow("services_of_both_fd_v4") << "5" << "line 0" + services + kCanFd + kUds + kSwitches + "set line0type=5 use_core_headers=V4";
        QTest::newRow("shared") << "152" << kShared + QString(kRouting) + kSharedRuns + "set line1type=5";
        QTest::newRow("virtual") << "124" << "line 0" + kVirtual;
        QTest::newRow("virtual_v4") << "124" << "line 0" + kVirtual + "set use_core_headers=V4";
        QTest::newRow("events_without_canopen") << "24" << "set event_store=1 event_can=1 fct_can=onCan";
        QTest::newRow("empty_lines") << "" << "line 0\nline 1\nline 2\nset line0type=1 line1type=2 line2type=4";
        // clang-format on
    }

    void matrix()
    {
        QFETCH(QString, types);
        QFETCH(QString, settings);
        const std::unique_ptr<ObjectDataBase> store = makeStore();
        buildProject(*store, kOptions + linesText(types) + settings);
        if (settings.startsWith("unline"))
            store->delNode(1);
        MixedExpectation expected(*store);

        QTemporaryDir folder;
        // Set to look into the generated sources of a row.
        folder.setAutoRemove(!qEnvironmentVariableIsSet("GENERATED_C_KEEP"));
        Device device(folder.path());
        writeApplication(folder.path(), expected);
        for (const quint8 line : store->getNodes())
            store->cacheAllSubs(line, 0);
        // Virtual objects, all lines, safety, definitions, declarations, indications.
        QCOMPARE(runGenerators(*store, folder.path(), kDeviceName, "EFJKOP"), QString());
        checkDevice(device, expected);
    }

    void gateway_data()
    {
        columns<bool>("isV4");
        QTest::newRow("classic") << false;
        QTest::newRow("v4") << true;
    }

    void gateway()
    {
        QFETCH(bool, isV4);
        QTemporaryDir folder;
        const auto store = runExample("gateway", folder.path(), isV4);
        QVERIFY(store);
        MixedExpectation expected(*store);
        QVERIFY(expected.hasCANopen() && expected.hasJ1939() && expected.hasRaw());
        QVERIFY(QFile::copy(TESSARINE_EXAMPLES "/gateway/gateway_variables.h",
                            folder.filePath("gateway_variables.h")));
        writeApplication(folder.path(), expected);
        Device device(folder.path());
        checkDevice(device, expected);
    }

    /// The whole file, for one mix; GOLDEN_UPDATE=1 writes it anew.
    void golden()
    {
        const std::unique_ptr<ObjectDataBase> store = makeStore();
        buildProject(*store, kOptions + linesText("145") + "udsserver_supported=1");
        QTemporaryDir folder;
        MultiProGenerator generator;
        Device(folder.path()).generate(generator, *store);
        QString text = QString::fromUtf8(readFile(folder.filePath("gen_mp.c")));
        text.replace(QRegularExpression("\n \\* \\w{3} \\w{3} .*\n"), "\n * (date)\n");
        const QString expected = TEST_STACK "/gen_mp.c.expected";
        if (qEnvironmentVariableIsSet("GOLDEN_UPDATE"))
            QVERIFY(writeFile(expected, text.toUtf8()));
        SAME_ROWS(text.split('\n'), QString::fromUtf8(readFile(expected)).split('\n'));
    }

private:
    /// Builds and runs what lies in the folder of \a device.
    static void checkDevice(Device &device, MixedExpectation &expected)
    {
        device.run(partsOf(expected), featuresOf(expected));
        QVERIFY2(device.fault().isEmpty(), qPrintable(device.fault()));
        checkStarts(device, expected);
        SAME_ROWS(device.rows({"object", "sub"}), expected.dictionary());
        if (!expected.hasCANopen())
            return;
        SAME_ROWS(device.rows({"indication"}), expected.common().indications());
        SAME_ROWS(device.rows({"srdo"}), expected.common().safety());
        SAME_ROWS(device.rows({"virtual"}), expected.virtualObjects());
    }

    static void checkStarts(const Device &device, MixedExpectation &expected)
    {
        SAME_ROWS(device.rows({"COBs", "rows beyond", "  row "}), QStringList());
        static const QRegularExpression withoutResult(
            "(coLedInit|coIdNegoInit|coOdInitOdPtr|coCanOpenStackVarInit|j1939StackInit_common|"
            "rawcanStackInit_common)$"); // or one that is not looked at
        for (const QString &row : device.rows({"lost failure"}))
            QVERIFY2(withoutResult.match(row).hasMatch(), qPrintable(row));
        if (!expected.isRawOnly())
            QVERIFY(device.output().contains("start -2\nresult 1\n"));
        if (expected.canRefuse())
            QVERIFY(device.output().contains("start -1\nresult 2\n"));
        for (int variant = expected.isRawOnly() ? 1 : 0; variant <= 1; ++variant) {
            const QStringList calls = MixedExpectation::blocks(
                device.startRows(variant, {"call", "  claim ", "  rx ", "  tx ", "  rxid", "  txid",
                                           "   map", "  map", "  session", "  security"}));
            SAME_ROWS(sorted(calls), sorted(expected.start(variant)));
            for (int i = 1; i < calls.size(); ++i)
                QVERIFY2(lineOf(calls.at(i)) >= lineOf(calls.at(i - 1)), qPrintable(calls.at(i)));
            QVERIFY(calls.first().startsWith("call commonStackInit"));
            const QStringList rows = device.startRows(variant, {"  "});
            for (const QString &row : expected.counts(variant))
                QVERIFY2(rows.contains(row), qPrintable(row + "\n" + rows.join('\n').left(1500)));
        }
    }

    StoreFixture fixture;
};

QTEST_GUILESS_MAIN(tst_MixedC)
#include "tst_mixedc.moc"
