// YAML files: what is read, where it stands and what is refused; what is written, and that it reads
// as the same.
#include "formats/yamlreader.h"
#include "formats/yamlwriter.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QTest>

namespace
{

/// With places of scalars, quotes around what is not plain.
QString dump(const YamlNode &node, bool withPlaces)
{
    QStringList parts;
    if (node.isMap()) {
        for (const YamlNode::Entry &entry : node.entries())
            parts << entry.key.text() + ": " + dump(entry.value, withPlaces);
        return "{" + parts.join(", ") + "}";
    }
    if (node.isList()) {
        for (const YamlNode &item : node.items())
            parts << dump(item, withPlaces);
        return "[" + parts.join(", ") + "]";
    }
    const QString place = QString("@%1:%2").arg(node.place().line).arg(node.place().column);
    const QString mark = node.isPlain() ? "" : "'";
    return mark + node.text() + mark + (withPlaces ? place : "");
}

QByteArray flowDepth(int depth)
{
    return "a: " + QByteArray(depth, '[') + QByteArray(depth, ']');
}

QByteArray bomb(int levels)
{
    QByteArray text = "a0: &a0 [x, x, x, x, x, x, x, x, x]\n";
    for (int i = 1; i <= levels; ++i) {
        const QByteArray alias = " *a" + QByteArray::number(i - 1) + ",";
        text += "a" + QByteArray::number(i) + ": &a" + QByteArray::number(i) + " [" +
                alias.repeated(9) + "]\n";
    }
    return text;
}

QByteArray mergeChain(int length)
{
    QByteArray text = "a0: &a0 {x: 1}\n";
    for (int i = 1; i <= length; ++i) {
        const QByteArray number = QByteArray::number(i);
        text += "a" + number + ": &a" + number + " {k" + number + ": 1, <<: *a" +
                QByteArray::number(i - 1) + "}\n";
    }
    return text;
}

} // namespace

class tst_Yaml : public QObject
{
    Q_OBJECT

private slots:
    void reads_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *title, const char *text, const char *expected) {
            QTest::newRow(title) << QByteArray(text) << QString(expected);
        };
        row("places", "a: 1\nb:\n  - x\n  - {c: 'y'}\n", "{a: 1@1:4, b: [x@3:5, {c: 'y'@4:9}]}");
        row("columns_are_characters", "{\xC3\xA4: \xE2\x82\xAC, b: 2}", "{ä: €@1:5, b: 2@1:11}");
        row("byte_order_mark",
            "\xEF\xBB\xBF"
            "a: 1",
            "{a: 1@1:4}");
        row("spelling_stays", "[0x0F, 010, $NODEID+0x180, 0x2012:1, ~]",
            "[0x0F@1:2, 010@1:8, $NODEID+0x180@1:13, 0x2012:1@1:28, ~@1:38]");
        row("alias", "a: &n {x: 1}\nb: *n\n", "{a: {x: 1@1:11}, b: {x: 1@1:11}}");
        row("merge_own_first", "a: &n {x: 1, y: 2}\nb: {<<: *n, x: 3}\n",
            "{a: {x: 1@1:11, y: 2@1:17}, b: {x: 3@2:16, y: 2@1:17}}");
        row("merge_first_of_list", "[&n {x: 1}, &m {x: 2, y: 3}, {<<: [*n, *m]}]",
            "[{x: 1@1:9}, {x: 2@1:20, y: 3@1:26}, {x: 1@1:9, y: 3@1:26}]");
        row("quoted_merge_is_a_key", "{\"<<\": 1}", "{<<: 1@1:8}");
        row("anchor_named_twice", "[&n 1, *n, &n 2, *n]", "[1@1:2, 1@1:2, 2@1:12, 2@1:12]");
        row("nothing", "{a: , b: \"\"}", "{a: @1:5, b: ''@1:10}");
        row("carriage_returns", "a: 1\rb: 2\r\nc: 3", "{a: 1@1:4, b: 2@2:4, c: 3@3:4}");
    }
    void reads()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, expected);
        YamlDocument document;
        YamlProblems problems("f");
        QVERIFY(YamlReader::read(text, &document, &problems));
        QCOMPARE(problems.lines(), QStringList());
        QCOMPARE(dump(document.root(), true), expected);
    }

    void refuses_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char *title, const QByteArray &text,
                            const QStringList &expected) {
            QTest::newRow(title) << text << expected;
        };
        row("all_in_one_run", "a: 1\na: 2\nb: *nam\nc: &name !!int 3\nd: *nam\n? [x]\n: 1\n<<: 5\n",
            {"2:1: \"a\" stands twice in this map; line 1 has it first",
             "3:4: there is no anchor \"nam\" before this line",
             "4:4: a tag such as \"tag:yaml.org,2002:int\" says nothing here: remove it",
             "5:4: there is no anchor \"nam\" before this line; did you mean \"name\"",
             "6:3: a key has to be a word or a number",
             "8:5: \"<<\" takes a map, as \"*name\", or a list of maps"});
        row("alias_in_itself", "a: &n [*n]", {"1:8: \"n\" stands within what it names"});
        row("empty", "# nothing\n", {"1:1: the file is empty"});
        row("second_document", "a: 1\n---\nb: 2\n",
            {"2:1: a second document begins here; a project is a single one"});
        row("tab", "a:\n\tb: 1\n", {"2:1: indent with spaces, not tabs"});
        row("open_quotes", "a: \"x\nb: 2\n", {"1:4: the quotes that open here are never closed"});
        row("second_colon", "a: b: c\n",
            {"1:5: a \": \" where none can be: does the line before lack one, or is this one not "
             "indented as those of its map; a text that holds one stands in quotes"});
        row("no_blank", "a: 1\nb:1\nc: 2\n", {"2:1: a key without \": \" after it"});
        row("open_braces", "a: {b: 1,\nc: 2\nd: 3\n",
            {"3:2: the map in braces needs a \",\" or \"}\" here; it begins on line 1"});
        row("begins_with_at", "a: @b\n",
            {"1:4: no value begins with \"@\": put the text in quotes"});
        row("conflict", "a: 1\n<<<<<<< HEAD\n",
            {"2:1: a merge left a conflict here that nobody has solved"});
        row("no_utf8", "a: \xC3\xA4\xFF\n", {"1:5: this is no UTF-8"});
        row("utf16",
            QByteArray("\xFF\xFE"
                       "a\0:\0 \0b\0\n\0",
                       12),
            {"1:1: this is UTF-16: save the file as UTF-8"});
        row("utf16_without_mark", QByteArray("\0a\0:\0 \0b\0\n", 10),
            {"1:1: this is UTF-16: save the file as UTF-8"});
        row("database", QByteArray("SQLite format 3\0\1\2\n\3", 19),
            {"1:1: this is no text but another kind of file"});
        row("conflict_half_solved", "a: 1\n=======\n",
            {"2:1: a merge left a conflict here that nobody has solved"});
        row("overlong_utf8", "a: \xE0\x80\xAF\n", {"1:4: this is no UTF-8"});
        row("control", "\na: \x01",
            {"2:4: the character U+0001 cannot stand in YAML: write it as \"\\u0001\" in quotes"});
        row("line_separator", "a: \xE2\x80\xA8",
            {"1:4: the character U+2028 ends a line in some "
             "readers: write it as \"\\u2028\" in quotes"});
        const QString deep = "1:%1: lists and maps deeper in each other than 64";
        row("too_deep", flowDepth(64), {deep.arg(67)});
        row("deep_without_end", "a: " + QByteArray(60000, '['), {deep.arg(67)});
        row("deep_by_alias", "[&a " + flowDepth(60).mid(3) + ", [[[[*a]]]]]",
            {"1:131: with this alias, lists and maps are deeper in each other than 64"});
        row("long_line", "a: " + QByteArray(5000000, 'x') + "\n",
            {"1:1: the line is longer than 64 KiB: fold it"});
        const QString many =
            ": more than 4194304 values up to here, aliases counted as what they stand for, and "
            "long texts as several";
        row("bomb", bomb(12), {"7:36" + many});
        row("bomb_of_text",
            "a: &a " + QByteArray(60000, 'x') + "\nb:\n" + QByteArray("- *a\n").repeated(3000),
            {"2237:3" + many});
        row("merge_bomb", mergeChain(70),
            {"64:24: with this alias, lists and maps are deeper in "
             "each other than 64"});
        row("huge", QByteArray(65 * 1024 * 1024, '\n'),
            {"1:1: the file is larger than 64 MiB, which no project needs"});
    }
    void refuses()
    {
        QFETCH(QByteArray, text);
        QFETCH(QStringList, expected);
        YamlDocument document;
        YamlProblems problems("f");
        (void)YamlReader::read(text, &document, &problems);
        QCOMPARE(problems.lines(), expected);
        (void)dump(document.root(), true); // what is left can be walked
    }

    void stopsAfterFifty()
    {
        YamlDocument document;
        YamlProblems problems("f");
        QVERIFY(!YamlReader::read(QByteArray("a: 1\n").repeated(20000), &document, &problems));
        QCOMPARE(problems.count(), YamlProblems::kMost);
        QVERIFY(!document.root()); // half made, so not to be walked
    }

    void findsComments_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("line");
        QTest::newRow("none") << QByteArray("a#b: 'c # d'\ne: |\n  # f\n") << 0;
        QTest::newRow("after_value") << QByteArray("a: ü\nb: 1 # c\n") << 2;
        QTest::newRow("after_block_mark") << QByteArray("a: | # c\n  d\n") << 1;
        QTest::newRow("at_the_end") << QByteArray("a:\n  - 1\n\n#\n") << 4;
    }
    void findsComments()
    {
        QFETCH(QByteArray, text);
        YamlDocument document;
        YamlProblems problems("f");
        QVERIFY(YamlReader::read(text, &document, &problems));
        QTEST(document.firstCommentLine(), "line");
    }

    void spells_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("asText");
        QTest::addColumn<QString>("asWritten");
        const auto row = [](const char *text, const char *asText, const char *asWritten) {
            QTest::newRow(text) << text << asText << asWritten;
        };
        for (const char *bare :
             {"$NODEID+0x180", "0x2012:1", "C:\\x", "3 phases", "a#b", "-1 V", "ä"})
            row(bare, bare, bare);
        for (const char *number : {"12", "-5", "0xFF", "1.5", "0"})
            row(number, qPrintable('"' + QString(number) + '"'), number);
        for (const char *typed : {"",      "~",          "No",   "null", "1e3", "010",  "12:30",
                                  "1_000", "2024-01-31", ".inf", "+5",   "0o7", "a: b", "a #b",
                                  "[x]",   "-",          "- a",  "a:",   "*a",  "...",  " a",
                                  "@a",    "=",          "<<",   "a,b",  "? a"})
            row(typed, qPrintable('"' + QString(typed) + '"'),
                qPrintable('"' + QString(typed) + '"'));
        row("a\"\\b\t,", "\"a\\\"\\\\b\\t,\"", "\"a\\\"\\\\b\\t,\"");
    }
    void spells()
    {
        QFETCH(QString, text);
        using YamlScalar::Meaning;
        QTEST(YamlScalar::oneLine(text, Meaning::Text), "asText");
        QTEST(YamlScalar::oneLine(text, Meaning::Written), "asWritten");
    }

    void writes()
    {
        QByteArray text;
        QBuffer buffer(&text);
        QVERIFY(buffer.open(QIODevice::WriteOnly));
        YamlWriter writer(&buffer);
        writer.value("tessarine", YamlValue::number(1));
        writer.begin("lines");
        writer.begin("0");
        const YamlValue signal = YamlValue::map().add("name", YamlValue::text("12"));
        YamlValue members = YamlValue::map().add("1", signal).spread();
        writer.value(
            "0x2000",
            YamlValue::map().add("name", YamlValue::text("Motor")).add("members", members));
        writer.value("note", YamlValue::text("one\n\n  two\n"));
        writer.value("long", YamlValue::text(QString("word ").repeated(30).trimmed()));
        writer.value("list", YamlValue::list()
                                 << YamlValue::hex(0x1f, 4) << YamlValue::flag(false));
        YamlValue items = YamlValue::list();
        items << signal << YamlValue::map().add("a", signal).spread().add("b", signal);
        writer.value("items", items);
        writer.end();
        writer.begin("1");
        writer.end();
        QVERIFY(writer.finish());
        QCOMPARE(QString(text), QString(R"(tessarine: 1
lines:
  0:
    0x2000:
      name: Motor
      members:
        1: {name: "12"}
    note: |
      one

        two
    long: >-
      word word word word word word word word word word word word word word word word word word word word word
      word word word word word word word word word
    list: [0x001F, false]
    items:
      - {name: "12"}
      - a: {name: "12"}
        b: {name: "12"}
  1: {}
)"));
    }

    void comesBack()
    {
        const QByteArray given = qgetenv("TESSARINE_TEST_SEED");
        const quint32 seed =
            given.isEmpty() ? QRandomGenerator::system()->generate() : given.toUInt();
        qInfo() << "TESSARINE_TEST_SEED" << seed;
        QRandomGenerator random(seed);
        const QStringList pieces{"a",
                                 "word",
                                 " ",
                                 "  ",
                                 "\n",
                                 "\r\n",
                                 "\t",
                                 ": ",
                                 " #",
                                 "\"",
                                 "'",
                                 "\\",
                                 "-",
                                 "- ",
                                 "{",
                                 "]",
                                 ",",
                                 "|",
                                 ">",
                                 "&x",
                                 "*x",
                                 "!",
                                 "%",
                                 "@",
                                 "---",
                                 "...",
                                 "?",
                                 "0x1",
                                 "ü",
                                 "\u2028",
                                 "\u0085",
                                 "\u00A0",
                                 "\uFEFF",
                                 QString(QChar(0)),
                                 "\x7F",
                                 QString::fromUtf8("\xF0\x9F\x98\x80"),
                                 QString("long").repeated(40),
                                 QString(1200, 'x'),
                                 "<<"};
        for (int round = 0; round < 500; ++round) {
            QString text;
            for (int i = random.bounded(round % 50 == 0 ? 300 : 12); i > 0; --i)
                text += pieces.at(random.bounded(pieces.size()));
            YamlValue record = YamlValue::map().add(text, YamlValue::written(text));
            record.add("list", YamlValue::list() << YamlValue::text(text) << record);
            QByteArray bytes;
            QBuffer buffer(&bytes);
            QVERIFY(buffer.open(QIODevice::WriteOnly));
            YamlWriter writer(&buffer);
            writer.begin(text + "1");
            writer.value("r", record);
            QVERIFY(writer.finish());
            YamlDocument document;
            YamlProblems problems("f");
            QVERIFY2(YamlReader::read(bytes, &document, &problems) && problems.isEmpty(),
                     qPrintable(problems.lines().join('\n') + '\n' + bytes));
            const YamlNode::Entry top = document.root().entries().constFirst();
            QCOMPARE(top.key.text(), QString(text + "1"));
            const YamlNode read = top.value.entries().constFirst().value;
            QCOMPARE(read.entries().constFirst().key.text(), text);
            QCOMPARE(read.entries().constFirst().value.text(), text);
            const QVector<YamlNode> items = read.entries().constLast().value.items();
            QCOMPARE(items.at(0).text(), text);
            QCOMPARE(items.at(1).entries().constFirst().value.text(), text);
        }
    }
};

QTEST_GUILESS_MAIN(tst_Yaml)
#include "tst_yaml.moc"
