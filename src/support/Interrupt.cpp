#include "support/Interrupt.h"

#include <csignal>
#include <cstdlib>

namespace support {

namespace {

volatile std::sig_atomic_t g_interrupted = 0;

void OnInterrupt(int /*signal*/) {
    g_interrupted = 1;
    std::signal(SIGINT, SIG_DFL);
}

} // namespace

void CatchInterrupts() {
    // Whoever ignores it has passed that on, as a shell does to what it runs in the background.
    if (std::signal(SIGINT, SIG_IGN) != SIG_IGN)
        std::signal(SIGINT, OnInterrupt);
}

bool IsInterrupted() {
    return g_interrupted != 0;
}

void EndInterrupted() {
#ifdef _WIN32
    constexpr unsigned kControlCExit = 0xC000013A; // what the system itself gives
    std::exit(static_cast<int>(kControlCExit));
#else
    std::signal(SIGINT, SIG_DFL);
    std::raise(SIGINT);
    constexpr int kShellsCode = 130;
    std::_Exit(kShellsCode); // somebody blocks the signal
#endif
}

} // namespace support
