// The console's report: tags and log. What reaches standard output is tested with the command line.
#include "app/clioutputhandler.h"
#include "tests/fixtures/testkit.h"

class tst_CLIOutputHandler : public QObject
{
    Q_OBJECT

private slots:
    void removesTags_data()
    {
        columns<QString, QString>("text", "expected");
        // clang-format off
        QTest::newRow("tag_before_stop") << "<b>ERROR - gen.h failed. Why</b>" << "ERROR - gen.h failed. Why";
        QTest::newRow("stretch_between_tags") << "x <b>bold</b> y" << "x  y";
        QTest::newRow("line_header") << "<strong>____ Checking line 3 ____</strong>" << "";
        QTest::newRow("open_only") << "a < b. c" << "a < b. c";
        QTest::newRow("close_behind_stop") << "a < b. c > d" << "a < b. c > d";
        QTest::newRow("second_sentence") << "a < b. <i>c</i>. d" << "a < b. . d";
        QTest::newRow("across_lines") << "a<b\nc>d" << "ad";
        // clang-format on
    }
    void removesTags()
    {
        QFETCH(QString, text);
        QTEST(CLIOutputHandler::removeTags(text), "expected");
    }

    void removesTagsInLinearTime()
    {
        for (const QString piece : {"<", "<."}) {
            const QString text = piece.repeated(1000000);
            QCOMPARE(CLIOutputHandler::removeTags(text).size(), text.size());
        }
    }

    void logsTheReportButNotTheHelp()
    {
        CLIOutputHandler handler;
        handler << "one" << 2;
        handler.printLine(QVariant());
        handler.print("<i>");
        handler.printHelpValue("-x", "help");
        handler.printLinePassTime("<b>three.");
        handler.printLine("\x1b[2Jfour\r\n\tf\rive");
        QCOMPARE(handler.getLogging(), "one 2 \n<i>three.\n\\x1b[2Jfour\r\n\tf\\x0dive\n");
    }
};

QTEST_GUILESS_MAIN(tst_CLIOutputHandler)
#include "tst_clioutputhandler.moc"
