// The report for machines, made of findings and problems by hand.
#include "app/artifacturis.h"
#include "app/sarifreport.h"
#include "tests/fixtures/sarifrules.h"
#include "tests/fixtures/testkit.h"

#include <QDir>
#include <QTemporaryDir>

class tst_SarifReport : public QObject
{
    Q_OBJECT

private slots:
    void filesAreNamedFromTheRun_data()
    {
        columns<QString, QString>("path", "uri");
        // clang-format off
        QTest::newRow("plain") << "p.tsrt" << "%SRCROOT% p.tsrt";
        QTest::newRow("below") << "./x/../y/p.tsrt" << "%SRCROOT% y/p.tsrt";
        QTest::newRow("absolute") << "%DIR%/run/p.tsrt" << "%SRCROOT% p.tsrt";
        QTest::newRow("by_a_link") << "%DIR%/link/p.tsrt" << "%SRCROOT% p.tsrt";
        QTest::newRow("signs") << "ä b:c#%.tsrt" << "%SRCROOT% %C3%A4%20b%3Ac%23%25.tsrt";
        QTest::newRow("beside") << "../p.tsrt" << "FOLDER1 p.tsrt";
        QTest::newRow("name_that_begins_alike") << "%DIR%/runs/p.tsrt" << "FOLDER1 p.tsrt";
        QTest::newRow("the_folder_itself") << "." << "FOLDER1 run";
        // clang-format on
    }
    void filesAreNamedFromTheRun()
    {
        QFETCH(QString, path);
        QVERIFY(QDir().mkpath(folder.filePath("run")));
        QFile::link(folder.filePath("run"), folder.filePath("link"));
        ArtifactUris uris(folder.filePath("run"));
        const Sarif::File file = uris.of(path.replace("%DIR%", folder.path()));
        QTEST(file.baseId + ' ' + file.uri, "uri");
        QVERIFY(uris.of(path) == file);
        QCOMPARE(uris.bases().size(), file.baseId == "%SRCROOT%" ? 1 : 2);
    }

    void levelsAgreeWithTheExitCode()
    {
        using Check::Msg;
        RunReport report;
        report.projectFile = folder.filePath("p.tsrp");
        report.isComplete = true;
        // The first one is worded as an error, and not counted as one.
        report.findings = {{{Msg::DynamicMappingGranularity, {}, 1}, 0},
                           {{Msg::SpnVariableMissing, {"1", "2"}, 1, -1, -1, 2, 1}, 0}};
        report.exitCode = 7;
        report.problems = {{Problems::Level::Error, "", 0, "a {b}", "own-rule", 0},
                           {Problems::Level::Error, report.projectFile, 3, "c", "own-rule", 9},
                           {Problems::Level::Note, report.projectFile, 4, "d", "own-note", 0}};
        const QByteArray log = sarifText(report);
        QCOMPARE(SarifRules(log).broken, "");
        const QJsonValue run = QJsonDocument::fromJson(log)["runs"][0];
        QStringList results;
        for (const QJsonValue &result : run["results"].toArray()) {
            const QJsonValue place = result["locations"][0];
            results << joined(result["level"].toString(), result["ruleId"].toString(),
                              place["logicalLocations"][0]["fullyQualifiedName"].toString(),
                              result["properties"]["group"].toInt(),
                              result["properties"]["signal"].toInt(),
                              place["physicalLocation"]["region"]["startColumn"].toInt());
        }
        QCOMPARE(results, (QStringList{"warning/DynamicMappingGranularity/line 1/0/0/0",
                                       "error/SpnVariableMissing/1/PGN 2 SPN 1/2/1/0",
                                       "warning/own-rule//0/0/0", "warning/own-rule//0/0/9",
                                       "note/own-note//0/0/0"}));

        report.findings.removeLast(); // now nothing is counted
        QCOMPARE(SarifRules(sarifText(report)).broken, "errors agree with the exit code");
    }

private:
    QTemporaryDir folder;
};

QTEST_GUILESS_MAIN(tst_SarifReport)
#include "tst_sarifreport.moc"
