// How the program talks to its user outside the picture: message boxes, file dialogs, the beep and the shape
// of the mouse pointer.
#pragma once

#include <QList>
#include <QSize>
#include <QString>
#include <QStringList>
#include <Qt>

#include <optional>

class QWidget;

namespace Tracelyn {

enum class MessageIcon { Stop, Information };

// A type of files that a dialog offers.
struct FileFilter {
    // What the user reads, without the patterns, which the dialog adds.
    QString label;
    // "*.paf", or "*" for every file.
    QStringList patterns;

    bool operator==(const FileFilter&) const = default;
};

struct FileRequest {
    // Empty for the usual one: "Open" or "Save As".
    QString title;
    // The first one is chosen when the dialog opens.
    QList<FileFilter> filters;
    // Appended to a name without extension while the chosen filter names no single one; empty for none.
    QString defaultExtension;
    QString fileName;
    QString directory;
    // A name that ends in one of these is complete and gets no other.
    QStringList knownExtensions{QStringLiteral("paf"), QStringLiteral("xml"), QStringLiteral("csv")};
};

// Implemented by the program with native boxes, and by the tests, which record and answer. Calls return when
// the user has answered.
class CShellUi {
public:
    virtual ~CShellUi() = default;

    virtual void ShowMessage(MessageIcon icon, const QString& caption, const QString& text) = 0;
    // The same for one of several messages: true when the user chooses to skip the rest.
    virtual bool ShowMessageOrSkip(MessageIcon icon, const QString& caption, const QString& text) = 0;
    // The full path chosen; nothing when cancelled. Open takes existing files only, Save existing
    // folders; it asks no question about overwriting.
    virtual std::optional<QString> AskOpenFile(const FileRequest& request) = 0;
    virtual std::optional<QString> AskSaveFile(const FileRequest& request) = 0;
    virtual void Beep(int hertz, int milliseconds) = 0;

protected:
    CShellUi() = default;
    CShellUi(const CShellUi&) = default;
    CShellUi& operator=(const CShellUi&) = default;
};

// The toolkit's message boxes and file dialogs. They belong to the main window once it is shown.
class CNativeShellUi : public CShellUi {
public:
    void ShowMessage(MessageIcon icon, const QString& caption, const QString& text) override;
    bool ShowMessageOrSkip(MessageIcon icon, const QString& caption, const QString& text) override;
    std::optional<QString> AskOpenFile(const FileRequest& request) override;
    std::optional<QString> AskSaveFile(const FileRequest& request) override;
    void Beep(int hertz, int milliseconds) override;
};

// The wanted size of a window, or as much of it as fits its screen together with what a desktop may add: a
// title bar and borders, which nobody knows before the window is shown.
QSize FittingSize(const QWidget& window, QSize wanted);

// Gives the mouse pointer a shape for as long as this object lives.
class CScopedCursor {
public:
    explicit CScopedCursor(Qt::CursorShape shape);
    CScopedCursor(const CScopedCursor&) = delete;
    CScopedCursor& operator=(const CScopedCursor&) = delete;
    ~CScopedCursor();
};

} // namespace Tracelyn
