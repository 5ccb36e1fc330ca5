// How the shell talks to its user outside the picture: message boxes, file dialogs and the beep.
#pragma once

#include <QString>

#include <optional>

namespace Tracelyn {

enum class MessageIcon { Stop, Information };

struct FileRequest {
    // Empty for the platform's own title.
    QString title;
    // Name filters in the toolkit's form, separated by ";;".
    QString filter;
    // Appended to a name without extension; empty for none.
    QString defaultExtension;
    QString fileName;
    QString directory;
};

// Implemented by the program with native boxes, and by the tests, which record and answer. Calls return when
// the user has answered.
class CShellUi {
public:
    virtual ~CShellUi() = default;

    virtual void ShowMessage(MessageIcon icon, const QString& caption, const QString& text) = 0;
    // The same for one of many: true when the user wants to skip those that would follow.
    virtual bool ShowMessageOrSkip(MessageIcon icon, const QString& caption, const QString& text) = 0;
    // The full path chosen; nothing when cancelled. Open offers existing files only; Save asks no question
    // about overwriting.
    virtual std::optional<QString> AskOpenFile(const FileRequest& request) = 0;
    virtual std::optional<QString> AskSaveFile(const FileRequest& request) = 0;
    virtual void Beep(int hertz, int milliseconds) = 0;

protected:
    CShellUi() = default;
    CShellUi(const CShellUi&) = default;
    CShellUi& operator=(const CShellUi&) = default;
};

} // namespace Tracelyn
