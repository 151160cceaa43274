// SPDX-License-Identifier: GPL-3.0-or-later
#include "recovery/JournalWriter.h"

#include "files/FileLock.h"
#include "recovery/Record.h"

#include <QFile>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <deque>
#include <fcntl.h>
#include <mutex>
#include <optional>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace recovery {

namespace {

struct Job
{
    enum Kind
    {
        File,
        Bytes,
        Sync
    };
    Kind kind;
    QByteArray bytes = {};
};

/// The journal files of one session, used by the thread alone.
class SessionFiles
{
public:
    SessionFiles(QString folder, QString session, const Limits& limits)
        : m_folder(std::move(folder))
        , m_session(std::move(session))
        , m_limits(limits)
        , m_lock(lockFile(m_folder, m_session))
    {}
    ~SessionFiles()
    {
        close();
        if (m_lock.isHeld() && journals(m_folder, m_session).isEmpty())
            m_lock.removeAndUnlock();
    }
    SessionFiles(const SessionFiles&) = delete;
    SessionFiles& operator=(const SessionFiles&) = delete;

    /// 0, or the error as errno.
    int start();
    /// The same. After an error the file ends with the last record that is whole, and goes when it holds none.
    int write(const QByteArray& bytes);
    int sync() { return m_descriptor < 0 || ::fdatasync(m_descriptor) == 0 || errno == EINVAL ? 0 : errno; }

private:
    void close()
    {
        if (m_descriptor >= 0)
            ::close(std::exchange(m_descriptor, -1));
    }
    int takeSession();
    int append(const QByteArray& bytes);

    QString m_folder;
    QString m_session;
    Limits m_limits;
    FileLock m_lock;
    int m_number = 0;
    int m_descriptor = -1;
    qint64 m_whole = 0; ///< bytes of the present file, up to the end of its last whole record
};

int SessionFiles::takeSession()
{
    if (const int error = makeFolder(m_folder); error != 0)
        return error;
    if (::chmod(QFile::encodeName(m_folder).constData(), 0700) != 0)
        return errno;
    if (m_lock.tryLock())
        return 0;
    return m_lock.isUsable() ? EWOULDBLOCK : m_lock.error();
}

int SessionFiles::start()
{
    close();
    if (!m_lock.isHeld()) {
        if (const int error = takeSession(); error != 0)
            return error;
    }
    const QByteArray name = QFile::encodeName(journalFile(m_folder, m_session, ++m_number));
    m_descriptor = ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (m_descriptor < 0)
        return errno;
    m_whole = 0;
    const int error = write(QByteArray(kFileMark, kFileMarkSize));
    prune(m_folder, m_limits);
    return error;
}

int SessionFiles::write(const QByteArray& bytes)
{
    const int error = append(bytes);
    if (error == 0) {
        m_whole += bytes.size();
        return 0;
    }
    // A disk that stays full would gather a file with each attempt.
    if (m_whole <= kFileMarkSize) {
        ::unlink(QFile::encodeName(journalFile(m_folder, m_session, m_number)).constData());
        close();
    } else if (::ftruncate(m_descriptor, m_whole) != 0) {
        close(); // a reader stops at the torn record by itself
    }
    return error;
}

int SessionFiles::append(const QByteArray& bytes)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t written =
            ::write(m_descriptor, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
        if (written < 0 && errno != EINTR)
            return errno;
        if (written > 0)
            done += written;
    }
    return 0;
}

} // namespace

struct JournalWriter::State
{
    std::mutex mutex;
    std::condition_variable more;
    std::condition_variable idle;
    std::deque<Job> jobs;
    qint64 waiting = 0; ///< bytes
    bool busy = false;
    bool ending = false;
    bool failed = false;
    bool running = false;
    bool over = false; ///< the thread has nothing more to do
    std::thread thread;
    std::atomic<std::uint64_t> bytesWritten = 0;
    std::atomic<std::uint64_t> systemCalls = 0;

    QString folder;
    QString session;
    Limits limits;
    std::function<void(int)> tell;

    /// Under the mutex.
    bool isDone() const { return jobs.empty() && !busy; }
    void add(Job job, const std::shared_ptr<State>& self);
    void run();
    int perform(SessionFiles& files, const Job& job);
    void fail(std::unique_lock<std::mutex>& lock, int error);
};

int JournalWriter::State::perform(SessionFiles& files, const Job& job)
{
    ++systemCalls;
    if (job.kind == Job::File)
        return files.start();
    if (job.kind == Job::Sync)
        return files.sync();
    bytesWritten += static_cast<std::uint64_t>(job.bytes.size());
    return files.write(job.bytes);
}

void JournalWriter::State::fail(std::unique_lock<std::mutex>& lock, int error)
{
    if (std::exchange(failed, true))
        return;
    jobs.clear();
    waiting = 0;
    if (ending || !tell)
        return;
    lock.unlock();
    tell(error);
    lock.lock();
}

void JournalWriter::State::run()
{
    std::optional<SessionFiles> files(std::in_place, folder, session, limits);
    std::unique_lock lock(mutex);
    for (;;) {
        more.wait(lock, [this] { return ending || !jobs.empty(); });
        if (jobs.empty())
            break;
        const Job job = std::move(jobs.front());
        jobs.pop_front();
        busy = true;
        lock.unlock();
        const int error = perform(*files, job);
        lock.lock();
        waiting -= std::min(waiting, static_cast<qint64>(job.bytes.size()));
        if (error != 0)
            fail(lock, error);
        busy = false;
        if (jobs.empty())
            idle.notify_all();
    }
    lock.unlock();
    files.reset();
    lock.lock();
    over = true;
    idle.notify_all();
}

void JournalWriter::State::add(Job job, const std::shared_ptr<State>& self)
{
    std::unique_lock lock(mutex);
    if (failed)
        return;
    if (waiting + job.bytes.size() > kMostWaiting) {
        fail(lock, ENOBUFS);
        return;
    }
    waiting += job.bytes.size();
    jobs.push_back(std::move(job));
    if (!running) {
        running = true;
        // The program's signals are not for this thread; one that the system raises at a full quota would end it.
        sigset_t all, before;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
        thread = std::thread([self] { self->run(); });
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    more.notify_one();
}

JournalWriter::JournalWriter(QString folder, QString session, const Limits& limits, std::function<void(int)> failed)
    : m_state(std::make_shared<State>())
{
    m_state->folder = std::move(folder);
    m_state->session = std::move(session);
    m_state->limits = limits;
    m_state->tell = std::move(failed);
}

JournalWriter::~JournalWriter()
{
    std::unique_lock lock(m_state->mutex);
    if (!m_state->running)
        return;
    m_state->ending = true;
    m_state->more.notify_one();
    const bool over = m_state->idle.wait_for(lock, std::chrono::seconds(2), [this] { return m_state->over; });
    lock.unlock();
    if (over)
        m_state->thread.join();
    else
        m_state->thread.detach(); // a disk that does not answer: the state lives as long as the thread
}

void JournalWriter::startFile()
{
    m_state->add({Job::File}, m_state);
}

void JournalWriter::resume()
{
    const std::lock_guard lock(m_state->mutex);
    m_state->failed = false;
}

void JournalWriter::append(const QByteArray& bytes)
{
    m_state->add({Job::Bytes, bytes}, m_state);
}

void JournalWriter::sync()
{
    m_state->add({Job::Sync}, m_state);
}

bool JournalWriter::drain(std::chrono::milliseconds patience) const
{
    std::unique_lock lock(m_state->mutex);
    return m_state->idle.wait_for(lock, patience, [this] { return m_state->isDone(); }) && !m_state->failed;
}

std::uint64_t JournalWriter::bytesWritten() const
{
    return m_state->bytesWritten;
}

std::uint64_t JournalWriter::systemCalls() const
{
    return m_state->systemCalls;
}

} // namespace recovery
