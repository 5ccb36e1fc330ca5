// The state of the keyboard's lock keys.
#pragma once

namespace support {

struct LockKeys {
    bool caps = false;
    bool num = false;
};

// x11Display is the window system's Display*, borrowed; null (no X11) reads both as off. Windows ignores it.
LockKeys ReadLockKeys(void* x11Display);

} // namespace support
