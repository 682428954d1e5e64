// XML descriptions of devices: which records they give, and what is told of them.
#include "formats/xddparser.h"
#include "formats/xddreader.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/problemrecorder.h"

class TestXddParser : public QObject
{
    Q_OBJECT

private slots:
    void cases_data() { addCases(TEST_CASES "/xddparser.txt"); }
    void cases()
    {
        const auto [text, expected] = fetchRow<QString, QString>();
        const ProblemRecorder problems;
        const QString found = read(text.toUtf8());
        const QString told = problems.lines.join('\n') + '\n';
        const QString shown = caseGroup() == "problems" ? told : found;
        QVERIFY2(shown == expected, qPrintable(shown));
        QVERIFY2(caseGroup() != "records" || problems.lines.isEmpty(), qPrintable(told));
    }

    void refusals_data()
    {
        columns<QByteArray, QString>("text", "reason");
        const QByteArray bomb = "<!DOCTYPE a [<!ENTITY b \"bb\"><!ENTITY c \"&b;&b;\">]><a>&c;</a>";
        QTest::newRow("document_type")
            << bomb << "it declares a document type, which no such file needs";
        QTest::newRow("depth") << QByteArray("<a>").repeated(1000000)
                               << "its elements are more than 100 deep in each other";
        QTest::newRow("attributes") << "<a " + QByteArray("b='' ").repeated(1000000) + "/>"
                                    << "it has an element with more than 255 attributes";
        QTest::newRow("no_xml") << QByteArray("[1000]") << "it has no object of CANopen";
        QTest::newRow("no_object")
            << QByteArray("<CANopenObjectList/>") << "it has no object of CANopen";
        QTest::newRow("other_network")
            << QByteArray("<ProfileBody x:type='p:ProfileBody_Device_Powerlink'/>")
            << "it describes a device of another network";
        QTest::newRow("size") << QByteArray(int(XddReader::kMostBytes) + 1, ' ')
                              << "it is larger than 64 MiB";
    }
    void refusals()
    {
        const auto [text, reason] = fetchRow<QByteArray, QString>();
        XddParser parser;
        QVERIFY(!parser.parse(text, QString()));
        QCOMPARE(parser.whyNotRead(), reason);
    }

    /// However often types or templates refer to each other, and however many there are.
    void manyElements()
    {
        QByteArray text = "<a><ISO15745ProfileContainer><derived uniqueID='t'><dataTypeIDRef "
                          "uniqueIDRef='t'/></derived>";
        for (int i = 0; i < 60000; ++i) {
            const QByteArray number = QByteArray::number(i);
            text += "<parameter uniqueID='p" + number + "' templateIDRef='p" + number +
                    "'><dataTypeIDRef uniqueIDRef='t'/></parameter><CANopenObject index='" +
                    QByteArray::number(i % 0xC000, 16) + "' objectType='7' uniqueIDRef='p" +
                    number + "'/>";
        }
        const ProblemRecorder problems;
        QVERIFY(read(text).startsWith("0:7 "));
    }

    /// They would take as much memory as a much larger file.
    void largeParameterOfManyObjects()
    {
        QByteArray text = "<a><parameter uniqueID='p'><label lang='en'>" + QByteArray(10000, 'n') +
                          "</label></parameter>";
        for (int index = 0; index < 0x2000; ++index)
            text += "<CANopenObject index='" + QByteArray::number(index, 16) +
                    "' objectType='7' uniqueIDRef='p'/>";
        const ProblemRecorder problems;
        QVERIFY(read(text + "</a>").size() < 32 * 1024 * 1024);
        QCOMPARE(problems.lines.filter("memory").size(), 1);
    }

private:
    /// "index:code name type" for an object, "index.sub name type access default current low..high
    /// mapping refused write, read" for a subindex, and what else is known at the end.
    static QString read(const QByteArray &text)
    {
        XddParser parser;
        QStringList lines;
        connect(&parser, &XddParser::newIndex, &parser, [&](const CANopen::CANopenIndex &record) {
            lines << QString("%1:%2 ").arg(record.index, 0, 16).arg(int(record.objectCode)) +
                         joined(record.name, record.dataType, record.description);
        });
        connect(&parser, &XddParser::newSubIndex, &parser, [&](const CANopenSubindex &sub) {
            lines << QString("%1.%2 ").arg(sub.index, 0, 16).arg(sub.subindex) +
                         joined(sub.name, sub.dataType, sub.accessType, sub.defaultValue.toString(),
                                sub.currentValue, sub.lowLimit + ".." + sub.upLimit,
                                int(sub.pdoMapping),
                                QString::number(sub.refuseWrite) + QString::number(sub.refuseRead),
                                sub.denotation);
        });
        (void)parser.parse(text, QString()); // some are read up to a fault
        const QMap<QString, XddInformation> information = parser.information();
        for (auto it = information.cbegin(); it != information.cend(); ++it)
            lines << it.key() + '=' + it->value;
        parser.tellProblems();
        return lines.join('\n') + '\n';
    }
};

QTEST_GUILESS_MAIN(TestXddParser)
#include "tst_xddparser.moc"
