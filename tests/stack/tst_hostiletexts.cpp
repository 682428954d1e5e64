// Texts that try to leave their place, in all columns of a project at once: the generated files
// must say the same as with texts that do not. What C says is what a preprocessor leaves of it.
#include "formats/csvreader.h"
#include "generators/ctext.h"
#include "generators/descriptions/edsgenerator.h"
#include "generators/descriptions/htmlpage.h"
#include "generators/outputname.h"
#include "store/columns.h"
#include "tests/fixtures/generatorrun.h"
#include "tests/fixtures/storefixture.h"
#include "tests/stack/device.h"
#include "tests/unit/generators/dbcreader.h"

#include <QProcess>
#include <QXmlStreamReader>

namespace
{

const QString kHarmless = QStringLiteral("harmless");

// clang-format off
constexpr const char *kDescriptionKeys[] = {
    "VendorName", "ProductName", "OrderCode", "FileVersion", "FileRevision", "CreatedBy", "ModifiedBy",
    "BaudRate_125", "LSS_Supported", "Granularity", "Dummy0005", "Comment",
};
constexpr const char *kFunctionKeys[] = {"fct_sync", "fct_nmt", "fct_store", "fct_sdo_server_check_write"};
/// Values of defines; those of lists are checked elsewhere.
constexpr const char *kDefineKeys[] = {"co_network_id", "co_timer_interval", "co_srdo_interval"};
// clang-format on

/// Those of all readers.
const QRegularExpression kLineEnds("\r\n|[\n-\r\x1c-\x1e\u0085\u2028\u2029]");

/// Fills all columns of \a record that hold text.
template <class Record, size_t N>
void fillTexts(Record &record, const Column<Record> (&columns)[N], const QString &text)
{
    for (const Column<Record> &column : columns) {
        const bool isVariable = QLatin1String(column.name) == QLatin1String("varname");
        if (column.get(record).type() == QVariant::String)
            column.set(record, isVariable ? "(&cell) // " + text : text);
    }
}

/// Makes projects whose texts are all the same.
class Builder
{
public:
    Builder(ObjectDataBase &database, const QString &content) : store(database), text(content) {}

    void addCANopen(quint8 line)
    {
        startLine(line, 1);
        constexpr quint16 kTypes[] = {1, 4, 5, 7, 8, 9, 10, 15, 22, 27, 124};
        for (quint16 index : {0x1000, 0x1018, 0x1A00, 0x2000, 0x2001, 0x2002, 0x6000}) {
            IndexData object;
            fillTexts(object, kIndexColumns, text);
            object.objectCode = CANopen::ObjectCode::Record;
            object.metadata = {{"note", text}};
            store.addIndex(line, index, object);
            quint8 number = 0;
            for (const quint16 type : kTypes)
                addSub(line, index, number++, type);
        }
        store.setDescriptionSettingsLine(line);
        for (const char *key : kDescriptionKeys)
            store.setDescriptionSettingsValue(key, text);
        store.setUDSServiceActive(line, 0x31, true);
        store.setUDSServiceSessions(line, 0x31, text);
        store.setUDSServiceUserLevels(line, 0x31, text);
    }

    void addJ1939(quint8 line)
    {
        startLine(line, 2);
        for (const int direction : {0x55, 0x77}) {
            PgnData group;
            fillTexts(group, kPgnColumns, text);
            group.direction = quint8(direction);
            group.number = 65280 + quint32(direction);
            group.isSafe = direction == 0x77;
            group.mappingCount = 3;
            store.addPGN(line, group.number, group);
            for (quint32 number = 1; number <= 3; ++number) {
                SpnData spn = makeSignal<SpnData>(kSpnColumns, number);
                store.addSPN(line, group.number, group.direction, number, spn);
            }
        }
    }

    void addRaw(quint8 line)
    {
        startLine(line, 4);
        CanIdData frame;
        fillTexts(frame, kCanIdColumns, text);
        frame.direction = 0x55;
        frame.id = 291;
        frame.mappingCount = 3;
        store.addCANID(line, frame.id, frame);
        for (quint32 number = 1; number <= 3; ++number) {
            auto item = makeSignal<DataElementData>(kDataElementColumns, number);
            store.addDataElement(line, frame.id, frame.direction, number, item);
        }
    }

    void addSettings()
    {
        for (const char *key : kFunctionKeys)
            store.setGeneralSettingsValue(key, text);
        for (const char *key : kDefineKeys)
            store.setGeneralSettingsValue(key, "1 /* " + text);
        store.setGeneralSettingsValue("targetsettings_0_name", text);
        store.setGeneralSettingsValue("target_id", "MINE // " + text);
        store.setGeneralSettingsValue("static_memory_specifier", "/**/ // " + text);
        store.setGeneralSettingsValue("applicationheader", "\"hostile.h\" <hostile.h>");
        store.setGeneralSettingsValue("user_defines", "#define FREE \\");
        store.setGeneralSettingsValue("hw_defines", "#define FREE2 ?\?/");
        for (const char *key :
             {"all_targets", "canfd_supported", "udsserver_supported", "generate_string_defaults",
              "init_static_variables", "udsclient_supported", "overwrite_predef"})
            store.setGeneralSettingsValue(key, "1");
        store.setJ1939SettingsValue("startaddress", "128");
        store.setJ1939SettingsValue("safetysupport", "1");
        store.setJ1939SettingsValue("j1939adapter", "1");
        store.setJ1939SettingsValue("sdm_timer_interval", "1 // " + text);
    }

private:
    void startLine(quint8 line, int type)
    {
        NodeData node;
        fillTexts(node, kNodeColumns, text);
        if (!store.existNode(line))
            store.addNode(line, node);
        store.setGeneralSettingsValue(QString("line%1type").arg(line), QString::number(type));
    }

    void addSub(quint8 line, quint16 index, quint8 number, quint16 type)
    {
        SubIndexData sub;
        fillTexts(sub, kSubIndexColumns, text);
        sub.dataType = type;
        sub.size = 40;
        sub.implementation = index >= 0x2000 && index < 0x2003 ? quint8(index - 0x2000) : 0;
        sub.limitInEds = true;
        sub.writeDefaultToEds = 2;
        sub.pdoMapping = PDOMapping(PDOMappingType::Rpdo);
        sub.metadata = {{"subdefine", text}, {"eds_datatype", text}};
        store.addSubIndex(line, index, number, sub);
    }

    template <class Signal, size_t N>
    Signal makeSignal(const Column<Signal> (&columns)[N], quint32 number) const
    {
        Signal signal;
        fillTexts(signal, columns, text);
        signal.number = number;
        signal.pos = qint16(number);
        signal.dataType = 5;
        signal.implementation = number == 1 ? 0 : 2;
        return signal;
    }

    ObjectDataBase &store;
    QString text;
};

/// What is left of C for a compiler: directives, then words and signs. Strings and the names and
/// values that the texts give are the same.
QStringList compiledText(const QString &folder, const QString &file, const QString &text)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(TEST_C_COMPILER, {"-E", "-P", "-dD", "-std=c99", "-I.",
                                    "-I" TEST_STACK "/include", "-I" TEST_STACK, file});
    if (!process.waitForFinished(kLongestWaitMs) || process.exitCode() != 0)
        return {"failed: " + QString::fromUtf8(process.readAll())};
    QString code = QString::fromUtf8(process.readAll());
    code.replace(QRegularExpression("\"(\\\\.|[^\"\\\\\n])*\""), "\"\"")
        .replace(QRegularExpression("(\"\"\\s*)+"), "\"\" ")
        .replace(QRegularExpression("(#define (?:CO_NETWORK_ID|(?:CO|CORE)_TIMER_INTERVAL|"
                                    "CO_SRDO_TIMER_INTERVAL|GEN_GENERATION_COUNT)) .*"),
                 "\\1")
        .replace(QRegularExpression("#define ((L\\d_)?(ID|I|S|PGN|SPN)_|[A-Z_0-9]* *0x)\\S*"),
                 "#define (name)")
        .replace(QRegularExpression("(0x[0-9a-f]{2}\\b,?\\s*)+"), "(bytes)")
        .replace(QRegularExpression("\\b" + QRegularExpression::escape(CText::name(text)) + "\\b"),
                 kHarmless);
    QStringList words;
    for (const QString &line : code.split('\n')) {
        words << (line.startsWith('#') ? line.simplified() : QString());
        if (!line.startsWith('#'))
            words << line.simplified().split(' ');
    }
    words.removeAll(QString());
    return words;
}

/// Sections and keys, read by a reader that knows line ends of all kinds.
QStringList edsText(const QString &content)
{
    QStringList rows;
    for (const QString &line : content.split(kLineEnds)) {
        static const QRegularExpression varies("^(;.*|Lines|Line\\d+|)$"); // number of lines
        const QString key = line.section('=', 0, 0);
        if (!varies.match(key).hasMatch())
            rows << key + (line.contains(QChar(0)) ? "NUL" : "");
    }
    return rows;
}

QStringList csvText(const QString &content)
{
    QStringList rows;
    CsvReader reader(content);
    while (reader.next())
        rows << QString::number(reader.fields().size()) + ' ' + reader.fields().mid(0, 4).join(' ');
    rows << QString::number(content.count(QChar(0)));
    return rows;
}

QStringList dbcText(const QByteArray &content)
{
    const StrictDbc::DbcReader reader(content);
    const auto keysOf = [](QMap<QString, QString> attributes) {
        attributes.remove("SystemMessageLongSymbol"); // of names that are too long
        attributes.remove("SystemSignalLongSymbol");
        return QStringList(attributes.keys()).join(' ');
    };
    QStringList rows = {reader.fault};
    for (auto it = reader.messages.begin(); it != reader.messages.end(); ++it) {
        rows << QString::number(it.key()) + keysOf(it->attributes);
        for (const StrictDbc::DbcSignal &signal : it->signalList)
            rows << joined(signal.start, signal.bits) + keysOf(signal.attributes);
    }
    return rows;
}

QStringList xmlText(const QByteArray &content)
{
    QStringList rows;
    QXmlStreamReader xml(content);
    while (!xml.atEnd()) {
        xml.readNext();
        QString row = xml.isCharacters() ? QString() : xml.tokenString() + xml.name().toString();
        for (const QXmlStreamAttribute &attribute : xml.attributes())
            row += ' ' + attribute.name().toString();
        rows << row;
    }
    rows.removeAll(QString());
    rows << xml.errorString();
    return rows;
}

/// Tags; descriptions may have some of their own.
QStringList htmlText(QString content, const QString &text)
{
    content.remove(HtmlText::stringConvert(text))
        .remove(QRegularExpression("^<!--(.|\n)*?--!?>")); // holds the project's name
    QStringList rows;
    auto tags = QRegularExpression("<[A-Za-z/!?][^>]*>?").globalMatch(content);
    while (tags.hasNext())
        rows << tags.next().captured();
    static const QRegularExpression rowsOfLines("(<tr>\n<td>\n</td>\n</tr>\n)+");
    return rows.join('\n').replace(rowsOfLines, "(lines)\n").split('\n');
}

/// Labels of lines, and how many fields those of J1939 have.
QStringList documentText(const QString &content)
{
    const bool isJ1939 = content.startsWith("PGN/SPN");
    const QRegularExpression label(isJ1939 ? "^\\s*(PGN|SPN):"
                                           : "^\\s*(Index|Sub|DataType|AccessType):");
    QStringList rows;
    for (const QString &line : content.split(kLineEnds)) {
        const QString word = label.match(line).captured(1);
        if (!word.isEmpty())
            rows << word + (isJ1939 ? QString::number(line.count('\t')) : "");
    }
    return rows;
}

} // namespace

class tst_HostileTexts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QSettings("Korvel", "CANopen Tessarine").setValue("General/implinfo", 1);
    }

    void stay_data()
    {
        columns<QString, bool>("text", "isV4");
        // clang-format off
        const QMap<QString, QString> texts = {
            {"function", "*/ int evil(void){return 0;} /*"},
            {"line", "a\nint evil;\r#define evil 1\r\n#error evil"},
            {"backslash", "x*\\\n/ int evil; /\\\n* \\"},
            {"trigraph", "x*?\?/\n/ ?\?/"},
            {"quote", "\"; int evil; //\\\""}, // settings can hold no apostrophe
            {"markup", "]]>--></td></tr></html><b c=\"d\"&amp;"},
            {"script", "<script>evil</script><!--"},
            {"cells", "a,b;\"c\"\n;d"},
            {"nul", QString("a") + QChar(0) + "evil*" + QChar(0) + "/\x1b[2J"},
            {"section", "x\n[1018]\nParameterName=evil\u2028[1000]\u0085DataType=1\nIndex: "
                "0x1000\n\nPGN:\t1\tName:\tevil"},
            {"signal", "SG_ evil : 0|8@1+ (1,0) [0|1] \"\" V\";\n SG_ evil : 0|8\nBA_ \"SPN\" 1;"},
        };
        // clang-format on
        for (auto text = texts.begin(); text != texts.end(); ++text)
            QTest::addRow("%s", qPrintable(text.key())) << text.value() << false;
        for (const char *v4 : {"function", "backslash"})
            QTest::addRow("%s_v4", v4) << texts.value(v4) << true;
    }

    void stay()
    {
        const auto [text, isV4] = fetchRow<QString, bool>();
        for (const char *lines : {"1", "2", "124"}) {
            const QMap<QString, QStringList> expected = meaningOf(lines, kHarmless, isV4);
            const QMap<QString, QStringList> actual = meaningOf(lines, text, isV4);
            QCOMPARE(actual.keys(), expected.keys());
            for (auto file = expected.begin(); file != expected.end(); ++file) {
                QVERIFY2(!file->isEmpty(), qPrintable(file.key()));
                const QByteArray found = difference(actual.value(file.key()), *file);
                QVERIFY2(found.isEmpty(), qPrintable(file.key()) + (" of " + found));
            }
        }
    }

private:
    /// What the files of a project with such lines say, by their names.
    static QMap<QString, QStringList> meaningOf(const char *lines, const QString &text, bool isV4)
    {
        QTemporaryDir folder;
        const QString project = QString(text).remove('/').remove(QChar(0)).left(40);
        folder.setAutoRemove(!qEnvironmentVariableIsSet("GENERATED_C_KEEP"));
        const auto store = makeStore();
        store->beginBatch();
        Builder builder(*store, text);
        quint8 line = 0;
        for (const char *type = lines; *type; ++type, ++line)
            *type == '1'   ? builder.addCANopen(line)
            : *type == '2' ? builder.addJ1939(line)
                           : builder.addRaw(line);
        builder.addSettings();
        if (isV4)
            store->setGeneralSettingsValue("use_core_headers", "V4");
        store->commitBatch();
        writeFile(folder.filePath("hostile.h"), "extern unsigned char cell;\n");
        const QString error = runGenerators(*store, folder.path(), project);
        EDSGenerator description(EdsVariants(*store, 0), QString(), false, false);
        if (*lines == '1')
            (void)runJob(description, *store, folder.path(), project);
        return meaningOf(folder.path(), project, text, error);
    }

    static QMap<QString, QStringList> meaningOf(const QString &folder, const QString &project,
                                                const QString &text, const QString &error)
    {
        QMap<QString, QStringList> meaning = {{"error", {error}}};
        for (const QString &file : QDir(folder).entryList(QDir::Files)) {
            const QByteArray bytes = readFile(folder + '/' + file);
            const QString content = QString::fromUtf8(bytes);
            const QString kind = QFileInfo(file).suffix();
            QStringList &rows =
                meaning[QString(file).replace(OutputName::withoutControls(project), "%1")];
            if (kind == "c" || kind == "h")
                rows = compiledText(folder, file, text);
            else if (kind == "eds")
                rows = edsText(content);
            else if (kind == "csv" || kind == "icsv")
                rows = csvText(content);
            else if (kind == "dbc")
                rows = dbcText(bytes);
            else if (kind == "xdd")
                rows = xmlText(bytes);
            else if (kind == "html")
                rows = htmlText(content, text);
            else
                rows = documentText(content);
        }
        return meaning;
    }

    StoreFixture fixture;
};

QTEST_GUILESS_MAIN(tst_HostileTexts)
#include "tst_hostiletexts.moc"
