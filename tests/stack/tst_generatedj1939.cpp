// Generated C of J1939 devices: compiled without warnings against a stack of our own, linked, run,
// and asked for its groups, its NAME and the calls of its start. What it must answer is read from
// the project alone.
#include "tests/fixtures/generatorrun.h"
#include "tests/fixtures/storefixture.h"
#include "tests/stack/device.h"
#include "tests/stack/example.h"
#include "tests/stack/expectation_j1939.h"
#include "tests/stack/projects.h"
#include "tests/stack/projects_j1939.h"
#include "tests/stack/projecttext.h"

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

    void means_data()
    {
        columns<QString, bool>("text", "isV4");
        const QString one = QString(kGroups).replace("%1", "0");
        const QString two = one + QString(kGroups).replace("%1", "1");
        const QString server = kSdoServer;
        const QString objects = server + kDevice + kTypes + "new_init_structure=1\n";
        const QString fresh = "new_init_structure=1\n";
        // clang-format off
        const QVector<QPair<const char *, QString>> projects = {
            {"claim_alone",       "line0type=2"},
            {"one_line",          one + kName},
            {"values",            one + kName + "set init_static_variables=1 new_init_structure=1"},
            {"variables",         one + kVariables + "new_init_structure=1"},
            {"safe",              one + kVariables + fresh + "j1939:safetysupport=1\nj1939:sdm_timer_interval=10"},
            {"safe_alone",        "line0type=2\ntx 65280 100 20 3 safe\nspn 1 U8 0\nset new_init_structure=1\nj1939:safetysupport=1"},
            {"fd",                one + fresh + "canfd_supported=1\nj1939:j1939fd_multipgbuffer=4,5"},
            {"fd_old_structure",  two + kName + "canfd_supported=1"},
            {"fd_two_lines",      two + kName + fresh + "canfd_supported=1\nj1939:j1939fd_11bitmultipg=1\nj1939:j1939fd_multipgbuffer=3"},
            {"dynamic",           two + kVariables + fresh + "j1939:dynsupport=1"},
            {"every_module",      two + kName + kModules + fresh + "j1939:safetysupport=1"},
            {"server",            "line 0\nline0type=2\n" + objects},
            {"server_fd_uds",     one + objects + kUds + "canfd_supported=1"},
            {"server_virtual",    one + objects + kVirtual},
            {"server_two_lines",  two + objects + "limit_check=1\nline 1\n1000:0 U32 const 1 7\n2001:0 U32 rw 0 2 map\n2002:0 U64 rw 0 9\nset line1type=2"},
            {"uds_two_lines",     two + kUds + fresh},
            {"other_lines",       two + "line 2\nset line2type=\ntx 65281 1 2 3\nspn 1 U8 0\nrx 65281\nspn 1 U8 0\n" + kName + kUds + fresh},
            {"gap",               two + "line 5\nset line5type=2\nrx 60928\nspn 2837 U21 0\nrx 65300 0 0 3\nspn 12 U16 0\nj1939:safetysupport=1\n" + kName + fresh},
            {"one_name_for_all",  two + fresh + "j1939:manufacturercode=700\nj1939:function=5\nj1939:addresscapable=1\nj1939:startaddress=128"},
            {"gap_lists",         one + QString(kGroups).replace("%1", "2") + QString(kGroups).replace("%1", "3") + fresh + "canfd_supported=1\nj1939:j1939fd_multipgbuffer=3,4,5\nreceivebuffersize=20,21,22\nj1939:function=1,2,3,4\nj1939:startaddress=1,2,3"},
            {"other_number",      "line 5\nset line5type=2\ntx 65300 0 0 3\nspn 12 U16 0\nj1939:startaddress=0x80\n" + fresh},
            {"other_number_list", "line 5\nset line5type=2\nj1939:startaddress=,,,,,0x81\nj1939:function=1,2,3,4,5,6\n" + fresh},
            {"buffers",           two + fresh + "receivebuffersize=20,30u,40\ntransmitbuffersize=7,8u\nadditional_cob_count=3"},
        };
        // clang-format on
        for (const auto &project : projects) {
            QTest::addRow("%s_classic", project.first) << project.second << false;
            QTest::addRow("%s_v4", project.first) << project.second << true;
        }
    }

    void means()
    {
        QFETCH(QString, text);
        QFETCH(bool, isV4);
        const std::unique_ptr<ObjectDataBase> store = makeStore();
        if (text.startsWith("line 5")) {
            store->addNode(5, Node());
            store->delNode(0);
        }
        buildProject(*store, text);
        store->setGeneralSettingsValue("user_defines", "#include \"app_expressions.h\"");
        if (isV4)
            store->setGeneralSettingsValue("use_core_headers", "V4");
        Device device(folder->path());
        writeApplication(folder->path(), J1939Expectation(*store));
        for (const quint8 line : store->getNodes())
            store->cacheAllSubs(line, 0);
        // Indices, virtual objects, definitions, groups, the server's object dictionary,
        // declarations.
        QCOMPARE(runGenerators(*store, folder->path(), kDeviceName, "AEKLMO"), QString());
        checkDevice(device, *store);
    }

    /// The example as the tool itself makes it.
    void excavator_data()
    {
        columns<bool>("isV4");
        QTest::newRow("classic") << false;
        QTest::newRow("v4") << true;
    }

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
        if (store.getJ1939SettingsValue("cia510serversupport") == "1")
            SAME_ROWS(device.rows({"object", "sub"}), expected.common().dictionary());
    }

    StoreFixture fixture;
    std::unique_ptr<QTemporaryDir> folder;
};

QTEST_GUILESS_MAIN(tst_GeneratedJ1939)
#include "tst_generatedj1939.moc"
