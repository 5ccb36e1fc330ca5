#include "app/ShellUi.h"

#include "support/UserDevices.h"

#include <QApplication>
#include <QCursor>
#include <QDir>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QHeaderView>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTreeView>

#include <algorithm>
#include <iterator>

namespace Tracelyn {

namespace {

constexpr QSize kFileDialogSize(800, 480);

// The window that boxes and dialogs belong to: the dialog that is open, else the main window, once it is
// shown.
QWidget* OwnerWindow() {
    if (QWidget* const dialog = QApplication::activeModalWidget())
        return dialog;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && qobject_cast<QMainWindow*>(window) != nullptr)
            return window;
    }
    return nullptr;
}

// Tells icon and type of a file from its name alone. The toolkit's own provider reads every listed file to
// guess its type, which takes long in slow folders and never ends in some folders of the system.
class CNameIconProvider : public QFileIconProvider {
public:
    using QFileIconProvider::icon;

    QIcon icon(const QFileInfo& info) const override {
        return QFileIconProvider::icon(info.isDir() ? Folder : File);
    }
    QString type(const QFileInfo& info) const override {
        return info.isDir() ? QObject::tr("Folder") : info.suffix();
    }
};

// In the form that the toolkit expects: "csv Files (*.csv)".
QString NameFilterOf(const FileFilter& filter) {
    return QStringLiteral("%1 (%2)").arg(filter.label, filter.patterns.join(u' '));
}

// The extension that every file of the filter has; empty when it allows several or any.
QString ExtensionOf(const FileFilter& filter) {
    const bool isSingle = filter.patterns.size() == 1 && filter.patterns.first().startsWith(u"*.");
    return isSingle ? filter.patterns.first().mid(2) : QString();
}

// The extension of the filter that the dialog shows as `nameFilter`.
QString ExtensionOf(const QString& nameFilter, const QList<FileFilter>& filters) {
    const auto shown = std::ranges::find(filters, nameFilter, NameFilterOf);
    return shown == filters.end() ? QString() : ExtensionOf(*shown);
}

bool IsComplete(const QString& path, const QStringList& known) {
    return known.contains(QFileInfo(path).suffix(), Qt::CaseInsensitive);
}

// Adds the extension unless the path is complete. (The toolkit takes whatever follows a dot for an extension,
// so that "run.v2-05" would stay without one.)
QString WithExtension(const QString& path, const QString& extension, const QStringList& known) {
    return extension.isEmpty() || IsComplete(path, known) ? path : path + QLatin1Char('.') + extension;
}

// Whether a dialog has added the extension to a complete path. Some systems' dialogs do so with every
// extension that they do not know. A file that exists was not what the user had typed, or he would not know
// that it is written over.
bool IsAdded(const QString& path, const QString& extension, const QStringList& known) {
    const QString typed = path.chopped(extension.size() + 1);
    return !extension.isEmpty() && path.endsWith(u'.' + extension) && IsComplete(typed, known) &&
           !QFileInfo::exists(typed);
}

// True when the box offers to skip the rest and the user does.
bool Show(MessageIcon icon, const QString& caption, const QString& text, bool offersSkip) {
    const CScopedCursor arrow(Qt::ArrowCursor);
    QMessageBox box(icon == MessageIcon::Stop ? QMessageBox::Critical : QMessageBox::Information, caption,
                    text, QMessageBox::Ok, OwnerWindow());
    // File names and parser messages may hold what looks like markup.
    box.setTextFormat(Qt::PlainText);
    const QAbstractButton* skip = nullptr;
    if (offersSkip) {
        skip = box.addButton(QObject::tr("Skip the rest"), QMessageBox::RejectRole);
        box.setDefaultButton(QMessageBox::Ok);
        box.setEscapeButton(QMessageBox::Ok);
    }
    box.exec();
    return offersSkip && box.clickedButton() == skip;
}

// The toolkit's file dialog, made usable. It has no Q_OBJECT, as the toolkit gives the system's own dialog to
// objects of its own class only. What this class adds is for the toolkit's widgets; the system's dialogs do
// it anyway.
class CFileDialog : public QFileDialog {
public:
    explicit CFileDialog(QWidget* parent) : QFileDialog(parent), m_pList(findChild<QTreeView*>()) {
        if (m_pList == nullptr)
            return;
        resize(FittingSize(*this, kFileDialogSize));
        // Size, type and date are shown in full; the name has the rest. Looks at the rows in view only.
        QHeaderView& header = *m_pList->header();
        header.setStretchLastSection(false);
        header.setResizeContentsPrecision(0);
        header.setSectionResizeMode(QHeaderView::ResizeToContents);
        header.setSectionResizeMode(0, QHeaderView::Stretch);
    }

    // Whether it is the system's own dialog.
    bool IsOfSystem() const { return m_pList == nullptr; }

protected:
    // A file can be saved in an existing folder only.
    void accept() override {
        const QStringList files = selectedFiles();
        if (IsOfSystem() || acceptMode() == AcceptOpen || files.isEmpty() ||
            QFileInfo(files.constFirst()).absoluteDir().exists()) {
            QFileDialog::accept();
            return;
        }
        Show(MessageIcon::Stop, windowTitle(),
             QObject::tr("%1\nPath does not exist.\nCheck the path and try again.")
                 .arg(QDir::toNativeSeparators(files.constFirst())),
             false);
    }

private:
    // Null in the system's own dialog.
    QTreeView* m_pList;
};

std::optional<QString> Ask(QFileDialog::AcceptMode mode, const FileRequest& request) {
    const CScopedCursor arrow(Qt::ArrowCursor);
    // Declared before the dialog, which uses it until it is destroyed.
    CNameIconProvider icons;
    CFileDialog dialog(OwnerWindow());
    dialog.setIconProvider(&icons);
    dialog.setAcceptMode(mode);
    dialog.setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    // Without a title of ours, some systems show none.
    const QString usual = mode == QFileDialog::AcceptOpen ? QObject::tr("Open") : QObject::tr("Save As");
    dialog.setWindowTitle(request.title.isEmpty() ? usual : request.title);
    QStringList nameFilters;
    std::ranges::transform(request.filters, std::back_inserter(nameFilters), NameFilterOf);
    dialog.setNameFilters(nameFilters);
    dialog.setDefaultSuffix(request.defaultExtension);
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&](const QString& nameFilter) {
        const QString extension = ExtensionOf(nameFilter, request.filters);
        dialog.setDefaultSuffix(extension.isEmpty() ? request.defaultExtension : extension);
    });
    // The directory may be given as a file inside it.
    const QFileInfo directory(request.directory);
    dialog.setDirectory(directory.isDir() ? directory.absoluteFilePath() : directory.absolutePath());
    if (!request.fileName.isEmpty())
        dialog.selectFile(request.fileName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    const QString path = dialog.selectedFiles().constFirst();
    if (mode == QFileDialog::AcceptOpen)
        return QDir::toNativeSeparators(path);
    const QString extension = ExtensionOf(dialog.selectedNameFilter(), request.filters);
    const bool isAdded = dialog.IsOfSystem() && IsAdded(path, extension, request.knownExtensions);
    return QDir::toNativeSeparators(isAdded ? path.chopped(extension.size() + 1)
                                            : WithExtension(path, extension, request.knownExtensions));
}

} // namespace

QSize FittingSize(const QWidget& window, QSize wanted) {
    constexpr QSize kDecoration(16, 64);
    return wanted.boundedTo(window.screen()->availableSize() - kDecoration);
}

void CNativeShellUi::ShowMessage(MessageIcon icon, const QString& caption, const QString& text) {
    Show(icon, caption, text, false);
}

bool CNativeShellUi::ShowMessageOrSkip(MessageIcon icon, const QString& caption, const QString& text) {
    return Show(icon, caption, text, true);
}

std::optional<QString> CNativeShellUi::AskOpenFile(const FileRequest& request) {
    return Ask(QFileDialog::AcceptOpen, request);
}

std::optional<QString> CNativeShellUi::AskSaveFile(const FileRequest& request) {
    return Ask(QFileDialog::AcceptSave, request);
}

void CNativeShellUi::Beep(int hertz, int milliseconds) {
    if (!support::Beep(hertz, milliseconds))
        QApplication::beep();
}

CScopedCursor::CScopedCursor(Qt::CursorShape shape) {
    QApplication::setOverrideCursor(QCursor(shape));
}

CScopedCursor::~CScopedCursor() {
    QApplication::restoreOverrideCursor();
}

} // namespace Tracelyn
