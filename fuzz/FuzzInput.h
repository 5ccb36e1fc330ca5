// The bytes of one fuzzing run, and how a fuzzer says that a promise does not hold.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace Tracelyn {

// Stops the program, which is a finding.
inline void Require(bool holds, const char* promise) {
    if (holds)
        return;
    std::fprintf(stderr, "BROKEN PROMISE: %s\n", promise);
    std::abort();
}

inline std::string_view TextOf(const uint8_t* data, size_t size) {
    return size == 0 ? std::string_view() : std::string_view(reinterpret_cast<const char*>(data), size);
}

// Settings of a run, taken from the end of its input: the front stays what the program reads. Beyond the
// input they are 0.
class Settings {
public:
    // Leaves out `skipped` bytes at the very end.
    explicit Settings(std::string_view input, size_t skipped = 0)
        : m_Input(input.substr(0, input.size() - (skipped < input.size() ? skipped : input.size()))) {}

    unsigned Byte() {
        if (m_Input.empty())
            return 0;
        const auto byte = static_cast<unsigned char>(m_Input.back());
        m_Input.remove_suffix(1);
        return byte;
    }
    // 0 to choices - 1.
    unsigned Below(unsigned choices) { return Byte() % choices; }

    // What no setting was taken from.
    std::string_view Rest() const { return m_Input; }

private:
    std::string_view m_Input;
};

} // namespace Tracelyn
