// Texts of a project inside generated C.
#include "generators/ctext.h"
#include "tests/fixtures/testkit.h"

class TestCText : public QObject
{
    Q_OBJECT

private slots:
    void commentsEndWhereTheyShould()
    {
        QCOMPARE(CText::comment("a */ b*/ /* /*/"), QString("a * / b* / / * / * /"));
        QCOMPARE(CText::comment("/*/ x"), QString("/ * / x"));
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
        QTest::newRow("backslash of a path") << "c:\\dir" << "c:\\\\dir";
        QTest::newRow("escape without digits") << "\\x" << "\\\\x";
        QTest::newRow("digit behind a byte") << "\\x41B" << "\\x41\"\"B";
        QTest::newRow("octal") << "\\0a" << "\\0a";
        QTest::newRow("octal beyond a byte") << "\\777" << "\\\\777";
        QTest::newRow("trigraph") << "a?\?/b" << "a?\\?/b";
        QTest::newRow("control character") << "a\033b" << "a\\033b";
        QTest::newRow("backslash and line end") << "a\\\nb" << "a\\\\\\nb";
        // clang-format on
    }

    void literalsEndWhereTheyShould()
    {
        QFETCH(QString, text);
        QTEST(CText::stringContent(text), "content");
    }

    void literalsHaveBytes()
    {
        QCOMPARE(CText::literalBytes("a\\x41\"\"B\\\"\\012"), 5u);
        QCOMPARE(CText::literalBytes(QString::fromUtf8("\xC3\xA4")), 2u);
    }
};

QTEST_GUILESS_MAIN(TestCText)
#include "tst_ctext.moc"
