// The check of the model: each rule with a case that fires and its nearest neighbour that is
// silent. The cases change a project without findings, and tell all texts that follow.
#include "check/modelchecker.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/problemrecorder.h"
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/storefixture.h"

#include <QLoggingCategory>
#include <QSet>

namespace
{

/// Begins of texts, by the letters of the case file.
const QMap<QChar, QString> kPrefixes = {{'E', "<strong>Error: </strong>"},
                                        {'R', "<strong><font color='red'>Error: </font></strong>"},
                                        {'W', "Warning: "},
                                        {'S', "<strong>Warning: </strong>"},
                                        {'H', "<strong>Hint: </strong>"},
                                        {'C', "<i>Corrected: "},
                                        {' ', ""}};

QStringList textsOf(const QString &rows)
{
    QStringList texts;
    for (const QString &row : rows.split('\n', Qt::SkipEmptyParts))
        texts << kPrefixes.value(row.at(0)) + row.mid(2).replace("\\n", "\n");
    return texts;
}

int countErrors(const QStringList &texts)
{
    return texts.filter("Error: ").size() - texts.filter("with a granularity of 0").size();
}

/// A project with one CANopen line that the check has nothing to say about.
class Model
{
public:
    explicit Model(const QString &rows = QString())
    {
        store.createNewDataBase();
        user("costackpath " + files.path("stack"));
        change("line 0; set co_node_id=1 receivebuffersize=10 transmitbuffersize=5\n"
               "set co_timer_interval=1000 limit_check=1 text:Granularity=8\n"
               "feature base <required_tool_version>3.11</required_tool_version>\n"
               "1000:0 U32 ro 0 0 map; 1001:0 U8 ro 0 0 map; 1017:0 U16 rw 0 0 map\n"
               "1018 rec ro 0x123,1,1; 2000:0 U8 rw 0 0 map\n"
               "1400 rec ro $nodeid+0x200,255; 1600 rec const 0x20000008\n"
               "1800 rec ro $NODEID+0x180,255; 1a00 rec const 0x20000008\n" +
               rows);
    }

    /// Rows of the case file.
    void change(const QString &rows)
    {
        QStringList ofProject;
        for (const QString &row : rows.split('\n')) {
            const QString key = row.section(' ', 0, 0);
            const QString rest = row.section(' ', 1);
            if (key == "user")
                user(rest);
            else if (key == "sibling")
                user("costackpath " + rest.section(' ', 1), "Olvenmark " + rest.section(' ', 0, 0));
            else if (key == "feature")
                feature(rest.section(' ', 0, 0), rest.section(' ', 1));
            else
                ofProject << row;
        }
        buildProject(store, ofProject.join('\n'));
        store.cacheAllSubs(0, 0);
    }

    StoreFixture files;
    ObjectDataBase store;

private:
    static void user(const QString &setting, const QString &version = "Tessarine")
    {
        QSettings("Korvel", "CANopen " + version)
            .setValue("General/" + setting.section(' ', 0, 0), setting.section(' ', 1));
    }

    void feature(const QString &name, const QString &elements)
    {
        QDir().mkpath(files.path("stack"));
        writeFile(files.path("stack/x_featureinfo_" + name + ".xml"),
                  "<stack>" + elements.toUtf8() + "</stack>");
    }
};

} // namespace

class tst_ModelChecker : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLoggingCategory::setFilterRules("tessarine.*=false"); }

    void cases_data() { addCases(TEST_CASES "/modelchecker.txt"); }
    void cases()
    {
        QFETCH(QString, project);
        QFETCH(QString, expected);
        const QString group = caseGroup();
        if (group == "shortLists")
            return checkShortLists(project, expected);
        if (group == "places")
            return checkPlaces(project, expected);
        Model model(group == "j1939" ? "identity 1\n" + project : project);
        const Outcome outcome = run([&](ModelChecker &c) {
            if (group == "project")
                return c.startGlobalCheck(&model.store);
            if (group == "features")
                return c.startCANopenFeatureCheck(0, &model.store);
            return group == "j1939" ? c.startJ1939Check(1, 0, &model.store, {0xEA00, 0x0E00})
                                    : line(c, model);
        });
        const QStringList texts = textsOf(expected);
        QCOMPARE(outcome.texts, texts);
        QCOMPARE(outcome.errors, countErrors(texts));
    }

    void ranges()
    {
        struct Range {
            int type;
            const char *below, *lowest, *highest, *above;
        };
        for (const Range &r : {Range{1, "-1", "0", "1", "2"},
                               {2, "-129", "-128", "127", "128"},
                               {3, "-32769", "-0x8000", "32767", "0x8000"},
                               {4, "-2147483649", "-2147483648", "2147483647", "2147483648"},
                               {6, "-1", "0", "65535", "65536"},
                               {7, "-1", "0", "0xffffffff", "0x100000000"},
                               {8, "-2147483649", "-2147483648", "1e9", nullptr},
                               {16, "-1", "0", "9223372036854775807", nullptr},
                               {21, nullptr, "-9223372036854775808", "0xffffffffffffffff", nullptr},
                               {22, "-1", "0", "16777215", "16777216"},
                               {24, "-1", "0", "1099511627775", "1099511627776"},
                               {25, "-1", "0", "281474976710655", "281474976710656"}}) {
            const auto type = static_cast<CAN::CANopenDataType>(r.type);
            QVERIFY(ModelChecker::checkValues(type, {r.lowest, r.highest}));
            QVERIFY(!r.below || !ModelChecker::checkValues(type, {r.lowest, r.below}));
            QVERIFY(!r.above || !ModelChecker::checkValues(type, {r.above, r.lowest}));
        }
    }

    void limitsByBits()
    {
        qint64 low = 0;
        qint64 high = 0;
        const auto limits = [&](quint8 bits, bool isUnsigned) {
            ModelChecker::getLimitsByBits(bits, isUnsigned, low, high);
            return QString("%1..%2").arg(low).arg(high);
        };
        QCOMPARE(limits(8, false), QString("-128..127"));
        QCOMPARE(limits(5, true), QString("0..31"));
        QCOMPARE(limits(64, false), QString("-9223372036854775808..9223372036854775807"));
        QCOMPARE(limits(64, true), QString("0..9223372036854775807"));
    }

    void disabledCobIds()
    {
        const QMap<QString, QString> cobIds = {{"$NodeId+0x180", "$NodeId+0x80000180"},
                                               {"0xC0000180", "0xC0000180"},
                                               {" 0x1aB ", "0x800001ab"},
                                               {"384", "384"}};
        for (auto it = cobIds.cbegin(); it != cobIds.cend(); ++it)
            QCOMPARE(ModelChecker::disableCob(it.key()), it.value());
    }

    void upgrade_data()
    {
        // clang-format off
        columns<QString, QString, QStringList>("version", "application", "texts");
        const QString add = kPrefixes['H'] + "Add <font color='red'>";
        const QString end = "</font> to your project or Makefile.";
        const QString canopen = "CANopen Tessarine";
        const QString other = "CAN Tessarine";
        const QString init = add + "uds_init.c" + end;
        const auto hints = [](const char *name, const QString &application, const QStringList &texts) {
            QTest::newRow(name) << QString(name).section('_', 0, 0) << application << texts;
        };
        hints("3.0", canopen, {add + "co_common.c and co_memcpy.c" + end});
        hints("3.6.9_other", other, {add + "co_common.c, co_memcpy.c and co_mapping.c" + end});
        hints("3.7", canopen, {add + "co_memcpy.c" + end, init});
        hints("3.8_other", other, {add + "co_memcpy.c and co_mapping.c" + end, init});
        for (const char *version : {"", "3.9", "2.5"}) hints(version, canopen, {});
        // clang-format on
    }
    void upgrade()
    {
        const auto [version, application] = fetchRow<QString, QString>();
        Model model;
        model.change("udsclient_supported=1");
        model.store.setMiscSettingsValue("PreviousToolVersion", version);
        QCoreApplication::setApplicationName(application);
        const Outcome outcome =
            run([&](ModelChecker &c) { return c.startGlobalCheck(&model.store); });
        QTEST(outcome.texts, "texts");
        QCOMPARE(outcome.errors, 0);
        QCOMPARE(model.store.getMiscSettingsValue("PreviousToolVersion"),
                 outcome.texts.isEmpty() ? version : QString());
    }

    /// A settings file that was edited by hand has no percent sign before the group.
    void readsHandWrittenSettings()
    {
        Model model;
        QFile file(QSettings("Korvel", "CANopen Tessarine").fileName());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[General]\ncostackpath=/hand\n");
        file.close();
        const QString text = run([&](ModelChecker &c) { return line(c, model); }).texts.value(0);
        QVERIFY2(text.contains("stack folder /hand. Cannot"), qPrintable(text));
    }

    void cutsItsVersion()
    {
        for (const char *version : {"3.11", "3.11.2", "3.11.2.7"}) {
            Model model;
            QCoreApplication::setApplicationVersion(version);
            QCOMPARE(run([&](ModelChecker &c) { return line(c, model); }).texts, QStringList());
        }
    }

    void settingsOfSecondLine()
    {
        Model model("line 1; set co_node_id=1,2 receivebuffersize=1,2 nmtmaster=2\n"
                    "set transmitbuffersize=1,2 co_ml_ms=1");
        const auto check = [&](ModelChecker &c) { return line(c, model, 1); };
        const QString text = kPrefixes['E'] +
                             "General Settings: The ML master/slave settings size must be "
                             "specified individually for each line. (e.g 0,1)";
        QCOMPARE(run(check).texts.first(), text);
        model.change("co_ml_ms=1,0");
        QVERIFY(!run(check).texts.contains(text));
    }

    void j1939AddsToTheErrorsOfTheLine()
    {
        Model model("1017:0 access=x");
        ModelChecker checker;
        QCOMPARE(line(checker, model), 1);
        QCOMPARE(checker.startJ1939Check(1, 0, &model.store, {}), 10);
    }

    /// What one step has repaired, a later step that writes the same record keeps.
    void correctionsStay()
    {
        for (const bool withCache : {false, true}) {
            Model model("1018:0 value=2 impl=0 shown=it's");
            if (!withCache)
                model.store.clearAllCachedSubs();
            run([&](ModelChecker &c) { return line(c, model); });
            model.store.clearAllCachedSubs(); // the rows count, not what is known of them
            const Sub count = subOf(model.store, 0, 0x1018, 0);
            QCOMPARE(joined(count.defaultValue, count.implementation, count.denotation),
                     "3/1/it's");
        }
    }

    void namesAreNoMessagesOfTheirOwn()
    {
        const QString text = Check::markedUpText(Check::messageRow(Check::Msg::FeatureFileMissing),
                                                 {"a\nError: b\x1b[2J"});
        QVERIFY2(text.contains("a\\x0aError: b\\x1b[2J"), qPrintable(text));
    }

    /// Runs last: no row of the table is without a case above.
    void everyMessageIsSent()
    {
        if (sent.size() < 20)
            QSKIP("only some of the cases have run");
        QStringList silent;
        for (const Check::MessageRow &message : Check::messages()) {
            if (!sent.contains(static_cast<int>(message.id)))
                silent << Check::ruleName(message.id);
        }
        QCOMPARE(silent, QStringList());
    }

private:
    struct Outcome {
        QStringList texts;
        int errors = 0;
    };

    Outcome run(const std::function<qint32(ModelChecker &)> &check)
    {
        ModelChecker checker;
        Outcome outcome;
        connect(&checker, &ModelChecker::newError,
                [&outcome](const QString &text) { outcome.texts << text; });
        outcome.errors = check(checker);
        for (const Finding &finding : checker.findings())
            sent.insert(static_cast<int>(finding.rule));
        return outcome;
    }

    /// Told on standard error; the report and the count of errors know nothing of it.
    void checkShortLists(const QString &project, const QString &expected)
    {
        Model model("line 2 2\n" + project);
        ProblemRecorder problems;
        run([&](ModelChecker &c) { return c.startGlobalCheck(&model.store); });
        run([&](ModelChecker &c) { return c.startJ1939Check(2, 2, &model.store, {}); });
        QCOMPARE(problems.lines, textsOf(expected));
    }

    /// Each finding as "line/index/subindex/group/signal text".
    void checkPlaces(const QString &project, const QString &expected)
    {
        Model model(project);
        ModelChecker checker;
        checker.startGlobalCheck(&model.store);
        line(checker, model);
        checker.startJ1939Check(2, 0, &model.store, {0xEA00});
        QString findings;
        for (const Finding &f : checker.findings()) {
            findings +=
                joined(f.line, f.index, f.subindex, f.group, f.signal) + ' ' + f.text() + '\n';
            sent.insert(int(f.rule));
        }
        QCOMPARE(findings, expected);
    }

    /// The check of a line, with a flag that tells the same as the texts.
    static qint32 line(ModelChecker &checker, Model &model, quint8 number = 0)
    {
        bool corrected = false;
        const qint32 errors = checker.startCANopenCheck(number, &model.store, corrected);
        bool isTold = false;
        for (const Finding &finding : checker.findings())
            isTold |= finding.text().startsWith("Corrected: ");
        return corrected == isTold ? errors : -1;
    }

    QSet<int> sent;
};

QTEST_GUILESS_MAIN(tst_ModelChecker)
#include "tst_modelchecker.moc"
