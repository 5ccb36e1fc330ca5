// Message boxes and file dialogs of the toolkit.
#pragma once

#include "app/ShellUi.h"

#include <QFileDialog>

namespace Tracelyn {

class CNativeShellUi : public CShellUi {
public:
    void ShowMessage(MessageIcon icon, const QString& caption, const QString& text) override;
    bool ShowMessageOrSkip(MessageIcon icon, const QString& caption, const QString& text) override;
    std::optional<QString> AskOpenFile(const FileRequest& request) override;
    std::optional<QString> AskSaveFile(const FileRequest& request) override;
    void Beep(int hertz, int milliseconds) override;

private:
    static bool Show(MessageIcon icon, const QString& caption, const QString& text, bool offersSkip);
    static std::optional<QString> Ask(QFileDialog::AcceptMode mode, const FileRequest& request);
};

} // namespace Tracelyn
