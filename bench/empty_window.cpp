// The least that a window of the toolkit costs: a menu, a tool bar, a status bar and nothing to show.
#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    window.menuBar()->addMenu(QStringLiteral("&File"))->addAction(QStringLiteral("&Close"));
    window.addToolBar(QStringLiteral("Tools"))->addAction(QStringLiteral("Close"));
    window.statusBar()->showMessage(QStringLiteral("Ready"));
    window.resize(1280, 720);
    window.show();
    return QApplication::exec();
}
