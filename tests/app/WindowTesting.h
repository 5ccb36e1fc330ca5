// A window under test: the real frame and view with a recording user interface and a file set of its own.
#pragma once

#include "Testing.h"
#include "app/MainFrm.h"
#include "app/ShellUi.h"
#include "app/TracelynApp.h"

#include <QDialog>
#include <QTest>
#include <QTimer>

#include <deque>

namespace Tracelyn {

// Records what the window says and answers what it asks; an unexpected dialog is cancelled.
class RecordingUi : public CShellUi {
public:
    void ShowMessage(MessageIcon icon, const QString& caption, const QString& text) override;
    bool ShowMessageOrSkip(MessageIcon icon, const QString& caption, const QString& text) override;
    std::optional<QString> AskOpenFile(const FileRequest& request) override { return Answer(request); }
    std::optional<QString> AskSaveFile(const FileRequest& request) override { return Answer(request); }
    void Beep(int hertz, int milliseconds) override {
        beeps.push_back(std::to_string(hertz) + "/" + std::to_string(milliseconds));
    }

    // "stop|caption|text" and "info|caption|text"; empties the list.
    std::vector<std::string> TakeMessages() { return std::exchange(m_Messages, {}); }

    std::deque<std::optional<QString>> answers;
    std::vector<FileRequest> requests;
    std::vector<std::string> beeps;
    // Boxes that offer to skip the rest until one is told to.
    int offersUntilSkip = -1;
    // Called while a box is open.
    std::function<void()> onMessage;

private:
    std::optional<QString> Answer(const FileRequest& request);

    std::vector<std::string> m_Messages;
};

class WindowUnderTest {
public:
    // Starts the program with the arguments and shows its window.
    explicit WindowUnderTest(const QStringList& arguments = {});
    ~WindowUnderTest();

    CMainFrame& Frame() { return app.GetFrame(); }
    CChildView& View() { return Frame().GetView(); }
    QWidget* Client() { return View().viewport(); }
    CGraph& Graph() { return View().GetGraph(); }
    int Cursor() { return Graph().GetCursorPosition(); }
    bool IsEnabled(CommandId id) { return Frame().GetAction(id).isEnabled(); }
    bool IsChecked(CommandId id) { return Frame().GetAction(id).isChecked(); }
    // Chooses the command as a menu or a toolbar button does.
    void Choose(CommandId id) { Frame().GetAction(id).trigger(); }
    // A key pressed wherever the focus is.
    void Key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    // Lets pending paints happen, which the toolkit may put off for some milliseconds.
    void Settle();
    // What the window shows, not what it would paint anew.
    QImage Screen();

    RecordingUi ui;
    CTracelynApp app{ui};
};

// Starts with a sample.
struct SampleUnderTest : WindowUnderTest {
    explicit SampleUnderTest(const QString& name = "bend01.paf")
        : WindowUnderTest({SAMPLES_DIR "/" + name}) {}
    CGraphDataGroup& Group(const char* name) { return *Graph().GetData().FindGroup(name); }
};

// A folder with copies of the samples 1 to 3, and room for more.
class SampleFolder : public TestFolder {
public:
    SampleFolder();
    // Copies a sample under another name.
    QString Copy(const QString& sample, const QString& name) const;
};

// How often and how much of it a widget has painted.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget* widget) { widget->installEventFilter(this); }

    int paints = 0;
    int64_t area = 0; // in pixels

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

// Where the text begins in what the widget shows, in pixels; -1 when the text is not to be seen there. "&"
// stands before an underlined letter.
int PaintedAt(QWidget& widget, const QString& text);

// Calls the function once with the modal window that opens next.
class WhenModal {
public:
    explicit WhenModal(const std::function<void(QDialog&)>& act);

private:
    QTimer m_Poll;
};

} // namespace Tracelyn
