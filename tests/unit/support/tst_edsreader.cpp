// The reader of device descriptions: bytes, lines, sections and comments.
#include "support/edsreader.h"

#include <QtTest>

class TestEdsReader : public QObject
{
    Q_OBJECT

private slots:
    void decode_data();
    void decode();
    void sectionsAndEntries_data();
    void sectionsAndEntries();
    void comments_data();
    void comments();
    void lastSectionOfANameIsFound();
    void linesAreCounted();
    void hugeInputIsReadInOnePass();
    void filesThatCannotBeRead();

private:
    static QString dump(const EdsReader &reader);
};

/// "[name]key=value|key=value" for each section.
QString TestEdsReader::dump(const EdsReader &reader)
{
    QString text;
    for (const EdsSection &section : reader.sections()) {
        QStringList entries;
        for (const EdsEntry &entry : section.entries)
            entries << entry.key + QLatin1Char('=') + entry.value;
        text += QStringLiteral("[%1]%2").arg(section.name, entries.join(QLatin1Char('|')));
    }
    return text;
}

void TestEdsReader::decode_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");

    QTest::newRow("utf8") << QByteArray("caf\xC3\xA9") << QStringLiteral(u"caf\u00E9");
    QTest::newRow("utf8_mark_is_dropped") << QByteArray("\xEF\xBB\xBF[A]") << QStringLiteral("[A]");
    QTest::newRow("windows_1252") << QByteArray("5 \x80 \xB5m")
                                  << QStringLiteral(u"5 \u20AC \u00B5m");
    QTest::newRow("cut_utf8_is_windows_1252") << QByteArray("a\xC3") << QStringLiteral(u"a\u00C3");
    QTest::newRow("utf16_with_mark") << QByteArray("\xFF\xFE[\0A\0]\0", 8) << QStringLiteral("[A]");
    QTest::newRow("control_characters_are_blanks")
        << QByteArray("a\0b\x01\tc\n", 7) << QStringLiteral("a b  c\n");
}

void TestEdsReader::decode()
{
    QFETCH(QByteArray, bytes);
    QTEST(EdsReader::decode(bytes), "text");
}

void TestEdsReader::sectionsAndEntries_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");

    const QString two = QStringLiteral("[a]k=v[b]l=w");
    QTest::newRow("lf") << QByteArray("[A]\nk=v\n[B]\nl=w\n") << two;
    QTest::newRow("crlf") << QByteArray("[A]\r\nk=v\r\n[B]\r\nl=w\r\n") << two;
    QTest::newRow("cr") << QByteArray("[A]\rk=v\r[B]\rl=w\r") << two;
    QTest::newRow("mixed_and_no_last_end") << QByteArray("[A]\rk=v\n\r\n[B]\r\nl=w") << two;
    QTest::newRow("blanks") << QByteArray("  [ 1A00 Sub 0A ]\n\t Key =  two words \n")
                            << QStringLiteral("[1a00sub0a]Key=two words");
    QTest::newRow("value_keeps_its_signs") << QByteArray("[A]\nk=a=b; c, \"d\" 'e' %1 \\n\n")
                                           << QStringLiteral("[a]k=a=b; c, \"d\" 'e' %1 \\n");
    QTest::newRow("empty_value") << QByteArray("[A]\nk=\n") << QStringLiteral("[a]k=");
    QTest::newRow("comment_lines")
        << QByteArray("; x=1\n[A]\n;k=v\n# l=w\n  ;m=x\n") << QStringLiteral("[a]");
    QTest::newRow("text_behind_the_head")
        << QByteArray("[A] k=v\nl=w\n") << QStringLiteral("[a]l=w");
    QTest::newRow("open_head") << QByteArray("[1000\nk=v\n") << QStringLiteral("[1000]k=v");
    QTest::newRow("stray_lines") << QByteArray("k=v\n[A]\nnonsense\n=v\n[]\n")
                                 << QStringLiteral("[a][]");
    QTest::newRow("nothing") << QByteArray() << QString();
}

void TestEdsReader::sectionsAndEntries()
{
    QFETCH(QByteArray, bytes);
    EdsReader reader;
    reader.parse(bytes, QStringLiteral("test"));
    QTEST(dump(reader), "expected");
}

void TestEdsReader::comments_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");

    const QString none;
    const QString text = QStringLiteral("text");
    QTest::newRow("behind_keys_is_of_the_section")
        << QByteArray("[A]\nk=v\n;;text\n\n[B]\nk=v\n") << text << none;
    QTest::newRow("behind_keys_without_blank_line")
        << QByteArray("[A]\nk=v\n;;text\n[B]\n") << text << none;
    QTest::newRow("behind_a_blank_line_is_of_the_next_section")
        << QByteArray("[A]\nk=v\n\n;;text\n[B]\n") << none << text;
    QTest::newRow("blank_line_between_block_and_head")
        << QByteArray("[A]\nk=v\n\n;;text\n\n[B]\n") << none << text;
    QTest::newRow("one_of_each") << QByteArray("[A]\nk=v\n;;text\n\n;;other\n[B]\n") << text
                                 << QStringLiteral("other");
    QTest::newRow("before_keys_of_the_section")
        << QByteArray("[A]\n\n;;text\nk=v\n\n[B]\n") << text << none;
    QTest::newRow("at_the_start") << QByteArray(";;text\n[A]\nk=v\n[B]\n") << text << none;
    QTest::newRow("at_the_end") << QByteArray("[A]\n[B]\nk=v\n\n;;text") << none << text;
    QTest::newRow("several_lines_as_they_stand")
        << QByteArray("[A]\n;; a \n;;\n;;b\n[B]\n") << QStringLiteral(" a \n\nb") << none;
    QTest::newRow("plain_comments_do_not_count")
        << QByteArray("[A]\nk=v\n\n; x\n;;text\n; y\n[B]\n") << none << text;
}

void TestEdsReader::comments()
{
    QFETCH(QByteArray, bytes);
    EdsReader reader;
    reader.parse(bytes, QStringLiteral("test"));
    QTEST(reader.section(QStringLiteral("A"))->comment, "first");
    QTEST(reader.section(QStringLiteral("B"))->comment, "second");
}

void TestEdsReader::lastSectionOfANameIsFound()
{
    EdsReader reader;
    reader.parse("[DeviceInfo]\nk=1\n[DEVICEINFO]\nk=2\n", QStringLiteral("test"));
    QCOMPARE(reader.section(QStringLiteral("Device Info"))->entries.first().value,
             QStringLiteral("2"));
    QVERIFY(!reader.section(QStringLiteral("FileInfo")));
}

void TestEdsReader::linesAreCounted()
{
    EdsReader reader;
    reader.parse("\r\n\r\n[A]\r\n\r\nk=v\r\n", QStringLiteral("test"));
    QCOMPARE(reader.sections().first().line, 3);
    QCOMPARE(reader.sections().first().entries.first().line, 5);
}

void TestEdsReader::hugeInputIsReadInOnePass()
{
    const int size = 10 * 1024 * 1024;
    EdsReader reader;
    reader.parse("[A]\nk=" + QByteArray(size, '[') + "\n", QStringLiteral("test"));
    QCOMPARE(reader.sections().first().entries.first().value.size(), size);
    for (const char *line : {"[\n", ";;\n", "=\n", "\r", "[A]\nk=v\n"}) {
        reader.parse(QByteArray(line).repeated(200000), QStringLiteral("test"));
        QVERIFY(reader.sections().size() <= 200000);
    }
}

void TestEdsReader::filesThatCannotBeRead()
{
    EdsReader reader;
    reader.parse("[A]\n", QStringLiteral("test"));
    QVERIFY(!reader.read(QStringLiteral("/nonexistent.eds")));
    QVERIFY(reader.sections().isEmpty());
    QVERIFY(!reader.read(QDir::tempPath()));
    QVERIFY(!reader.read(QStringLiteral("/dev/zero")));
}

QTEST_GUILESS_MAIN(TestEdsReader)
#include "tst_edsreader.moc"
