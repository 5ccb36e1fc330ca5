// The devices in front of the user, as the system reaches them: the speaker, the keyboard's lock keys and the
// terminal.
#pragma once

#include <QString>

#include <cstdio>

namespace support {

// Sounds on Windows, for the given time, and returns true. Returns false without a sound where the system has
// no such tone or refuses it; the caller then uses its toolkit's bell.
bool Beep(int hertz, int milliseconds);

struct LockKeys {
    bool caps = false;
    bool num = false;
};

// x11Display is the window system's Display*, borrowed; null (no X11) reads both as off. Windows ignores it.
LockKeys ReadLockKeys(void* x11Display);

// True when the stream is shown on a terminal, false when it goes into a file or to another program.
bool IsTerminal(std::FILE* stream);

// For a program whose output others read: from now on the standard output and the error output take bytes as
// they are, line ends too, and a terminal shows them as UTF-8. Only Windows needs to be told.
void PassBytesOn();

// Prints on the standard output. On Windows a program with a window has none of its own: the text goes to the
// terminal from which it was started, if there is one.
void PrintToTerminal(const QString& text);

} // namespace support
