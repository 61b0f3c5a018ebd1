#include "render/text_drawing.h"

#include "render/blur.h"
#include "render/conversions.h"
#include "render_fixture.h"

#include <cmath>
#include <limits>

namespace velmora
{
namespace
{

using enum TextHorizontalAlignment;

/// Helvetica Neue's line: ascent 0.952, descent 0.213, leading 0.028 of the size.
constexpr double neueAscent = 0.952;
constexpr double neueLine = 1.193;

TextBlock block(const std::string& text, double size, double width, TextHorizontalAlignment alignment = left)
{
    return TextBlock(text, Fonts::resolve("HelveticaNeue"), size, width, alignment);
}

QImage drawn(const TextBlock& text, double scale = 1)
{
    QImage image(static_cast<int>(220 * scale), static_cast<int>(120 * scale), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.scale(scale, scale);
    text.draw(painter, {10, 10}, Qt::black);
    return image;
}

TEST(TextBlock, breaksLines)
{
    const struct {
        const char* name;
        const char* text;
        double width;
        int lines;
    } cases[] = {
        {"empty", "", 200, 0},
        {"one line", "Drag and Drop to install", 200, 1},
        {"between words", "Drag and Drop to install", 100, 2},
        {"a word wider than the column breaks inside", "Supercalifragilistic", 50, 2},
        {"at every kind of line break",
         "a\nb\r\nc\rd\xE2\x80\xA9"
         "e\vf",
         200, 6},
        {"an empty line counts", "a\n\nb", 200, 3},
        {"trailing blanks do not wrap", "abc                                                  ", 30, 1},
        {"no width at all", "abc", 0, 3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const TextBlock text = block(c.text, 12, c.width);
        EXPECT_EQ(text.lineCount(), c.lines);
        EXPECT_NEAR(text.height(), c.lines * 12 * neueLine, 0.01);
    }
}

TEST(TextBlock, isNeverSmallerThanSixPoints)
{
    for (const double size : {4.0, 0.0, -3.0, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_NEAR(block("a", size, 200).height(), 6 * neueLine, 0.01);
    EXPECT_NEAR(block("a", 6.25, 200).height(), 6.25 * neueLine, 0.01);
    EXPECT_LT(block("a", 1e300, 200).height(), 10000);
}

TEST(TextBlock, alignsInItsColumn)
{
    const double width = 200;
    const QRect atLeft = inkBox(drawn(block("install", 12, width, left)));
    const QRect centred = inkBox(drawn(block("install", 12, width, center)));
    const QRect atRight = inkBox(drawn(block("install", 12, width, right)));
    EXPECT_NEAR(atLeft.left(), 10, 2);
    EXPECT_NEAR(centred.left() + centred.right(), 2 * 10 + width, 3);
    EXPECT_NEAR(atRight.right(), 10 + width, 2);
    // Right is right in right-to-left text as well.
    const char* rightToLeft = "\xE2\x80\x8Finstall"; // a right-to-left mark makes it that without other fonts
    EXPECT_NEAR(inkBox(drawn(block(rightToLeft, 12, width, right))).right(), 10 + width, 2);
    EXPECT_NEAR(inkBox(drawn(block(rightToLeft, 12, width, left))).left(), 10, 2);
}

TEST(TextBlock, justifiesAllLinesButTheLast)
{
    const TextBlock text = block("Drag and drop the icon to the folder", 14, 130, justified);
    ASSERT_EQ(text.lineCount(), 2);
    const QImage image = drawn(text);
    const int second = 10 + static_cast<int>(14 * neueLine) + 1;
    const QRect first = inkBox(image.copy(0, 0, 220, second));
    const QRect last = inkBox(image.copy(0, second, 220, 60));
    EXPECT_NEAR(first.left(), 10, 2);
    EXPECT_NEAR(first.right(), 140, 2);
    EXPECT_LT(last.right(), 130);
}

TEST(TextBlock, putsTheBaselineWhereTheReplacedFontHasIt)
{
    for (const double size : {12.0, 13.5, 40.0}) {
        SCOPED_TRACE(size);
        const QRect ink = inkBox(drawn(block("H\nH", size, 200)));
        EXPECT_NEAR(ink.bottom() + 1, 10 + (neueAscent + neueLine) * size, 1);
        EXPECT_NEAR(ink.top(), 10 + (neueAscent - 0.72) * size, 1.2); // capitals are 0.72 of the size
    }
}

TEST(TextBlock, keepsTheHeightOfOtherFontsOnALine)
{
    // Fonts without stand-in have metrics of their own: Heros' lines are 1.432 times its size.
    const TextBlock own("a", Fonts::resolve("TeXGyreHeros-Regular"), 10, 100, left);
    EXPECT_NEAR(own.height(), 14.32, 0.05);
}

TEST(TextBlock, endsEndlessTextInTime)
{
    const TextBlock text = block(std::string(5'000'000, 'x'), 12, 1);
    EXPECT_TRUE(text.isCut());
    EXPECT_EQ(text.lineCount(), TextBlock::longestText);
}

TEST(TextShadow, softensWithoutMoving)
{
    const TextBlock text = block(".", 300, 200); // a square of some 30 points
    const auto shadow = [&](double blur, double scale) {
        QImage image(static_cast<int>(220 * scale), static_cast<int>(120 * scale), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.scale(scale, scale);
        text.drawShadow(painter, {10, -220}, {Qt::black, {0, 0}, blur}, QRectF(0, 0, 220, 120));
        painter.end();
        return image;
    };
    const auto any = [](QColor c) { return c.alpha() > 2; };
    for (const int scale : {1, 2}) {
        SCOPED_TRACE(scale);
        const QRect sharp = inkBox(shadow(0, scale));
        const QRect half = inkBox(shadow(8, scale), [](QColor c) { return c.alpha() > 127; });
        const QRect soft = inkBox(shadow(8, scale), any);
        EXPECT_NEAR(half.top(), sharp.top(), 1);
        EXPECT_NEAR(half.bottom(), sharp.bottom(), 1);
        // A Gaussian of 4 points has fallen to a hundredth at 2.33 of them.
        EXPECT_NEAR(sharp.top() - soft.top(), 9.3 * scale, 2.0 * scale);
    }
}

TEST(Blur, widensByItsDeviationAndKeepsTheWhole)
{
    for (const double sigma : {0.0, 0.4, 1.0, 2.5, 7.0}) {
        SCOPED_TRACE(sigma);
        QImage mask(160, 160, QImage::Format_Alpha8);
        mask.fill(0);
        for (int y = 70; y < 90; ++y)
            std::fill_n(mask.scanLine(y) + 70, 20, uchar{255});
        blurMask(mask, sigma);
        double sum = 0;
        double mean = 0;
        double variance = 0;
        for (int y = 0; y < 160; ++y) {
            for (int x = 0; x < 160; ++x) {
                const double alpha = mask.constScanLine(y)[x];
                sum += alpha;
                mean += alpha * x;
                variance += alpha * (x - 79.5) * (x - 79.5);
            }
        }
        EXPECT_NEAR(sum / (20 * 20 * 255), 1, 0.01);
        EXPECT_NEAR(mean / sum, 79.5, 0.01);
        const double square = (20.0 * 20 - 1) / 12;
        EXPECT_NEAR(std::sqrt(variance / sum - square), sigma, 0.02 * sigma + 0.02);
    }
}

TEST(Fonts, resolvesExactPostScriptNamesAndStandsIn)
{
    const struct {
        const char* name;
        bool found;
        const char* family; ///< null: whatever the system has
        bool bold;
        bool italic;
    } cases[] = {
        {"HelveticaNeue", true, "Helvetica Neue", false, false},
        {"HelveticaNeue-Bold", true, "Helvetica Neue", true, false},
        {"HelveticaNeue-Italic", true, "Helvetica Neue", false, true},
        {"HelveticaNeue-BoldItalic", true, "Helvetica Neue", true, true},
        {"Helvetica", true, "Helvetica", false, false},
        {"Helvetica-BoldOblique", true, "Helvetica", true, true},
        {"HelveticaNeue-CondensedBold", false, "Helvetica Neue", true, false},
        {"TeXGyreHeros-Bold", true, "TeX Gyre Heros", true, false},
        {"texgyreheros-bold", false, nullptr, false, false},
        {"TeX Gyre Heros", false, nullptr, false, false},
        {"HelveticaNeueX", false, nullptr, false, false},
        {"", false, nullptr, false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Fonts::Resolved font = Fonts::resolve(c.name);
        EXPECT_EQ(font.found, c.found);
        EXPECT_EQ(font.font.bold(), c.bold);
        EXPECT_EQ(font.font.italic(), c.italic);
        if (c.family)
            EXPECT_EQ(font.familyName.toStdString(), c.family);
        else
            EXPECT_FALSE(font.familyName.isEmpty());
    }
    EXPECT_FALSE(Fonts::resolve(std::string(100'000, 'a')).found);
    EXPECT_FALSE(Fonts::resolve(std::string("HelveticaNeue\0x", 15)).found);
}

TEST(Fonts, areShownByFamilyAndRoundedSize)
{
    const struct {
        double size;
        const char* shown;
    } cases[] = {{12, "Helvetica Neue - 12 pt"},
                 {12.5, "Helvetica Neue - 13 pt"},
                 {-12.5, "Helvetica Neue - -13 pt"},
                 {0.4, "Helvetica Neue - 0 pt"},
                 {-0.4, "Helvetica Neue - 0 pt"}};
    for (const auto& c : cases)
        EXPECT_EQ(fontDisplayName({.fontSize = c.size}).toStdString(), c.shown);
    EXPECT_DOUBLE_EQ(makeFont({.fontSize = 4}).pointSizeF(), 8);
    EXPECT_DOUBLE_EQ(makeFont({.fontSize = 17.5}).pointSizeF(), 17.5);
}

TEST(Conversions, keepColorsAndNumberAlignments)
{
    const CodableColor color{0.93, 0.5, 0.25, 0.75};
    const CodableColor back = toCodableColor(toQColor(color));
    EXPECT_NEAR(back.r, color.r, 1e-4);
    EXPECT_NEAR(back.a, color.a, 1e-4);
    EXPECT_EQ(toQColor({2, -1, std::numeric_limits<double>::quiet_NaN(), 1}), QColor::fromRgbF(1, 0, 0));
    EXPECT_NEAR(toCodableColor(QColor::fromHsv(120, 255, 255)).g, 1, 1e-4);
    EXPECT_EQ(platformAlignment(left), 0);
    EXPECT_EQ(platformAlignment(right), 1);
    EXPECT_EQ(platformAlignment(center), 2);
    EXPECT_EQ(platformAlignment(justified), 3);
}

} // namespace
} // namespace velmora
