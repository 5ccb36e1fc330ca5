#include "support/Beep.h"

#ifdef _WIN32
#include <windows.h>
#endif

namespace support {

bool Beep([[maybe_unused]] int hertz, [[maybe_unused]] int milliseconds) {
#ifdef _WIN32
    return ::Beep(static_cast<DWORD>(hertz), static_cast<DWORD>(milliseconds)) != 0;
#else
    return false;
#endif
}

} // namespace support
