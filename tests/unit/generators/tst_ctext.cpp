// Texts of a project inside generated C.
#include "generators/ctext.h"
#include "tests/fixtures/testkit.h"

class TestCText : public QObject
{
    Q_OBJECT

private slots:
    void commentsEndWhereTheyShould()
    {
        QCOMPARE(CText::comment("a */ b*/"), QString("a * / b* /"));
    }

    void literalsEndWhereTheyShould_data()
    {
        columns<QString, QString>("text", "content");
        // clang-format off
        QTest::newRow("plain") << "a b" << "a b";
        QTest::newRow("quote") << "a\"b" << "a\\\"b";
        QTest::newRow("escaped quote stands") << "a\\\"b" << "a\\\"b";
        QTest::newRow("escaped backslash, then quote") << "a\\\\\"b" << "a\\\\\\\"b";
        QTest::newRow("escape stands") << "a\\x41" << "a\\x41";
        QTest::newRow("backslash at the end") << "a\\" << "a\\\\";
        QTest::newRow("line end") << "a\nb" << "a\\nb";
        QTest::newRow("backslash and line end") << "a\\\nb" << "a\\\\\\nb";
        // clang-format on
    }

    void literalsEndWhereTheyShould()
    {
        QFETCH(QString, text);
        QTEST(CText::stringContent(text), "content");
    }
};

QTEST_GUILESS_MAIN(TestCText)
#include "tst_ctext.moc"
