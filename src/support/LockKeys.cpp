#include "support/LockKeys.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <QLibrary>
#endif

namespace support {

#ifdef _WIN32

LockKeys ReadLockKeys(void* /*x11Display*/) {
    const auto on = [](int key) { return (::GetKeyState(key) & 1) != 0; };
    return {.caps = on(VK_CAPITAL), .num = on(VK_NUMLOCK)};
}

#else

LockKeys ReadLockKeys(void* x11Display) {
    if (x11Display == nullptr)
        return {};
    // Found at run time, so that building needs no X11 headers and running needs no X11.
    using GetIndicatorState = int (*)(void* display, unsigned device, unsigned* state);
    static const auto getIndicatorState = reinterpret_cast<GetIndicatorState>(
        QLibrary(QStringLiteral("X11"), 6).resolve("XkbGetIndicatorState"));
    constexpr unsigned CoreKeyboard = 0x100;
    constexpr unsigned CapsBit = 1;
    constexpr unsigned NumBit = 2;
    unsigned state = 0;
    if (getIndicatorState == nullptr || getIndicatorState(x11Display, CoreKeyboard, &state) != 0)
        return {};
    return {.caps = (state & CapsBit) != 0, .num = (state & NumBit) != 0};
}

#endif

} // namespace support
