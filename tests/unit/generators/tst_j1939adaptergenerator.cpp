// The functions that read and write signals, called by a program.
#include "generators/j1939/j1939adaptergenerator.h"
#include "tests/unit/generators/csources.h"

class tst_J1939AdapterGenerator : public CSourceTest
{
    Q_OBJECT

private slots:
    void functions()
    {
        store = makeStore();
        setType(0, 2);
        setType(1, 2);
        setType(2, 1);
        addGroup(0, 0xFF01, 0x77, 0);
        for (const char *variable : {"value", "managed", "list", "text", "s.level", "&s.level", ""})
            addSpn(0, 0xFF01, 0x77, qstrcmp(variable, "text") == 0 ? 120 : 6, variable, "0", 24);
        addGroup(0, 0xFF01, 0x55, 0);
        addSpn(0, 0xFF01, 0x55, 7, "value");   // is as wide as its widest signal
        addSpn(0, 0xFF01, 0x55, 5, "list[2]"); // makes a list of it
        addSpn(0, 0xFF01, 0x55, 24, "wide");
        addSpn(0, 0xFF01, 0x55, 99, "unknown"); // of no type
        for (const quint8 line : {1, 2}) {
            addGroup(line, 0xFF01, 0x77, 0);
            addSpn(line, 0xFF01, 0x77, 5, line == 1 ? "value" : "undeclared");
        }
        QVERIFY(writeFile(
            fixture.path("gen_define.h"),
            "#pragma once\n#include <stdint.h>\nextern struct S { uint16_t level; } s;\n"));
        generate();
        // Code of the user stays, and sees all functions.
        QString text = readFile(fixture.path("j1939_adapter.c"));
        text.replace("start */\n", "start */\n#include <stdio.h>\nstruct S s;\nint main(void)\n{\n"
                                   "    char read[3];\n"
                                   "    j1939WriteTx_65281_1_l0(0x10000);\n"
                                   "    j1939WriteRx_65281_3_l0(3);\n"
                                   "    j1939WriteRx_65281_4_l0(\"ab\");\n"
                                   "    j1939ReadRx_65281_4_l0(read);\n"
                                   "    j1939WriteRx_65281_5_l0(0x1234);\n"
                                   "    j1939WriteTx_65281_3_l0(j1939ReadTx_65281_3_l0());\n"
                                   "    printf(\"%lx %d %s %x\", (unsigned long)"
                                   "j1939ReadRx_65281_1_l1(), list[0], read,\n"
                                   "           j1939ReadRx_65281_6_l0());\n"
                                   "    return 0;\n}\n");
        QVERIFY(writeFile(fixture.path("j1939_adapter.c"), text.toUtf8()));
        generate();
        QCOMPARE(QString(readFile(fixture.path("j1939_adapter.c"))).section('\n', 3),
                 text.section('\n', 3));
        QCOMPARE(runProgram("typedef int none;\n"), "10000 3 ab 1234");
        QCOMPARE(text.count("j1939Read"), 9 + 4);
    }

    void emptyProject()
    {
        store = makeStore();
        QVERIFY(writeFile(fixture.path("gen_define.h"), {}));
        QVERIFY(QFile::remove(fixture.path("j1939_adapter.c")));
        generate();
        QCOMPARE(runProgram("int main(void) { return 0; }\n"), "");
    }

private:
    void generate()
    {
        ExtDeclGenerator declarations;
        (void)generateWith(declarations, "demo", "gen_extern_decl.h");
        J1939AdapterGenerator adapter;
        (void)generateWith(adapter, "demo */", "gen_j1939_adapter.c");
        QVERIFY2(!adapter.getWasError(), qPrintable(adapter.getLastErrorString()));
    }
};

QTEST_GUILESS_MAIN(tst_J1939AdapterGenerator)
#include "tst_j1939adaptergenerator.moc"
