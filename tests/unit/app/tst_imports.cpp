// What "-import" brings into which line.
#include "tests/fixtures/toolfixture.h"

class tst_Imports : public ToolTest
{
    Q_OBJECT

private slots:
    void init()
    {
        makeFolder();
        const auto device = [](const QByteArray &name) {
            return "[MandatoryObjects]\nSupportedObjects=1\n1=0x1000\n"
                   "[1000]\nParameterName=" +
                   name + "\nDataType=7\nAccessType=ro\n";
        };
        QVERIFY(write("gauge.eds", device("gauge")) && write("valve.dcf", device("valve")));
        QVERIFY(write("1:own.eds", device("own")));
        const QByteArray columns = "index;sub;line;edsname\n";
        QVERIFY(write("of0.icsv", columns + "0x1000;0;0;table\n0x1000;1;0;x\n"));
        QVERIFY(write("mixed.csv", columns + "0x1000;0;0;table\n0x1000;0;1;table\n"));
        QVERIFY(write("net.dbc", "BU_: ECU\nBO_ 256 Level: 1 ECU\n"));
        QVERIFY(write("untyped.tsrt", kUntyped));
        QVERIFY(write("j1939.tsrt", QByteArray(kProject).replace("line0type=1", "line0type=2")));
        QVERIFY(write("both.tsrt", QByteArray(kProject).replace("line0type=1", "line0type=5")));
        const QByteArray object = "objects: {0x1000: {name: one, type: U32}}}";
        const QByteArray settings = "tessarine: 1\nsettings: {event_can: 1, limit_check: 0}\n";
        QVERIFY(write("lines.yaml",
                      settings + "j1939: {requestsupport: 1}\nlines:\n  0: {protocol: CANopen, " +
                          object + "\n  2: {protocol: CANopen and J1939, " +
                          QByteArray(object).replace("one", "two") + '\n'));
        QVERIFY(write("p#2.yaml", settings + "lines: {1: {protocol: CANopen, " + object + "}\n"));
        ObjectDataBase store;
        QVERIFY(store.openDataBase(folder + "/pümp.tsrt") &&
                store.saveDataBase(folder + "/p.tsrp") && write("other.tsrp", "none"));
        QVERIFY(write("plain.yaml", "tessarine: 1\nlines: {0: {node-id: 5}}\n"));
        QVERIFY(write("only1.yaml", "tessarine: 1\nlines: {1: {protocol: CANopen}}\n"));
    }

    void goIntoLines_data()
    {
        // clang-format off
        columns<QString, QString, QByteArray>("arguments", "lines", "told");
        const auto failed = [](const QByteArray &file, const QByteArray &why) {
            return (file + ": error: could not be imported: " + why + " [not-imported]\n"); };
        QTest::newRow("in_order") << "pümp.tsrt -import gauge.eds -import valve.dcf" << "0:1:valve" << QByteArray();
        QTest::newRow("added_line") << "pümp.tsrt -import 1:gauge.eds -import valve.dcf -import 3:./1:own.eds"
            << "0:1:valve 1:1:gauge 3:1:own" << QByteArray();
        QTest::newRow("highest_line") << "pümp.tsrt -import 253:gauge.eds" << "0:1:type 253:1:gauge" << QByteArray();
        QTest::newRow("line_without_type") << "untyped.tsrt -import 00:gauge.eds" << "0:1:gauge" << QByteArray();
        QTest::newRow("line_without_protocol") << "plain.yaml -import 0:gauge.eds" << "0:1:gauge" << QByteArray();
        QTest::newRow("line_of_both") << "both.tsrt -import 0:gauge.eds" << "0:5:gauge" << QByteArray();
        QTest::newRow("no_line_0") << "only1.yaml -import gauge.eds" << "1:1:" << QByteArray("gauge.eds: warning: has "
            "no effect, since it is imported into line 0, which the project does not have: add that line to it, as "
            "\"-import 0:<file>\" does [import-without-line]\n");
        QTest::newRow("named_line_0") << "only1.yaml -import 0:gauge.eds" << "0:1:gauge 1:1:" << QByteArray();
        QTest::newRow("table_of_another_line") << "pümp.tsrt -import 1:of0.icsv" << "0:1:type 1:1:table"
            << QByteArray();
        QTest::newRow("table_of_lines") << "pümp.tsrt -import 1:mixed.csv" << "0:1:type 1:1:table" << QByteArray(
            "mixed.csv:3: warning: the table has rows of several lines, which go to these lines and not to line 1 "
            "[csv-lines]\n");
        QTest::newRow("other_type") << "j1939.tsrt -import 0:gauge.eds" << "" << failed("gauge.eds", "it is for a "
            "CANopen line, and line 0 of the project is a J1939 line; \"-import 1:gauge.eds\" adds a line for it");
        QTest::newRow("bare_name_of_other_type") << "j1939.tsrt -import gauge.eds" << "0:2:gauge" << QByteArray(
            "gauge.eds: warning: is of no use there: it is for a CANopen line, and line 0 of the project is a J1939 "
            "line [import-of-other-type]\n");
        QTest::newRow("all_slips_at_once") << "pümp.tsrt -import 254:gauge.eds -import 1: -import 1:own.eds "
            "-import none.eds" << "" << failed("gauge.eds", "\"254\" is no line of a project, which are 0 to 253") +
            "error: \"1:\" could not be imported: no file is named after the colon [not-imported]\n" +
            failed("own.eds", "there is no such file; the file \"1:own.eds\" is written as \"./1:own.eds\"") +
            failed("none.eds", "there is no such file");
        QTest::newRow("projects") << "only1.yaml -import p.tsrp -import 1:pümp.tsrt -import 2:lines.yaml#2"
            << "0:1:type 1:1:type 2:5:two" << QByteArray();
        QTest::newRow("mark_in_a_name") << "only1.yaml -import p#2.yaml#1" << "0:1:one 1:1:" << QByteArray();
        QTest::newRow("type_stays") << "both.tsrt -import lines.yaml" << "0:5:one" << QByteArray();
        QTest::newRow("project_of_other_type") << "pümp.tsrt -import lines.yaml#2" << "" << failed("lines.yaml",
            "it is for a CANopen and J1939 line, and line 0 of the project is a CANopen line; \"-import "
            "1:lines.yaml#2\" adds a line for it");
        QTest::newRow("line_that_is_not_there") << "pümp.tsrt -import lines.yaml#1" << "" << failed("lines.yaml",
            "it has no line 1, but the lines 0 and 2; name one, as in \"lines.yaml#0\"");
        QTest::newRow("no_line_of_a_project") << "pümp.tsrt -import lines.yaml#x" << "" << failed("lines.yaml",
            "\"x\" is no line of a project, which are 0 to 253");
        QTest::newRow("no_project") << "pümp.tsrt -import other.tsrp" << ""
            << QByteArray("other.tsrp: error: is no project: ");
        QTest::newRow("itself") << "pümp.tsrt -import ./pümp.tsrt -import 1:pümp.tsrt" << "0:1:type 1:1:type"
            << QByteArray("./pümp.tsrt: warning: is the project that is open: its line 0, as the file holds it, is "
            "copied into line 0 again [import-of-itself]\npümp.tsrt: note: is the project that is open: its line 0, "
            "as the file holds it, is copied into line 1 [import-of-itself]\n");
        QTest::newRow("settings_of_all_lines") << "pümp.tsrt -import lines.yaml" << "0:1:one"
            << QByteArray("lines.yaml: note: has other values of settings that its lines share, which stay as they are "
            "in the project: \"event_can\" and \"J1939:requestsupport\" [import-leaves]\n");
        QTest::newRow("node_without_dbc") << "pümp.tsrt -import gauge.eds -import-node A" << "0:1:gauge" << QByteArray(
            "warning: the node \"A\" of \"-import-node\" has no effect, since no DBC file is imported after it; put it "
            "before the \"-import\" of that file [import-node-unused]\n");
        QTest::newRow("network") << "pümp.tsrt -import-node ECU -import 1:net.dbc" << "0:1:type 1:4:" << QByteArray();
        QTest::newRow("network_without_node") << "pümp.tsrt -import-node EC -import 1:net.dbc" << ""
            << failed("net.dbc", "it has no node \"EC\"; the file has \"ECU\"");
        // clang-format on
    }
    void goIntoLines()
    {
        const auto [arguments, lines, told] = fetchRow<QString, QString, QByteArray>();
        const QByteArray output = run("-export out.yaml -save -project " + arguments);
        const bool isDone = output.endsWith(" 0\n") || output.endsWith(" 7\n");
        QCOMPARE(isDone, !lines.isEmpty());
        QVERIFY2(isDone || output.endsWith(" 5\n"), output);
        QVERIFY2(output.contains(told), output);
        QCOMPARE(output.contains("Import failed.\nError - Import error.\n"), !isDone);
        QCOMPARE(output.contains("[import-without-line]"), told.contains("[import-without-line]"));
        QCOMPARE(QFile::exists(folder + "/out.yaml"), isDone);
        QCOMPARE(isDone ? linesOf("out.yaml") : QString(), lines);
    }

private:
    /// "<line>:<type>:<name of 0x1000>" of each.
    QString linesOf(const QString &project) const
    {
        ObjectDataBase store;
        if (!store.openDataBase(folder + '/' + project))
            return "unopened";
        QStringList lines;
        for (const quint8 line : store.getNodes())
            lines << QString("%1:%2:%3")
                         .arg(QString::number(line),
                              store.getGeneralSettingsValue(QString("line%1type").arg(line)),
                              store.getIndexName(line, 0x1000));
        return lines.join(' ');
    }
};

QTEST_GUILESS_MAIN(tst_Imports)
#include "tst_imports.moc"
