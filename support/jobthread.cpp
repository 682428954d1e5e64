// The worker thread of a job.
#include "support/jobthread.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>

#include <utility>

JobThread::~JobThread()
{
    if (thread.joinable())
        thread.join();
}

void JobThread::start(std::function<void()> job)
{
    wait();
    isOver = false;
    // No QThread: it would make an event loop for each job, and none of them needs one.
    thread = std::thread([this, work = std::move(job),
                          driver = QAbstractEventDispatcher::instance()] {
        work();
        isOver = true;
        driver->wakeUp(); // though the last of the job's signals may have been delivered already
    });
}

void JobThread::wait()
{
    if (!thread.joinable())
        return;
    while (!isOver)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    thread.join();
    QCoreApplication::processEvents(); // signals that were posted last
}
