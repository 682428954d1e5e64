// Settings that do not do what they seem to: each rule with what is just right.
#include "check/settingscheck.h"
#include "tests/fixtures/problemrecorder.h"
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/storefixture.h"

class tst_SettingsCheck : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void tells_data()
    {
        columns<QString, QString>("project", "told"); // what follows the warning's first words
        // clang-format off
        const auto row = [](const char *name, const QString &project, const QString &told = {}) {
            QTest::newRow(name) << project << told;
        };
        const QString none = "unknown-setting|nothing reads ", lost = ", and it has no effect: ";
        row("known", "co_node_id=1; misc:generateML=true; text:VendorName_2=x; j1939:bamsupport=1; eb:any=1");
        row("of_other_tools", "routing_counts=1; j1939:sdm_loop_counter=2; srdo_loop_counter=3; misc:MainWindow=@Rect");
        row("only_written", "text:NrOfRXPDO=4; misc:SaveToolVersion=x");
        row("misspelt", "co_nod_id=1", none + "\"co_nod_id\" of GeneralSettings" + lost + "did you mean "
            "\"co_node_id\"");
        row("misspelt_misc", "misc:generateMl=1", none + "\"generateMl\" of MiscSettings" + lost + "did you mean "
            "\"generateML\"");
        row("misspelt_of_a_line", "text:VendrName_2=1",
            none + "\"VendrName_2\" of DescriptionSettings" + lost + "did you mean \"VendorName_2\"");
        row("number_beyond", "line254type=1", none + "\"line254type\" of GeneralSettings" + lost + "remove it");
        row("another_store", "bamsupport=1", none + "\"bamsupport\" of GeneralSettings" + lost + "J1939Settings has "
            "one of this name");
        row("like_none", "qqqqqqqq=1", none + "\"qqqqqqqq\" of GeneralSettings" + lost + "remove it");

        const QString zero = "and is read as 0: write digits only";
        const auto value = [](const QString &text, const QString &key, const QString &fault) {
            return QString("setting-value|the value \"%1\" of \"%2\" %3").arg(text, key, fault);
        };
        row("number", "sleep_wait_time= 10 ; uds_session_timeout=0x10; user_tx_cob=");
        row("with_unit", "uds_session_timeout=10 ms",
            value("10 ms", "uds_session_timeout", "is no number, " + zero + ", or 0x and hexadecimal digits, in ms"));
        row("hexadecimal", "sleep_wait_time=0x10", value("0x10", "sleep_wait_time", "is no decimal number, " + zero));
        row("list_of_one", "user_tx_cob=1,1",
            value("1,1", "user_tx_cob", "is read as 0: this setting is one number for all lines"));
        row("element", "isotp_client_con=1,,x",
            value("x", "isotp_client_con", "is no number, " + zero + ", or 0x and hexadecimal digits, in connections"));
        row("expression", "co_timer_interval=TICK_MS * 10u; co_node_id=(0x10UL+1)");
        row("expression_with_unit", "co_timer_interval=10 ms", value("10 ms", "co_timer_interval", "is neither a "
            "number "
            "nor an expression of C, and stands in generated files as it is: write a number, or the name of a macro"));
        row("expression_with_comment", "co_timer_interval=10 # ms", value("10 # ms", "co_timer_interval", "is "
            "neither a "
            "number nor an expression of C, and stands in generated files as it is: write a number, or the name of "
            "a macro"));

        row("switches", "limit_check=0x1; endian=No; dynod=2; sdo_split=off; misc:generateML=false; "
            "misc:description_form=classic; "
            "misc:postGenWait=yes");
        row("flag", "limit_check=2", value("2", "limit_check", "may count as off: write 1 for on, or 0 for off"));
        row("flag_word", "limit_check=yes", value("yes", "limit_check", "counts as off: write 1 for on, or 0 for off"));
        row("switch", "dynod=true", value("true", "dynod", "counts as off: write 1 for on, or 0 for off"));
        row("true", "misc:generateML=True", value("True", "generateML", "counts as off: write true, in lower case, "
            "for on"));
        row("form", "misc:description_form=Portable", value("Portable", "description_form", "counts as classic: "
            "write portable or classic"));
        row("truth", "misc:postGenWait=no", value("no", "postGenWait", "counts as on: write 0 for off"));

        const QString range = "is not in the range from 0 to 255, and generated files have it cut to its type, as "
            "0, or "
                              "as it is: write a number of this range";
        row("in_range", "usdo_server_cnt=255; targetsettings_active=-1; line0type=0; j1939:bamcycletime=0xff");
        row("above", "usdo_server_cnt=256", "setting-range|the value \"256\" of \"usdo_server_cnt\" " + range);
        row("below", "co_node_id=1,-1; line 1", "setting-range|the value \"-1\" of \"co_node_id\" " + range);
        row("told_by_the_check", "sdo_blocktransfer_block_size=200; receivebuffersize=10 messages; line0type=9");

        row("lists", "line 2; co_node_id=1,2,3; isotp_client_con=1; nmtmaster=1,0,1,1,2; additional_cob_count=1,,2; "
            "co_node_id_fct=a,b,c, ,");
        row("long_list", "line 1; co_node_id=1,2,3", "setting-list|the value \"3\" of \"co_node_id\" is for line 2, "
            "which the "
            "device does not have: the first element of the list is that of line 0, the next one that of line 1, "
            "and so on");
        row("short_list", "line 2; additional_cob_count=1,2", "short-list|the list of \"additional_cob_count\" has "
            "no element for "
            "line 2, which has 0: list one for each line number up to 2, or give one value without comma for all "
            "lines");
        // clang-format on
    }
    void tells()
    {
        QFETCH(QString, project);
        QFETCH(QString, told);
        buildProject(*store, project);
        const ProblemRecorder recorder;
        SettingsCheck(*store, [](const QString &group, const QString &key) {
            return SettingsCheck::Place{group + '/' + key, 7};
        }).run();
        const QString text = recorder.lines.join('|');
        QVERIFY2(recorder.lines.size() == (told.isEmpty() ? 0 : 1), qPrintable(text));
        if (told.isEmpty())
            return;
        const QString words = told.section('|', 1) + " [" + told.section('|', 0, 0) + ']';
        QVERIFY2(text.endsWith(":7: warning: " + words), qPrintable(text));
        QVERIFY2(text.contains("Settings/"), qPrintable(text));
    }

    void endsTellingOfUnknownKeys()
    {
        for (int i = 0; i < 102; ++i)
            store->setGeneralSettingsValue(QString("qqqqqqqqqqqq%1").arg(i), "1");
        const ProblemRecorder recorder;
        SettingsCheck(*store, [](const QString &, const QString &) {
            return SettingsCheck::Place();
        }).run();
        QCOMPARE(recorder.lines.size(), 101);
        QVERIFY(recorder.lines.last().contains("nothing reads 2 more settings"));
    }
};

QTEST_GUILESS_MAIN(tst_SettingsCheck)
#include "tst_settingscheck.moc"
