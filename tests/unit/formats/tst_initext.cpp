// The INI dialect of text projects, held against the class whose dialect it is.
#include "formats/initext.h"
#include "tests/fixtures/testkit.h"

#include <QBuffer>
#include <QSettings>

class TestIniText : public QObject
{
    Q_OBJECT

private slots:
    void init() { QFile::remove(name); }

    void values_data()
    {
        columns<QString, QString>("key", "value");
        // clang-format off
        QTest::newRow("empty") << "a" << "";
        QTest::newRow("path") << "0x1000/0x1/name" << "x";
        QTest::newRow("comma") << "a" << "1,2";
        QTest::newRow("semicolon") << "a" << "1;2";
        QTest::newRow("equals") << "a" << "1=2";
        QTest::newRow("blanks at the ends") << "a" << " b ";
        QTest::newRow("inner blanks") << "a" << "b  c";
        QTest::newRow("quotes and backslash") << "a" << "say \"C:\\x\"";
        QTest::newRow("control characters") << "a" << QString("l1\nl2\tx\r\x01") + "9fz" + QChar(7);
        QTest::newRow("zero") << "a" << QString("x") + QChar(0) + "1g";
        QTest::newRow("umlauts") << "kä ö%/π" << "größe π";
        QTest::newRow("at sign") << "a" << "@home";
        QTest::newRow("at signs") << "a" << "@@home";
        QTest::newRow("looks like bytes") << "a" << "@ByteArray(x)";
        QTest::newRow("hash") << "#a" << "#b";
        QTest::newRow("percent") << "100%" << "100%";
        QTest::newRow("node id") << "a" << "$NODEID+0x200";
        // clang-format on
    }
    void values()
    {
        const auto [key, value] = fetchRow<QString, QString>();
        agreesWithSettings(key, value);
    }

    void bytes()
    {
        QByteArray all;
        for (int i = 0; i < 256; ++i)
            all += char(i);
        agreesWithSettings("a", all);
    }

    void readsWhatPeopleWrite_data()
    {
        columns<QString>("text");
        QTest::newRow("crlf") << "[G]\r\na=1\r\nb=2\r\n";
        QTest::newRow("cr") << "[G]\ra=1\rb=2";
        QTest::newRow("mark and no line end") << "\uFEFF[G]\na=1\nb=2";
        QTest::newRow("blanks") << "  [G]  \n\n  a =  1  \n\tb\t=\t2\t\n";
        QTest::newRow("comments") << "; c\n[G]\n;x=3\na=1 ; one\nb=2\n;\n";
        QTest::newRow("list") << "[G]\na=1,0\nb=1, \"x,y\" ,z\n";
        QTest::newRow("escapes") << "[G]\na=\\x41g\\x0a\\101\\n\\q\nb=\"two\\\n lines\"\n";
        QTest::newRow("hex escape without digits")
            << "[G]\na=1\\xg2\\x\nb=\"\\x\",\\x,\\x 3\nc=\\X41\\x-1\nd=4 \\x ;\n";
        QTest::newRow("octal escapes") << "[G]\na=\\8\\08\\777777\\18 \\1\nb=\\3 \\60 9\n";
        QTest::newRow("escapes without meaning") << "[G]\na=1 \\  \nb=\\q \\,\\;\\=2\nc=\\\n3\n";
        QTest::newRow("quotes over lines") << "[G]\na=\"x\ny\"\nb=2\n";
        QTest::newRow("escaped key") << "[G%20H]\n%41=1\nb\\c=2\n%U03C0=3\n";
        QTest::newRow("section twice") << "[G]\na=1\n[H]\nc=3\n[G]\nb=2\n";
        QTest::newRow("equals in value") << "[G]\na=x=y\n";
        QTest::newRow("at value") << "[G]\na=@@x\nb=@x\n";
    }
    void readsWhatPeopleWrite()
    {
        QFETCH(QString, text);
        QVERIFY(writeFile(name, text.toUtf8()));
        QSettings settings(name, QSettings::IniFormat);
        settings.setIniCodec("UTF-8");
        const QStringList keys = settings.allKeys();
        QVERIFY(!keys.isEmpty());

        IniText::Sections sections;
        const QByteArray data = text.toUtf8();
        QVERIFY(IniText::read(data, &sections));
        QStringList read;
        for (auto section = sections.constBegin(); section != sections.constEnd(); ++section) {
            for (const IniText::Entry &entry : *section) {
                read << section.key() + '/' + entry.key();
                QCOMPARE(entry.value().toStringList(), settings.value(read.last()).toStringList());
            }
        }
        read.sort();
        QCOMPARE(read, keys);
    }

    void commentsOfBothKinds()
    {
        const QByteArray data = "# a=1\n[G]\n  #don't \"do\nb=2 # one\r#c=3 \\\n#\nd=4\n%23e=5\n#";
        IniText::Sections sections;
        QVERIFY(IniText::read(data, &sections));
        QStringList entries;
        for (const IniText::Entry &entry : sections.value("G"))
            entries << entry.key() + '=' + entry.value().toString();
        QCOMPARE(entries.join(", "), "b=2 # one, d=4, #e=5");
    }

    void faultsOfLines_data()
    {
        columns<QByteArray, QString>("text", "faults"); // line, kind, and what of it is not lost
        const QByteArray most((1 << 20) - 2, 'x');
        // clang-format off
        QTest::newRow("none") << QByteArray("\r\n;x\n#y\n [G] ; h\n a = 1\n[H]\n") << "";
        QTest::newRow("long_key") << "[G]\na=" + most + "\r\nb=1" + most + "\nc=2" << "3 TooLong";
        QTest::newRow("long_section") << "[H" + most + "]\r\rd=3\n[G]" << "1 TooLong, 3 BeforeSections";
        QTest::newRow("open_quote") << "[G]\nf=\"\n\n" + most << "2 TooLong";
        QTest::newRow("ours") << QByteArray("[G]\n<<<<<<< a=b\n<<<<<<< HEAD\n<<<<<<<\n<<<<<< HEAD\n")
            << "2 ConflictMarker kept, 3 ConflictMarker, 4 ConflictMarker, 5 NoKey";
        QTest::newRow("middle") << QByteArray("[G]\n=======\n========\n||||||| base\n")
            << "2 ConflictMarker kept, 3 EmptyKey kept, 4 ConflictMarker";
        QTest::newRow("theirs") << QByteArray("[G]\n>>>>>>> topic\n>>>>>>>topic\n") << "2 ConflictMarker, 3 NoKey";
        QTest::newRow("no_key") << QByteArray("x\n[G]\rx y\r\n = 1\n") << "1 NoKey, 3 NoKey, 4 EmptyKey kept";
        QTest::newRow("no_section") << QByteArray("a=1\n[G]") << "1 BeforeSections";
        QTest::newRow("open_section") << QByteArray("[G\na=1\n[]\n") << "1 OpenSection";
        QTest::newRow("after_section") << QByteArray("[G] # x\n[H] a=1\n[I];x\n") << "2 AfterSection kept";
        QTest::newRow("cut") << QByteArray("[G]\na=x; y\nb=x ; y\nc=1; y\nd=1;2\ne=\"x\";y\nf=;x\ng=x;\nh=1;")
            << "2 CutValue kept, 5 CutValue kept, 8 CutValue kept";
        QTest::newRow("no_escape") << QByteArray("[G]\n1\\i=\\n\\\\i\\x41\na=..\\inc\nb=x\\\ny\nc=x\\,y\nd=\\")
            << "3 NoEscape kept, 6 NoEscape kept";
        QTest::newRow("swallowed") << QByteArray("[G]\na=\"x\nint b = 1;\n= 1\"\nb=\"x\r\n1\\c=y\nd=\"y\ne=\"\n[H]\"")
            << "5 SwallowedLines kept, 8 SwallowedLines kept";
        QTest::newRow("far_down") << "[G]" + QByteArray("\n").repeated(600) + "x" +
            QByteArray("\r\n").repeated(513) + "y"
            << "601 NoKey, 1114 NoKey";
        // clang-format on
    }
    void faultsOfLines()
    {
        static const QStringList kinds = {
            "TooLong",     "ConflictMarker", "NoKey",    "EmptyKey", "BeforeSections",
            "OpenSection", "AfterSection",   "CutValue", "NoEscape", "SwallowedLines"};
        QFETCH(QByteArray, text);
        IniText::Sections sections;
        IniText::Outline outline;
        const bool isSound = IniText::read(text, &sections, &outline);
        IniText::LineNumbers lines(text);
        QStringList told;
        bool isLost = false;
        for (const auto &faulty : qAsConst(outline.faults)) {
            told << QString::number(lines.at(faulty.line.begin)) + ' ' +
                        kinds.at(int(faulty.fault)) + (faulty.isLost ? "" : " kept");
            isLost |= faulty.isLost;
        }
        QTEST(told.join(", "), "faults");
        QCOMPARE(isSound, !isLost);
        QVERIFY(text.size() < 100 || lines.at(text.constEnd()) <= 1114);
    }

    void faultsAreBounded()
    {
        const QByteArray text = QByteArray("x\n").repeated(3000);
        IniText::Sections sections;
        IniText::Outline outline;
        QVERIFY(!IniText::read(text, &sections, &outline));
        QCOMPARE(outline.faults.size(), int(IniText::Outline::kMostFaults));
        QCOMPARE(outline.faultCounts.value(IniText::LineFault::NoKey), 3000);
    }

    void noiseIsSurvived()
    {
        const auto readAll = [](const QByteArray &data) {
            IniText::Sections found;
            IniText::Outline outline;
            IniText::read(data, &found, &outline);
            IniText::LineNumbers lines(data);
            for (const auto &faulty : qAsConst(outline.faults))
                QVERIFY(lines.at(faulty.line.begin) > 0);
            for (const QVector<IniText::Entry> &section : qAsConst(found)) {
                for (const IniText::Entry &entry : section)
                    QVERIFY(entry.key().size() <= data.size() && entry.value().isValid());
            }
        };
        for (const char *text : {"[", "[G", "=", "[G]\n=", "[G]\na=\\", "[G]\na=\"", "[G]\n%",
                                 "[G]\n%U1=\\x", "[G]\na=\\x999999999999", "\\", "\"", ";"})
            readAll(text);
        QByteArray noise;
        quint32 state = 1;
        for (int i = 0; i < 200000; ++i) {
            state = state * 1664525 + 1013904223;
            noise += "[]=\\\"%;,\n\r xU0@"[(state >> 24) % 16];
        }
        readAll(noise);
    }

private:
    /// Both write the same bytes for \a value, and it reads back.
    template <typename Value>
    void agreesWithSettings(const QString &key, const Value &value)
    {
        {
            QSettings settings(name, QSettings::IniFormat);
            settings.setIniCodec("UTF-8");
            settings.setValue("Group/" + key, value);
        }
        QBuffer buffer;
        QVERIFY(buffer.open(QIODevice::WriteOnly));
        IniText::Writer writer(&buffer);
        writer.section("Group");
        writer.value(key, value);
        QVERIFY(writer.finish());
        QCOMPARE(buffer.data(), readFile(name));

        IniText::Sections sections;
        QVERIFY(IniText::read(buffer.data(), &sections));
        QCOMPARE(sections.keys(), QStringList{"Group"});
        const auto entries = sections.value("Group");
        QCOMPARE(entries.size(), 1);
        QCOMPARE(entries.first().key(), key);
        QCOMPARE(entries.first().value().template value<Value>(), value);
    }

    QTemporaryDir folder;
    const QString name = folder.filePath("a.ini");
};

QTEST_GUILESS_MAIN(TestIniText)
#include "tst_initext.moc"
