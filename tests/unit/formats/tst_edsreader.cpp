// The reader of device descriptions: bytes, lines, sections and comments.
#include "formats/edsreader.h"
#include "tests/fixtures/testkit.h"

class TestEdsReader : public QObject
{
    Q_OBJECT

private slots:
    void decode()
    {
        QCOMPARE(EdsReader::decode("caf\xC3\xA9"), "caf\u00E9");
        QCOMPARE(EdsReader::decode("\xEF\xBB\xBF[A]"), "[A]");
        QCOMPARE(EdsReader::decode("\xEF\xBB\xBF[A]\xE9"), "[A]\u00E9"); // not all of it is UTF-8
        QCOMPARE(EdsReader::decode(QByteArray("\xFF\xFE[\0A", 5)), "["); // cut UTF-16
        QCOMPARE(EdsReader::decode("5 \x80 \xB5m"), "5 \u20AC \u00B5m"); // Windows-1252
        QCOMPARE(EdsReader::decode("a\xC3"), "a\u00C3");                 // cut UTF-8
        QCOMPARE(EdsReader::decode(QByteArray("\xFF\xFE[\0A\0]\0", 8)), "[A]");
        QCOMPARE(EdsReader::decode(QByteArray("a\0b\x01\tc\n", 7)), "a b  c\n");
    }

    void sectionsAndEntries_data()
    {
        columns<QString, QString>("text", "expected");
        const QString two = "[a]k=v[b]l=w";
        // clang-format off
        QTest::newRow("lf") << "[A]\nk=v\n[B]\nl=w\n" << two;
        QTest::newRow("crlf") << "[A]\r\nk=v\r\n[B]\r\nl=w\r\n" << two;
        QTest::newRow("cr") << "[A]\rk=v\r[B]\rl=w\r" << two;
        QTest::newRow("mixed_and_no_last_end") << "[A]\rk=v\n\r\n[B]\r\nl=w" << two;
        QTest::newRow("blanks") << "  [ 1A00 Sub 0A ]\n\t Key =  two words \n" << "[1a00sub0a]Key=two words";
        QTest::newRow("value_keeps_its_signs") << "[A]\nk=a=b; c, \"d\" 'e' %1 \\n\n"
            << "[a]k=a=b; c, \"d\" 'e' %1 \\n";
        QTest::newRow("empty_value") << "[A]\nk=\n" << "[a]k=";
        QTest::newRow("comment_lines") << "; x=1\n[A]\n;k=v\n# l=w\n  ;m=x\n" << "[a]";
        QTest::newRow("text_behind_the_head") << "[A] k=v\nl=w\n" << "[a]l=w";
        QTest::newRow("open_head") << "[1000\nk=v\n" << "[1000]k=v";
        QTest::newRow("stray_lines") << "k=v\n[A]\nnonsense\n=v\n[]\n" << "[a][]";
        // clang-format on
    }
    void sectionsAndEntries()
    {
        QFETCH(QString, text);
        EdsReader reader;
        reader.parse(text.toUtf8(), "test");
        QTEST(dump(reader), "expected");
    }

    void comments_data()
    {
        columns<QString, QString, QString>("text", "first", "second");
        // clang-format off
        QTest::newRow("behind_keys_is_of_the_section") << "[A]\nk=v\n;;text\n\n[B]\nk=v\n" << "text" << "";
        QTest::newRow("behind_keys_without_blank_line") << "[A]\nk=v\n;;text\n[B]\n" << "text" << "";
        QTest::newRow("behind_a_blank_line_is_of_the_next_section") << "[A]\nk=v\n\n;;text\n[B]\n" << "" << "text";
        QTest::newRow("blank_line_between_block_and_head") << "[A]\nk=v\n\n;;text\n\n[B]\n" << "" << "text";
        QTest::newRow("one_of_each") << "[A]\nk=v\n;;text\n\n;;other\n[B]\n" << "text" << "other";
        QTest::newRow("before_keys_of_the_section") << "[A]\n\n;;text\nk=v\n\n[B]\n" << "text" << "";
        QTest::newRow("at_the_start") << ";;text\n[A]\nk=v\n[B]\n" << "text" << "";
        QTest::newRow("at_the_end") << "[A]\n[B]\nk=v\n\n;;text" << "" << "text";
        QTest::newRow("several_lines_as_they_stand") << "[A]\n;; a \n;;\n;;b\n[B]\n" << " a \n\nb" << "";
        QTest::newRow("plain_comments_do_not_count") << "[A]\nk=v\n\n; x\n;;text\n; y\n[B]\n" << "" << "text";
        // clang-format on
    }
    void comments()
    {
        QFETCH(QString, text);
        EdsReader reader;
        reader.parse(text.toUtf8(), "test");
        QTEST(reader.section("A")->comment, "first");
        QTEST(reader.section("B")->comment, "second");
    }

    void lastSectionOfANameIsFound()
    {
        EdsReader reader;
        reader.parse("[DeviceInfo]\nk=1\n[DEVICEINFO]\nk=2\n", "test");
        QCOMPARE(reader.section("Device Info")->entries.first().value, "2");
        QVERIFY(!reader.section("FileInfo"));
    }

    void hugeInputIsReadInOnePass()
    {
        const int size = 10 * 1024 * 1024;
        EdsReader reader;
        reader.parse("[A]\nk=" + QByteArray(size, '[') + "\n", "test");
        QCOMPARE(reader.sections().first().entries.first().value.size(), size);
        for (const char *line : {"[\n", ";;\n", "=\n", "\r", "[A]\nk=v\n"}) {
            reader.parse(QByteArray(line).repeated(200000), "test");
            QVERIFY(reader.sections().size() <= 200000);
        }
    }

    void filesThatCannotBeRead()
    {
        EdsReader reader;
        reader.parse("[A]\n", "test");
        QVERIFY(!reader.read("/nonexistent.eds"));
        QVERIFY(reader.sections().isEmpty());
        QVERIFY(!reader.read(QDir::tempPath()));
        QVERIFY(!reader.read("/dev/zero"));
    }

private:
    /// "[name]key=value|key=value" for each section.
    static QString dump(const EdsReader &reader)
    {
        QString text;
        for (const EdsSection &section : reader.sections()) {
            QStringList entries;
            for (const EdsEntry &entry : section.entries)
                entries << entry.key + '=' + entry.value;
            text += '[' + section.name + ']' + entries.join('|');
        }
        return text;
    }
};

QTEST_GUILESS_MAIN(TestEdsReader)
#include "tst_edsreader.moc"
