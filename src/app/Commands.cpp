#include "app/Commands.h"

#include <QCoreApplication>
#include <QFile>
#include <QWidget>

#include <initializer_list>

// The resources lie in a static library, from which the linker takes only what is named. The macro declares a
// function of the global namespace.
static void RegisterArtwork() {
    Q_INIT_RESOURCE(icons);
}

namespace Tracelyn {

namespace {

struct CommandText {
    Q_DECLARE_TR_FUNCTIONS(CommandText)

public:
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
         QT_TR_NOOP("&Open"),
         QT_TR_NOOP("Open file"),
         QT_TR_NOOP("Open"),
         "open",
         false,
         {}},
        {CommandId::FileSave, QT_TR_NOOP("&Save..."), QT_TR_NOOP("Save..."), "", "", false, {}},
        {CommandId::SaveCsv,
         QT_TR_NOOP("S&ave CSV..."),
         QT_TR_NOOP("Export to CSV file"),
         QT_TR_NOOP("Export"),
         "",
         false,
         {}},
        {CommandId::FileClose, QT_TR_NOOP("&Close"), "", "", "", false, {}},
        {CommandId::Exit, QT_TR_NOOP("E&xit"), "", "", "", false, {}},
        {CommandId::ViewToolbar, QT_TR_NOOP("&Toolbar"), "", "", "", true, {}},
        {CommandId::ViewStatusBar, QT_TR_NOOP("&Status Bar"), "", "", "", true, {}},
        {CommandId::PreviousFile,
         QT_TR_NOOP("&Previous file"),
         QT_TR_NOOP("Load previous file from this set"),
         QT_TR_NOOP("Previous file"),
         "previous",
         false,
         {Qt::Key_F2}},
        {CommandId::NextFile,
         QT_TR_NOOP("&Next file"),
         QT_TR_NOOP("Load next file from this set"),
         QT_TR_NOOP("Next file"),
         "next",
         false,
         {Qt::Key_F3}},
        {CommandId::ChangeBackground, QT_TR_NOOP("&Change background color"), "", "", "", false, {}},
        {CommandId::ZoomIn,
         QT_TR_NOOP("Zoom &in"),
         QT_TR_NOOP("Zoom in"),
         QT_TR_NOOP("Zoom in"),
         "zoom-in",
         false,
         {Qt::Key_Up}},
        {CommandId::ZoomOut,
         QT_TR_NOOP("Zoom &out"),
         QT_TR_NOOP("Zoom out"),
         QT_TR_NOOP("Zoom out"),
         "zoom-out",
         false,
         {Qt::Key_Down}},
        {CommandId::ZoomReset,
         QT_TR_NOOP("Zoom &reset"),
         QT_TR_NOOP("Show entire graph"),
         QT_TR_NOOP("Show entire graph"),
         "zoom-reset",
         false,
         {Qt::Key_Home}},
        {CommandId::ToggleFixedCursor,
         QT_TR_NOOP("Toggle fixed cursor"),
         QT_TR_NOOP("Toggle the fixed cursor"),
         QT_TR_NOOP("Toggle the fixed cursor"),
         "fixed-cursor",
         true,
         {Qt::Key_Return, Qt::Key_Enter}},
        {CommandId::About, QT_TR_NOOP("&Help"), "", "", "", false, {Qt::Key_F1}},
        {CommandId::CursorLeft, "", "", "", "", false, {Qt::Key_Left}},
        {CommandId::CursorRight, "", "", "", "", false, {Qt::Key_Right}},
        {CommandId::FastLeft, "", "", "", "", false, {Qt::SHIFT | Qt::Key_Left, Qt::Key_End}},
        {CommandId::FastRight, "", "", "", "", false, {Qt::SHIFT | Qt::Key_Right, Qt::Key_PageDown}},
        {CommandId::SelectNextGroup, "", "", "", "", false, {Qt::SHIFT | Qt::Key_PageDown}},
        {CommandId::SelectPreviousGroup, "", "", "", "", false, {Qt::SHIFT | Qt::Key_PageUp}},
        {CommandId::ToggleSelectedGroup, "", "", "", "", false, {Qt::Key_Space}},
        {CommandId::CaptureLogfile,
         "",
         QT_TR_NOOP("Capture logfile of controller's next Y-movement"),
         QT_TR_NOOP("Capture next measurement"),
         "",
         false,
         {}},
    };
}

QString Translated(const char* text) {
    return *text == '\0' ? QString() : CommandText::tr(text);
}

} // namespace

QIcon LoadIcon(const QString& name) {
    RegisterArtwork();
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        const QString file = QStringLiteral(":/icons/%1-%2.png").arg(name).arg(size);
        if (QFile::exists(file))
            icon.addFile(file);
    }
    return icon;
}

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
