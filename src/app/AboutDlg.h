// The About box: the program's version and its help on the keyboard.
#pragma once

#include <QDialog>

class QLabel;

namespace Tracelyn {

class CAboutDlg : public QDialog {
    Q_OBJECT

public:
    // Shown in the middle of its owner.
    explicit CAboutDlg(QWidget* owner = nullptr);

    static QString GetVersionText();
    // Ten lines; runs of tabs separate columns.
    static QString GetKeyboardHelp();

private:
    QLabel* m_pVersionText;  // owned by the dialog
    QLabel* m_pKeyboardHelp; // owned by the dialog
};

} // namespace Tracelyn
