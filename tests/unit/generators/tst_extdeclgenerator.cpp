// Declarations and definitions of the application's variables.
#include "generators/j1939/extdeclgenerator.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/storefixture.h"

#include <QProcess>

class tst_ExtDeclGenerator : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void variables_data() { addCases(TEST_CASES "/extdeclgenerator.txt"); }
    void variables()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        buildProject(*store, kGroup + "spn 1 " + project);
        const ExtDecl::Variables variables = ExtDecl::readVariables(*store);
        QCOMPARE(variables.declared.size(), 1);
        const ExtDecl::Variable &variable = variables.declared.first();
        QCOMPARE(ExtDecl::declaration(variable) + '\n' + ExtDecl::definition(variable) + '\n',
                 expected);
        compile();
    }

    void othersAreListed()
    {
        QString rows = kGroup;
        int number = 0;
        for (const char *name : {"s.level", "*p%20*/", "&x", "a[CNT]", "a[010]", "a[65536]", "int",
                                 "s.level", "a%0a+%20b", "%20"})
            rows += QString("spn %1 U8 2 var=%2\n").arg(++number).arg(name);
        buildProject(*store, rows + "spn 99 0 2 var=untyped");
        const ExtDecl::Variables variables = ExtDecl::readVariables(*store);
        QVERIFY(variables.declared.isEmpty());
        QCOMPARE(variables.others.join(";"),
                 "s.level;*p */;&x;a[CNT];a[010];a[65536];int;a + b;untyped");
        compile();
        QVERIFY(readFile(fixture.path("gen_extern_decl.h")).contains("\n *   *p * /\n *   &x\n"));
    }

    void eachNameOnceInOrderOfUse()
    {
        buildProject(*store, kGroup + R"(
            spn 1 U8 2 var=level value=1
            spn 2 U8 0 var=managed value=1
            spn 3 U16 2 var=list[3] value=4
            # a table that takes four bytes must not read beyond
            spn 4 U32 2 var=level value=2
            # as the object beside it
            spn 5 U8 2 var=od_2c00[1] value=1
            # no variable in name only: the mapping refers to it
            spn 6 U8 1 var=list[1] value=5
            line 1 4
            txid 0x100; item 1 I16 2 var=raw value=-2
            line 2 9
            2c00:2 I8 ro 2 3 var=od_${index}[${sub}]
            2c00:3 U24 ro 2 3 var=wide)");
        QCOMPARE(definitions(),
                 "UNSIGNED32 level = 1UL;UNSIGNED16 list[4] = { [1] = 5u, [3] = 4u };"
                 "UNSIGNED8 od_2c00[2] = { [1] = 1u };INTEGER16 raw = -2");
        store->setGeneralSettingsValue("line2type", "1"); // objects of others are in no table
        QVERIFY(
            definitions().endsWith(";INTEGER8 od_2c00[3] = { [1] = 1, [2] = 3 };INTEGER16 raw = -2;"
                                   "UNSIGNED24 wide = U24_SET(0x00,0x00,0x03)"));
        compile();
    }

    void emptyProject()
    {
        buildProject(*store, kGroup);
        compile();
    }

private:
    const QString kGroup = "line 0 2; rx 0xFF00\n";

    QString definitions()
    {
        QStringList texts;
        const ExtDecl::Variables variables = ExtDecl::readVariables(*store);
        for (const ExtDecl::Variable &variable : variables.declared)
            texts << ExtDecl::definition(variable);
        return texts.join(';');
    }

    void compile()
    {
        QVERIFY(writeFile(fixture.path("gen_define.h"), "\n"));
        ExtDeclGenerator classic;
        ExtDeclGeneratorV4 v4;
        for (AbstractGenerator *generator :
             {static_cast<AbstractGenerator *>(&classic), static_cast<AbstractGenerator *>(&v4)}) {
            const QString source = generateWith(*generator, "demo */", "gen_var_decl.c");
            QVERIFY(source.contains("\n#include <gen_define.h>\n#include <gen_extern_decl.h>\n"));
            QProcess compiler;
            compiler.setProcessChannelMode(QProcess::MergedChannels);
            compiler.start(TEST_C_COMPILER,
                           {"-std=c99", "-Wall", "-Wextra", "-Wpedantic", "-Werror",
                            "-fsyntax-only", "-I" + fixture.path(), "-I" TEST_STACK "/include",
                            fixture.path("gen_var_decl.c")});
            QVERIFY(compiler.waitForFinished(kLongestWaitMs));
            QVERIFY2(compiler.exitCode() == 0, compiler.readAll() + source.toUtf8());
        }
        QVERIFY(readFile(fixture.path("gen_extern_decl.h"))
                    .contains("\n#include <gen_define.h>\n#include <core_datatype.h>\n"));
    }
};

QTEST_GUILESS_MAIN(tst_ExtDeclGenerator)
#include "tst_extdeclgenerator.moc"
