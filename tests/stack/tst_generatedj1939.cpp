// Generated C of J1939 devices: compiled without warnings against a stack of our own, linked, run,
// and asked for its groups, its NAME and the calls of its start. What it must answer is read from
// the project alone.
#include "tests/fixtures/generatorrun.h"
#include "tests/fixtures/storefixture.h"
#include "tests/stack/device.h"
#include "tests/stack/example.h"
#include "tests/stack/expectation_j1939.h"
#include "tests/stack/projects_j1939.h"

namespace
{

/// The application beside the generated variables: those that are no plain names.
void writeApplication(const QString &folder, const J1939Expectation &expected)
{
    writeFile(folder + "/app_expressions.h", kAppExpressions);
    writeFile(folder + "/app_cells.h", kAppCells);
    QString text =
        "#include <gen_extern_decl.h>\n#include <gen_indices.h>\n"
        "#include \"app_cells.h\"\n#include \"app_expressions.h\"\n#include \"stack.h\"\n";
    text += kAppDefinitions;
    text += "const APP_VARIABLE_T appVariables[] = {\n";
    const QMap<QString, bool> variables = expected.appVariables();
    for (auto it = variables.begin(); it != variables.end(); ++it)
        text += QStringLiteral("    { \"%1\", %2(%1) },\n").arg(it.key(), it.value() ? "" : "&");
    writeFile(folder + "/app.c", (text + "    { NULL, NULL }\n};\n").toUtf8());
}

} // namespace

class tst_GeneratedJ1939 : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        // Set to look into the generated sources of a row.
        folder->setAutoRemove(!qEnvironmentVariableIsSet("GENERATED_C_KEEP"));
    }

    void means_data() { addCases(TEST_STACK "/projects/cases_j1939.txt", {"_classic", "_v4"}); }
    void means()
    {
        QFETCH(QString, project);
        const std::unique_ptr<ObjectDataBase> store = makeStore();
        buildProject(*store, withParts(project));
        const bool isV4 = QString(QTest::currentDataTag()).endsWith("_v4");
        // A project may well name the header of declarations, which includes all of them.
        store->setGeneralSettingsValue(
            "applicationheader", store->getGeneralSettingsValue("applicationheader") +
                                     (isV4 ? " gen_extern_decl.h" : "") + " app_expressions.h");
        if (isV4)
            store->setGeneralSettingsValue("use_core_headers", "V4");
        Device device(folder->path());
        writeApplication(folder->path(), J1939Expectation(*store));
        for (const quint8 line : store->getNodes())
            store->cacheAllSubs(line, 0);
        const QStringList files = {"gen_indices.h", "gen_vobjdict.c", "gen_define.h",
                                   "gen_pgn.c",     "gen_objdict.c",  "gen_extern_decl.h"};
        QCOMPARE(runGenerators(*store, folder->path(), kDeviceName, files), QString());
        checkDevice(device, *store);
    }

    /// The example as the tool itself makes it.
    void excavator_data() { addDialects(); }
    void excavator()
    {
        QFETCH(bool, isV4);
        const auto store = runExample("excavator", folder->path(), isV4);
        QVERIFY(store);
        QVERIFY(store->getPGNs(0, 0, false).size() >= 20);
        Device device(folder->path());
        writeApplication(folder->path(), J1939Expectation(*store));
        checkDevice(device, *store);
    }

private:
    /// Builds and runs what lies in the folder, and holds it against \a store.
    void checkDevice(Device &device, ObjectDataBase &store)
    {
        J1939Expectation expected(store);
        device.run({"main", "recorder", "recorder_j1939", "signals", "start_j1939", "walk"},
                   expected.common().stackFeatures());
        QVERIFY2(device.fault().isEmpty(), qPrintable(device.fault()));
        SAME_ROWS(device.rows({"COBs", "rows beyond"}), QStringList());
        for (const QString &row : device.rows({"lost failure"}))
            QVERIFY2(row.endsWith("coOdInitOdPtr"), qPrintable(row)); // which has no result
        const int first = expected.common().isSet("canfd_supported") ? 0 : 1;
        for (int variant = first; variant <= 1; ++variant) {
            SAME_ROWS(device.startRows(variant, {"call", "  claim ", "  rx ", "  tx ", "   map",
                                                 "  session", "  security"}),
                      expected.start());
            const QStringList rows = device.startRows(variant, {"  "});
            for (const QString &row : expected.counts(variant))
                QVERIFY2(rows.contains(row), qPrintable(row + "\n" + rows.join('\n').left(1500)));
        }
        if (store.getJ1939SettingsValue("cia510serversupport").endsWith('1'))
            SAME_ROWS(device.rows({"object", "sub"}), expected.common().dictionary());
    }

    StoreFixture fixture;
    std::unique_ptr<QTemporaryDir> folder;
};

QTEST_GUILESS_MAIN(tst_GeneratedJ1939)
#include "tst_generatedj1939.moc"
