#include "native/Picture.h"

#include "native/Conversion.h"
#include "native/LongCall.h"
#include "native/Measuring.h"

#include "measure/Comparison.h"
#include "render/Graph.h"
#include "render/Picture.h"
#include "render/PictureView.h"
#include "support/ScratchFolder.h"

#include <QFile>
#include <QGuiApplication>

#include <array>
#include <clocale>
#include <new>
#include <stdexcept>

namespace py = pybind11;

namespace Tracelyn {

namespace {

QtMessageHandler g_printMessage = nullptr;

// Drops the toolkit's remarks on the thread that starts it, which need not be the first one since nothing
// here has an event loop, and on a session without a runtime folder.
void PrintStartMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (!message.startsWith(QLatin1String("QStandardPaths: ")) &&
        !message.contains(QLatin1String("was not created in the main() thread")))
        g_printMessage(type, context, message);
}

// Fonts need a QGuiApplication. It lives as long as the process: the toolkit cannot be started twice, and
// after Python's end it is too late to stop it in order. The locale is Python's, not the toolkit's.
void StartToolkit() {
    // In a session without a runtime folder the toolkit would make one in the temporary folder and leave it
    // there.
    const auto folder = support::PrivateTemporaryFolder();
    const bool needsFolder = folder && qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR");
    if (needsFolder)
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(*folder));

    static int argc = 3;
    static std::array<char, 9> program{"tracelyn"};
    static std::array<char, 10> option{"-platform"};
    static std::array<char, 10> platform{"offscreen"};
    static std::array<char*, 4> argv{program.data(), option.data(), platform.data(), nullptr};
    const std::string locale = std::setlocale(LC_ALL, nullptr);
    g_printMessage = qInstallMessageHandler(PrintStartMessage);
    new QGuiApplication(argc, argv.data()); // NOLINT: see above
    qInstallMessageHandler(g_printMessage);
    std::setlocale(LC_ALL, locale.c_str());
    if (needsFolder)
        qunsetenv("XDG_RUNTIME_DIR");
}

// With the interpreter's lock, so that no two threads start it.
void NeedToolkit() {
    if (QCoreApplication::instance() == nullptr)
        StartToolkit();
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr)
        throw std::runtime_error("a picture needs a QGuiApplication, but the program has a QCoreApplication");
}

// Shows the model of a recording in a graph, and gives it back as it was.
class CShownRecording {
public:
    explicit CShownRecording(CLoadedRecording& recording) : m_Data(recording.BorrowData()) {
        for (const auto& group : m_Data.GetGroups())
            m_Expanded.push_back(group->m_bExpanded);
        m_Graph.GetData().Swap(m_Data);
    }
    CShownRecording(const CShownRecording&) = delete;
    CShownRecording& operator=(const CShownRecording&) = delete;
    ~CShownRecording() {
        m_Graph.GetData().Swap(m_Data);
        for (size_t i = 0; i < m_Expanded.size(); ++i)
            m_Data.GetGroups()[i]->m_bExpanded = m_Expanded[i];
    }

    CGraph& GetGraph() { return m_Graph; }

private:
    CGraphData& m_Data;
    std::vector<bool> m_Expanded;
    CGraph m_Graph;
};

std::optional<ConsolePlace> ToConsolePlace(const std::optional<std::string>& word) {
    if (!word)
        return std::nullopt;
    if (*word == "left")
        return ConsolePlace::Left;
    return *word == "right" ? ConsolePlace::Right : ConsolePlace::None;
}

// A recording to draw behind another, with the samples that lie on each other.
struct Behind {
    const CLoadedRecording& recording;
    int shift;
};

Behind MakeBehind(const CLoadedRecording& good, const CLoadedRecording& recording,
                  const std::optional<QString>& align) {
    const int goodZero = ZeroOf(good, align);
    const int zero = ZeroOf(recording, align);
    if (!HaveCommonSignal(MatchSignals(good.GetData(), recording.GetData())))
        throw std::invalid_argument(QStringLiteral("%1: no signal is also in %2")
                                        .arg(recording.GetPath(), good.GetPath())
                                        .toStdString());
    return {good, zero - goodZero};
}

QByteArray Draw(CLoadedRecording& recording, const PictureView& view, const std::optional<Behind>& behind) {
    COffscreenWindow window(view.size);
    if (window.GetImage().isNull())
        throw std::bad_alloc();
    CShownRecording shown(recording);
    CGraph& graph = shown.GetGraph();
    if (const auto missing = ShowView(graph, window, view))
        throw std::invalid_argument(
            QStringLiteral("toggle: the file has no group '%1'").arg(*missing).toStdString());
    if (behind)
        graph.ShowBehind(window, &behind->recording.GetData(), behind->shift);
    QByteArray picture = EncodePicture(graph, window, PictureFormat::Png, recording.GetRecording().GetName());
    if (picture.isEmpty())
        throw std::bad_alloc();
    return picture;
}

} // namespace

py::bytes DrawPicture(CLoadedRecording& recording, std::pair<int, int> size, bool dark,
                      std::optional<int> cursor, std::optional<int> fixedCursor, std::optional<float> zoom,
                      std::optional<int> scroll, const std::optional<std::string>& console,
                      const std::vector<std::string>& toggledGroups, bool everyEvent,
                      const CLoadedRecording* behind, const std::optional<std::string>& align) {
    PictureView view{QSize(size.first, size.second), dark, cursor,    fixedCursor, zoom, scroll,
                     ToConsolePlace(console),        {},   everyEvent};
    for (const std::string& name : toggledGroups)
        view.toggledGroups.append(FromPython(name));
    if (behind == &recording)
        RaiseValueError(QStringLiteral("'%1' is the recording itself").arg(recording.GetPath()));
    NeedToolkit();
    const QByteArray picture = CallUnlocked([&](const support::Progress& /*progress*/) {
        std::unique_lock own(recording.GetMutex(), std::defer_lock);
        if (behind == nullptr) {
            own.lock();
            return Draw(recording, view, std::nullopt);
        }
        std::unique_lock other(behind->GetMutex(), std::defer_lock);
        std::lock(own, other);
        const auto alignSignal = align ? std::optional(FromPython(*align)) : std::nullopt;
        return Draw(recording, view, MakeBehind(*behind, recording, alignSignal));
    });
    return {picture.constData(), static_cast<size_t>(picture.size())};
}

} // namespace Tracelyn
