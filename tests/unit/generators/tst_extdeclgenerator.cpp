// Declarations and definitions of the application's variables.
#include "generators/j1939/extdeclgenerator.h"
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/storefixture.h"

#include <QProcess>

class tst_ExtDeclGenerator : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void variables_data()
    {
        columns<QString, QString, QString>("signal", "declared", "defined");
        // clang-format off
        QTest::newRow("bits") << "103 2 var=a value=0x1F" << "UNSIGNED8 a" << "UNSIGNED8 a = 31u";
        QTest::newRow("too wide") << "5 2 var=a value=0x1FF" << "UNSIGNED8 a" << "UNSIGNED8 a = 255u";
        QTest::newRow("no number") << "109 2 var=a value=x" << "UNSIGNED16 a" << "UNSIGNED16 a = 0u";
        QTest::newRow("signed") << "2 2 var=a value=-5" << "INTEGER8 a" << "INTEGER8 a = -5";
        QTest::newRow("wider") << "22 2 var=a value=7" << "UNSIGNED32 a" << "UNSIGNED32 a = 7UL";
        QTest::newRow("bytewise") << "25 2 var=a value=258" << "UNSIGNED64 a"
            << "UNSIGNED64 a = U64_SET(0x00,0x00,0x00,0x00,0x00,0x00,0x01,0x02)";
        QTest::newRow("real") << "8 2 var=a value=1.5" << "REAL32 a" << "REAL32 a = 1.50000000e+00f";
        QTest::newRow("no literal") << "8 2 var=a value=inf" << "REAL32 a" << "REAL32 a = 0.00000000e+00f";
        QTest::newRow("no macro") << "21 2 var=a value=1" << "INTEGER64 a" << "INTEGER64 a";
        QTest::newRow("string") << "120 2 var=a value=ü\" bits=17" << "char a[3]"
            << "char a[3] = { '\\xc3', '\\xbc', '\\x22' }";
        QTest::newRow("cut string") << "121 2 var=a value=xy bits=8" << "char a[1]" << "char a[1] = { '\\x78' }";
        QTest::newRow("no size") << "15 2 var=a value=" << "UNSIGNED8 a[1]" << "UNSIGNED8 a[1]";
        QTest::newRow("hex string") << "10 2 var=a value=|xF0 bits=16" << "UNSIGNED8 a[2]"
            << "UNSIGNED8 a[2] = { 0xf0 }";
        QTest::newRow("element") << "6 2 var=%20a%20[0x2u] value=9" << "UNSIGNED16 a[]"
            << "UNSIGNED16 a[3] = { [2] = 9u }";
        QTest::newRow("text element") << "9 2 var=a[1] value=x bits=16" << "char a[][2]"
            << "char a[2][2] = { [1] = { '\\x78' } }";
        // clang-format on
    }
    void variables()
    {
        QFETCH(QString, signal);
        buildProject(*store, kGroup + "spn 1 " + signal);
        const ExtDecl::Variables variables = ExtDecl::readVariables(*store);
        QCOMPARE(variables.declared.size(), 1);
        QTEST(ExtDecl::declaration(variables.declared.first()), "declared");
        QTEST(ExtDecl::definition(variables.declared.first()), "defined");
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
