// The text projects of examples/ are written by hand: what they say must be what the tool reads.
#include "check/modelchecker.h"
#include "formats/csvtable.h"
#include "import/edsimporter.h"
#include "store/columns.h"
#include "support/cohelper.h"
#include "tests/fixtures/problemrecorder.h"
#include "tests/fixtures/storefixture.h"

class TestExamples : public QObject
{
    Q_OBJECT

private slots:
    void survivesSaving()
    {
        for (const QString name : {"pump", "empty"}) {
            const QString example = path(name);
            const QString first = fixture.path("first.tsrt");
            const QString second = fixture.path("second.tsrt");
            ObjectDataBase store;
            store.openDataBase(example);
            QVERIFY(store.saveDataBase(first));
            store.openDataBase(first);
            QVERIFY(store.saveDataBase(second));

            QSet<QByteArray> written = settingsOf(example);
            QVERIFY(!written.isEmpty());
            written.subtract(settingsOf(first));
            QVERIFY2(written.isEmpty(), written.values().join('\n').constData());
            QCOMPARE(readFile(second), readFile(first));
            // A column that is left out is 0 once the project was saved; for these two that would
            // be a change.
            QVERIFY(!readFile(first).contains("\\defaultineds=0"));
            QVERIFY(!readFile(first).contains("\\writedefaulttoeds=0"));
        }
    }

    void pumpMappingsFitTheirObjects()
    {
        ObjectDataBase store;
        store.openDataBase(path("pump"));
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
                QVERIFY2(store.getSubIndexPdoMapping(0, index, mapped).toBinary(),
                         qPrintable(place));
                QCOMPARE(store.getSubIndexBitSize(0, index, mapped), entry & 0xFF);
            }
        }
    }

    void passesTheCheck()
    {
        const QString small = fixture.path("small.tsrt");
        QVERIFY(writeFile(small, page().section("```", 1, 1).section('\n', 1).toUtf8()));
        for (const QString example : {"pump", "empty", "small"}) {
            const ProblemRecorder problems;
            ObjectDataBase store;
            QVERIFY(store.openDataBase(example == "small" ? small : path(example)));
            QCOMPARE(problems.lines, QStringList());
            if (example == "empty") {
                EDSImporter importer;
                importer.setActiveLine(0);
                importer.setDatabase(&store);
                importer.setImportFileName(TESSARINE_EXAMPLES "/levelsensor/levelsensor.eds");
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
    }

    /// What stands in code signs there.
    void pageNamesColumnsAndTypes()
    {
        QStringList names;
        for (const auto &column : kNodeColumns)
            names << column.name;
        for (const auto &column : kIndexColumns)
            names << column.name;
        for (const auto &column : kSubIndexColumns)
            names << column.name;
        for (int column = 0; column < CsvTable::kColumnCount; ++column)
            names << CsvTable::nameOf(static_cast<CsvTable::Column>(column));
        for (quint16 type = 0; type <= 0xFF; ++type) {
            const QString name = COHelper::index2DataTypeString(type);
            if (!name.isEmpty())
                names << QString("| %1 | `%2` | `%3` |")
                             .arg(type)
                             .arg(name, COHelper::index2DataTypeShortString(type));
        }
        const QString text = page();
        for (const QString &name : qAsConst(names))
            QVERIFY2(text.contains(name.startsWith('|') ? name : '`' + name + '`'),
                     qPrintable(name));
    }

private:
    static QString page()
    {
        return QString::fromUtf8(readFile(TESSARINE_EXAMPLES "/../docs/projects.md"));
    }

    static QString path(const QString &example)
    {
        return QString(TESSARINE_EXAMPLES "/%1/%1.tsrt").arg(example);
    }

    /// The lines of a text project, each behind the name of its section.
    static QSet<QByteArray> settingsOf(const QString &path)
    {
        QSet<QByteArray> settings;
        QByteArray section;
        for (const QByteArray &line : readFile(path).split('\n')) {
            if (line.startsWith('['))
                section = line;
            else if (!line.isEmpty() && !line.startsWith(';'))
                settings.insert(section + line);
        }
        return settings;
    }

    StoreFixture fixture;
};

QTEST_GUILESS_MAIN(TestExamples)
#include "tst_examples.moc"
