// When a long operation should tell how far it has come.
#pragma once

#include <chrono>

namespace support {

// Starts with the operation. Short operations say nothing, long ones not too often.
class CPatience {
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::milliseconds kDefault{500};
    static constexpr std::chrono::milliseconds kBetween{50};

    explicit CPatience(std::chrono::milliseconds patience = kDefault) : m_Next(Clock::now() + patience) {}

    // True when it is time; the next time is somewhat later.
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
