// The text projects of examples/ are written by hand: what they say must be what the tool reads.
#include "check/modelchecker.h"
#include "import/edsimporter.h"
#include "store/objectdatabase.h"

#include <QtTest>

class TestExamples : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void survivesSaving_data();
    void survivesSaving();
    void pumpMappingsFitTheirObjects();
    void passesTheCheck_data();
    void passesTheCheck();

private:
    static QString path(const QString &example);
    static QByteArray contentOf(const QString &path);
    static QSet<QByteArray> settingsOf(const QString &path);

    QTemporaryDir home;
};

void TestExamples::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, home.path());
}

QString TestExamples::path(const QString &example)
{
    return QStringLiteral(TESSARINE_EXAMPLES "/%1/%1.tsrt").arg(example);
}

QByteArray TestExamples::contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The lines of a text project, each behind the name of its section.
QSet<QByteArray> TestExamples::settingsOf(const QString &path)
{
    QSet<QByteArray> settings;
    QByteArray section;
    for (const QByteArray &line : contentOf(path).split('\n')) {
        if (line.startsWith('['))
            section = line;
        else if (!line.isEmpty() && !line.startsWith(';'))
            settings.insert(section + line);
    }
    return settings;
}

void TestExamples::survivesSaving_data()
{
    QTest::addColumn<QString>("example");
    QTest::newRow("pump") << QStringLiteral("pump");
    QTest::newRow("empty") << QStringLiteral("empty");
}

void TestExamples::survivesSaving()
{
    QFETCH(QString, example);
    QTemporaryDir folder;
    const QString first = folder.filePath(QStringLiteral("first.tsrt"));
    const QString second = folder.filePath(QStringLiteral("second.tsrt"));
    ObjectDataBase store;
    store.openDataBase(path(example));
    QVERIFY(store.saveDataBase(first));
    store.openDataBase(first);
    QVERIFY(store.saveDataBase(second));

    QSet<QByteArray> written = settingsOf(path(example));
    QVERIFY(!written.isEmpty());
    written.subtract(settingsOf(first));
    QVERIFY2(written.isEmpty(), written.values().join('\n').constData());
    QCOMPARE(contentOf(second), contentOf(first));
    // A column that is left out is 0 once the project was saved; for these two that would be a
    // change.
    QVERIFY(!contentOf(first).contains("\\defaultineds=0"));
    QVERIFY(!contentOf(first).contains("\\writedefaulttoeds=0"));
}

void TestExamples::pumpMappingsFitTheirObjects()
{
    ObjectDataBase store;
    store.openDataBase(path(QStringLiteral("pump")));
    QVERIFY(store.getIndices(0, 0x2000, 0x5FFF).size() >= 30);
    const QList<quint16> mappings =
        store.getIndices(0, 0x1600, 0x17FF) + store.getIndices(0, 0x1A00, 0x1BFF);
    QCOMPARE(mappings.size(), 4);
    for (const quint16 mapping : mappings) {
        for (const quint8 sub : store.getSubIndices(0, mapping, 1)) {
            const quint32 entry = store.getSubIndexValue(0, mapping, sub).toUInt(nullptr, 0);
            const auto index = static_cast<quint16>(entry >> 16);
            const auto mapped = static_cast<quint8>(entry >> 8);
            if (index < 0x1000) // a place holder that maps nothing
                continue;
            const QString place = QString::number(entry, 16);
            QVERIFY2(store.existSubIndex(0, index, mapped), qPrintable(place));
            QVERIFY2(store.getSubIndexPdoMapping(0, index, mapped).toBinary(), qPrintable(place));
            QCOMPARE(store.getSubIndexBitSize(0, index, mapped), entry & 0xFF);
        }
    }
}

void TestExamples::passesTheCheck_data()
{
    QTest::addColumn<QString>("example");
    QTest::addColumn<QString>("description");
    QTest::newRow("pump") << QStringLiteral("pump") << QString();
    QTest::newRow("levelsensor") << QStringLiteral("empty")
                                 << QStringLiteral(TESSARINE_EXAMPLES
                                                   "/levelsensor/levelsensor.eds");
}

void TestExamples::passesTheCheck()
{
    QFETCH(QString, example);
    QFETCH(QString, description);
    ObjectDataBase store;
    store.openDataBase(path(example));
    EDSImporter importer;
    importer.setActiveLine(0);
    importer.setDatabase(&store);
    importer.setIndexRange(0x1000, 0xBFFF);
    importer.setImportFileName(description);
    if (!description.isEmpty()) {
        importer.startImport();
        importer.wait();
    }
    ModelChecker checker;
    bool corrected = false;
    QCOMPARE(checker.startGlobalCheck(&store), 0);
    QCOMPARE(checker.startCANopenCheck(0, &store, corrected), 0);
    for (const Finding &finding : checker.findings()) {
        const Check::Level level = Check::levelOf(Check::messageRow(finding.rule));
        QVERIFY2(level == Check::Level::Note, qPrintable(finding.text()));
    }
}

QTEST_GUILESS_MAIN(TestExamples)
#include "tst_examples.moc"
