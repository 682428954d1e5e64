// The page docs/from-a-file.md as a user follows it: all its commands run and print what it says,
// and the C that comes of them compiles without warnings and starts on a stack of our own, with
// what the project says that the page ends with.
#include "tests/fixtures/storefixture.h"
#include "tests/stack/device.h"
#include "tests/stack/expectation_j1939.h"

#include <QProcess>

class tst_FromAFile : public QObject
{
    Q_OBJECT

private slots:
    void sections_data()
    {
        columns<QString>("section");
        const QString page = readFile(TESSARINE_EXAMPLES "/../docs/from-a-file.md");
        for (const QString &section : page.split("\n## ").mid(1)) {
            if (section.contains("```sh\n"))
                QTest::newRow(qPrintable(section.section('\n', 0, 0))) << section;
        }
    }
    void sections()
    {
        QFETCH(QString, section);
        QTemporaryDir folder;
        root = folder.path();
        const QStringList examples = {"empty/empty.yaml", "imports/drive.eds", "imports/engine.dbc",
                                      "imports/encoder.xdd"};
        for (const QString &file : examples) {
            QVERIFY(QDir(root).mkpath("examples/" + file.section('/', 0, 0)));
            QVERIFY(QFile::copy(TESSARINE_EXAMPLES "/" + file, root + "/examples/" + file));
        }
        followPage(section);
        if (QTest::currentTestFailed())
            return;
        const QStringList projects = QDir(root).entryList({"*.yaml"});
        QCOMPARE(projects.size(), 1);
        ObjectDataBase store;
        QVERIFY(store.openDataBase(root + '/' + projects.first()));
        if (store.getNodes().size() == 1)
            checkDevice(store);
    }

private:
    /// Runs the blocks of commands; the rows of the block behind one are rows of its output. Only
    /// one that shows an error ends with one.
    void followPage(const QString &section)
    {
        const QStringList blocks = section.split("```");
        for (int i = 1; i < blocks.size(); i += 2) {
            if (!blocks[i].startsWith("sh\n"))
                continue;
            const QString shown = blocks.value(i + 2).startsWith("text\n") ? blocks[i + 2] : "";
            int exitCode = 0;
            const QStringList output = runShell(blocks[i].mid(3), &exitCode);
            QVERIFY2((exitCode != 0) == shown.contains(": error: "),
                     qPrintable(blocks[i] + output.join('\n')));
            for (const QString &row : shown.split('\n', Qt::SkipEmptyParts).mid(1))
                QVERIFY2(output.contains(row), qPrintable(row + '\n' + output.join('\n')));
        }
    }

    QStringList runShell(const QString &commands, int *exitCode) const
    {
        QProcess shell;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("PATH", QFileInfo(TEST_TOOL).path() + ':' + environment.value("PATH"));
        environment.insert("HOME", root);
        shell.setProcessEnvironment(environment);
        shell.setWorkingDirectory(root);
        shell.setProcessChannelMode(QProcess::MergedChannels);
        shell.start("sh", {"-ec", commands});
        const bool isDone = shell.waitForFinished(kLongestWaitMs);
        *exitCode = isDone ? shell.exitCode() : -1;
        return QString::fromUtf8(shell.readAll()).split('\n');
    }

    /// Nothing is added to what was generated but the table by which the test knows variables.
    void checkDevice(ObjectDataBase &store)
    {
        J1939Expectation group(store);
        const Expectation &object = group.common();
        const bool isJ1939 = object.typeOf(0) == 2;
        const QStringList names =
            isJ1939 ? group.appVariables().keys() : object.appVariables().keys();
        QString text = "#include \"stack.h\"\n#include <gen_extern_decl.h>\n"
                       "const APP_VARIABLE_T appVariables[] = {\n";
        for (const QString &name : names)
            text += QStringLiteral("    { \"%1\", &%1 },\n").arg(name);
        const QString firmware = root + "/firmware";
        QVERIFY(writeFile(firmware + "/app.c", (text + "    { NULL, NULL }\n};\n").toUtf8()));
        Device device(firmware);
        device.run(
            isJ1939 ? QStringList{"main", "recorder", "recorder_j1939", "signals", "start_j1939",
                                  "walk"}
                    : QStringList{"main", "recorder", "recorder_canopen", "start_canopen", "walk"},
            object.stackFeatures());
        QVERIFY2(device.fault().isEmpty(), qPrintable(device.fault()));
        if (isJ1939)
            SAME_ROWS(device.startRows(1, {"call", "  claim ", "  rx ", "  tx ", "   map"}),
                      group.start());
        else
            SAME_ROWS(device.rows({"object", "sub"}), object.dictionary());
    }

    QString root;
    StoreFixture fixture;
};

QTEST_GUILESS_MAIN(tst_FromAFile)
#include "tst_fromafile.moc"
