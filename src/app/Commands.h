// The commands of the program: their numbers, and what each looks like: menu text, prompt, tool tip, icon and
// keys. Also the artwork that the icons are made of.
#pragma once

#include <QAction>
#include <QKeySequence>
#include <QList>
#include <QString>

#include <functional>
#include <map>

namespace Tracelyn {

enum class CommandId : int {
    CaptureLogfile = 135, // has its texts, but no menu, button or key starts it, and it does nothing
    PreviousFile = 137,
    NextFile = 138,
    SaveCsv = 141,
    ZoomOut = 32771,
    ZoomReset = 32772,
    ZoomIn = 32773,
    CursorLeft = 32774,
    CursorRight = 32775,
    FastLeft = 32776,
    FastRight = 32777,
    SelectNextGroup = 32778,
    SelectPreviousGroup = 32779,
    ToggleSelectedGroup = 32780,
    ToggleFixedCursor = 32781,
    ChangeBackground = 32792,
    // Of the context menu.
    CopyPicture = 33001,
    SavePicture = 33002,
    CopyValues = 33003,
    ShowEveryEvent = 33004,
    Measure = 33005,
    CompareWith = 33006,
    KeepForSet = 33007,
    StopComparing = 33008,
    EventAtFixedCursor = 33009,
    FileOpen = 57601,
    FileClose = 57602,
    FileSave = 57603,
    About = 57664,
    Exit = 57665,
    ViewToolbar = 59392,
    ViewStatusBar = 59393,
};

// The actions of the main window, one for each command; the window owns them. Their keys work whichever part
// of the window has the focus. Triggering one calls the handler with its command.
class CCommands {
public:
    using Handler = std::function<void(CommandId)>;

    CCommands(QWidget& window, const Handler& handler);

    QAction& GetAction(CommandId id) const { return *m_Actions.at(id); }
    void SetEnabled(CommandId id, bool enabled) { GetAction(id).setEnabled(enabled); }
    void SetChecked(CommandId id, bool checked) { GetAction(id).setChecked(checked); }

private:
    std::map<CommandId, QAction*> m_Actions;
};

} // namespace Tracelyn
