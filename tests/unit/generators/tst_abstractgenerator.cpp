// The frame of a generator's job: its setters, its thread, its end.
#include "generators/textfilegenerator.h"
#include "generators/textwriter.h"
#include "tests/fixtures/storefixture.h"

#include <QThread>

using Result = AbstractGenerator::ResultCode;

/// Writes one line to a file; can be held up until it is aborted.
class SampleGenerator : public TextFileGenerator
{
    Q_OBJECT

public:
    SampleGenerator() : TextFileGenerator("sample") {}

    QString path;
    bool holdsUntilAbort = false;
    bool wasLocked = false;
    bool wasMultiLine = false;
    QThread *jobThread = nullptr;

protected:
    QString targetFile() const override { return path; }
    void write(TextWriter &out) override
    {
        wasMultiLine = isMultiLine();
        wasLocked = !database->setMiscSettingsValue("x", "1");
        jobThread = QThread::currentThread();
        out.raw("Tür\n");
        while (holdsUntilAbort && !abortRequested)
            QThread::msleep(1);
    }
};

class tst_AbstractGenerator : public StoreTest
{
    Q_OBJECT

private slots:
    void init()
    {
        store = makeStore();
        generator = std::make_unique<SampleGenerator>();
        generator->path = fixture.path("out.txt");
    }

    void settersTellWhatIsMissing()
    {
        QCOMPARE(generator->setOutputDirectory(fixture.path("none")), Result::DirectoryMissing);
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
        QCOMPARE(generator->setOutputDirectory(fixture.path()), Result::Success);
    }

    void runsOnItsThreadAndReportsLast()
    {
        generator->setDataBase(store.get());
        bool stillRuns = true;
        bool stillLocked = true;
        connect(generator.get(), &AbstractGenerator::progress, this, [&] {
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
        QCOMPARE(generator->objectName(), "sample");
        QVERIFY(!stillRuns && !stillLocked);
        QVERIFY(generator->wasLocked);
        QVERIFY(generator->jobThread != QThread::currentThread());
        QVERIFY(!generator->getWasError());
        QCOMPARE(readFile(generator->path), QByteArray("T\xC3\xBCr\n"));
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

    void recordsWhatIsNoPlaceForAFile()
    {
        generator->setDataBase(store.get());
        for (const QString &path : {fixture.path(), QString("/dev/full")}) {
            generator->path = path;
            generator->startGeneration();
            generator->wait();
            QVERIFY(generator->getWasError() && !generator->isRunning());
            QCOMPARE(generator->getLastErrorString(), "Could not open " + path);
        }
    }

    void forcesMultiLine()
    {
        generator->setDataBase(store.get());
        for (const QString setting : {"True", "1", "true"}) {
            store->setMiscSettingsValue("generateML", setting);
            generator->startGeneration();
            generator->wait();
            QCOMPARE(generator->wasMultiLine, setting == "true");
        }
    }

private:
    std::unique_ptr<SampleGenerator> generator;
};

QTEST_GUILESS_MAIN(tst_AbstractGenerator)
#include "tst_abstractgenerator.moc"
