// The source of a J1939 device, section by section.
#include "generators/commongeneratorhelper.h"
#include "generators/j1939/pgngenerator.h"
#include "generators/j1939/pgninit.h"
#include "generators/j1939/pgnsections.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/storefixture.h"

#include <QBuffer>

namespace
{

constexpr quint8 kTx = 0x55;

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

} // namespace

class tst_PgnGenerator : public StoreTest
{
    Q_OBJECT

private slots:
    void init()
    {
        store = makeStore();
        set("line 0 2; new_init_structure=1");
    }

    void sections_data() { addCases(TEST_CASES "/pgngenerator.txt"); }
    void sections()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        using Sections = QVector<void (*)(Pgn::Context &)>;
        const Sections tables = {Pgn::defineTransmitPGNs, Pgn::defineReceivePGNs};
        const QMap<QString, Sections> groups = {
            {"variables", {Pgn::defineManagedVariables}},
            {"identity", {Pgn::defineManagedVariables}},
            {"mappings", {Pgn::defineManagedVariables, Pgn::declareMappings}},
            {"groups", tables},
            {"address", {Pgn::defineJ1939Config}},
            {"lines_v4", Sections{Pgn::declareMappings} + tables +
                             Sections{Pgn::defineIdentify, Pgn::defineJ1939Config}},
            {"start", {Pgn::generateStackInit}}};
        set(project);
        if (caseGroup() == "identity" || caseGroup() == "groups" || caseGroup() == "lines_v4")
            Pgn::declareIdentify(*store);
        const auto dialect = caseGroup() == "lines_v4" ? Pgn::v4Dialect() : Pgn::classicDialect();
        const QString text = written(*store, groups.value(caseGroup()), dialect);
        const QByteArray difference = mismatch(text, expected);
        QVERIFY2(difference.isEmpty(), difference);
    }

    void identityReplacesWhatIsThere()
    {
        set("set j1939:function=7,,8 j1939:ecuinstance=3,4 j1939:identitynumber=9\n"
            "j1939:addresscapable=2; tx 0xEE00; spn 1 U8 0; line 2 5");
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

    void startOfSeveralLines()
    {
        set("set canfd_supported=1 udsserver_supported=1; line 1; line 3 5");
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
        const CommonGeneratorHelperV4 texts(store.get());
        for (const QString &part : {texts.getCommonInitVars(), texts.getUDSInitStructures({0, 3}),
                                    texts.getUDSInit_common(), texts.getUDSInit_lines(3, true)})
            QVERIFY(!part.isEmpty() && text.contains(part));
    }

    void file()
    {
        set("udsclient_supported=1");
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
    void set(const QString &rows) { buildProject(*store, rows); }

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
