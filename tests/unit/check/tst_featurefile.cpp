// Feature files, sound and broken.
#include "check/featurefile.h"
#include "tests/fixtures/testkit.h"

#include <QLoggingCategory>

class tst_FeatureFile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLoggingCategory::setFilterRules("tessarine.*=false"); }

    void readsVersions_data()
    {
        // clang-format off
        columns<QByteArray, QString, QString>("text", "required", "current");
        const auto row = [](const char *name, const QByteArray &text, const char *required, const char *current) {
            QTest::newRow(name) << text << QString(required) << QString(current);
        };
        const QByteArray deep = QByteArray("<a>").repeated(200000);
        row("both", "<s><version>1.2</version><required_tool_version>3.11</required_tool_version></s>", "3.11", "1.2");
        row("first_counts", "<s><x><version>1</version></x><version>2</version></s>", "0.0", "1");
        row("cdata", "<version><![CDATA[1.5]]></version>", "0.0", "1.5");
        row("without_text", "<s><version/></s>", "0.0", "0.0");
        row("element_as_text", "<version><b>1</b></version>", "0.0", "0.0");
        row("cut_off", "<s><version>1</version>", "0.0", "0.0");
        row("empty", "", "0.0", "0.0");
        row("bytes", QByteArray("\0\xFF<\x80", 4), "0.0", "0.0");
        row("endless_nesting", deep, "0.0", "0.0");
        row("closed_nesting", deep + QByteArray("</a>").repeated(200000), "0.0", "0.0");
        row("entities", "<!DOCTYPE s [<!ENTITY a 'xxxxxxxxxx'><!ENTITY b '&a;&a;&a;&a;&a;&a;&a;&a;&a;'><!ENTITY c "
            "'&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;'><!ENTITY d '&c;&c;&c;&c;&c;&c;'>]><s><version>&d;</version></s>",
            "0.0", "0.0");
        // clang-format on
    }
    void readsVersions()
    {
        QFETCH(QByteArray, text);
        VersionReader reader;
        reader.setFeatureFile(write(text));
        QTEST(reader.getReqiuredToolVersion(), "required");
        QTEST(reader.getCurrentVersion(), "current");
        FeatureSetExtractor extractor;
        extractor.setFeatureFile(write(text));
        QCOMPARE(int(extractor.getFeatures().sdoServers), 0);
    }

    void readsFeatures()
    {
        FeatureSetExtractor extractor;
        extractor.setFeatureFile(
            write("<s><sdo_server>128</sdo_server><sdo_client>0x10</sdo_client>"
                  "<pdo_producer>512</pdo_producer><pdo_consumer>many</pdo_consumer>"
                  "<emcy_consumer>256</emcy_consumer><srdo_supported>2</srdo_supported>"
                  "<pdo_mapping>dynamic</pdo_mapping><led>0</led></s>"));
        const FeatureSet features = extractor.getFeatures();
        QCOMPARE(int(features.sdoServers), 128);
        QCOMPARE(int(features.sdoClients), 16);
        QCOMPARE(int(features.pdoProducers), 512);
        QCOMPARE(int(features.pdoConsumers), 0);
        QCOMPARE(int(features.emergencyConsumers), 0);
        QVERIFY(features.srdo && features.dynamicMapping && !features.led);
        QCOMPARE(extractor.getValue("pdo_consumer"), QString("many"));
        QCOMPARE(extractor.getValue("none"), QString());
    }

    void whatIsNoFileOffersNothing()
    {
        VersionReader reader;
        for (const QString &path : {folder.filePath("none"), folder.path(), QString("/dev/zero")}) {
            reader.setFeatureFile(path);
            QCOMPARE(reader.getReqiuredToolVersion(), QString("0.0"));
        }
    }

private:
    QString write(const QByteArray &text)
    {
        const QString name = folder.filePath("info.xml");
        return writeFile(name, text) ? name : QString();
    }

    QTemporaryDir folder;
};

QTEST_GUILESS_MAIN(tst_FeatureFile)
#include "tst_featurefile.moc"
