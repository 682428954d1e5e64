// What is said of mistakes in a project in YAML: all of them in one run, each with its place.
#include "formats/yamlreader.h"
#include "store/yaml/yamlproject.h"
#include "tests/fixtures/casefile.h"

class tst_YamlMistakes : public QObject
{
    Q_OBJECT

private slots:
    void mistakes_data() { addCases(TEST_CASES "/yamlmistakes.txt"); }

    void mistakes()
    {
        const auto [text, expected] = fetchRow<QString, QString>();
        YamlProblems problems("project.yaml");
        YamlDocument document;
        ProjectRecord project;
        if (YamlReader::read(text.toUtf8(), &document, &problems))
            QVERIFY(!YamlProject::read(document, &project, &problems) || !problems.isEmpty());
        const QString told = problems.lines().join('\n') + '\n';
        const QByteArray wrong = mismatch(told, expected);
        QVERIFY2(wrong.isEmpty(), wrong);
    }
};

QTEST_GUILESS_MAIN(tst_YamlMistakes)
#include "tst_yamlmistakes.moc"
