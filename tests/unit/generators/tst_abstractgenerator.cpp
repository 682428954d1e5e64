// The frame of a generator's job: its setters, its thread, its end.
#include "generators/abstractgenerator.h"
#include "generators/textwriter.h"
#include "tests/unit/store/storefixture.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

using Result = AbstractGenerator::ResultCode;

/// Writes one line to a file; can be held up until it is aborted.
class SampleGenerator : public AbstractGenerator
{
    Q_OBJECT

public:
    SampleGenerator() : AbstractGenerator(QStringLiteral("sample")) {}
    using AbstractGenerator::convertValue;

    bool checkWritability() override { return isNewOrWritable(path); }

    QString path;
    bool holdsUntilAbort = false;
    bool wasLocked = false;
    bool wasMultiLine = false;
    QThread *jobThread = nullptr;

public slots:
    void doJob() override
    {
        const JobBracket bracket(*this);
        checkForceMLFlag();
        wasMultiLine = isMultiLine();
        wasLocked = !database->setMiscSettingsValue(QStringLiteral("x"), QStringLiteral("1"));
        jobThread = QThread::currentThread();
        QFile file(path);
        if (!openOutputFile(file))
            return;
        TextWriter out(&file);
        out.raw(QString::fromUtf8("Tür\n"));
        while (holdsUntilAbort && !abortRequested)
            QThread::msleep(1);
        closeOutputFile(out, file);
    }
};

class tst_AbstractGenerator : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        store = std::make_unique<ObjectDataBase>();
        QVERIFY(store->createNewDataBase());
        generator = std::make_unique<SampleGenerator>();
        generator->path = fixture.path(QStringLiteral("out.txt"));
    }

    void settersTellWhatIsMissing()
    {
        const QString missing = fixture.path(QStringLiteral("none"));
        QCOMPARE(generator->setOutputDirectory(missing), Result::DirectoryMissing);
        QCOMPARE(generator->setActiveLine(7), Result::Success);
        QCOMPARE(generator->setDataBase(nullptr), Result::NoStore);
        QCOMPARE(generator->startGeneration(), Result::NoStore);
        generator->wait();

        ObjectDataBase unopened;
        QCOMPARE(generator->setDataBase(&unopened), Result::NoStore);
        QCOMPARE(generator->setDataBase(store.get()), Result::Success);
        QCOMPARE(generator->setActiveLine(0), Result::Success);
        QCOMPARE(generator->setActiveLine(7), Result::NoSuchLine);
        QCOMPARE(generator->abortGeneration(), Result::NotRunning);
        QCOMPARE(generator->setOutputDirectory(fixture.path(QString())), Result::Success);
    }

    void runsOnItsThreadAndReportsLast()
    {
        generator->setDataBase(store.get());
        bool stillRuns = true;
        bool stillLocked = true;
        QString subject;
        connect(generator.get(), &AbstractGenerator::progress, this, [&] {
            subject = generator->objectName();
            stillRuns = generator->isRunning();
            stillLocked = store->blockUpdates();
        });
        // A second start shows that the object came back to this thread.
        for (int run = 0; run < 2; ++run) {
            QSignalSpy progress(generator.get(), &AbstractGenerator::progress);
            QCOMPARE(generator->startGeneration(), Result::Success);
            generator->wait();
            QCoreApplication::processEvents();
            QCOMPARE(progress.count(), 1);
            QCOMPARE(progress.first().first().toUInt(), 100U);
        }
        QCOMPARE(subject, QStringLiteral("sample"));
        QVERIFY(!stillRuns && !stillLocked);
        QVERIFY(generator->wasLocked);
        QVERIFY(generator->jobThread != QThread::currentThread());
        QVERIFY(!generator->getWasError());
        QFile file(generator->path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("T\xC3\xBCr\n"));
    }

    void refusesChangesWhileRunning()
    {
        generator->setDataBase(store.get());
        generator->holdsUntilAbort = true;
        QCOMPARE(generator->startGeneration(), Result::Success);
        QCOMPARE(generator->startGeneration(), Result::Running);
        QCOMPARE(generator->setDataBase(nullptr), Result::Running);
        QCOMPARE(generator->abortGeneration(), Result::Success);
        generator->wait();
        QCOMPARE(generator->abortGeneration(), Result::NotRunning);
    }

    void recordsFilesThatCannotBeWritten_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("error");
        const QString folder = fixture.path(QString());
        QTest::newRow("folder") << folder << "Could not open " + folder;
        QTest::newRow("full_disk") << "/dev/full"
                                   << "Could not write /dev/full";
    }
    void recordsFilesThatCannotBeWritten()
    {
        QFETCH(QString, path);
        QFETCH(QString, error);
        generator->path = path;
        generator->setDataBase(store.get());
        generator->startGeneration();
        generator->wait();
        QVERIFY(generator->getWasError());
        QCOMPARE(generator->getLastErrorString(), error);
        QVERIFY(!generator->isRunning());
    }

    void forcesMultiLine()
    {
        generator->setDataBase(store.get());
        for (const char *setting : {"True", "1", "true"}) {
            store->setMiscSettingsValue(QStringLiteral("generateML"), QLatin1String(setting));
            generator->startGeneration();
            generator->wait();
            QCOMPARE(generator->wasMultiLine, qstrcmp(setting, "true") == 0);
        }
    }

    void convertsValues_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<quint64>("value");
        QTest::addColumn<QString>("expected");
        const quint64 wide = 0x123456789ABCDEF0;
        QTest::newRow("u24") << 22 << quint64(0x12AB05) << "U24_SET(0x12,0xab,0x05)";
        QTest::newRow("i24") << 16 << wide << "I24_SET(0xff,0xff,0xff)";
        QTest::newRow("u40") << 24 << wide << "U40_SET(0x78,0x9a,0xbc,0xde,0xf0)";
        QTest::newRow("time_of_day") << 12 << wide << "U48_SET(0x56,0x78,0x9a,0xbc,0xde,0xf0)";
        QTest::newRow("u64") << 27 << wide << "U64_SET(0x12,0x34,0x56,0x78,0x9a,0xbc,0xde,0xf0)";
        for (const int type : {5, 13, 18, 21, 26})
            QTest::addRow("no_macro_%d", type) << type << wide << "0";
    }
    void convertsValues()
    {
        QFETCH(int, type);
        QFETCH(quint64, value);
        QTEST(SampleGenerator::convertValue(static_cast<CAN::CANopenDataType>(type), value, -1),
              "expected");
    }

private:
    StoreFixture fixture;
    std::unique_ptr<ObjectDataBase> store;
    std::unique_ptr<SampleGenerator> generator;
};

QTEST_GUILESS_MAIN(tst_AbstractGenerator)
#include "tst_abstractgenerator.moc"
