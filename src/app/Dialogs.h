// The program's own dialogs: the About box, and the question about a file of an incompatible version.
#pragma once

#include <QDialog>

namespace Tracelyn {

// The program's version and its help on the keyboard. Enter, Escape and the close box close it.
class CAboutDlg : public QDialog {
    Q_OBJECT

public:
    // Shown in the middle of its owner.
    explicit CAboutDlg(QWidget* owner = nullptr);

    static QString GetVersionText();
    // Ten lines; runs of tabs separate columns.
    static QString GetKeyboardHelp();
};

// Asks about a file that an incompatible version of the program wrote: abort, ignore, or ignore all. Ready,
// but no command opens it.
class CFileErrorDlg : public QDialog {
    Q_OBJECT

public:
    // What DoModal returns, and callers compare with. On some systems the answer 3 of a box means "abort";
    // here it is "ignore all", on purpose.
    enum Result { Ignore = 5, IgnoreAll = 3, Abort = 1009 };

    CFileErrorDlg(QWidget* parent, int fileVersion, int programVersion);

    // Asks and waits for the answer, one of Result. Escape, the close box and a dialog that goes away
    // unanswered abort.
    int DoModal();

    void reject() override { done(Abort); }

private:
    QString m_strMessage;
};

} // namespace Tracelyn
