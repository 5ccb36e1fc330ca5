#include "app/Commands.h"

#include "app/Artwork.h"

#include <QCoreApplication>
#include <QWidget>

#include <initializer_list>

namespace Tracelyn {

namespace {

struct CommandText {
    CommandId id;
    // As the menu shows it; empty for commands that are on no menu.
    const char* menu;
    // Shown in the status bar.
    const char* prompt;
    const char* toolTip;
    const char* icon;
    bool checkable;
    QList<QKeySequence> keys;
};

QList<CommandText> Texts() {
    return {
        {CommandId::FileOpen,
         QT_TRANSLATE_NOOP("Commands", "&Open"),
         QT_TRANSLATE_NOOP("Commands", "Open file"),
         QT_TRANSLATE_NOOP("Commands", "Open"),
         "open",
         false,
         {}},
        {CommandId::FileSave,
         QT_TRANSLATE_NOOP("Commands", "&Save..."),
         QT_TRANSLATE_NOOP("Commands", "Save..."),
         "",
         "",
         false,
         {}},
        {CommandId::SaveCsv,
         QT_TRANSLATE_NOOP("Commands", "S&ave CSV..."),
         QT_TRANSLATE_NOOP("Commands", "Export to CSV file"),
         QT_TRANSLATE_NOOP("Commands", "Export"),
         "",
         false,
         {}},
        {CommandId::FileClose, QT_TRANSLATE_NOOP("Commands", "&Close"), "", "", "", false, {}},
        {CommandId::Exit, QT_TRANSLATE_NOOP("Commands", "E&xit"), "", "", "", false, {}},
        {CommandId::ViewToolbar, QT_TRANSLATE_NOOP("Commands", "&Toolbar"), "", "", "", true, {}},
        {CommandId::ViewStatusBar, QT_TRANSLATE_NOOP("Commands", "&Status Bar"), "", "", "", true, {}},
        {CommandId::PreviousFile,
         QT_TRANSLATE_NOOP("Commands", "&Previous file"),
         QT_TRANSLATE_NOOP("Commands", "Load previous file from this set"),
         QT_TRANSLATE_NOOP("Commands", "Previous file"),
         "previous",
         false,
         {Qt::Key_F2}},
        {CommandId::NextFile,
         QT_TRANSLATE_NOOP("Commands", "&Next file"),
         QT_TRANSLATE_NOOP("Commands", "Load next file from this set"),
         QT_TRANSLATE_NOOP("Commands", "Next file"),
         "next",
         false,
         {Qt::Key_F3}},
        {CommandId::ChangeBackground,
         QT_TRANSLATE_NOOP("Commands", "&Change background color"),
         "",
         "",
         "",
         false,
         {}},
        {CommandId::ZoomIn,
         QT_TRANSLATE_NOOP("Commands", "Zoom &in"),
         QT_TRANSLATE_NOOP("Commands", "Zoom in"),
         QT_TRANSLATE_NOOP("Commands", "Zoom in"),
         "zoom-in",
         false,
         {Qt::Key_Up}},
        {CommandId::ZoomOut,
         QT_TRANSLATE_NOOP("Commands", "Zoom &out"),
         QT_TRANSLATE_NOOP("Commands", "Zoom out"),
         QT_TRANSLATE_NOOP("Commands", "Zoom out"),
         "zoom-out",
         false,
         {Qt::Key_Down}},
        {CommandId::ZoomReset,
         QT_TRANSLATE_NOOP("Commands", "Zoom &reset"),
         QT_TRANSLATE_NOOP("Commands", "Show entire graph"),
         QT_TRANSLATE_NOOP("Commands", "Show entire graph"),
         "zoom-reset",
         false,
         {Qt::Key_Home}},
        {CommandId::ToggleFixedCursor,
         QT_TRANSLATE_NOOP("Commands", "Toggle fixed cursor"),
         QT_TRANSLATE_NOOP("Commands", "Toggle the fixed cursor"),
         QT_TRANSLATE_NOOP("Commands", "Toggle the fixed cursor"),
         "fixed-cursor",
         true,
         // The menu names the first.
         {Qt::Key_Enter, Qt::Key_Return}},
        {CommandId::About, QT_TRANSLATE_NOOP("Commands", "&Help"), "", "", "", false, {Qt::Key_F1}},
        {CommandId::CursorLeft, "", "", "", "", false, {Qt::Key_Left}},
        {CommandId::CursorRight, "", "", "", "", false, {Qt::Key_Right}},
        {CommandId::FastLeft, "", "", "", "", false, {Qt::SHIFT | Qt::Key_Left, Qt::Key_End}},
        {CommandId::FastRight, "", "", "", "", false, {Qt::SHIFT | Qt::Key_Right, Qt::Key_PageDown}},
        {CommandId::SelectNextGroup, "", "", "", "", false, {Qt::SHIFT | Qt::Key_PageDown}},
        {CommandId::SelectPreviousGroup, "", "", "", "", false, {Qt::SHIFT | Qt::Key_PageUp}},
        {CommandId::ToggleSelectedGroup, "", "", "", "", false, {Qt::Key_Space}},
        {CommandId::ShowEveryEvent,
         QT_TRANSLATE_NOOP("Commands", "Show every &event"),
         QT_TRANSLATE_NOOP("Commands", "Hide no sample in view, however short an event is"),
         "",
         "",
         true,
         {}},
        {CommandId::Measure,
         QT_TRANSLATE_NOOP("Commands", "&Measure"),
         QT_TRANSLATE_NOOP("Commands", "Show figures of the signals between the cursors"),
         "",
         "",
         true,
         {}},
        {CommandId::CompareWith,
         QT_TRANSLATE_NOOP("Commands", "C&ompare with..."),
         QT_TRANSLATE_NOOP("Commands", "Draw a second recording behind this one"),
         "",
         "",
         false,
         {}},
        {CommandId::KeepForSet,
         QT_TRANSLATE_NOOP("Commands", "&Keep for the set"),
         QT_TRANSLATE_NOOP("Commands", "Compare the other files of the set with it, too"),
         "",
         "",
         true,
         {}},
        {CommandId::StopComparing,
         QT_TRANSLATE_NOOP("Commands", "S&top comparing"),
         QT_TRANSLATE_NOOP("Commands", "Remove the second recording"),
         "",
         "",
         false,
         {}},
        {CommandId::EventAtFixedCursor,
         QT_TRANSLATE_NOOP("Commands", "Event at the fi&xed cursor"),
         QT_TRANSLATE_NOOP("Commands", "Put the event at the fixed cursor"),
         "",
         "",
         true,
         {}},
        {CommandId::CopyPicture,
         QT_TRANSLATE_NOOP("Commands", "&Copy picture"),
         QT_TRANSLATE_NOOP("Commands", "Copy the picture as it is on the screen"),
         "",
         "",
         false,
         {}},
        {CommandId::SavePicture,
         QT_TRANSLATE_NOOP("Commands", "&Save picture..."),
         QT_TRANSLATE_NOOP("Commands", "Save the picture as a PNG, SVG or PDF file"),
         "",
         "",
         false,
         {}},
        {CommandId::CopyValues,
         QT_TRANSLATE_NOOP("Commands", "Copy &values"),
         QT_TRANSLATE_NOOP("Commands", "Copy the values at the cursor, for a spreadsheet"),
         "",
         "",
         false,
         {}},
        {CommandId::CaptureLogfile,
         "",
         QT_TRANSLATE_NOOP("Commands", "Capture logfile of controller's next Y-movement"),
         QT_TRANSLATE_NOOP("Commands", "Capture next measurement"),
         "",
         false,
         {}},
    };
}

QString Translated(const char* text) {
    return *text == '\0' ? QString() : QCoreApplication::translate("Commands", text);
}

} // namespace

CCommands::CCommands(QWidget& window, const Handler& handler) {
    for (const CommandText& text : Texts()) {
        auto* const action = new QAction(Translated(text.menu), &window);
        action->setStatusTip(Translated(text.prompt));
        action->setToolTip(Translated(text.toolTip));
        if (*text.icon != '\0')
            action->setIcon(LoadIcon(QString::fromLatin1(text.icon)));
        action->setIconVisibleInMenu(false);
        action->setCheckable(text.checkable);
        action->setShortcuts(text.keys);
        action->setMenuRole(QAction::NoRole);
        const CommandId id = text.id;
        QObject::connect(action, &QAction::triggered, &window, [handler, id] { handler(id); });
        window.addAction(action);
        m_Actions.emplace(id, action);
    }
}

} // namespace Tracelyn
