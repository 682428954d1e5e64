// The INI dialect of text projects, held against the class whose dialect it is.
#include "store/initext.h"

#include <QBuffer>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

class TestIniText : public QObject
{
    Q_OBJECT

private slots:
    void values_data();
    void values();
    void bytes();
    void readsWhatPeopleWrite_data();
    void readsWhatPeopleWrite();
    void noiseIsToldAndSurvived();
};

void TestIniText::values_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::newRow("plain") << "a"
                           << "b";
    QTest::newRow("empty") << "a"
                           << "";
    QTest::newRow("path") << "0x1000/0x1/name"
                          << "x";
    QTest::newRow("separators") << "a"
                                << "1,2;3=4";
    QTest::newRow("blanks at the ends") << "a"
                                        << " b ";
    QTest::newRow("inner blanks") << "a"
                                  << "b  c";
    QTest::newRow("quotes and backslash") << "a"
                                          << "say \"C:\\x\"";
    QTest::newRow("control characters")
        << "a" << QStringLiteral("l1\nl2\tx\r\x01") + "9fz" + QChar(7);
    QTest::newRow("zero") << "a" << QStringLiteral("x") + QChar(0) + "1g";
    QTest::newRow("umlauts") << "kä ö%/π" << QStringLiteral("größe π");
    QTest::newRow("at sign") << "a"
                             << "@home";
    QTest::newRow("at signs") << "a"
                              << "@@home";
    QTest::newRow("looks like bytes") << "a"
                                      << "@ByteArray(x)";
    QTest::newRow("hash") << "#a"
                          << "#b";
    QTest::newRow("percent") << "100%"
                             << "100%";
    QTest::newRow("node id") << "a"
                             << "$NODEID+0x200";
}

void TestIniText::values()
{
    QFETCH(QString, key);
    QFETCH(QString, value);
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("a.ini"));
    {
        QSettings settings(name, QSettings::IniFormat);
        settings.setIniCodec("UTF-8");
        settings.setValue(QStringLiteral("Group/") + key, value);
    }
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray expected = file.readAll();

    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    IniText::Writer writer(&buffer);
    writer.section(QStringLiteral("Group"));
    writer.value(key, value);
    QVERIFY(writer.finish());
    QCOMPARE(buffer.data(), expected);

    IniText::Sections sections;
    QVERIFY(IniText::read(expected, &sections));
    QCOMPARE(sections.keys(), QStringList{QStringLiteral("Group")});
    const auto entries = sections.value(QStringLiteral("Group"));
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.first().key, key);
    QCOMPARE(entries.first().value.toString(), value);
}

void TestIniText::bytes()
{
    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all += char(i);
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("a.ini"));
    {
        QSettings settings(name, QSettings::IniFormat);
        settings.setIniCodec("UTF-8");
        settings.setValue(QStringLiteral("Group/a"), all);
    }
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    IniText::Writer writer(&buffer);
    writer.section(QStringLiteral("Group"));
    writer.value(QStringLiteral("a"), all);
    QVERIFY(writer.finish());
    QCOMPARE(buffer.data(), file.readAll());
    IniText::Sections sections;
    QVERIFY(IniText::read(buffer.data(), &sections));
    QCOMPARE(sections.value(QStringLiteral("Group")).first().value.toByteArray(), all);
}

void TestIniText::readsWhatPeopleWrite_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("crlf") << QByteArray("[G]\r\na=1\r\nb=2\r\n");
    QTest::newRow("cr") << QByteArray("[G]\ra=1\rb=2");
    QTest::newRow("mark and no line end") << QByteArray("\xEF\xBB\xBF[G]\na=1\nb=2");
    QTest::newRow("blanks") << QByteArray("  [G]  \n\n  a =  1  \n\tb\t=\t2\t\n");
    QTest::newRow("comments") << QByteArray("; c\n[G]\n;x=3\na=1 ; one\nb=2\n;\n");
    QTest::newRow("list") << QByteArray("[G]\na=1,0\nb=1, \"x,y\" ,z\n");
    QTest::newRow("escapes") << QByteArray("[G]\na=\\x41g\\x0a\\101\\n\\q\nb=\"two\\\n lines\"\n");
    QTest::newRow("quotes over lines") << QByteArray("[G]\na=\"x\ny\"\nb=2\n");
    QTest::newRow("escaped key") << QByteArray("[G%20H]\n%41=1\nb\\c=2\n%U03C0=3\n");
    QTest::newRow("section twice") << QByteArray("[G]\na=1\n[H]\nc=3\n[G]\nb=2\n");
    QTest::newRow("equals in value") << QByteArray("[G]\na=x=y\n");
    QTest::newRow("at value") << QByteArray("[G]\na=@@x\nb=@x\n");
}

void TestIniText::readsWhatPeopleWrite()
{
    QFETCH(QByteArray, text);
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("a.ini"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
    file.close();
    QSettings settings(name, QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    const QStringList keys = settings.allKeys();
    QVERIFY(!keys.isEmpty());

    IniText::Sections sections;
    QVERIFY(IniText::read(text, &sections));
    QStringList read;
    for (auto section = sections.constBegin(); section != sections.constEnd(); ++section) {
        for (const IniText::Entry &entry : *section) {
            const QString key = section.key() + QLatin1Char('/') + entry.key;
            read << key;
            QCOMPARE(entry.value.toStringList(), settings.value(key).toStringList());
        }
    }
    read.sort();
    QCOMPARE(read, keys);
}

void TestIniText::noiseIsToldAndSurvived()
{
    IniText::Sections sections;
    QVERIFY(!IniText::read("[G]\na=1\n<<<<<<< mine\nb=2\n", &sections));
    QCOMPARE(sections.value(QStringLiteral("G")).size(), 2);
    for (const char *text : {"[", "[G", "=", "[G]\n=", "[G]\na=\\", "[G]\na=\"", "[G]\n%",
                             "[G]\n%U1=\\x", "[G]\na=\\x999999999999", "\\", "\"", ";"})
        IniText::read(text, &sections);
    QByteArray noise;
    quint32 state = 1;
    for (int i = 0; i < 200000; ++i) {
        state = state * 1664525 + 1013904223;
        noise += "[]=\\\"%;,\n\r xU0@"[(state >> 24) % 16];
    }
    IniText::read(noise, &sections);
}

QTEST_GUILESS_MAIN(TestIniText)
#include "tst_initext.moc"
