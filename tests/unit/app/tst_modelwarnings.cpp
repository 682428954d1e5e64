// What of a model no file can hold: each rule with what is just right.
#include "app/modelwarnings.h"
#include "tests/fixtures/problemrecorder.h"
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/storefixture.h"

class tst_ModelWarnings : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void tells_data()
    {
        columns<QString, QString, QString>("project", "sql", "told");
        // clang-format off
        const auto row = [](const char *name, const QString &project, const QString &told = {},
            const QString &sql = {}) {
            QTest::newRow(name) << project << sql << told;
        };
        const QString j1939 = "line 0 2; tx 61444 100; ", raw = "line 0 4; rxid 291 0; ";
        const QString noBits = " has no size of its own: give it a bit size, or another type [signal-without-bits]";
        row("bits", j1939 + "spn 1 U8 0; spn 2 VS 0 bits=80; spn 3 STRING_NULL 0");
        row("no_bits", j1939 + "spn 2 VS 0", "0:61444:2: warning: the signal 2 in the group 61444 that line 0 sends "
            "has no bits, "
            "since its type VISIBLE_STRING" + noBits);
        row("no_bits_raw", raw + "item 2 OS 0", "0:291:2: warning: the signal 2 in the CAN identifier 291 that line "
            "0 receives has "
            "no bits, since its type OCTET_STRING" + noBits);
        row("group_of_canopen", "line 0 1; tx 61444 100; spn 2 VS 0", "0:61444:-1: warning: the group 61444 that line "
            "0 sends stands in no file, since only lines of J1939 have such: give the line that protocol, or remove "
            "what it has of this kind [frame-of-other-protocol]");
        row("identifier_of_j1939", "line 0 2; rxid 291 0", "0:291:-1: warning: the CAN identifier 291 that line 0 "
            "receives stands in no file, since only lines of raw CAN have such: give the line that protocol, or remove "
            "what it has of this kind [frame-of-other-protocol]");
        row("stray", j1939 + "spn 2 U8 0", "0:61443:2: warning: the signal 2 stands in no file, since there is no "
            "group 61443 that "
            "line 0 sends: add the group, or remove the signal [signal-without-group]", "update SPNs0 set "
            "pgnnumber=61443");
        row("stray_direction", raw + "item 2 U8 0", "0:291:2: warning: the signal 2 stands in no file, since there "
            "is no CAN "
            "identifier 291 that line 0 sends: add the CAN identifier, or remove the signal [signal-without-group]",
            "update DataElements0 set direction=85");
        const QString doubled = "0:61444:1: warning: the signal 1 in the group 61444 that line 0 sends stands "
                                "there more than once, each time with bits of its own: remove all but one "
                                "[doubled-signal]";
        row("twice", j1939 + "spn 1 U8 0", doubled, "insert into SPNs0 select * from SPNs0");
        row("both_ways", j1939 + "spn 1 U8 0; rx 61444 0; spn 1 U8 0");

        const QString value = " has no place among the values of gen_vobjdict.c, since ",
                      other = ": choose another implementation [virtual-object]";
        const QString virtuals = "line 0 1; 1000 var; 2000 var; 2000:0 U8 rw 3 0; ";
        row("virtual", virtuals + "bfff var; bfff:0 DOMAIN rw 3 0; c000 var; c000:0 U8 rw 1 0; line 1; 2000 var; "
            "2000:0 U8 rw 3 0");
        row("virtual_type", virtuals + "2001 var; 2001:0 BOOLEAN rw 3 0",
            "0:2001:0: warning: the virtual object 0x2001:0 of line 0" + value
            + "none of them can be of type BOOLEAN" + other);
        row("virtual_above", virtuals + "c000 var; c000:0 U8 rw 3 0",
            "0:c000:0: warning: the virtual object 0xc000:0 of line 0" + value + "their indices end at 0xbfff" + other);
        row("virtual_line", virtuals + "use_core_headers=V4; line 1; 1000 var; 2000 var; 2000:0 U8 rw 3 0",
            "1:2000:0: warning: the virtual object 0x2000:0 of line 1" + value + "a V4 project has them on line 0 "
            "alone" + other);
        row("virtual_mixed", virtuals + "use_core_headers=V4; line 1 2", "0:2000:0: warning: the virtual object "
            "0x2000:0 of line 0" +
            value + "a V4 project of several protocols has no virtual objects" + other);
        row("virtual_without_dictionary", "line 0 2; 1000 var; 2000 var; 2000:0 BOOLEAN rw 3 0");

        row("line_31", "line 0 2; line 31 1");
        row("line_32", "line 0 2; line 32 1", "line32type: warning: no generated function starts line 32, since a "
            "project of several "
            "protocols has lines 0 to 31: give it a lower number [line-without-start]");
        row("line_32_of_one_protocol", "line 0 1; line 32 1");

        row("headers", "applicationheader=\"here.h\"  <none.h> ");
        row("missing_header", "applicationheader=here.h hree.h", "applicationheader: warning: the header \"hree.h\" of "
            "\"applicationheader\" is not in the folder of the project: mend its name, or write <hree.h> if the "
            "compiler finds "
            "it in another folder [missing-header]");

        const QString named = "line 0 1; 2000 rec; 2000:1 U8 rw 2 5 var=a[1]; 2000:2 U8 rw 2 5 var=a[2]; ",
                      odd = "2000:3 U8 rw 2 5 var=s.x; 2001:0 U8 rw 2 5 var=(&y); 2002:0 DOMAIN rw 2 - var=d.x",
                      mixed = "2003:0 I8 rw 2 5 var=a; 2004:0 VS rw 2 x size=1 var=a[0]", on = "generate_variables=1; ";
        row("variables", on + named + "2001:0 VS rw 2 x size=1 var=t; 2002:0 VS rw 2 x size=2 var=t");
        row("variables_by_hand", named + odd + "; " + mixed);
        row("variables_of_j1939", on + "line 0 2; 1000 var; 2000 var; 2000:0 U8 rw 2 5 var=s.x");
        row("undeclared", on + named + odd, "0:2000:3: warning: the variable \"s.x\" of the object 0x2000:3 on line 0, "
            "and 1 more, are not declared in gen_extern_decl.h, which has plain names and elements of arrays of a "
            "known type: declare what it is in a header of \"applicationheader\" [variable-not-declared]");
        row("types", on + named + mixed, "0:2003:0: warning: the variable \"a\" of the object 0x2003:0 on line 0 is of "
            "several types, here INTEGER8 and elsewhere UNSIGNED8 in an array, which a C compiler does not take: give "
            "each of the objects a variable of its own [variable-types]");
        const QString gateway = on + "line 0 1; line 1 2; tx 61444 100; spn 1 U24 2 var=w; spn 2 U8 2 var=n; line 0; ";
        row("type_of_signal", gateway + "2000:0 U24 rw 2 5 var=w; 2001:0 U16 rw 2 5 var=n", "0:2000:0: warning: the "
            "variable \"w\" of the object 0x2000:0 on line 0 is of several types, here UNSIGNED24 and elsewhere "
            "UNSIGNED32, which a C compiler does not take: give each of the objects a variable of its own "
            "[variable-types]");
        // clang-format on
    }
    void tells()
    {
        QFETCH(QString, project);
        QFETCH(QString, sql);
        QFETCH(QString, told);
        QVERIFY(writeFile(fixture.path("here.h"), {}));
        buildProject(*store, project);
        QVERIFY(sql.isEmpty() || store->executeSql(sql));
        const ProjectFacts facts = readProjectFacts(*store);
        for (const ProjectLine &line : facts.lines) {
            store->cacheAllSubs(line.number, 0);
            store->cacheAllSpnDataForLine(line.number);
        }
        const ProblemRecorder recorder;
        ModelWarnings(*store, facts, placeText, {fixture.path()}).run();
        QCOMPARE(recorder.lines.join('|'), told);
    }

private:
    static SettingsCheck::Place placeText(const ProjectPlace &place)
    {
        const QString line = QString::number(place.line) + ':';
        const QString frame = QString("%1:%2").arg(place.group).arg(place.signal);
        const QString object = QString("%1:%2").arg(place.index, 0, 16).arg(place.subindex);
        return {!place.setting.isEmpty() ? place.setting
                : place.group >= 0       ? line + frame
                                         : line + object};
    }
};

QTEST_GUILESS_MAIN(tst_ModelWarnings)
#include "tst_modelwarnings.moc"
