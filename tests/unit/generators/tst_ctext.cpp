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
        QCOMPARE(CText::comment(QString::fromUtf8("*\r\n/\n\x1b\xE2\x80\xA8*\\\n/\t")),
                 QString("* /   *\\ /\t"));
        QCOMPARE(CText::comment(QString(1, QChar(0)) + "x"), QString(" x"));
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

    void codeStays_data()
    {
        columns<QString>("text");
        // clang-format off
        QTest::newRow("element") << " a[1].b ";
        QTest::newRow("element of an element") << "a[b[1]][2]";
        QTest::newRow("compound literal") << "&(T){ 1, 2 }";
        QTest::newRow("statements") << "({ int i = f(1, 2); i; })";
        QTest::newRow("literals") << "F('\"', '\\'', \"/*//;\\\\\\\"#\")";
        QTest::newRow("comment") << "a /* '*/ + 1";
        QTest::newRow("choice") << "a ? b<c : d%e";
        QTest::newRow("nothing") << "";
        // clang-format on
    }

    void codeStays()
    {
        QFETCH(QString, text);
        QCOMPARE(CText::line(text), text);
        QCOMPARE(CText::expression(text), text);
    }

    void codeEndsWhereItSeemsTo_data()
    {
        columns<QString, QString, QString>("text", "line", "expression");
        // clang-format off
        QTest::newRow("line ends") << "a\r\n#define b\n" << "a #define b " << "a  define b ";
        QTest::newRow("spliced lines") << "a \\\n+ b\\\r\n" << "a + b" << "a + b";
        QTest::newRow("backslash at the end") << "a\\ \\ " << "a" << "a";
        QTest::newRow("backslash of a trigraph") << "a?\?/" << "a? ?/" << "a? ?/";
        QTest::newRow("bracket of a trigraph") << "a?\?) + \"?\?/\"" << "a? ?) + \"?\\?/\"" << "a? ?  + \"?\\?/\"";
        QTest::newRow("open comment") << "a /*/" << "a /*/ */" << "a /*/ */";
        QTest::newRow("comment up to the end") << "a // b */ ?\?/" << "a // b */ ? ?/" << "a ";
        QTest::newRow("comment in front of the end") << "a // b\nc\\" << "a // b c" << "a ";
        QTest::newRow("open literal") << "\"a /* \\" << "\"a /* \"" << "\"a /* \"";
        QTest::newRow("open character") << "'" << "''" << "''";
        QTest::newRow("statements") << "a); f(b; (c, d)" << "a); f(b; (c, d)" << "a   f(b; (c, d))";
        QTest::newRow("function") << "a; int f(void){return 0;}" << "a; int f(void){return 0;}"
            << "a  int f(void){return 0 }";
        QTest::newRow("elements") << "a, b}, {c" << "a, b}, {c" << "a  b   {c}";
        QTest::newRow("open element") << "a[b[1]" << "a[b[1]" << "a[b[1]]";
        QTest::newRow("turned brackets") << "a]1[" << "a]1[" << "a 1[]";
        QTest::newRow("digraphs") << "a<%b%>%:" << "a<%b%>%:" << "a< %b% >% :";
        // clang-format on
    }

    void codeEndsWhereItSeemsTo()
    {
        QFETCH(QString, text);
        QTEST(CText::line(text), "line");
        QTEST(CText::expression(text), "expression");
    }

    void namesAreNames()
    {
        QCOMPARE(CText::name(" on_1 "), QString("on_1"));
        QCOMPARE(CText::name("1a(void){}\n"), QString("_1a_void___"));
    }

    /// What stands behind them begins a line of its own.
    void freeLinesEnd()
    {
        QCOMPARE(CText::freeLines("#define A \\\n 1"), QString("#define A \\\n 1\n"));
        QCOMPARE(CText::freeLines("#define A \\ "), QString("#define A \\ \n\n"));
        QCOMPARE(CText::freeLines("#define A ?\?/"), QString("#define A ?\?/\n\n"));
    }

    void literalsHaveBytes()
    {
        QCOMPARE(CText::literalBytes("a\\x41\"\"B\\\"\\012"), 5u);
        QCOMPARE(CText::literalBytes(QString::fromUtf8("\xC3\xA4")), 2u);
    }
};

QTEST_GUILESS_MAIN(TestCText)
#include "tst_ctext.moc"
