#include "support/UserDevices.h"

#ifdef _WIN32
#include <cstdlib>
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#else
#include <QLibrary>
#include <unistd.h>
#endif

namespace support {

#ifdef _WIN32

bool Beep(int hertz, int milliseconds) {
    return ::Beep(static_cast<DWORD>(hertz), static_cast<DWORD>(milliseconds)) != 0;
}

LockKeys ReadLockKeys(void* /*x11Display*/) {
    const auto on = [](int key) { return (::GetKeyState(key) & 1) != 0; };
    return {.caps = on(VK_CAPITAL), .num = on(VK_NUMLOCK)};
}

bool IsTerminal(std::FILE* stream) {
    return ::_isatty(::_fileno(stream)) != 0;
}

void PassBytesOn() {
    ::_setmode(::_fileno(stdout), _O_BINARY);
    ::_setmode(::_fileno(stderr), _O_BINARY);
    // The terminal is the caller's too, so it gets back what it had.
    static const UINT before = ::GetConsoleOutputCP();
    if (before != 0 && ::SetConsoleOutputCP(CP_UTF8) != 0)
        std::atexit([] { ::SetConsoleOutputCP(before); });
}

#else

bool Beep(int /*hertz*/, int /*milliseconds*/) {
    return false;
}

LockKeys ReadLockKeys(void* x11Display) {
    if (x11Display == nullptr)
        return {};
    // Found at run time, so that building needs no X11 headers and running needs no X11.
    using GetIndicatorState = int (*)(void* display, unsigned device, unsigned* state);
    static const auto getIndicatorState = reinterpret_cast<GetIndicatorState>(
        QLibrary(QStringLiteral("X11"), 6).resolve("XkbGetIndicatorState"));
    constexpr unsigned kCoreKeyboard = 0x100;
    constexpr unsigned kCapsBit = 1;
    constexpr unsigned kNumBit = 2;
    unsigned state = 0;
    if (getIndicatorState == nullptr || getIndicatorState(x11Display, kCoreKeyboard, &state) != 0)
        return {};
    return {.caps = (state & kCapsBit) != 0, .num = (state & kNumBit) != 0};
}

bool IsTerminal(std::FILE* stream) {
    return ::isatty(::fileno(stream)) != 0;
}

void PassBytesOn() {}

#endif

void PrintToTerminal(const QString& text) {
#ifdef _WIN32
    if (::GetStdHandle(STD_OUTPUT_HANDLE) == nullptr && ::AttachConsole(ATTACH_PARENT_PROCESS) != 0)
        static_cast<void>(std::freopen("CONOUT$", "w", stdout));
#endif
    std::fputs(text.toUtf8().constData(), stdout);
    std::fflush(stdout);
}

} // namespace support
