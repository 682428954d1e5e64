// The reader of device descriptions: bytes, lines, sections and comments.
#include "formats/edsreader.h"
#include "tests/fixtures/casefile.h"

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

    void cases_data() { addCases(TEST_CASES "/edsreader.txt"); }
    void cases()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        for (const QString lineEnd : {"\n", "\r\n", "\r"}) {
            EdsReader reader;
            reader.parse(QString(project).replace('\n', lineEnd).toUtf8(), "test");
            const QString found = caseGroup() == "sections" ? dump(reader)
                                                            : reader.section("A")->comment + '/' +
                                                                  reader.section("B")->comment;
            QCOMPARE(found + '\n', expected);
        }
    }

    void otherEndsOfLines()
    {
        EdsReader reader;
        reader.parse("[A]\rk=v\n\r\n;;x\r\n[B]\r\nl=w", "test");
        QCOMPARE(dump(reader), "[a]k=v[b]l=w");
        QCOMPARE(reader.section("B")->comment, "x");
        reader.parse("[A]\n;;x", "test");
        QCOMPARE(reader.section("A")->comment, "x");
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
