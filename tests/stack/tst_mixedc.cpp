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

#include <QRegularExpression>

namespace
{

/// The project of a line of each of these types, from line 0 on; see the folder projects.
QString linesText(const QString &types)
{
    QString text = "use options";
    for (int line = 0; line < types.size(); ++line)
        text += QString(" line%1:%2").arg(types.at(line)).arg(line);
    return text + '\n';
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
        addCases(TEST_STACK "/projects/cases_mixed.txt");
        for (const char *types :
             {"4", "5", "12", "14", "15", "24", "25", "44", "45", "55", "1245"}) {
            for (int form = 0; form < 8; ++form) {
                const QStringList features = {form & 1 ? "use_core_headers=V4" : "",
                                              form & 2 ? "canfd_supported=1" : "",
                                              form & 4 ? "use uds" : ""};
                QTest::addRow("%s%s%s%s", types, form & 1 ? "_v4" : "", form & 2 ? "_fd" : "",
                              form & 4 ? "_uds" : "")
                    << linesText(types) + features.join('\n') << QString();
            }
        }
    }

    void matrix()
    {
        QFETCH(QString, project);
        const std::unique_ptr<ObjectDataBase> store = makeStore();
        // Variables that a macro gives are none that the declarations know.
        static const QRegularExpression cell("CELL\\w*_OF\\((\\d)\\)");
        buildProject(*store, withParts(project).replace(cell, "cell\\1"));
        MixedExpectation expected(*store);

        QTemporaryDir folder;
        // Set to look into the generated sources of a row.
        folder.setAutoRemove(!qEnvironmentVariableIsSet("GENERATED_C_KEEP"));
        Device device(folder.path());
        writeApplication(folder.path(), expected);
        for (const quint8 line : store->getNodes())
            store->cacheAllSubs(line, 0);
        const QStringList files = {"gen_vobjdict.c", "gen_mp.c",          "gen_srdo.c",
                                   "gen_define.h",   "gen_extern_decl.h", "gen_indication.h"};
        QCOMPARE(runGenerators(*store, folder.path(), kDeviceName, files), QString());
        checkDevice(device, expected);
    }

    void gateway_data() { addDialects(); }
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
        buildProject(*store, withParts(linesText("145") +
                                       "line 0\n1300:0 U8 rw 0 1\nudsserver_supported=1"));
        QTemporaryDir folder;
        MultiProGenerator generator;
        QCOMPARE(runJob(generator, *store, folder.path(), kDeviceName), QString());
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
        SAME_ROWS(Device::rowsOf(device.section("overwrite\n"), {"call coOdSetCobid"}),
                  expected.common().cobIds());
        SAME_ROWS(device.rows({"indication"}), expected.common().indications());
        SAME_ROWS(device.rows({"srdo"}), expected.common().safety());
        SAME_ROWS(device.rows({"virtual"}), expected.virtualObjects());
    }

    /// A line of both protocols starts its diagnostics after NMT, whatever came of that.
    static bool goesOn(const Device &device, const QString &row)
    {
        return row.endsWith("coNmtInit") && device.output().contains("call udsStackInit_line");
    }

    static void checkStarts(const Device &device, MixedExpectation &expected)
    {
        SAME_ROWS(device.rows({"COBs", "rows beyond", "  row "}), QStringList());
        static const QRegularExpression withoutResult(
            "(coLedInit|coIdNegoInit|coOdInitOdPtr|coCanOpenStackVarInit|j1939StackInit_common|"
            "rawcanStackInit_common)$"); // or one that is not looked at
        for (const QString &row : device.rows({"lost failure"}))
            QVERIFY2(withoutResult.match(row).hasMatch() || goesOn(device, row), qPrintable(row));
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
