// How far a long operation has come, when it should say so, and whether it may go on.
#pragma once

#include <chrono>
#include <functional>

namespace support {

// Called now and then with the part that is done, 0 to 1, on the thread that runs the operation. The answer
// false asks the operation to stop: it ends as soon as it can and says that it did. Once the answer was false
// it stays false. Empty when nobody asks.
using Progress = std::function<bool(double)>;

// Whether the operation may go on.
inline bool Report(const Progress& progress, double done) {
    return !progress || progress(done);
}

// Progress of a step that takes the operation from `from` to `to`. Borrows `whole`, which must outlive the
// result.
inline Progress StepOf(const Progress& whole, double from, double to) {
    if (!whole)
        return {};
    return [&whole, from, to](double done) { return whole(from + (to - from) * done); };
}

// Tells a long operation when to show its progress: first when it has run for some time, then not too often.
// A short operation shows nothing. Made when the operation starts.
class CPatience {
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::milliseconds kDefault{500};
    static constexpr std::chrono::milliseconds kBetween{50};

    explicit CPatience(std::chrono::milliseconds patience = kDefault) : m_Next(Clock::now() + patience) {}

    // True when it is time to show the progress. The next time is kBetween later.
    bool IsOver() {
        const Clock::time_point now = Clock::now();
        if (now < m_Next)
            return false;
        m_Next = now + kBetween;
        return true;
    }

private:
    Clock::time_point m_Next;
};

} // namespace support
