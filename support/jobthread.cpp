// The worker thread of a job.
#include "support/jobthread.h"

#include <QCoreApplication>
#include <QEventLoop>

JobThread::~JobThread()
{
    if (thread) {
        thread->quit();
        thread->wait();
    }
}

void JobThread::start(QObject *job, const char *slot)
{
    thread = std::make_unique<QThread>();
    job->moveToThread(thread.get());
    thread->start(QThread::InheritPriority);
    QMetaObject::invokeMethod(job, slot, Qt::QueuedConnection);
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
    return thread && thread->isFinished();
}

void JobThread::wait()
{
    if (!thread)
        return;
    QEventLoop loop;
    QObject::connect(thread.get(), &QThread::finished, &loop, &QEventLoop::quit);
    // Looked at behind connect(): a thread that ends in between is seen either here or by the loop.
    if (!thread->isFinished())
        loop.exec();
    thread->wait();
    // The last signals of a short job may have been posted before the loop began, or while it ended.
    QCoreApplication::processEvents();
}
