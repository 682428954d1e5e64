// The worker thread of a job.
#include "support/jobthread.h"

#include "support/handover.h"

#include <QCoreApplication>
#include <QEventLoop>

namespace
{

class EventThread : public QThread
{
protected:
    void run() override
    {
        exec();
        handOver(this);
    }
};

} // namespace

JobThread::~JobThread()
{
    quit();
    join();
}

void JobThread::start(QObject *job, const char *slot)
{
    thread = std::make_unique<EventThread>();
    job->moveToThread(thread.get());
    // Posted before the start, which makes it and all before it known to the thread.
    QMetaObject::invokeMethod(job, slot, Qt::QueuedConnection);
    thread->start(QThread::InheritPriority);
}

void JobThread::quit()
{
    if (thread)
        thread->quit();
}

bool JobThread::isRunning() const
{
    return thread && thread->isRunning();
}

bool JobThread::isFinished() const
{
    const bool isOver = thread && thread->isFinished();
    if (isOver)
        takeOver(thread.get());
    return isOver;
}

void JobThread::wait()
{
    if (!thread)
        return;
    QEventLoop loop;
    QObject::connect(thread.get(), &QThread::finished, &loop, &QEventLoop::quit);
    // Looked at after connect(): a thread that ends in between is seen either here or by the loop.
    if (!thread->isFinished())
        loop.exec();
    join();
    // The last signals of a short job may have been posted before the loop began, or while it
    // ended.
    QCoreApplication::processEvents();
}

void JobThread::join()
{
    if (!thread)
        return;
    thread->wait();
    takeOver(thread.get());
}
