#include "app/Artwork.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>

#include <algorithm>
#include <iterator>
#include <map>

// The resources lie in a static library, from which the linker takes only what is named. The macro declares a
// function of the global namespace.
static void RegisterArtwork() {
    Q_INIT_RESOURCE(icons);
}

namespace Tracelyn {

namespace {

// The toolkit's own engine decodes all sizes at once; of most icons one size is ever shown, or none.
class CArtwork : public QIconEngine {
public:
    explicit CArtwork(const QString& name) {
        for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
            const QString file = QStringLiteral(":/icons/%1-%2.png").arg(name).arg(size);
            if (QFile::exists(file))
                m_Sizes.emplace(size, Picture{file, {}});
        }
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const qreal scale = painter->device()->devicePixelRatioF();
        if (const QIcon* const icon = Find((QSizeF(rect.size()) * scale).toSize()))
            icon->paint(painter, rect, Qt::AlignCenter, mode, state);
    }

    // In pixels of the screen.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        const QIcon* const icon = Find(size);
        return icon != nullptr ? icon->pixmap(size, 1.0, mode, state) : QPixmap();
    }

    QSize actualSize(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        const QIcon* const icon = Find(size);
        return icon != nullptr ? icon->actualSize(size, mode, state) : QSize();
    }

    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        QList<QSize> sizes;
        for (const auto& [size, picture] : m_Sizes)
            sizes.append({size, size});
        return sizes;
    }

    bool isNull() override { return m_Sizes.empty(); }
    QString key() const override { return QStringLiteral("Artwork"); }
    QIconEngine* clone() const override { return new CArtwork(*this); }

private:
    struct Picture {
        QString file;
        QIcon icon;
    };

    // The smallest picture that need not be enlarged, or the largest; null when there is none.
    const QIcon* Find(const QSize& size) {
        if (m_Sizes.empty())
            return nullptr;
        auto found = m_Sizes.lower_bound(std::max(size.width(), size.height()));
        if (found == m_Sizes.end())
            found = std::prev(found);
        Picture& picture = found->second;
        if (picture.icon.isNull())
            picture.icon = QIcon(picture.file);
        return &picture.icon;
    }

    std::map<int, Picture> m_Sizes; // in pixels, of each side
};

} // namespace

QIcon LoadIcon(const QString& name) {
    RegisterArtwork();
    return QIcon(new CArtwork(name)); // the icon owns it
}

} // namespace Tracelyn
