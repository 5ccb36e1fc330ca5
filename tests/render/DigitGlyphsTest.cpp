// Numbers without shaping look as the toolkit shapes them.
#include "render/DigitGlyphs.h"
#include "Testing.h"
#include "render/SmallFont.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>

#include <random>
#include <thread>

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
        EXPECT_EQ(digits.GetWidth(text), QFontMetrics(font).horizontalAdvance(text)) << qPrintable(text);
        for (const double scale : {1.0, 2.0, 1.25}) {
            const QImage shaped = Picture([&](QPainter& painter) { painter.drawText(4, 14, text); }, scale);
            const QImage placed = Picture(
                [&](QPainter& painter) {
                    EXPECT_TRUE(digits.Draw(painter, {4, 14}, text));
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
                text += QLatin1String("0123456789")[static_cast<qsizetype>(upTo(10))];
            for (const QLatin1String other : {QLatin1String(" "), QLatin1String("-"), QLatin1String(".")})
                if (upTo(2) == 0)
                    text.insert(static_cast<qsizetype>(upTo(static_cast<size_t>(text.size()) + 1)), other);
            ExpectLikeTheToolkit(text);
        }
    }
}

TEST_F(DigitGlyphs, LeaveOtherTextsToTheToolkit) {
    const QString longest = QStringLiteral("1").repeated(64);
    ExpectLikeTheToolkit(longest);
    for (const QString& text :
         {QString(), longest + u'1', QStringLiteral("1,5"), QStringLiteral("nan"), QStringLiteral("..."),
          QStringLiteral("1-2-3"), QStringLiteral("12:"), QString(QChar(0x0661))}) {
        EXPECT_FALSE(digits.GetWidth(text)) << qPrintable(text);
        EXPECT_EQ(Picture([&](QPainter& painter) {
                      EXPECT_FALSE(digits.Draw(painter, {4, 14}, text));
                  }),
                  Picture([](QPainter&) {}));
    }
}

TEST_F(DigitGlyphs, LeaveOtherPaintersAndFontsToTheToolkit) {
    const QString text = QStringLiteral(" -1.5");
    const auto isLeft = [&](auto change) {
        Picture([&](QPainter& painter) {
            change(painter);
            EXPECT_FALSE(digits.Draw(painter, {4, 14}, text));
        });
    };
    isLeft([](QPainter& painter) { painter.setLayoutDirection(Qt::RightToLeft); });
    isLeft([](QPainter& painter) { painter.setBackgroundMode(Qt::OpaqueMode); });
    QFont bold = font;
    bold.setBold(true);
    isLeft([&](QPainter& painter) { painter.setFont(bold); });

    QFont spaced = font;
    spaced.setLetterSpacing(QFont::AbsoluteSpacing, 1);
    QFont underlined = font;
    underlined.setUnderline(true);
    for (const QFont& other : {spaced, underlined})
        EXPECT_FALSE(CDigitGlyphs(other).GetWidth(text));
}

// On Windows another thread frees the fonts of a thread that the toolkit did not make, which crashes after
// any text.
#ifndef _WIN32
TEST_F(DigitGlyphs, AreDrawnInOneThreadAfterAnother) {
    const QString text = QStringLiteral(" -1.5");
    const auto draw = [&] {
        return Picture([&](QPainter& painter) { EXPECT_TRUE(digits.Draw(painter, {4, 14}, text)); });
    };
    QImage first;
    std::thread([&] { first = draw(); }).join();
    QImage second;
    std::thread([&] { second = draw(); }).join();
    EXPECT_EQ(first, second);
    EXPECT_EQ(draw(), first);
}
#endif
