// DBC files: what is read, what is told of it, and that it is what the writer of the tool was
// given.
#include "formats/dbcj1939.h"
#include "formats/dbcreader.h"
#include "formats/kvadblib.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/problemrecorder.h"

#include <random>

namespace
{

QString valuesOf(const QVector<DbcValue> &values)
{
    QStringList words;
    for (const DbcValue &value : values)
        words << QString::number(value.number) + '=' + value.text;
    return words.isEmpty() ? "" : " values(" + words.join(',') + ")";
}

/// What is there besides its name, in the order of the record.
QString detailsOf(const DbcFile &file, const DbcItem &item)
{
    QStringList words;
    for (const DbcAttribute &attribute : item.attributes)
        words << file.definitions[attribute.definition].name + '=' + attribute.text;
    return (item.longName == item.name ? "" : " long(" + item.longName + ")") +
           (words.isEmpty() ? "" : " {" + words.join(',') + "}") +
           (item.comment.isEmpty() ? "" : " \"" + item.comment + "\"");
}

QString shown(const DbcMultiplexing &multiplexing)
{
    QStringList words;
    for (const DbcRange &range : multiplexing.ranges)
        words << QString("%1-%2").arg(range.first).arg(range.last);
    return (multiplexing.isSwitch ? " M" : "") +
           (multiplexing.isSwitched ? " m(" + multiplexing.switchName + "=" + words.join(',') + ")"
                                    : QString());
}

QString shown(const DbcFile &file, const DbcSignal &signal)
{
    return "  " + signal.name + shown(signal.multiplexing) +
           QString(" %1|%2@%3%4")
               .arg(signal.startBit)
               .arg(signal.bits)
               .arg(signal.isBigEndian ? 0 : 1)
               .arg(signal.isSigned ? '-' : '+') +
           QString(" *%1+%2 %3..%4")
               .arg(signal.factor)
               .arg(signal.offset)
               .arg(signal.minimum)
               .arg(signal.maximum) +
           ' ' + signal.unit + " >" + signal.receivers.join(',') +
           (signal.valueType == DbcSignal::ValueType::Integer
                ? ""
                : QString(" type%1").arg(int(signal.valueType))) +
           (signal.isReplaced ? " replaced" : "") + detailsOf(file, signal) +
           valuesOf(signal.values);
}

QString shown(const DbcFile &file, const DbcMessage &message)
{
    QString text =
        QString("%1%2 %3 %4 from(%5)")
            .arg(message.identifier, 0, 16)
            .arg(message.isExtended ? "x" : "")
            .arg(message.name)
            .arg(message.size)
            .arg(message.sender) +
        (message.transmitters.isEmpty() ? "" : " by(" + message.transmitters.join(',') + ")") +
        (message.isReplaced ? " replaced" : "") + (message.isPseudo ? " pseudo" : "") +
        detailsOf(file, message) + '\n';
    for (const DbcSignal &signal : message.signalList)
        text += shown(file, signal) + '\n';
    return text;
}

/// A line for each record; nothing for what the file does not tell.
QString shown(const DbcFile &file)
{
    QString text = file.version.isEmpty() ? "" : "version " + file.version + '\n';
    text += file.bitTiming.isEmpty() ? "" : "timing " + file.bitTiming + '\n';
    const QString network = detailsOf(file, file.network);
    text += network.isEmpty()
                ? ""
                : "network" + network.mid(network.startsWith(" long()") ? 7 : 0) + '\n';
    for (const DbcNode &node : file.nodes)
        text += "node " + node.name + detailsOf(file, node) + '\n';
    for (const DbcValueTable &table : file.valueTables)
        text += "table " + table.name + valuesOf(table.values) + '\n';
    for (const DbcMessage &message : file.messages)
        text += shown(file, message);
    for (const DbcVariable &variable : file.variables)
        text += "variable " + variable.name + detailsOf(file, variable) +
                valuesOf(variable.values) + '\n';
    return text;
}

} // namespace

class TestDbcReader : public QObject
{
    Q_OBJECT

private slots:
    void cases_data() { addCases(TEST_CASES "/dbcreader.txt"); }
    void cases()
    {
        const auto [text, expected] = fetchRow<QString, QString>();
        const ProblemRecorder problems;
        DbcReader reader;
        (void)reader.parse(text.toUtf8(), QString());
        reader.tellProblems();
        const QString told = problems.lines.join('\n') + '\n';
        const QString found = caseGroup() == "problems" ? told : shown(reader.file());
        QVERIFY2(found == expected, qPrintable(found));
        QVERIFY2(caseGroup() != "records" || problems.lines.isEmpty(), qPrintable(told));
    }

    void encodings_data()
    {
        columns<QByteArray, QString>("bytes", "unit");
        QTest::newRow("utf_8") << QByteArray("\xC2\xB0"
                                             "C")
                               << "\u00B0C";
        QTest::newRow("windows_1252") << QByteArray("\xB0"
                                                    "C \x80")
                                      << "\u00B0C \u20AC";
        QTest::newRow("cut_utf_8") << QByteArray("\xC2") << "\u00C2";
        QTest::newRow("control") << QByteArray("a\x01"
                                               "b")
                                 << "a b";
    }
    void encodings()
    {
        const auto [bytes, unit] = fetchRow<QByteArray, QString>();
        for (const QByteArray &mark : {QByteArray(), QByteArray("\xEF\xBB\xBF")}) {
            for (const char *end : {"\n", "\r\n", "\r"}) {
                DbcReader reader;
                const QByteArray head =
                    mark + "BO_ 1 A: 8 X" + end + " SG_ s : 0|8@1+ (1,0) [0|0] \"";
                QVERIFY(reader.parse(head + bytes + "\" X" + end + "CM_ \"a" + end + "b\";",
                                     QString()));
                QCOMPARE(reader.file().messages.value(0).signalList.value(0).unit, unit);
                QCOMPARE(reader.file().messages[0].signalList[0].place.line, 2);
                QCOMPARE(reader.file().network.comment, "a\nb");
            }
        }
    }

    /// Whatever the file is full of, it takes no longer than its size does.
    void longFiles_data()
    {
        columns<QByteArray>("part");
        QTest::newRow("one_line") << QByteArray("CM_ \"a\" /* b */; VAL_ 1 a 1 \"b\"; ");
        QTest::newRow("quotes") << QByteArray("CM_ \"\n");
        QTest::newRow("escaped_quotes") << QByteArray("SIG_GROUP_ \\\"\n");
        QTest::newRow("comments") << QByteArray("CM_ \"/*\n");
        QTest::newRow("inner_quotes") << QByteArray("CM_ \"a \"b\" c\";");
        QTest::newRow("numbers") << QByteArray("9e9+");
        QTest::newRow("nodes") << QByteArray("BU_: a a a,\n");
        QTest::newRow("messages") << QByteArray("BO_ 1 A: 8 X SG_ a:0|99@0-\"\"X ");
        QTest::newRow("attributes") << QByteArray("BA_ \"a\" BO_ 1 1;BA_DEF_ \"b\" INT;");
    }
    void longFiles()
    {
        const auto [part] = fetchRow<QByteArray>();
        const QByteArray many = part.repeated(1000000 / part.size());
        DbcReader reader;
        (void)reader.parse(many, QString());
        (void)reader.parse("CM_ \"\n" + many + "*/ x \"", QString());
    }

    void refusals()
    {
        DbcReader reader;
        QVERIFY(!reader.parse("[1000]\nParameterName=a\n", QString()));
        QCOMPARE(reader.whyNotRead(), "it holds no statement of a DBC file");
        QVERIFY(!reader.parse(QByteArray(int(DbcReader::kMostBytes) + 1, '\n'), QString()));
        QCOMPARE(reader.whyNotRead(), "it is larger than 64 MiB");
        QVERIFY(!reader.read("/"));
        QCOMPARE(reader.whyNotRead(), "it is a folder");
        QVERIFY(reader.parse("VERSION \"\"", QString()) && reader.whyNotRead().isEmpty());
    }

    void nodesAreBounded()
    {
        QByteArray text = "BU_:";
        for (int node = 0; node < 70000; ++node)
            text += " n" + QByteArray::number(node);
        DbcReader reader;
        QVERIFY(reader.parse(text + "\nBO_ 1 A: 8 n69999\n", QString()));
        QCOMPARE(reader.file().nodes.size(), 65536);
        QCOMPARE(reader.file().messages.value(0).sender, "n69999");
    }

    void identifiersOfJ1939_data()
    {
        columns<quint32, QString>("identifier", "parts");
        QTest::newRow("to_one_address") << 0x18EA27F9u << "6/59904/249/39/true";
        QTest::newRow("to_all") << 0x18FEF1FEu << "6/65265/254/255/false";
        QTest::newRow("data_pages") << 0x0FEF0102u << "3/257792/2/1/true";
        QTest::newRow("last_of_pdu1_in_page_1") << 0x01F00000u << "0/126976/0/255/false";
    }
    void identifiersOfJ1939()
    {
        const auto [identifier, parts] = fetchRow<quint32, QString>();
        const DbcJ1939::Identifier id = DbcJ1939::identifierOf(identifier);
        QCOMPARE(joined(id.priority, id.group, id.source, id.destination, id.isPdu1), parts);
    }

    void filesOfJ1939_data()
    {
        columns<QString, QString>("text", "whatIsJ1939");
        const QString frame = "BA_DEF_ BO_ \"VFrameFormat\" ENUM \"a\",\"J1939PG\";";
        const QString network = "BA_DEF_ \"ProtocolType\" STRING; BA_ \"ProtocolType\" \"J1939\";";
        QTest::newRow("nothing") << ""
                                 << "0/00";
        QTest::newRow("network") << network << "1/01";
        QTest::newRow("other_network") << QString(network).replace("\"J1939", "\"CAN") << "0/00";
        QTest::newRow("message") << frame + "BA_ \"VFrameFormat\" BO_ 2147483650 1;"
                                 << "1/01";
        QTest::newRow("default") << frame + "BA_DEF_DEF_ \"VFrameFormat\" \"J1939PG\";"
                                 << "1/01";
        QTest::newRow("other_message") << network + frame + "BA_ \"VFrameFormat\" BO_ 2147483650 0;"
                                       << "1/00";
        QTest::newRow("number")
            << "BA_DEF_ BO_ \"VFrameFormat\" INT 0 9;BA_ \"VFrameFormat\" BO_ 2147483650 3;"
            << "1/01";
    }
    void filesOfJ1939()
    {
        const auto [text, whatIsJ1939] = fetchRow<QString, QString>();
        DbcReader reader;
        QVERIFY(reader.parse(("BO_ 1 A: 8 X\nBO_ 2147483650 B: 8 X\n" + text).toUtf8(), QString()));
        const DbcFile &file = reader.file();
        QString found = QString::number(DbcJ1939::isJ1939(file)) + '/';
        for (const DbcMessage &message : file.messages)
            found += QString::number(DbcJ1939::isJ1939(file, message));
        QCOMPARE(found, whatIsJ1939);
    }

    /// With names and texts of all kinds, from the seed.
    void readsWhatIsWritten()
    {
        std::mt19937 random(testSeed());
        const auto below = [&random](quint32 limit) { return random() % limit; };
        const auto word = [&](const QString &letters, quint32 most) {
            QString text;
            for (quint32 size = below(most + 1); quint32(text.size()) < size;)
                text += letters[int(below(quint32(letters.size())))];
            return text;
        };
        const QString textLetters = QString::fromUtf8("a\"\\ ;\nSG_\u00E4\u20AC");
        KvaDbHnd database = nullptr;
        QCOMPARE(kvaDbOpen(&database), kvaDbOK);
        QCOMPARE(kvaDbCreate(database, QString(), nullptr), kvaDbOK);
        KvaDbAttributeDefHnd number =
            define(database, "n", KvaDbAttributeOwner::Message, KvaDbAttributeType::Integer);
        (void)kvaDbSetAttributeDefinitionInt(number, 5, -9, 9);
        KvaDbAttributeDefHnd choice =
            define(database, "w", KvaDbAttributeOwner::Signal, KvaDbAttributeType::Enumeration);
        for (const char *name : {"no", "a \"b\""})
            (void)kvaDbAddAttributeDefinitionEnum(choice, name, name[0] == 'n' ? 0 : 1);
        (void)kvaDbSetAttributeDefinitionEnumDefault(choice, 1);
        KvaDbAttributeDefHnd text =
            define(database, "t", KvaDbAttributeOwner::Database, KvaDbAttributeType::String);
        (void)kvaDbSetAttributeDefinitionString(text, "none");
        KvaDbAttributeHnd attribute = nullptr;
        (void)kvaDbAddAttribute(database, text, &attribute);
        (void)kvaDbSetAttributeValueString(attribute, "say \"on\" \\ off", 99);

        QString expected = "network {t=say \"on\" \\ off}\n";
        for (quint32 i = 0; i < 30; ++i) {
            const bool isExtended = below(2) == 1;
            const quint32 identifier = isExtended ? 0x1FFF0000 + i : i;
            const QString name = QString("M%1_").arg(i) + word("abc_", 60);
            const QString comment = word(textLetters, 20);
            const int value = int(below(19)) - 9;
            KvaDbMessageHnd message = nullptr;
            (void)kvaDbAddMsg(database, &message);
            (void)kvaDbSetMsgName(message, name);
            (void)kvaDbSetMsgComment(message, comment);
            (void)kvaDbSetMsgId(message, identifier, isExtended ? KVADB_MESSAGE_EXT : 0);
            (void)kvaDbSetMsgDlc(message, 64);
            (void)kvaDbAddMsgAttribute(message, number, &attribute);
            (void)kvaDbSetAttributeValueInt(attribute, value);
            const auto details = [&](const char *longName, const QString &given,
                                     const QString &first, const QString &note) {
                const QString shortened = given.left(32);
                return (given == shortened ? "" : " long(" + given + ")") + " {" + first +
                       (given == shortened ? "" : "," + QString(longName) + "=" + given) + "}" +
                       (note.isEmpty() ? "" : " \"" + note + "\"");
            };
            expected +=
                QString("%1%2 ").arg(identifier, 0, 16).arg(isExtended ? "x" : "") + name.left(32) +
                " 64 from()" +
                details("SystemMessageLongSymbol", name, QString("n=%1").arg(value), comment) +
                '\n';
            for (quint32 s = 0; s < below(5); ++s) {
                const QString signalName = QString("S%1_").arg(s) + word("abc_", 60);
                const QString signalComment = word(textLetters, 20);
                const int start = int(below(400));
                const int bits = 1 + int(below(16));
                KvaDbSignalHnd signal = nullptr;
                (void)kvaDbAddSignal(message, &signal);
                (void)kvaDbSetSignalName(signal, signalName);
                (void)kvaDbSetSignalComment(signal, signalComment);
                (void)kvaDbSetSignalValueSize(signal, start, bits);
                (void)kvaDbAddSignalAttribute(signal, choice, &attribute);
                (void)kvaDbSetAttributeValueEnumeration(attribute, 1);
                expected +=
                    "  " + signalName.left(32) +
                    QString(" %1|%2@1+ *1+0 0..%3  >").arg(start).arg(bits).arg((1 << bits) - 1) +
                    details("SystemSignalLongSymbol", signalName, "w=a \"b\"", signalComment) +
                    '\n';
            }
        }
        QTemporaryDir folder;
        QCOMPARE(kvaDbWriteFile(database, folder.filePath("a.dbc")), kvaDbOK);
        (void)kvaDbClose(database);
        const ProblemRecorder problems;
        DbcReader reader;
        QVERIFY(reader.read(folder.filePath("a.dbc")));
        reader.tellProblems();
        QCOMPARE(problems.lines, QStringList());
        QCOMPARE(shown(reader.file()), expected);
        QStringList definitions;
        for (const DbcAttributeDefinition &definition : reader.file().definitions)
            definitions << joined(definition.name, int(definition.owner), int(definition.type),
                                  definition.minimum, definition.maximum,
                                  definition.words.join('|'), definition.defaultValue);
        QCOMPARE(definitions.mid(0, 3),
                 QStringList({"n/2/0/-9/9//5", "w/3/4/0/0/no|a \"b\"/a \"b\"", "t/0/3/0/0//none"}));
    }

    void randomBytes()
    {
        static const char *const kParts[] = {
            "BO_ ", "SG_ ", "CM_ ", "BA_ ", "VAL_ ", "BA_DEF_ ", "EV_ ", "1 ", "a ",  "\"",
            "\\",   "\n",   ";",    ":",    "|",     "@1+ ",     "(",    ",",  ")",   "[",
            "]",    "M ",   "m1 ",  "INT ", "ENUM ", "/*",       "*/",   "//", "\xE4"};
        std::mt19937 random(testSeed());
        for (int run = 0; run < 300; ++run) {
            QByteArray text;
            for (int i = 0; i < 400; ++i)
                text += kParts[random() % std::size(kParts)];
            DbcReader reader;
            (void)reader.parse(text, QString()); // any answer will do, it must come
        }
    }

private:
    static KvaDbAttributeDefHnd define(KvaDbHnd database, const char *name,
                                       KvaDbAttributeOwner owner, KvaDbAttributeType type)
    {
        KvaDbAttributeDefHnd definition = nullptr;
        (void)kvaDbAddAttributeDefinition(database, &definition);
        (void)kvaDbSetAttributeDefinitionName(definition, name);
        (void)kvaDbSetAttributeDefinitionOwner(definition, owner);
        (void)kvaDbSetAttributeDefinitionType(definition, type);
        return definition;
    }
};

QTEST_GUILESS_MAIN(TestDbcReader)
#include "tst_dbcreader.moc"
