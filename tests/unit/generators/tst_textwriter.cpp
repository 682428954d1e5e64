// Fixed texts with holes: what they become, and which of them are mistakes.
#include "formats/csvtable.h"
#include "generators/textwriter.h"
#include "support/plaintext.h"
#include "tests/fixtures/testkit.h"

#include <QBuffer>
#include <QRegularExpression>

class tst_TextWriter : public QObject
{
    Q_OBJECT

private slots:
    void fillsHoles_data()
    {
        columns<QByteArray, QString, QString, QByteArray>("text", "name", "mistake", "written");
        // clang-format off
        const auto row = [](const char *id, const char *text, const char *name, const char *written,
                            const char *mistake = "") {
            QTest::newRow(id) << QByteArray(text) << QString::fromUtf8(name) << QString(mistake)
                              << QByteArray(written);
        };
        row("two_holes", "\n$name$[$count$u];\n", "x", "x[7u];\n");
        row("one_hole_twice", "\n$name$, $name$:$count$", "x", "x, x:7");
        row("only_one_line_end_is_left_out", "\n\n$name$$count$\n", "x", "\nx7\n");
        row("value_with_the_look_of_a_hole", "\n$name$ $count$", "$count$ %1", "$count$ %1 7");
        row("value_with_half_a_hole", "\n$name$count$count$", "a$", "a$count7");
        row("value_beyond_ascii", "\n$name$=$count$", "Tür", "Tür=7");
        row("unknown_hole", "\n$name$$what$-$count$", "x", "x-7", "no value for \"what\"");
        row("hole_that_does_not_end", "\n$name$$count$ $end", "x", "x7 ", "no value for \"end\"");
        row("value_without_a_hole", "\n$name$", "x", "x", "no place for \"count\"");
        row("no_first_line_end", "$name$$count$", "x", "x7", "no line end before");
        // clang-format on
    }

    void fillsHoles()
    {
        const auto [text, name, mistake] = fetchRow<QByteArray, QString, QString>();
        QBuffer buffer;
        QVERIFY(buffer.open(QIODevice::WriteOnly));
        TextWriter out(&buffer);
        if (!mistake.isEmpty())
            QTest::ignoreMessage(QtCriticalMsg,
                                 QRegularExpression(QRegularExpression::escape(mistake)));
        out.block(text.constData(), {{"name", name}, {"count", 7}});
        QCOMPARE(out.finish(), mistake.isEmpty());
        QTEST(buffer.data(), "written");
    }

    /// A character that does not go over as it stands is found wherever it is in a text, and in a
    /// text of any length.
    void seesEachCharacter_data()
    {
        columns<QChar, bool, bool>("character", "needsQuotes", "endsLine");
        QTest::newRow("plain") << QChar('~') << false << false;
        QTest::newRow("separator") << QChar(';') << true << false;
        QTest::newRow("quote") << QChar('"') << true << false;
        QTest::newRow("tab") << QChar('\t') << false << false;
        QTest::newRow("line_end") << QChar('\n') << true << true;
        QTest::newRow("next_line") << QChar(0x85) << true << true;
        QTest::newRow("letter_beyond_ascii") << QChar(0xFC) << false << false;
        QTest::newRow("paragraph_separator") << QChar(0x2029) << true << true;
    }

    void seesEachCharacter()
    {
        const auto [character, needsQuotes, endsLine] = fetchRow<QChar, bool, bool>();
        QString all;
        QBuffer buffer;
        QVERIFY(buffer.open(QIODevice::WriteOnly));
        TextWriter out(&buffer);
        for (int size = 1; size <= 26; ++size) {
            for (int place = 0; place < size; ++place) {
                QString text(size, QLatin1Char('x'));
                text[place] = character;
                QCOMPARE(CsvTable::needsQuotes(text), needsQuotes);
                QCOMPARE(oneLine(text) != text, endsLine);
                out.raw(text);
                all += text;
            }
        }
        QVERIFY(out.finish());
        QCOMPARE(QString::fromUtf8(buffer.data()), all);
    }
};

QTEST_GUILESS_MAIN(tst_TextWriter)
#include "tst_textwriter.moc"
