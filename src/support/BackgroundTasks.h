// Tasks that other processor cores begin while the calling thread goes on.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <queue>
#include <thread>
#include <vector>

namespace support {

// One thread adds tasks and finishes them; its threads exist only in between. Where no thread can be had the
// tasks wait for HelpUntil or Finish.
class CBackgroundTasks {
public:
    CBackgroundTasks() = default;
    CBackgroundTasks(const CBackgroundTasks&) = delete;
    CBackgroundTasks& operator=(const CBackgroundTasks&) = delete;
    // Waits as Finish does, but what a task throws is lost.
    ~CBackgroundTasks();

    // Tasks begin in the order in which they are added, but run side by side, and must not add tasks.
    void Add(std::function<void()> task);
    // Does tasks that no other thread has begun, in their order, until isEnough() is true, which a task that
    // was added makes it. isEnough is called with the tasks locked: it is short and calls nothing of this
    // object. Throws the first exception of a task, and so does Finish later. Not after Finish has thrown.
    void HelpUntil(const std::function<bool()>& isEnough);
    // Does what no other thread has begun, and returns when all tasks have ended. Throws the first exception
    // of a task; those that had not begun then are left out.
    void Finish();

private:
    void Run(bool waits);
    // Does the first task that is left. The mutex is locked before and after.
    void DoNext(std::unique_lock<std::mutex>& lock);

    std::mutex m_Mutex;
    std::condition_variable m_Changed;
    std::queue<std::function<void()>> m_Tasks; // not begun
    bool m_bFinishing = false;                 // no more are added
    std::exception_ptr m_Exception;
    std::vector<std::jthread> m_Threads;
};

} // namespace support
