#include "WindowTesting.h"

#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

namespace Tracelyn {

void RecordingUi::ShowMessage(MessageIcon icon, const QString& caption, const QString& text) {
    m_Messages.push_back((icon == MessageIcon::Stop ? "stop|" : "info|") + caption.toStdString() + "|" +
                         text.toStdString());
    if (onMessage)
        onMessage();
}

bool RecordingUi::ShowMessageOrSkip(MessageIcon icon, const QString& caption, const QString& text) {
    ShowMessage(icon, caption, text);
    return --offersUntilSkip == 0;
}

std::optional<QString> RecordingUi::Answer(const FileRequest& request) {
    requests.push_back(request);
    if (answers.empty())
        return std::nullopt;
    const auto answer = answers.front();
    answers.pop_front();
    return answer;
}

WindowUnderTest::WindowUnderTest(const QStringList& arguments) {
    app.InitInstance(arguments);
    QApplication::setActiveWindow(&Frame());
    // The first frame may come later than the window: only it knows the last sample.
    const auto isPainted = [this] {
        Client()->repaint();
        return Graph().GetLastIndex() == Graph().GetData().GetMaxCount() - 1;
    };
    if (!QTest::qWaitForWindowActive(&Frame()) || !QTest::qWaitFor(isPainted))
        qFatal("the window does not show");
    Settle();
}

// A closed window has told the application to quit; let it, or every later event loop ends at once.
WindowUnderTest::~WindowUnderTest() {
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QApplication::exec();
}

void WindowUnderTest::Settle() {
    QCoreApplication::processEvents();
    QEvent paint(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(&Frame(), &paint);
}

void WindowUnderTest::Key(int key, Qt::KeyboardModifiers modifiers) {
    // Through the window, so that its shortcuts see the key first.
    QTest::keyClick(Frame().windowHandle(), static_cast<Qt::Key>(key), modifiers);
    Settle();
}

QImage WindowUnderTest::Screen() {
    Settle();
    const QPixmap all = Frame().screen()->grabWindow(Frame().winId());
    const double scale = all.devicePixelRatio();
    const QPoint at = Client()->mapTo(&Frame(), QPoint());
    const QRectF client(QPointF(at) * scale, QSizeF(Client()->size()) * scale);
    return all.toImage().copy(client.toAlignedRect());
}

SampleFolder::SampleFolder() {
    for (const char* const name : {"bend01.paf", "bend02.paf", "bend03.paf"})
        Copy(name, name);
}

QString SampleFolder::Copy(const QString& sample, const QString& name) const {
    EXPECT_TRUE(QFile::copy(SAMPLES_DIR "/" + sample, Path(name)));
    return Path(name);
}

bool PaintCounter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Paint) {
        ++paints;
        for (const QRect& rect : static_cast<QPaintEvent*>(event)->region())
            area += int64_t{rect.width()} * rect.height();
    }
    return QObject::eventFilter(watched, event);
}

namespace {

QImage GrayOf(const QPixmap& picture) {
    return picture.toImage().convertToFormat(QImage::Format_Grayscale8);
}

// The left edge of `part` in the picture, -1 when it is not there. Backgrounds may differ a little.
int Find(const QImage& picture, const QImage& part) {
    const auto isAt = [&](int left, int top) {
        for (int y = 0; y < part.height(); ++y) {
            const uchar* const there = picture.constScanLine(top + y) + left;
            if (!std::equal(there, there + part.width(), part.constScanLine(y),
                            [](int a, int b) { return std::abs(a - b) <= 24; }))
                return false;
        }
        return true;
    };
    for (int left = 0; left + part.width() <= picture.width(); ++left) {
        for (int top = 0; top + part.height() <= picture.height(); ++top) {
            if (isAt(left, top))
                return left;
        }
    }
    return -1;
}

} // namespace

int PaintedAt(QWidget& widget, const QString& text) {
    const QFontMetrics metrics = widget.fontMetrics();
    const QRect box = metrics.boundingRect(QString(text).remove('&'));
    const QImage shown = GrayOf(widget.grab());
    int at = -1;
    // What is aligned to the right may begin between two pixels. Some styles have menus of another colour.
    for (int i = 0; i < 32 && at == -1; ++i) {
        QPixmap ink(box.size());
        ink.fill(widget.palette().color(i % 2 == 0 ? QPalette::Window : QPalette::Base));
        QPainter painter(&ink);
        painter.setFont(widget.font());
        painter.setPen(widget.palette().color(QPalette::WindowText));
        painter.drawText(QRectF(i / 2 / 16.0 - box.left(), -box.top() - metrics.ascent(), 1000, 1000),
                         Qt::TextShowMnemonic | Qt::TextSingleLine, text);
        painter.end();
        at = Find(shown, GrayOf(ink));
    }
    return at == -1 ? at : at - box.left();
}

WhenModal::WhenModal(const std::function<void(QDialog&)>& act) {
    QObject::connect(&m_Poll, &QTimer::timeout, [this, act] {
        if (auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
            m_Poll.stop();
            act(*dialog);
        }
    });
    m_Poll.start(10);
}

} // namespace Tracelyn
