#include "support/FaultBox.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <pthread.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

namespace support {

namespace {

#ifdef _WIN32

void ShowAndWait(const QString& text) {
    MessageBoxW(nullptr, reinterpret_cast<const wchar_t*>(text.utf16()), L"Tracelyn", MB_OK | MB_ICONERROR);
}

#else

constexpr char kVariable[] = "TRACELYN_FAULT";
constexpr char kProgram[] = "tracelyn";

bool HasDisplay() {
    return std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr ||
           std::getenv("QT_QPA_PLATFORM") != nullptr;
}

// Starts this program again with the text in its environment.
void ShowAndWait(const QString& text) {
    if (!HasDisplay())
        return;
    QByteArray variable = QByteArray(kVariable) + '=' + text.toUtf8();
    std::vector<char*> variables{variable.data()};
    for (char** inherited = environ; *inherited != nullptr; ++inherited)
        variables.push_back(*inherited);
    variables.push_back(nullptr);
    std::string name = kProgram;
    char* const arguments[] = {name.data(), nullptr};
    pid_t process = 0;
    if (::posix_spawn(&process, "/proc/self/exe", nullptr, nullptr, arguments, variables.data()) != 0)
        return;
    while (::waitpid(process, nullptr, 0) == -1 && errno == EINTR) {
    }
}

#endif

} // namespace

void ReportInBox(const QString& text) {
    static std::mutex oneBox;
    const std::lock_guard lock(oneBox);
    std::fprintf(stderr, "%s\n", text.toUtf8().constData());
    ShowAndWait(text);
}

std::optional<QString> FaultToShow() {
#ifndef _WIN32
    if (const char* const text = std::getenv(kVariable)) {
        const QString shown = QString::fromUtf8(text);
        // It was started as "exe".
        ::pthread_setname_np(::pthread_self(), kProgram);
        // The box's own faults are no reason for another box.
        ::unsetenv(kVariable);
        return shown;
    }
#endif
    return std::nullopt;
}

} // namespace support
