// Projects in YAML that people learn from: they pass the check, and say what their text form says.
#include "tests/fixtures/toolfixture.h"

class TestYamlExamples : public ToolTest
{
    Q_OBJECT

private slots:
    void init()
    {
        makeFolder();
        environment.insert("SOURCE_DATE_EPOCH", "1700000000");
    }

    void bothFormsGiveTheSame_data()
    {
        QTest::addColumn<QString>("import");
        QTest::newRow("pump") << "";
        QTest::newRow("empty") << " -import " TESSARINE_EXAMPLES "/levelsensor/levelsensor.eds";
    }

    /// Each file that one form gives, the other gives as well.
    void bothFormsGiveTheSame()
    {
        QFETCH(QString, import);
        const QString name = QTest::currentDataTag();
        QMap<QString, QByteArray> files[2];
        for (const QString form : {".tsrt", ".yaml"}) {
            const QString source = QString(TESSARINE_EXAMPLES "/%1/%1").arg(name) + form;
            QVERIFY(QFile::copy(source, folder + '/' + name + form));
            const QString output = form.mid(1);
            const QByteArray told = run("-project " + name + form + import + " -output " + output);
            QVERIFY2(told.endsWith("exit code 0\n"), told);
            const QFileInfoList written = QDir(folder + '/' + output).entryInfoList(QDir::Files);
            for (const QFileInfo &file : written)
                files[form == ".yaml"].insert(file.fileName(), readFile(file.filePath()));
        }
        QVERIFY(files[0].size() > 5);
        QCOMPARE(files[1].keys(), files[0].keys());
        for (auto file = files[0].cbegin(); file != files[0].cend(); ++file)
            QVERIFY2(file.value() == files[1].value(file.key()), qPrintable(file.key()));
    }

    void passTheCheck_data()
    {
        QTest::addColumn<QByteArray>("project");
        for (const QString name : {"pump", "excavator", "gateway"})
            QTest::newRow(qPrintable(name))
                << readFile(QString(TESSARINE_EXAMPLES "/%1/%1.yaml").arg(name));
        const QStringList page =
            QString::fromUtf8(readFile(TESSARINE_EXAMPLES "/../docs/project-yaml.md")).split("```");
        int count = 0;
        for (const QString &block : page) {
            if (block.startsWith("yaml\n") && block.contains("tessarine: 1"))
                QTest::addRow("page %d", ++count) << block.section('\n', 1).toUtf8();
        }
        QCOMPARE(count, 3);
    }

    /// Neither the reader nor the check finds anything that somebody has to mend.
    void passTheCheck()
    {
        QFETCH(QByteArray, project);
        for (const char *header : {"pump", "gateway"}) {
            const QString file = QString(header) + "_variables.h";
            QFile::copy(QString(TESSARINE_EXAMPLES "/%1/").arg(header) + file, folder + '/' + file);
        }
        QVERIFY(write("x.yaml", project));
        const QByteArray told = run("-project x.yaml -check -problems");
        QVERIFY2(told.endsWith("exit code 0\n"), told);
        for (const char *word : {": warning: ", ": error: "})
            QVERIFY2(!told.contains(word), told);
    }
};

QTEST_GUILESS_MAIN(TestYamlExamples)
#include "tst_yamlexamples.moc"
