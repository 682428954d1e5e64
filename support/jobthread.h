// The worker thread of one importer or generator run.
#pragma once

#include <QThread>

#include <memory>

/// Runs one slot of a job object on a thread of its own. Owned by the job; start() and wait() are
/// called on the thread that drives the run, quit() by the job itself.
class JobThread
{
public:
    JobThread() = default;
    ~JobThread();
    JobThread(const JobThread &) = delete;
    JobThread &operator=(const JobThread &) = delete;

    /// Moves \a job, which must have no parent, to a new thread and queues its \a slot there.
    void start(QObject *job, const char *slot);

    /// Ends the thread once the slot has returned. Every job calls it, whatever came of its work.
    void quit();

    /// True from start() until the thread has ended.
    bool isRunning() const;

    /// True once a started thread has ended.
    bool isFinished() const;

    /// Delivers the caller's events, queued signals of the job among them, until the thread has
    /// ended; returns at once if none was started. The caller sleeps while there is nothing to do.
    void wait();

private:
    void join();

    std::unique_ptr<QThread> thread;
};
