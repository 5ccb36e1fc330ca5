#include "support/Parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace support {

namespace {

constexpr int kMaximumWorkers = 8;

// What the threads of one call share.
class CWorkList {
public:
    CWorkList(int64_t items, const std::function<bool(int, int64_t)>& work) : m_nEnd(items), m_Work(work) {}

    // Takes items until there are no more, and calls afterEach with the number that all threads have done. No
    // further item begins once it returns false.
    template <class AfterEach>
    void Run(int worker, AfterEach afterEach) noexcept {
        try {
            for (int64_t item = m_nNext++; item < m_nEnd; item = m_nNext++) {
                if (!m_Work(worker, item))
                    EndAt(item);
                if (!afterEach(++m_nDone))
                    EndAt(m_nNext);
            }
        } catch (...) {
            EndAt(0);
            const std::lock_guard lock(m_Mutex);
            if (!m_Exception)
                m_Exception = std::current_exception();
        }
    }

    // The first item whose work returned false, the number of items when there is none.
    int64_t GetEnd() const {
        if (m_Exception)
            std::rethrow_exception(m_Exception);
        return m_nEnd;
    }

private:
    void EndAt(int64_t item) {
        int64_t end = m_nEnd;
        while (item < end && !m_nEnd.compare_exchange_weak(end, item)) {
        }
    }

    std::atomic<int64_t> m_nEnd;
    const std::function<bool(int, int64_t)>& m_Work;
    std::atomic<int64_t> m_nNext = 0;
    std::atomic<int64_t> m_nDone = 0;
    std::mutex m_Mutex;
    std::exception_ptr m_Exception;
};

} // namespace

int WorkerCount(int64_t items) {
    // Asked only once, so that the number never changes: callers make a buffer for each worker beforehand.
    static const auto cores = static_cast<int64_t>(std::thread::hardware_concurrency());
    return static_cast<int>(std::clamp<int64_t>(std::min(cores, items), 1, kMaximumWorkers));
}

int64_t ForEachParallel(int64_t items, const std::function<bool(int, int64_t)>& work,
                        const Progress& progress) {
    // Few items may all be done by the helpers before this thread asks for the first time.
    if (!Report(progress, 0))
        return 0;
    CWorkList list(items, work);
    {
        std::vector<std::jthread> helpers;
        helpers.reserve(kMaximumWorkers);
        try {
            for (int worker = 1; worker < WorkerCount(items); ++worker)
                helpers.emplace_back([&list, worker] { list.Run(worker, [](int64_t) { return true; }); });
        } catch (const std::system_error&) {
            // With fewer threads it only takes longer.
        }
        list.Run(0, [&](int64_t done) {
            return Report(progress, static_cast<double>(done) / static_cast<double>(items));
        });
    }
    return list.GetEnd();
}

} // namespace support
