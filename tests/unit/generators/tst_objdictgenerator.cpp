// The frame of the object dictionary source: what depends on files, and on its size.
#include "generators/objdict/objdictgenerator.h"
#include "tests/fixtures/storefixture.h"

class tst_ObjDictGenerator : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void userHeaderIsThereIfWanted_data()
    {
        columns<QString, QString, bool>("overwrite", "strings", "isWanted");
        // clang-format off
        QTest::newRow("nothing") << "0" << "0" << false;
        QTest::newRow("one line only") << "0,0,0,1" << "" << true;
        QTest::newRow("strings") << "" << "1" << true;
        // clang-format on
    }

    void userHeaderIsThereIfWanted()
    {
        const auto [overwrite, strings, isWanted] = fetchRow<QString, QString, bool>();
        store->setGeneralSettingsValue("overwrite_predef", overwrite);
        store->setGeneralSettingsValue("generate_string_defaults", strings);
        QVERIFY(writeFile(fixture.path("gen_user.h"), "of an earlier run"));
        QVERIFY(writeFile(fixture.path("no_stdlib_include.txt"), ""));
        const QString text = generate();
        QVERIFY(!text.contains("stdlib"));
        QCOMPARE(text.contains("#include <gen_user.h>\n"), isWanted);
        QCOMPARE(QFile::exists(fixture.path("gen_user.h")), isWanted);
    }

    void moreValuesThanPositionsIsAnError()
    {
        store->beginBatch();
        QList<ObjectDataBase::SubEntry> entries;
        for (int i = 0; i <= 0x10000; ++i) {
            const quint16 index = quint16(0x2000 + i / 250);
            if (i % 250 == 0)
                store->addIndex(0, index, Object());
            entries << ObjectDataBase::SubEntry{0, index, quint8(i % 250), makeSub("s", 5, "1")};
        }
        store->addSubIndices(entries);
        store->commitBatch();
        store->cacheAllSubs(0, 0);
        (void)generate(); // its result counts
        QVERIFY(lastError.startsWith("More than 65535 values of one type in "));
    }

private:
    QString generate()
    {
        ObjDictGenerator generator(false);
        const QString text = generateWith(generator, "demo", "gen_objdict.c");
        lastError = generator.getLastErrorString();
        return text;
    }

    QString lastError;
};

QTEST_GUILESS_MAIN(tst_ObjDictGenerator)
#include "tst_objdictgenerator.moc"
