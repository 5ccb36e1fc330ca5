// The application object: builds the main window from the command line and shows the About box.
#pragma once

#include <QObject>
#include <QStringList>

#include <memory>

namespace Tracelyn {

class CMainFrame;
class CShellUi;

class CTracelynApp : public QObject {
    Q_OBJECT

public:
    // Borrows the ui, which must outlive the application object.
    explicit CTracelynApp(CShellUi& ui);
    ~CTracelynApp() override;

    // Creates the window, loads the file that the arguments name, with its messages, and shows the window.
    void InitInstance(const QStringList& arguments);

    CMainFrame& GetFrame() { return *m_pFrame; }

private:
    void OnAbout();

    CShellUi& m_Ui;
    std::unique_ptr<CMainFrame> m_pFrame;
};

} // namespace Tracelyn
