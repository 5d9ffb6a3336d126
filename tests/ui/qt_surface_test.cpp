#include "ui/qt_surface.h"

#include <gtest/gtest.h>

#include <QBitmap>
#include <QImage>
#include <QPolygonF>
#include <iterator>
#include <sstream>
#include <string>

#include "ui/points.h"

namespace kelvane {
namespace {

constexpr int kWidth = 120;
constexpr int kHeight = 80;
constexpr Rgb kBlue{0, 0, 255};
constexpr QRgb kPaper = 0xffffffff;

// Makes the marks that a text asks for: "blue" (at first) or "red" for the colour of the next ones,
// "width w", "dot x y", "line x y x y", "rect x y w h", "hatch x y w h" (a box of pixels), "text x
// y" (an 8 in the middle), "clear".
void Perform(Surface& surface, const std::string& marks)
{
    std::istringstream words(marks);
    std::istream_iterator<std::string> word(words);
    const auto number = [&] { return std::stod(*++word); };
    const auto whole = [&] { return static_cast<int>(number()); };
    const auto point = [&] { return PixelPoint{number(), number()}; };
    Rgb color = kBlue;
    PixelPoint from;
    for (; word != std::istream_iterator<std::string>(); ++word) {
        const std::string mark = *word;
        if (mark == "blue" || mark == "red")
            color = mark == "red" ? Rgb{255, 0, 0} : kBlue;
        else if (mark == "width")
            surface.SetLineWidth(whole());
        else if (mark == "dot")
            surface.Pixel(point(), color);
        else if (mark == "line")
            from = point(), surface.Line(from, point(), color);
        else if (mark == "rect")
            surface.FillRect({whole(), whole(), whole(), whole()}, color);
        else if (mark == "hatch") {
            const PixelPoint a{number() - 0.5, number() - 0.5};
            const PixelPoint b{a.X + number(), a.Y + number()};
            const PixelPoint corners[] = {a, {b.X, a.Y}, b, {a.X, b.Y}};
            surface.Hatch(corners, color);
        } else if (mark == "text")
            surface.Text({point(), HorizontalAlign::Center, VerticalAlign::Center}, "8", color);
        else // clear
            surface.Clear(kWhite);
    }
}

QImage Painted(Antialias smooth, const std::string& marks, const Points& curve = {}, int scale = 1)
{
    QImage image(kWidth * scale, kHeight * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::green); // everything green must disappear
    QtSurface surface(image, {kWidth, kHeight}, {smooth, 1.0 / scale});
    surface.Clear(kWhite);
    Perform(surface, marks);
    for (std::size_t i = 1; i < curve.size(); ++i)
        surface.Line(curve[i - 1], curve[i], kBlue);
    surface.Finish();
    return image;
}

// The pixels that are not paper, row by row: "x,y x,y ..."
std::string Marked(const QImage& image)
{
    std::string marked;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != kPaper)
                marked += std::to_string(x) + "," + std::to_string(y) + " ";
    return marked;
}

TEST(QtSurface, MarksWrongPixels)
{
    const struct {
        const char* Fault;
        const char* Marks;
        const char* Pixels;
    } cases[] = {
        {"wrong dots", "dot 2 3 dot 2.1 3 dot 2 5 dot 3 3 dot 2 3 dot 5.6 6.5", "2,3 3,3 2,5 6,7 "},
        {"dot beside a line lost", "dot 1 3 line 4 3 6 3", "1,3 4,3 5,3 6,3 "},
        {"wrong line", "line 9 1 9 1 line 2 3 4 3 line 3 5 3 7", "9,1 2,3 3,3 4,3 3,5 3,6 3,7 "},
        {"gap closed", "line 2 3 4 3 line 7 3 9 3", "2,3 3,3 4,3 7,3 8,3 9,3 "},
        {"mark outside", "dot -1 3 dot 120 3 dot 3 80 dot 1e38 1e38 line -50 -9 170 -9", ""},
        {"corner cut", "line 9 1 9 -99 line 9 -99 -99 9 line -99 9 1 9", "9,0 9,1 0,9 1,9 "},
        {"not a number", "dot nan 3 dot 3 inf line 3 3 nan 3 line 3 -inf 3 3 rect 1 1 0 5", ""},
        {"extra rectangle", "rect -8 2 8 9 rect 2147483647 0 9 9 rect 9 9 -3 2 rect 9 9 3 -2", ""},
        {"rectangle cut wrongly", "rect 4 5 2 1 rect -100 79 102 5", "4,5 5,5 0,79 1,79 "},
        {"hatched elsewhere", "hatch 2 3 2 1 hatch 119 79 9 9 hatch -9 9 5 5", "2,3 3,3 119,79 "},
        {"left by clear", "text 20 20 hatch 9 9 9 9 width 9 dot 9 9 line 30 9 40 9 clear dot 1 1",
         "1,1 "},
    };
    for (const auto& test : cases)
        for (Antialias smooth : {Antialias::Off, Antialias::On})
            EXPECT_EQ(Marked(Painted(smooth, test.Marks)), test.Pixels)
                << test.Fault << ": " << test.Marks;
    EXPECT_EQ(Marked(Painted(Antialias::Off, "line 2.6 3.6 4.6 3.6")), "3,4 4,4 5,4 ");
}

TEST(QtSurface, PixelHasWrongColour)
{
    const struct {
        const char* Fault;
        const char* Marks;
        QColor Color; // of pixel (30, 30)
    } cases[] = {
        {"peak lost", "line 0 9 30 9 line 30 9 30 60 line 30 60 30 9 line 30 9 90 9", Qt::blue},
        {"zigzag pale", "line 29.6 9 30 60 line 30 60 30.4 9", Qt::blue},
        {"older curve on top", "line 10 30 50 30 red line 30 10 30 50", Qt::red},
        {"repainted", "line 30 9 30 50 red line 20 9 20 50 line 40 9 40 50", Qt::blue},
        {"curve over rectangle", "line 10 30 50 30 red rect 30 0 1 60", Qt::red},
        {"rectangle over curve", "red rect 30 0 1 60 blue line 10 30 50 30", Qt::blue},
        {"curve over dot", "line 10 30 50 30 red dot 30 30", Qt::red},
        {"beginning over end", "line 10 30 30 30 red line 30 30 50 30", Qt::red},
        {"older width", "width 3 red line 30 9 30 50 width 1 blue line 25 25 35 35", Qt::blue},
        {"far ends", "width 3 line -9999970 5000030 10000030 -4999970", Qt::blue},
        {"farther ends", "width 3 line 30 -1e38 30 1e38", Qt::blue},
        {"far start", "width 3 line -1e30 -1e30 100 100", Qt::blue},
        {"far end", "width 3 line 30 0 30.000001 1e30", Qt::blue},
        {"curve over hatching", "red hatch 20 20 20 20 blue line 10 30 50 30", Qt::blue},
        {"dot over hatching", "hatch 20 20 20 20 red dot 30 30", Qt::red},
        {"short curve lost", "line 30 30 30.00001 30", Qt::blue},
    };
    for (const auto& test : cases)
        for (Antialias smooth : {Antialias::Off, Antialias::On})
            EXPECT_EQ(Painted(smooth, test.Marks).pixelColor(30, 30), test.Color)
                << test.Fault << ": " << test.Marks;
}

// A row of the picture: white ' ', a wash '.', a line on it '/', anything else '?'.
std::string HatchedRow(const QImage& image, int y, int from, int count)
{
    std::string row;
    for (int x = from; x < from + count; ++x) {
        const int shade =
            qRed(image.pixel(x, y)); // of blue on white: 255, 88 % of it, half of that
        const bool isBlue = qBlue(image.pixel(x, y)) == 255;
        row += !isBlue                        ? '?'
               : shade == 255                 ? ' '
               : std::abs(shade - 224) <= 1   ? '.'
               : std::abs(shade - 112) <= 1.5 ? '/'
                                              : '?';
    }
    return row;
}

TEST(QtSurface, HatchingHasSeamsOrOtherLines)
{
    // Boxes that share borders: a pixel and five, three and a third and the rest, and below a row.
    const std::string boxes =
        "hatch 20 10 1 2 hatch 21 10 5 2 hatch 26 10 3.3 2 hatch 29.3 10 2.7 2 "
        "hatch 20 12 12 1";
    const QImage sharp = Painted(Antialias::Off, boxes);
    EXPECT_EQ(HatchedRow(sharp, 9, 18, 16), "                ");
    EXPECT_EQ(HatchedRow(sharp, 10, 18, 16), "  /...../.....  ") << "20 + 10 is a multiple of 6";
    EXPECT_EQ(HatchedRow(sharp, 11, 18, 16), "  ...../...../  ");
    EXPECT_EQ(HatchedRow(sharp, 12, 18, 16), "  ..../...../.  ");
    EXPECT_EQ(HatchedRow(sharp, 13, 18, 16), "                ");
    // Smooth lines touch the pixels beside theirs; in between there is nothing but the wash.
    const QImage smooth = Painted(Antialias::On, boxes);
    for (const int x : {22, 23, 24, 28, 29, 30})
        EXPECT_EQ(HatchedRow(smooth, 10, x, 1), ".") << x;
    const QImage fine = Painted(Antialias::On, boxes, {}, 2);
    for (const int x : {44, 45, 46, 47, 48, 58, 59, 60})
        EXPECT_EQ(HatchedRow(fine, 20, x, 1), ".") << x;
    EXPECT_EQ(fine.pixel(64, 20), kPaper);
    // A curve below is seen through the hatching, and shows more of it than of its own colour.
    const QColor below =
        Painted(Antialias::Off, "red line 18 11 40 11 blue hatch 20 10 8 3").pixelColor(22, 11);
    EXPECT_NEAR(below.red(), 224, 1);
    EXPECT_NEAR(below.blue(), 31, 1);
}

TEST(QtSurface, LineFromADotIsBolderOrSwallowsIt)
{
    const std::string line = " line 10.4 20 40.5 20";
    const QImage alone = Painted(Antialias::On, line);
    EXPECT_EQ(Painted(Antialias::On, "dot 10.4 20" + line), alone);
    EXPECT_NE(Painted(Antialias::On, "red dot 10.4 20 blue" + line), alone);
}

// The polyline with every point, painted eight times as large and averaged.
QImage ExactPicture(const Points& curve, int width)
{
    constexpr int kScale = 8;
    QPolygonF polygon;
    for (const PixelPoint& point : curve)
        polygon.append({point.X + 0.5, point.Y + 0.5});
    QImage large(kWidth * kScale, kHeight * kScale, QImage::Format_RGB32);
    large.fill(Qt::white);
    QPainter painter(&large);
    painter.scale(kScale, kScale);
    painter.setPen(QPen(Qt::blue, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(polygon);
    return large.scaled(kWidth, kHeight, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

TEST(QtSurface, SmoothCurveDiffersFromTheWholePolyline)
{
    Points curve;
    for (int i = -2000; i <= 22000; ++i)
        curve.push_back({i * 0.006, 40 - 30 * std::sin(i * 0.0006)});
    for (int width : {1, 2, 3, 6}) {
        const QImage ours = Painted(Antialias::On, "width " + std::to_string(width), curve);
        const QImage exact = ExactPicture(curve, width);
        int worst = 0; // of the paper that shines through
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                worst = std::max(worst, std::abs(qRed(ours.pixel(x, y)) - qRed(exact.pixel(x, y))));
        // So much differ coverage by distance and by area at most, when an edge is aslant.
        EXPECT_LE(worst, 25) << "width " << width;
    }
}

TEST(QtSurface, LongCurveFallsApart)
{
    // A ring many times over, with more vertices than are gathered at once, and away from it.
    const auto ring = [](std::size_t rounds) {
        const Points corners{{20, 10}, {60, 5}, {90, 10}, {95, 40}, {90, 70}, {60, 75}, {20, 70}};
        Points curve;
        for (std::size_t i = 0; i <= 7 * rounds; ++i)
            curve.push_back(corners[i % 7]);
        curve.push_back({110, 45});
        return Painted(Antialias::On, "width 3", curve);
    };
    EXPECT_EQ(Marked(ring(20000)), Marked(ring(1)));
}

TEST(QtSurface, TextIsHiddenByCurves)
{
    const QImage alone = Painted(Antialias::On, "text 60 40");
    const QImage covered = Painted(Antialias::On, "text 60 40 width 30 red line 0 40 120 40");
    int glyph = 0;
    int border = 0;
    for (int y = 30; y < 50; ++y)
        for (int x = 50; x < 70; ++x) {
            const bool isInk = qRed(alone.pixel(x, y)) < 100;
            glyph += isInk ? 1 : 0;
            border += covered.pixel(x, y) == kPaper ? 1 : 0;
            EXPECT_FALSE(isInk && qRed(covered.pixel(x, y)) > 110) << x << ", " << y;
        }
    EXPECT_GE(glyph, 10);
    EXPECT_GE(border, 15);
    EXPECT_EQ(covered.pixelColor(50, 40), QColor(Qt::red)) << "the border is too wide";
}

TEST(QtSurface, TextIsPlacedWrongly)
{
    for (int i = 0; i < 3; ++i) {
        QImage image(kWidth, kHeight, QImage::Format_RGB32);
        QtSurface surface(image, {kWidth, kHeight}, {});
        surface.Clear(kWhite);
        const PixelSize size = surface.TextSize("\u22121.5");
        surface.Text({{60, 40}, static_cast<HorizontalAlign>(i), static_cast<VerticalAlign>(i)},
                     "\u22121.5", kBlack);
        surface.Finish();
        const QImage ink = image.createMaskFromColor(kPaper, Qt::MaskInColor);
        const QRectF inked = QRegion(QBitmap::fromImage(ink)).boundingRect();
        const QRectF box(59.5 - i * size.Width / 2, 39.5 - i * size.Height / 2, size.Width + 2,
                         size.Height + 2); // and a pixel around
        EXPECT_TRUE(box.contains(inked)) << "alignment " << i;
        EXPECT_GT(inked.width(), size.Width * 0.7);
        EXPECT_NEAR(size.Height, 15.5, 4.5);
    }
}

TEST(QtSurface, FineScreenShowsCurvesElsewhere)
{
    EXPECT_EQ(Marked(Painted(Antialias::On, "dot 40 30", {}, 2)), "80,60 81,60 80,61 81,61 ");
    const QImage image = Painted(Antialias::On, "line 10 20 12 20", {}, 2); // ends in half circles
    for (int x = 0; x < kWidth * 2; ++x) {
        EXPECT_EQ(image.pixel(x, 39), kPaper) << x;
        EXPECT_TRUE(x < 21 || x > 24 || image.pixelColor(x, 41) == QColor(Qt::blue)) << x;
        EXPECT_EQ(image.pixel(x, 42), kPaper) << x;
    }
}

} // namespace
} // namespace kelvane
