// Names of files in rules of make. That make, ninja and CMake read them so is held by the tests of
// what is installed.
#include "formats/makerule.h"
#include "tests/fixtures/testkit.h"

class tst_MakeRule : public QObject
{
    Q_OBJECT

private slots:
    void escapes_data()
    {
        columns<QString, QByteArray, QByteArray>("name", "input", "target");
        const auto row = [](const char *title, const char *name, QByteArray input,
                            QByteArray target = {}) {
            QTest::newRow(title) << QString(name) << input << (target.isEmpty() ? input : target);
        };
        row("plain", "a/b-c_d.eds", "a/b-c_d.eds");
        row("blanks", "a b\tc", "a\\ b\\\tc");
        row("signs_of_make", "a#b$c:d", "a\\#b$$c\\:d");
        row("backslash", "a\\b", "a\\b");
        row("backslashes_before_a_blank", "a\\\\ b", "a\\\\\\\\\\ b");
        row("pattern", "100%", "100%", "100\\%");
    }
    void escapes()
    {
        const auto [name, input, target] = fetchRow<QString, QByteArray, QByteArray>();
        QCOMPARE(MakeRule::text({name, "t"}, {name, "i"}),
                 target + " \\\n  t: \\\n  " + input + " \\\n  i\n");
    }
};

QTEST_GUILESS_MAIN(tst_MakeRule)
#include "tst_makerule.moc"
