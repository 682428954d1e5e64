// Generated C as a device has it: compiled without warnings against a stack of our own, linked,
// run, and asked for its object dictionary and the calls of its start. What it must answer is read
// from the project alone.
#include "support/cohelper.h"
#include "tests/fixtures/generatorrun.h"
#include "tests/fixtures/storefixture.h"
#include "tests/stack/device.h"
#include "tests/stack/expectation.h"
#include "tests/stack/projects.h"

#include <QRegularExpression>

namespace
{

/// Definition of an application variable of the project; \a expression names it.
QString variableDeclaration(const QString &expression, quint16 dataType)
{
    static const QMap<quint16, QString> textTypes = {{9, "char"}, {10, "UNSIGNED8"}, {124, "char"}};
    if (expression.contains('('))
        return QString();
    const QString base = expression.section('[', 0, 0);
    const QString dimension = expression.contains('[') ? "[256]" : "";
    if (textTypes.contains(dataType))
        return QStringLiteral("%1 %2%3[256];\n").arg(textTypes.value(dataType), base, dimension);
    static const QStringList known = {"INTEGER8",   "INTEGER16",  "INTEGER24",  "INTEGER32",
                                      "UNSIGNED8",  "UNSIGNED16", "UNSIGNED24", "UNSIGNED32",
                                      "UNSIGNED40", "UNSIGNED48", "UNSIGNED64", "REAL32"};
    QString type = COHelper::index2DataTypeString(dataType);
    if (type == "TIME_OF_DAY")
        type = "UNSIGNED48";
    return QStringLiteral("%1 %2%3;\n")
        .arg(known.contains(type) ? type : "UNSIGNED8", base, dimension);
}

QString variableAddress(const QString &expression, quint16 dataType)
{
    if (expression.contains('('))
        return expression;
    const bool isText = dataType == 9 || dataType == 10 || dataType == 124;
    return isText ? QStringLiteral("&(%1[0])").arg(expression)
                  : QStringLiteral("&(%1)").arg(expression);
}

/// The application around the generated sources: its variables, its functions.
class Application
{
public:
    Application(ObjectDataBase &database, const Expectation &expected)
        : store(database), variables(expected.appVariables()), functions(expected.indications())
    {
    }

    void write(const QString &folder) const
    {
        QString declarations = "extern UNSIGNED8 cells[8];\n"
                               "extern UNSIGNED24 cells24[8];\n"
                               "#define CELL_OF(n) (&cells[n])\n"
                               "#define CELL24_OF(n) (&cells24[n])\n"
                               "UNSIGNED8 nodeIdOfLine(void);\n";
        QStringList bases;
        const bool isDefined = store.getGeneralSettingsValue("generate_variables") == "1";
        for (auto it = variables.begin(); it != variables.end() && !isDefined; ++it)
            bases << variableDeclaration(it.key(), it.value());
        bases.removeDuplicates();
        for (const QString &base : qAsConst(bases))
            declarations += base.isEmpty() ? QString() : "extern " + base;
        const bool isOwnHeader = store.getGeneralSettingsValue("applicationheader").isEmpty();
        if (isOwnHeader)
            store.setGeneralSettingsValue("applicationheader", "app_variables.h  app_more.h");
        writeFile(folder + "/app_more.h", "/* nothing */\n");
        if (isOwnHeader)
            writeFile(folder + "/app_variables.h", declarations.toUtf8());
        writeFile(folder + "/app.c", source(isOwnHeader ? declarations : projectHeader()).toUtf8());
    }

private:
    /// Variables of a header of the examples.
    static QString projectHeader()
    {
        return QString::fromUtf8(readFile(TESSARINE_EXAMPLES "/pump/pump_variables.h"));
    }

    QString source(const QString &declarations) const
    {
        QString text = "#include <stdio.h>\n#include \"stack.h\"\n";
        if (store.getGeneralSettingsValue("generate_variables") == "1")
            text += "#include <gen_extern_decl.h>\n";
        text +=
            QString(declarations)
                .replace(QRegularExpression("^extern ", QRegularExpression::MultilineOption), "");
        text += "UNSIGNED8 nodeIdOfLine(void) { return 1; }\n";
        text += "const APP_VARIABLE_T appVariables[] = {\n";
        for (auto it = variables.begin(); it != variables.end(); ++it)
            text += QStringLiteral("    { \"%1\", %2 },\n")
                        .arg(it.key(), variableAddress(it.key(), it.value()));
        text += "    { NULL, NULL }\n};\n" + stringPrinter();
        for (const QString &row : functions) {
            const QString name = row.section(' ', 2);
            text += QStringLiteral("void %1(void);\nvoid %1(void) { puts(\"%1\"); }\n").arg(name);
        }
        return text;
    }

    /// Prints the strings whose defaults generated code sets.
    QString stringPrinter() const
    {
        QString text =
            "void printAppStrings(void);\nvoid printAppStrings(void)\n{\n    unsigned i;\n"
            "    (void)i;\n";
        for (auto it = variables.begin(); it != variables.end(); ++it) {
            if (it.value() == 9 || it.value() == 10)
                text += QStringLiteral("    printf(\"string %1 \");\n"
                                       "    for (i = 0; i < 20; ++i)\n"
                                       "        printf(\"%02x\", (unsigned)(UNSIGNED8)%1[i]);\n"
                                       "    printf(\"\\n\");\n")
                            .replace("%1", it.key());
        }
        return text + "}\n";
    }

    ObjectDataBase &store;
    QMap<QString, quint16> variables;
    QStringList functions;
};

} // namespace

class tst_GeneratedC : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        device = std::make_unique<Device>(folder->path());
        // Set to look into the generated sources of a row.
        folder->setAutoRemove(!qEnvironmentVariableIsSet("GENERATED_C_KEEP"));
    }

    void means_data() { addCases(TEST_STACK "/projects/cases_canopen.txt", {"_classic", "_v4"}); }
    void means()
    {
        QFETCH(QString, project);
        store = makeStore();
        buildProject(*store, "line 0\n" + withParts(project));
        if (QString(QTest::currentDataTag()).endsWith("_v4"))
            store->setGeneralSettingsValue("use_core_headers", "V4");
        checkProject();
    }

    void pump_data() { addDialects(); }
    void pump()
    {
        QFETCH(bool, isV4);
        store = std::make_unique<ObjectDataBase>();
        QVERIFY(store->openDataBase(TESSARINE_EXAMPLES "/pump/pump.tsrt"));
        if (isV4)
            store->setGeneralSettingsValue("use_core_headers", "V4");
        checkProject();
        QVERIFY(!device->rows({"folded 0 "}).contains("folded 0 0"));
    }

private:
    void checkProject()
    {
        const Expectation expected(*store);
        Application(*store, expected).write(folder->path());
        for (const quint8 line : store->getNodes())
            store->cacheAllSubs(line, 0);
        const QStringList files = {"gen_objdict.c", "gen_vobjdict.c",   "gen_srdo.c",
                                   "gen_define.h",  "gen_indication.h", "gen_extern_decl.h"};
        QCOMPARE(runGenerators(*store, folder->path(), kDeviceName, files), QString());
        device->run({"main", "recorder", "recorder_canopen", "start_canopen", "walk"},
                    expected.stackFeatures());
        QVERIFY2(device->fault().isEmpty(), qPrintable(device->fault()));
        SAME_ROWS(device->rows({"object", "sub"}), expected.dictionary());
        SAME_ROWS(device->rows({"indication"}), expected.indications());
        SAME_ROWS(device->rows({"rows beyond", "  row ", "COBs"}), QStringList());
        for (const QString &row : device->rows({"lost failure"}))
            QVERIFY2(row.endsWith("coLedInit") || row.endsWith("coIdNegoInit") ||
                         row.endsWith("coOdInitOdPtr"),
                     qPrintable(row)); // these have no result
        SAME_ROWS(Device::rowsOf(device->section("overwrite\n"), {"call coOdSetCobid"}),
                  expected.cobIds());
        SAME_ROWS(device->rows({"virtual"}), expected.virtualObjects());
        SAME_ROWS(device->rows({"srdo"}), expected.safety());
        SAME_ROWS(device->rows({"string"}), expected.stringDefaults());
        const bool hasVariants = expected.choosesMaster() || expected.isSet("canfd_supported");
        for (int variant = hasVariants ? 0 : 1; variant <= 1; ++variant) {
            SAME_ROWS(device->startRows(variant, {"call", "  map", "  session", "  security"}),
                      expected.start(variant));
            const QStringList rows = device->startRows(variant, {"  "});
            for (const QString &row : expected.counts())
                QVERIFY2(rows.contains(row), qPrintable(row + "\n" + rows.join('\n').left(1500)));
        }
    }

    StoreFixture fixture;
    std::unique_ptr<ObjectDataBase> store;
    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<Device> device;
};

QTEST_GUILESS_MAIN(tst_GeneratedC)
#include "tst_generatedc.moc"
