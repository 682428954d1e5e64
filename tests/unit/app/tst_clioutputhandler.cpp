// The console's report: tags and log. What reaches standard output is tested with the command line.
#include "app/clioutputhandler.h"

#include <QTest>

class tst_CLIOutputHandler : public QObject
{
    Q_OBJECT

private slots:
    void removesTags_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("tag_before_stop") << "<b>ERROR - gen.h failed. Why</b>"
                                         << "ERROR - gen.h failed. Why";
        QTest::newRow("stretch_between_tags") << "x <b>bold</b> y"
                                              << "x  y";
        QTest::newRow("line_header") << "<strong>____ Checking line 3 ____</strong>"
                                     << "";
        QTest::newRow("open_only") << "a < b. c"
                                   << "a < b. c";
        QTest::newRow("close_behind_stop") << "a < b. c > d"
                                           << "a < b. c > d";
        QTest::newRow("second_sentence") << "a < b. <i>c</i>. d"
                                         << "a < b. . d";
        QTest::newRow("across_lines") << "a<b\nc>d"
                                      << "ad";
    }
    void removesTags()
    {
        QFETCH(QString, text);
        QTEST(CLIOutputHandler::removeTags(text), "expected");
    }

    void removesTagsInLinearTime()
    {
        const QString opened(2000000, QLatin1Char('<'));
        QCOMPARE(CLIOutputHandler::removeTags(opened).size(), opened.size());
        const QString sentences = QStringLiteral("<.").repeated(1000000);
        QCOMPARE(CLIOutputHandler::removeTags(sentences).size(), sentences.size());
    }

    void logsTheReportButNotTheHelp()
    {
        CLIOutputHandler handler;
        handler << QStringLiteral("one") << 2;
        handler.printLine(QVariant());
        handler.print(QStringLiteral("<i>"));
        handler.printHelpValue(QStringLiteral("-x"), QStringLiteral("help"));
        handler.printLinePassTime(QStringLiteral("<b>three."));
        QCOMPARE(handler.getLogging(), QStringLiteral("one 2 \n<i>three.\n"));
    }
};

QTEST_GUILESS_MAIN(tst_CLIOutputHandler)
#include "tst_clioutputhandler.moc"
