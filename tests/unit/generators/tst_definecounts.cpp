// The counts behind gen_define.h, as numbers.
#include "generators/defines/definecounts.h"
#include "generators/defines/definelists.h"
#include "tests/fixtures/casefile.h"
#include "tests/unit/generators/definefixture.h"

class tst_DefineCounts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { sink.open(QIODevice::WriteOnly); }

    void messageObjects_data() { addCases(TEST_CASES "/definecounts.txt"); }
    void messageObjects()
    {
        QFETCH(QString, project);
        DefineProject device(project);
        TextWriter out(&sink);
        DefineContext context = device.context(out);
        const int count = caseGroup() == "j1939"
                              ? Defines::getJ1939Cobs(context, 0)
                              : Defines::getCobCount(context, quint8(caseGroup().toUInt()));
        QTEST(QString("%1\n").arg(count), "expected");
    }

    void multiProtocolLeavesOutTransport()
    {
        DefineProject project("set isotp_supported=1 isotp_client_con=1 udsserver_supported=1");
        TextWriter out(&sink);
        DefineContext context = project.context(out);
        QCOMPARE(int(Defines::getCobCount(context, 0)), 8);
        context.multiProtocol = true;
        QCOMPARE(int(Defines::getCobCount(context, 0)), 0);
    }

    void listsByLine_data()
    {
        columns<QString, QList<quint8>, QString>("setting", "lines", "list");
        // clang-format off
        QTest::newRow("empty") << "" << QList<quint8>{0, 1} << "E";
        QTest::newRow("empty first") << ",33" << QList<quint8>{0, 1} << "E,33";
        QTest::newRow("empty last") << "33, " << QList<quint8>{0, 1} << "33,E";
        QTest::newRow("gap") << "1,,3" << QList<quint8>{0, 2} << "1,3";
        QTest::newRow("gap and no longer than the lines") << "1,2,3" << QList<quint8>{0, 2, 3} << "1,3";
        QTest::newRow("gap beyond the list") << "1,2,3" << QList<quint8>{0, 9} << "1";
        QTest::newRow("short") << "1" << QList<quint8>{0, 1} << "1";
        QTest::newRow("all beyond the list") << "1,2" << QList<quint8>{4, 5} << "2";
        QTest::newRow("no lines") << "1,2" << QList<quint8>() << "";
        // clang-format on
    }

    void listsByLine()
    {
        const auto [setting, lines] = fetchRow<QString, QList<quint8>>();
        QTEST(Defines::lineList(setting, lines, "E"), "list");
    }

    void combinesBuffers()
    {
        QCOMPARE(Defines::combineCobBufferCounts("10u, 20u"), "30");
        QCOMPARE(Defines::combineCobBufferCounts("0x10,1,x"), "17");
    }

private:
    QBuffer sink;
};

QTEST_GUILESS_MAIN(tst_DefineCounts)
#include "tst_definecounts.moc"
