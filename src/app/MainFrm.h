// The main window: menus, toolbar, status bar and view, and every command on files.
#pragma once

#include "app/ChildView.h"
#include "app/Commands.h"
#include "app/FileSetDescriptor.h"
#include "app/GoodMovement.h"
#include "app/ShellUi.h"

#include <QMainWindow>
#include <QString>

#include <optional>
#include <span>

class QMenu;
class QToolBar;

namespace Tracelyn {

class CContextMenu;
class CMeasureDock;
class CMenuBar;
class CStatusPanes;
struct Analysis;
struct ReadResult;

class CMainFrame : public QMainWindow {
    Q_OBJECT

public:
    // Borrows the ui, which must outlive the frame. The window is built by LoadFrame.
    explicit CMainFrame(CShellUi& ui);

    // 0 to 3; counts for every file that is loaded from now on.
    void SetAccessLevel(int level) { m_nAccessLevel = level; }
    // Builds view, toolbar, status bar and menus, and gives the window its size.
    void LoadFrame();
    // Loads the file unless the path is empty. Shows the problems found before it returns.
    void OpenFromCommandLine(const QString& path);

    CChildView& GetView() { return *m_pView; }
    QAction& GetAction(CommandId id) const { return m_Commands.GetAction(id); }

Q_SIGNALS:
    void AboutRequested();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    // The toolbar is hidden through the View menu alone.
    QMenu* createPopupMenu() override { return nullptr; }
    bool focusNextPrevChild(bool /*next*/) override { return false; }

private:
    static QList<FileFilter> GetAnalysisFilters();
    void CreateMenus();
    void CreateToolBar();
    void AddMenu(const QString& title, std::initializer_list<CommandId> ids);

    void OnCommand(CommandId id);
    void UpdateCommands();
    void OnFileOpen();
    // What Open does with the file that the user has chosen.
    void OpenChosen(const QString& path);
    // The file that a drop opens; none, and the drop is refused, when it cannot open any now.
    std::optional<QString> AnswerDrag(QDropEvent& event) const;
    void OnFileClose();
    void OnFileSave();
    void OnSaveCsv();
    void OnStep(bool toNext);
    void OnMeasure();
    void OnSaveMeasured();
    // Lets the dock, if it is shown, measure the loaded recording.
    void MeasureLoaded();
    void OnCompareWith();
    void CompareWith(const QString& path);
    void StopComparing();
    // After anything that the comparison depends on has changed.
    void UpdateComparison();
    // Tells what is odd about the comparison with the file that was just loaded.
    void RemarkComparison();
    void FillAlignMenu(QMenu& menu);
    void OnCopyPicture();
    void OnCopyValues();
    void OnSavePicture();
    // False when the picture could not be written; nothing has changed then.
    bool SavePictureTo(const QString& path);

    // Loads the current file of the measurement set in place of whatever was loaded before.
    void LoadFile();
    void LoadCurrentFile();
    // Through the view. Nothing when the user closed the window meanwhile.
    std::optional<Analysis> ReadCurrentFile();
    // One box each, in order; from the 21st on the rest may be skipped.
    void ShowResults(std::span<const ReadResult> results);
    void UpdateTitle();

    void SaveTo(const QString& path);
    // Writes the table and says how that ended.
    void ExportTo(const QString& path);
    QString DefaultName() const { return m_FileSet.GetBaseName() + m_FileSet.GetNumberText(); }
    void ShowError(const QString& text);
    // A box with the program's name as its caption.
    void ShowMessage(MessageIcon icon, const QString& text);

    CShellUi& m_Ui;
    CCommands m_Commands;
    // The widgets belong to the window.
    CChildView* m_pView = nullptr;
    CMenuBar* m_pMenuBar = nullptr;
    QToolBar* m_pToolBar = nullptr;
    CStatusPanes* m_pStatusPanes = nullptr;
    CMeasureDock* m_pMeasure = nullptr; // made when it is first asked for
    CContextMenu* m_pContextMenu = nullptr;
    CGoodMovement m_Good;
    QString m_strFileLabel;
    QString m_strLastPath;
    QString m_strTitle;
    CFileSetDescriptor m_FileSet;
    int m_nAccessLevel = 0;
    bool m_bClosed = false; // by the user; what is under way ends
};

} // namespace Tracelyn
