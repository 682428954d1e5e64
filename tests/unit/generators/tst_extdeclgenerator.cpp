// Declarations and definitions of the application's variables.
#include "generators/j1939/extdeclgenerator.h"
#include "tests/fixtures/storefixture.h"

#include <QProcess>

class tst_ExtDeclGenerator : public StoreTest
{
    Q_OBJECT

private slots:
    void init()
    {
        store = makeStore();
        spnCount = 0;
        setType(0, 2);
        ObjectDataBase::PGN group;
        group.direction = 0x77;
        QVERIFY(store->addPGN(0, kGroup, group));
    }

    void variables_data()
    {
        columns<QString, int, int, QString, QString, QString>("name", "type", "bits", "value",
                                                              "declared", "defined");
        // clang-format off
        QTest::newRow("bits")         << "a"        << 103 << 0   << "0x1F" << "UNSIGNED8 a"      << "UNSIGNED8 a = 31u";
        QTest::newRow("too wide")     << "a"        << 5   << 0   << "0x1FF" << "UNSIGNED8 a"     << "UNSIGNED8 a = 255u";
        QTest::newRow("no number")    << "a"        << 109 << 0   << "x"    << "UNSIGNED16 a"     << "UNSIGNED16 a = 0u";
        QTest::newRow("signed")       << "a"        << 2   << 0   << "-5"   << "INTEGER8 a"       << "INTEGER8 a = -5";
        QTest::newRow("wider")        << "a"        << 22  << 0   << "7"    << "UNSIGNED32 a"     << "UNSIGNED32 a = 7UL";
        QTest::newRow("bytewise")     << "a"        << 25  << 0   << "258"  << "UNSIGNED64 a"     << "UNSIGNED64 a = U64_SET(0x00,0x00,0x00,0x00,0x00,0x00,0x01,0x02)";
        QTest::newRow("real")         << "a"        << 8   << 0   << "1.5"  << "REAL32 a"         << "REAL32 a = 1.50000000e+00f";
        QTest::newRow("no literal")   << "a"        << 8   << 0   << "inf"  << "REAL32 a"         << "REAL32 a = 0.00000000e+00f";
        QTest::newRow("no macro")     << "a"        << 21  << 0   << "1"    << "INTEGER64 a"      << "INTEGER64 a";
        QTest::newRow("string")       << "a"        << 120 << 17  << "ü\""  << "char a[3]"        << "char a[3] = { '\\xc3', '\\xbc', '\\x22' }";
        QTest::newRow("cut string")   << "a"        << 121 << 8   << "xy"   << "char a[1]"        << "char a[1] = { '\\x78' }";
        QTest::newRow("no size")      << "a"        << 15  << 0   << ""     << "UNSIGNED8 a[1]"   << "UNSIGNED8 a[1]";
        QTest::newRow("hex string")   << "a"        << 10  << 16  << "|xF0" << "UNSIGNED8 a[2]"   << "UNSIGNED8 a[2] = { 0xf0 }";
        QTest::newRow("element")      << " a [0x2u]" << 6  << 0   << "9"    << "UNSIGNED16 a[]"   << "UNSIGNED16 a[3] = { [2] = 9u }";
        QTest::newRow("text element") << "a[1]"     << 9   << 16  << "x"    << "char a[][2]"      << "char a[2][2] = { [1] = { '\\x78' } }";
        // clang-format on
    }
    void variables()
    {
        QFETCH(QString, name);
        QFETCH(int, type);
        QFETCH(int, bits);
        QFETCH(QString, value);
        addSpn(name, quint32(type), value, quint16(bits));
        const ExtDecl::Variables variables = ExtDecl::readVariables(*store);
        QCOMPARE(variables.declared.size(), 1);
        QTEST(ExtDecl::declaration(variables.declared.first()), "declared");
        QTEST(ExtDecl::definition(variables.declared.first()), "defined");
        compile();
    }

    void othersAreListed()
    {
        for (const char *name : {"s.level", "*p */", "&x", "a[CNT]", "a[010]", "a[65536]", "int",
                                 "s.level", "a\n+ b", " "})
            addSpn(name, 5, "0");
        addSpn("untyped", 0, "0");
        const ExtDecl::Variables variables = ExtDecl::readVariables(*store);
        QVERIFY(variables.declared.isEmpty());
        QCOMPARE(variables.others.join(";"),
                 "s.level;*p */;&x;a[CNT];a[010];a[65536];int;a + b;untyped");
        compile();
        QVERIFY(readFile(fixture.path("gen_extern_decl.h")).contains("\n *   *p * /\n *   &x\n"));
    }

    void eachNameOnceInOrderOfUse()
    {
        addSpn("level", 5, "1");
        addSpn("managed", 5, "1", 0, 0);
        addSpn("list[3]", 6, "4");
        addSpn("level", 7, "2");         // a table that takes four bytes must not read beyond
        addSpn("od_2c00[1]", 5, "1");    // as the object beside it
        addSpn("list[1]", 5, "5", 0, 1); // no variable in name only: the mapping refers to it
        addRawLine(1);
        store->addNode(2, Node());
        addVariable(2);
        QCOMPARE(definitions(),
                 "UNSIGNED32 level = 1UL;UNSIGNED16 list[4] = { [1] = 5u, [3] = 4u };"
                 "UNSIGNED8 od_2c00[2] = { [1] = 1u };INTEGER16 raw = -2");
        setType(2, 1); // objects of other lines are in no table
        QVERIFY(
            definitions().endsWith(";INTEGER8 od_2c00[3] = { [1] = 1, [2] = 3 };INTEGER16 raw = -2;"
                                   "UNSIGNED24 wide = U24_SET(0x00,0x00,0x03)"));
        compile();
    }

    void emptyProject() { compile(); }

private:
    static constexpr quint32 kGroup = 0xFF00;

    void setType(quint8 line, int type)
    {
        store->setGeneralSettingsValue(QString("line%1type").arg(line), QString::number(type));
    }

    void addSpn(const QString &name, quint32 type, const QString &value, quint16 bits = 0,
                quint32 implementation = 2)
    {
        ObjectDataBase::SPN spn;
        spn.pos = qint16(++spnCount);
        spn.dataType = type;
        spn.bitSize = bits;
        spn.implementation = implementation;
        spn.varName = name;
        spn.defaultValue = value;
        QVERIFY(store->addSPN(0, kGroup, 0x77, spnCount, spn));
    }

    void addRawLine(quint8 line)
    {
        store->addNode(line, Node());
        setType(line, 4);
        ObjectDataBase::CANID frame;
        frame.direction = 0x55;
        QVERIFY(store->addCANID(line, 0x100, frame));
        ObjectDataBase::DataElement element;
        element.varName = "raw";
        element.dataType = 3;
        element.defaultValue = "-2";
        QVERIFY(store->addDataElement(line, 0x100, 0x55, 1, element));
    }

    void addVariable(quint8 line)
    {
        Sub sub = makeSub("n", 2, "3");
        sub.implementation = 2;
        sub.varName = "od_${index}[${sub}]";
        QVERIFY(store->addIndex(line, 0x2C00, Object()));
        QVERIFY(store->addSubIndex(line, 0x2C00, 2, sub));
        sub.dataType = 22;
        sub.varName = "wide";
        QVERIFY(store->addSubIndex(line, 0x2C00, 3, sub));
    }

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

    quint32 spnCount = 0;
};

QTEST_GUILESS_MAIN(tst_ExtDeclGenerator)
#include "tst_extdeclgenerator.moc"
