// Numbers without shaping look as the toolkit shapes them.
#include "render/DigitGlyphs.h"
#include "Testing.h"
#include "render/SmallFont.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include <random>

using namespace Tracelyn;

namespace {

struct DigitGlyphs : ::testing::Test {
    // What `draw` draws with the font, at a scale factor.
    template <class Draw>
    QImage Picture(Draw draw, double scale = 1) const {
        QImage image(500, 40, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.scale(scale, scale);
        painter.setFont(font);
        painter.setPen(Qt::darkRed);
        draw(painter);
        return image;
    }

    void ExpectLikeTheToolkit(const QString& text) {
        EXPECT_EQ(*digits.GetWidth(text), QFontMetrics(font).horizontalAdvance(text)) << qPrintable(text);
        for (const double scale : {1.0, 2.0, 1.25}) {
            const QImage shaped = Picture([&](QPainter& painter) { painter.drawText(4, 14, text); }, scale);
            const QImage placed = Picture(
                [&](QPainter& painter) {
                    digits.Draw(painter, {4, 14}, text);
                },
                scale);
            EXPECT_EQ(placed, shaped) << qPrintable(text) << " in " << qPrintable(font.family());
        }
    }

    QFont font = CSmallFont::MakeFont();
    CDigitGlyphs digits{font};
};

} // namespace

TEST_F(DigitGlyphs, LookLikeTheToolkitsInEveryFont) {
    std::minstd_rand random(7);
    const auto upTo = [&](size_t end) { return random() % end; };
    QStringList families = QFontDatabase::families();
    families.prepend(QString());
    for (const QString& family : families) {
        if (!family.isEmpty())
            font.setFamilies({family});
        digits = CDigitGlyphs(font);
        if (!family.isEmpty() && !digits.GetWidth(QStringLiteral("0")))
            continue;
        ExpectLikeTheToolkit(QStringLiteral(" -12.345"));
        for (int i = 0; i < 50; ++i) {
            QString text;
            for (size_t length = 1 + upTo(40); length > 0; --length)
                text += QLatin1String(" -.0123456789")[static_cast<qsizetype>(upTo(13))];
            ExpectLikeTheToolkit(text);
        }
    }
}

TEST_F(DigitGlyphs, LeaveOtherTextsToTheToolkit) {
    const QString longest = QStringLiteral("1").repeated(64);
    ExpectLikeTheToolkit(longest);
    for (const QString& text : {QString(), longest + u'1', QStringLiteral("1,5"), QStringLiteral("nan"),
                                QStringLiteral("/"), QStringLiteral("12:"), QString(QChar(0x0661))}) {
        EXPECT_FALSE(digits.GetWidth(text)) << qPrintable(text);
        EXPECT_EQ(Picture([&](QPainter& painter) {
                      EXPECT_FALSE(digits.Draw(painter, {4, 14}, text));
                  }),
                  Picture([](QPainter&) {}));
    }
    // The minus would stand on the other side.
    Picture([&](QPainter& painter) {
        painter.setLayoutDirection(Qt::RightToLeft);
        EXPECT_FALSE(digits.Draw(painter, {4, 14}, QStringLiteral("-1")));
    });
}
