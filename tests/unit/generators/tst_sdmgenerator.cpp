// The safety data groups of a project, as a program reads them from the generated tables.
#include "generators/defines/codefinegenerator.h"
#include "generators/defines/gendefinegenerator.h"
#include "generators/j1939/extdeclgenerator.h"
#include "generators/j1939/sdmgenerator.h"
#include "tests/unit/generators/csources.h"

namespace
{

/// A line a line of the project: groups to send, then those to receive, with their number, cycle
/// time, SRVT and priority, then width and value of each variable. The counts of the definitions
/// header come first.
const char kWalk[] = R"(
#include <stdio.h>
#include <j1939_sdg.h>
static const unsigned transmit[] = { J1939_SDG_TRANS_COUNTS };
static const unsigned receive[] = { J1939_SDG_REC_COUNTS };
static void show(const J1939_SDG_GROUP_T *groups, unsigned count, unsigned defined)
{
    unsigned i, j;
    printf("%u=%u", defined, count);
    for (i = 0; i < count; ++i) {
        printf(" %lu/%u/%lu/%u", (unsigned long)groups[i].number, groups[i].cycleTimeMs,
               (unsigned long)groups[i].srvtMs, groups[i].priority);
        for (j = 0; j < groups[i].mappingCount; ++j)
            printf(",%u:%d", groups[i].mapping[j].bits,
                   groups[i].mapping[j].variable ? *(UNSIGNED8 *)groups[i].mapping[j].variable : -1);
    }
    printf(";");
}
int main(void)
{
    unsigned line;
    for (line = 0; line < sizeof(transmit) / sizeof(transmit[0]); ++line) {
        show(j1939SdgConfig[line].transmitGroups, j1939SdgConfig[line].transmitCount, transmit[line]);
        show(j1939SdgConfig[line].receiveGroups, j1939SdgConfig[line].receiveCount, receive[line]);
        printf("\n");
    }
    return 0;
}
)";

} // namespace

class tst_SdmGenerator : public CSourceTest
{
    Q_OBJECT

private slots:
    void tables_data()
    {
        columns<bool, bool, QString>("v4", "isMultiLine", "storage");
        QTest::newRow("classic_one_line") << false << false << "CO_CONST";
        QTest::newRow("classic_lines") << false << true << "CO_CONST";
        QTest::newRow("v4_one_line") << true << false << "CORE_CONST";
        QTest::newRow("v4_lines") << true << true << "CORE_CONST";
    }
    void tables()
    {
        const auto [v4, isMultiLine, storage] = fetchRow<bool, bool, QString>();
        store = makeStore();
        // Managed signals keep their place. One group is without signals, one not a safe one. Line
        // 2 has safe groups of an earlier type.
        buildProject(*store, R"(
            line 0 2; j1939:safetysupport=1
            rx 0xFF01 100 0 6 safe srvt=70000 name=a%20*/
            spn 1 U8 2 var=level value=7 name=s%20*/; spn 2 U16 0; spn 3 104 2 var=list[2] value=9
            rx 0xFF02 100 0 6 safe srvt=300
            tx 0xFF01 100 0 6; spn 1 U8 2 var=level)");
        store->setGeneralSettingsValue("use_core_headers", v4 ? "V4" : "");
        if (isMultiLine)
            buildProject(*store, R"(
                line 2; tx 0xFF01 100 0 6 safe srvt=20; spn 1 U8 2 var=undeclared
                line 5 2; tx 0xFF01 100 0 6 safe srvt=20; spn 1 U8 2 var=other value=8)");
        const QString text = generate(v4);
        QVERIFY(text.contains("static " + storage + " J1939_SDG_GROUP_T\t"));
        QCOMPARE(runProgram(kWalk),
                 QString("0=0;2=2 65281/100/70000/6,8:7,16:-1,6:9 65282/100/300/6;\n") +
                     (isMultiLine ? "0=0;0=0;\n1=1 65281/100/20/6,8:8;0=0;\n" : ""));
    }

    void projectWithoutGroups()
    {
        store = makeStore();
        buildProject(*store, "line 0 2; j1939:safetysupport=1");
        generate(false);
        QCOMPARE(runProgram(kWalk), "0=0;0=0;\n");
    }

private:
    /// All sources of the program; returns the text of the tables.
    QString generate(bool v4)
    {
        CoDefineGenerator classicDefines;
        GenDefineGenerator v4Defines;
        DefineGenerator &defines = v4 ? static_cast<DefineGenerator &>(v4Defines) : classicDefines;
        defines.j1939Present = true;
        (void)generateWith(defines, "demo", "gen_define.h");
        ExtDeclGenerator declarations;
        (void)generateWith(declarations, "demo", "gen_extern_decl.h");
        SDMGenerator tables;
        return generateWith(tables, "demo */", "gen_sdg.c");
    }
};

QTEST_GUILESS_MAIN(tst_SdmGenerator)
#include "tst_sdmgenerator.moc"
