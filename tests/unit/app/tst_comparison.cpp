// What differs between two projects, as a reviewer reads it.
#include "app/comparisontext.h"
#include "store/comparison/projectcomparison.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/storefixture.h"

namespace
{

ProjectRecord projectOf(const QString &text)
{
    const auto store = makeStore();
    buildProject(*store, text);
    ProjectRecord project;
    if (!store->readRecords(&project))
        qFatal("not read");
    return project;
}

QStringList changes(const ProjectRecord &older, const ProjectRecord &newer)
{
    ProjectComparison comparison = compareProjects(older, newer);
    comparison.with = "old.yaml";
    return comparisonText(comparison).trimmed().split('\n');
}

} // namespace

class tst_Comparison : public StoreTest
{
    Q_OBJECT

private slots:
    void text_data() { addCases(TEST_CASES "/comparison.txt"); }
    void text()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        const QString older = project.section("now:\n", 0, 0);
        const QString newer = project.section("now:\n", 1);
        QCOMPARE(changes(projectOf(older), projectOf(newer)), expected.trimmed().split('\n'));
    }

    /// Each of the tables that a device of several lines has, and long texts.
    void tables()
    {
        ProjectRecord older = projectOf("line0type=1");
        ProjectRecord newer = older;
        older.connections = {{0, 0x1A00, 1, 1, 0x2100, 2, 3}, {0, 0x1A00, 2, 1, 0x2100, 3, 0}};
        newer.connections = {{0, 0x1A00, 3, 1, 0x2100, 4, 0}, {0, 0x1A00, 1, 1, 0x2100, 2, 4}};
        older.virtualNodes = {{1, {0, 5, "old"}}, {2, {0, 6, "drive"}}};
        newer.virtualNodes = {{1, {0, 6, "drive"}}};
        newer.lineGroups = {{"inner", "0,1"}};
        newer.locks[0].pdos = {0x1800};
        newer.signalGroups = {{1, "speeds"}};
        newer.misc["SaveToolVersion"] = "9";
        older.general["code"] = QString(1000, 'a') + "1";
        newer.general["code"] = QString(1000, 'a') + "2\n<b>\x1b";
        LineSignalData speed;
        speed.name = "speed";
        newer.lineSignals[3] = speed;
        const QString same = "..." + QString(30, 'a');
        QCOMPARE(changes(older, newer),
                 ("Comparison with old.yaml: 5 added, 2 removed, 2 changed\n\nProject\n"
                  "  ~ code: " +
                  same + "1 -> " + same +
                  "2\\n<b>\\u001b\"\n"
                  "  + signal group 1: name speeds\n"
                  "  ~ connection 0/0x1A00:1 -> 1/0x2100:2: priority 3 -> 4\n"
                  "  - connection 0/0x1A00:2 -> 1/0x2100:3\n"
                  "  + connection 0/0x1A00:3 -> 1/0x2100:4\n"
                  "  - node 5 of line 0 old\n"
                  "  + group of lines inner: lines [0, 1]\n"
                  "\nLine 0, CANopen\n"
                  "  + fixed 0x1800\n"
                  "  + signal 3 speed: type U8, access ro")
                     .split('\n'));
    }
};

QTEST_GUILESS_MAIN(tst_Comparison)
#include "tst_comparison.moc"
