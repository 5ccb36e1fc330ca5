// The application object, which builds the main window from the command line and shows the About box; and
// what the command line asks for.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace Tracelyn {

class CMainFrame;
class CShellUi;

// The file to open and the access level that the codes of the command line grant.
class CTracelynCommandLineInfo {
public:
    // Hands each argument (the program's name is not one of them) to ParseParam in order, without a leading
    // switch character: "-", and where paths do not begin with one also a single "/".
    void ParseCommandLine(const QStringList& arguments);

    // An access code raises the level. Every argument becomes the file name, a code included, so that the
    // last argument decides; one that begins with ".paf" empties the name instead. `flag` (it was a switch)
    // and `last` make no difference.
    void ParseParam(const QString& param, bool flag, bool last);

    // 0 (no code) to 3, the highest that any code granted.
    int GetAccessLevel() const { return m_nAccessLevel; }
    const QString& GetFileName() const { return m_strFileName; }

private:
    int m_nAccessLevel = 0;
    QString m_strFileName;
};

// What the program prints instead of opening a window, when the last argument is "--help" or "--version": no
// file can be loaded by these names.
std::optional<QString> TextForTerminal(const QStringList& arguments);

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
