#include "support/BackgroundTasks.h"

#include "support/Parallel.h"

#include <system_error>
#include <utility>

namespace support {

namespace {

// What the task throws; null when it throws nothing.
std::exception_ptr ExceptionOf(const std::function<void()>& task) {
    try {
        task();
    } catch (...) {
        return std::current_exception();
    }
    return nullptr;
}

} // namespace

CBackgroundTasks::~CBackgroundTasks() {
    try {
        Finish();
    } catch (...) { // NOLINT(bugprone-empty-catch): who did not ask for it with Finish is not told
    }
}

void CBackgroundTasks::Add(std::function<void()> task) {
    const bool hasCores =
        WorkerCount(static_cast<int64_t>(m_Threads.size()) + 2) > static_cast<int>(m_Threads.size()) + 1;
    {
        const std::lock_guard lock(m_Mutex);
        m_Tasks.push(std::move(task));
    }
    m_Changed.notify_one();
    if (!hasCores)
        return;
    try {
        m_Threads.emplace_back([this] { Run(true); });
    } catch (const std::system_error&) {
        // With fewer threads it only takes longer.
    }
}

void CBackgroundTasks::Finish() {
    {
        const std::lock_guard lock(m_Mutex);
        m_bFinishing = true;
    }
    m_Changed.notify_all();
    Run(false);
    m_Threads.clear();
    m_bFinishing = false;
    if (m_Exception)
        std::rethrow_exception(std::exchange(m_Exception, nullptr));
}

// It may be some microseconds until another thread has done what it is at, and longer to fall asleep and to
// be woken.
void CBackgroundTasks::HelpUntil(const std::function<bool()>& isEnough) {
    std::unique_lock lock(m_Mutex);
    while (!isEnough()) {
        if (m_Exception)
            std::rethrow_exception(m_Exception);
        if (!m_Tasks.empty()) {
            DoNext(lock);
            continue;
        }
        lock.unlock();
        std::this_thread::yield();
        lock.lock();
    }
}

void CBackgroundTasks::Run(bool waits) {
    std::unique_lock lock(m_Mutex);
    while (true) {
        if (waits)
            m_Changed.wait(lock, [this] { return m_bFinishing || !m_Tasks.empty(); });
        if (m_Tasks.empty())
            return;
        DoNext(lock);
    }
}

void CBackgroundTasks::DoNext(std::unique_lock<std::mutex>& lock) {
    const std::function<void()> task = std::move(m_Tasks.front());
    m_Tasks.pop();
    lock.unlock();
    const std::exception_ptr thrown = ExceptionOf(task);
    lock.lock();
    if (!thrown)
        return;
    while (!m_Tasks.empty()) // A new queue would need memory, which may be what ran out.
        m_Tasks.pop();
    if (!m_Exception)
        m_Exception = thrown;
}

} // namespace support
