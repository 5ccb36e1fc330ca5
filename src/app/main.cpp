// tracelyn: the viewer's process entry.
#include "Assertion.h"
#include "CommandLine.h"
#include "NativeShellUi.h"
#include "Startup.h"
#include "TracelynApp.h"

#include <QApplication>
#include <QMessageBox>

#include <cstdio>

namespace {

// A user without a terminal sees the report too.
void ShowAssertion(const QString& text) {
    std::fprintf(stderr, "%s\n", text.toUtf8().constData());
    QMessageBox::critical(nullptr, QStringLiteral("Tracelyn"), text);
}

int MainFunction(int& argc, char** argv) {
    const QApplication application(argc, argv);
    support::SetAssertionReporter(ShowAssertion);
    CNativeShellUi ui;
    CTracelynApp app(ui);
    app.InitInstance(QCoreApplication::arguments().mid(1));
    const int result = QApplication::exec();
    support::SetAssertionReporter({});
    return result;
}

} // namespace

int main(int argc, char** argv) {
    // The splitting only counts the arguments; their text comes from the toolkit, which knows every system's
    // encoding.
    return support::RunMain(support::ProcessCommandLine(argc, argv),
                            [&](const std::vector<std::string>&) { return MainFunction(argc, argv); });
}
