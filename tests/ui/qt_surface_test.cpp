#include "ui/qt_surface.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPolygonF>
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <string>

#include "ui/points.h"

namespace kelvane {
namespace {

constexpr int kWidth = 120;
constexpr int kHeight = 80;
constexpr Rgb kRed{255, 0, 0};
constexpr Rgb kBlue{0, 0, 255};
constexpr QRgb kPaper = 0xffffffff;

using Marks = std::function<void(QtSurface&)>;

QImage Painted(Antialias smooth, const Marks& marks)
{
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    image.fill(Qt::green); // everything green must disappear
    QtSurface surface(image, {kWidth, kHeight}, {smooth, 1});
    surface.Clear(kWhite);
    marks(surface);
    surface.Finish();
    return image;
}

void Draw(Surface& surface, const Points& curve, Rgb color)
{
    for (std::size_t i = 1; i < curve.size(); ++i)
        surface.Line(curve[i - 1], curve[i], color);
}

// The largest difference of a channel.
int LargestDifference(const QImage& a, const QImage& b)
{
    int largest = 0;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            const QColor p = a.pixelColor(x, y);
            const QColor q = b.pixelColor(x, y);
            largest = std::max({largest, std::abs(p.red() - q.red()),
                                std::abs(p.green() - q.green()), std::abs(p.blue() - q.blue())});
        }
    return largest;
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
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const struct {
        const char* Fault;
        Marks Draw;
        const char* Pixels;
    } cases[] = {
        {"dot beside its pixel",
         [](QtSurface& s) {
             s.Pixel({5, 7}, kBlue);
         },
         "5,7 "},
        {"dot rounded down",
         [](QtSurface& s) {
             s.Pixel({5.6, 6.5}, kBlue);
         },
         "6,7 "},
        {"dots of a run lost",
         [](QtSurface& s) {
             for (double x : {2.0, 2.1, 3.0, 2.0, 4.0})
                 s.Pixel({x, 3}, kBlue);
         },
         "2,3 3,3 4,3 "},
        {"level line",
         [](QtSurface& s) {
             s.Line({2, 3}, {5, 3}, kBlue);
         },
         "2,3 3,3 4,3 5,3 "},
        {"upright line",
         [](QtSurface& s) {
             s.Line({2, 3}, {2, 6}, kBlue);
         },
         "2,3 2,4 2,5 2,6 "},
        {"line of no length lost",
         [](QtSurface& s) {
             s.Line({9, 3}, {9, 3}, kBlue);
         },
         "9,3 "},
        {"gap closed",
         [](QtSurface& s) {
             s.Line({2, 3}, {4, 3}, kBlue);
             s.Line({7, 3}, {9, 3}, kBlue);
         },
         "2,3 3,3 4,3 7,3 8,3 9,3 "},
        {"mark outside",
         [](QtSurface& s) {
             s.Pixel({-1, 3}, kBlue);
             s.Pixel({1e38, 1e38}, kBlue);
             s.Line({-50, -9}, {kWidth + 50, -9}, kBlue);
             s.FillRect({-8, 2, 8, 9}, kBlue);
             s.FillRect({std::numeric_limits<int>::max(), 0, std::numeric_limits<int>::max(), 9},
                        kBlue);
         },
         ""},
        {"not a number",
         [](QtSurface& s) {
             s.Pixel({kNan, 3}, kBlue);
             s.Line({2, 3}, {kInfinity, 3}, kBlue);
             s.Line({kNan, 3}, {9, 3}, kBlue);
             s.Text({{kNan, kInfinity}}, "8", kBlue);
         },
         ""},
        {"rectangle shifted",
         [](QtSurface& s) {
             s.FillRect({4, 5, 2, 1}, kBlue);
         },
         "4,5 5,5 "},
        {"rectangle cut wrongly",
         [](QtSurface& s) {
             s.FillRect({-100, kHeight - 1, 102, 5}, kBlue);
         },
         "0,79 1,79 "},
        {"something left by Clear",
         [](QtSurface& s) {
             s.Pixel({4, 4}, kBlue);
             s.Line({2, 3}, {7, 3}, kBlue);
             s.Text({{20, 20}}, "8", kBlue);
             s.SetLineWidth(9);
             s.Pixel({30, 30}, kBlue);
             s.Clear(kWhite);
             s.Pixel({1, 1}, kRed);
         },
         "1,1 "},
    };
    for (const auto& test : cases)
        for (Antialias smooth : {Antialias::Off, Antialias::On})
            EXPECT_EQ(Marked(Painted(smooth, test.Draw)), test.Pixels)
                << test.Fault << (smooth == Antialias::On ? ", smooth" : ", sharp");
}

TEST(QtSurface, OrderOfMarksIsLost)
{
    const struct {
        const char* Fault;
        Marks Draw;
        QColor At30; // of pixel (30, 30)
    } cases[] = {
        {"curve under an older curve",
         [](QtSurface& s) {
             s.Line({10, 30}, {50, 30}, kBlue);
             s.Line({30, 10}, {30, 50}, kRed);
         },
         Qt::red},
        {"rectangle under an older curve",
         [](QtSurface& s) {
             s.Line({10, 30}, {50, 30}, kBlue);
             s.FillRect({30, 0, 1, 60}, kRed);
         },
         Qt::red},
        {"curve under an older rectangle",
         [](QtSurface& s) {
             s.FillRect({30, 0, 1, 60}, kRed);
             s.Line({10, 30}, {50, 30}, kBlue);
         },
         Qt::blue},
        {"dot under an older curve",
         [](QtSurface& s) {
             s.Line({10, 30}, {50, 30}, kBlue);
             s.Pixel({30, 30}, kRed);
         },
         Qt::red},
        {"continuation in another colour under its beginning",
         [](QtSurface& s) {
             s.Line({10, 30}, {30, 30}, kBlue);
             s.Line({30, 30}, {50, 30}, kRed);
         },
         Qt::red},
        {"older width over newer",
         [](QtSurface& s) {
             s.Line({10, 30}, {50, 30}, kBlue);
             s.SetLineWidth(3);
             s.Line({30, 10}, {30, 50}, kRed);
             s.SetLineWidth(1);
             s.Line({25, 25}, {35, 35}, kBlue);
         },
         Qt::blue},
    };
    for (const auto& test : cases)
        for (Antialias smooth : {Antialias::Off, Antialias::On})
            EXPECT_EQ(Painted(smooth, test.Draw).pixelColor(30, 30), test.At30) << test.Fault;
}

TEST(QtSurface, DotAndLineFromItAreBothDrawn)
{
    const Marks line = [](QtSurface& s) { s.Line({10.4, 20}, {40.5, 20}, kBlue); };
    const Marks both = [&](QtSurface& s) {
        s.Pixel({10.4, 20}, kBlue);
        line(s);
    };
    const Marks otherColour = [&](QtSurface& s) {
        s.Pixel({10.4, 20}, kRed);
        line(s);
    };
    EXPECT_EQ(Painted(Antialias::On, both), Painted(Antialias::On, line));
    EXPECT_NE(Painted(Antialias::On, otherColour), Painted(Antialias::On, line));
    const Marks elsewhere = [&](QtSurface& s) {
        s.Pixel({5, 20}, kBlue);
        line(s);
    };
    EXPECT_EQ(Painted(Antialias::On, elsewhere).pixelColor(5, 20), QColor(Qt::blue));
}

// The polyline with every point, painted eight times as large and averaged.
QImage ExactPicture(const Points& curve, int width)
{
    constexpr int kScale = 8;
    QPolygonF polygon;
    for (const PixelPoint& point : curve)
        polygon.append(QPointF(point.X + 0.5, point.Y + 0.5) * kScale);
    QImage large(kWidth * kScale, kHeight * kScale, QImage::Format_RGB32);
    large.fill(Qt::white);
    QPainter painter(&large);
    painter.setPen(QPen(Qt::blue, width * kScale, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(polygon);
    painter.end();
    QImage exact(kWidth, kHeight, QImage::Format_RGB32);
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            int paper = 0;
            for (int i = 0; i < kScale * kScale; ++i)
                paper += qRed(large.pixel(x * kScale + i % kScale, y * kScale + i / kScale));
            const int level = paper / (kScale * kScale);
            exact.setPixel(x, y, qRgb(level, level, 255));
        }
    return exact;
}

TEST(QtSurface, SmoothCurveDiffersFromTheWholePolyline)
{
    Points curve;
    for (int i = -2000; i <= 22000; ++i)
        curve.push_back({i * 0.006, 40 - 30 * std::sin(i * 0.0006)});
    for (int width : {1, 2, 3, 6}) {
        const QImage ours = Painted(Antialias::On, [&](QtSurface& s) {
            s.SetLineWidth(width);
            Draw(s, curve, kBlue);
        });
        // So much differ coverage by distance and by area at most, when an edge is aslant.
        EXPECT_LE(LargestDifference(ours, ExactPicture(curve, width)), 25) << "width " << width;
    }
}

TEST(QtSurface, PeakIsLost)
{
    for (Antialias smooth : {Antialias::Off, Antialias::On}) {
        const QImage image = Painted(smooth, [](QtSurface& s) {
            Points curve;
            for (int i = 0; i <= 20000; ++i) // one sample of 160 in a pixel reaches far up
                curve.push_back({i * 0.006, i == 9994 ? 5.0 : 70.0});
            Draw(s, curve, kBlue);
        });
        for (int y = 6; y < 70; ++y)
            EXPECT_LT(image.pixelColor(60, y).red(), 100) << "row " << y;
    }
}

TEST(QtSurface, FarEndsBendLines)
{
    const struct {
        PixelPoint From;
        PixelPoint To;
        PixelPoint Through; // whole numbers
    } cases[] = {
        {{-1e7, 40}, {1e7, 40}, {60, 40}},
        {{60 - 1e7, 40 - 1e7}, {60 + 1e7, 40 + 1e7}, {60, 40}},
        {{60 - 1e7, 40 + 5e6}, {60 + 1e7, 40 - 5e6}, {60, 40}},
        {{60, -1e38}, {60, 1e38}, {60, 40}},
        {{100, 70}, {-1e30, -1e30}, {50, 20}},
        {{20, 40}, {1e38, 40}, {119, 40}},
        {{5, 0}, {5.000001, 1e30}, {5, 79}},
    };
    for (const auto& test : cases)
        for (Antialias smooth : {Antialias::Off, Antialias::On}) {
            const QImage image = Painted(smooth, [&](QtSurface& s) {
                s.SetLineWidth(3);
                s.Line(test.From, test.To, kBlue);
            });
            const QPoint middle(static_cast<int>(test.Through.X), static_cast<int>(test.Through.Y));
            EXPECT_LT(image.pixelColor(middle).red(), 50)
                << testing::PrintToString(test.From) << testing::PrintToString(test.To);
        }
}

TEST(QtSurface, CurveOutsideLeavesMarksAtTheBorder)
{
    const QImage image = Painted(Antialias::On, [](QtSurface& s) {
        s.SetLineWidth(3);
        Draw(s, {{30, 40}, {30, -1e9}, {90, -1e9}, {90, 1e9}, {-1e9, 1e9}, {-1e9, -1e9}}, kBlue);
    });
    for (int x = 0; x < kWidth; ++x)
        for (int y : {0, 1, 30, kHeight - 1}) {
            const bool onLine = std::abs(x - 90) <= 1 || (std::abs(x - 30) <= 1 && y <= 41);
            EXPECT_EQ(image.pixel(x, y) != kPaper, onLine) << x << ", " << y;
        }
}

TEST(QtSurface, LongCurveFallsApart)
{
    // A circle many times over, with more vertices than are gathered at once, and away from it.
    const auto circle = [](int rounds) {
        return Painted(Antialias::On, [rounds](QtSurface& s) {
            s.SetLineWidth(3);
            PixelPoint last{90, 40};
            for (int i = 1; i <= rounds * 36; ++i) {
                const double angle = i % 36 * 3.14159265358979 / 18;
                const PixelPoint next{60 + 30 * std::cos(angle), 40 + 30 * std::sin(angle)};
                s.Line(last, next, kBlue);
                last = next;
            }
            s.Line(last, {110, 70}, kBlue);
        });
    };
    EXPECT_LE(LargestDifference(circle(1000), circle(1)), 2);   // all in one batch
    EXPECT_LE(LargestDifference(circle(4000), circle(1)), 110); // edges painted three times
}

TEST(QtSurface, TextIsHiddenByCurves)
{
    const TextPlace place{{60, 40}, HorizontalAlign::Center, VerticalAlign::Center};
    const Rgb sheet{255, 255, 200};
    const auto painted = [&](bool withCurves) {
        return Painted(Antialias::On, [&](QtSurface& s) {
            s.Clear(sheet);
            s.Text(place, "8", kBlack);
            s.SetLineWidth(30);
            if (withCurves)
                s.Line({0, 40}, {kWidth, 40}, kBlue);
        });
    };
    const QImage alone = painted(false);
    const QImage covered = painted(true);
    const QRgb paper = qRgb(sheet.R, sheet.G, sheet.B);
    int glyph = 0;
    int border = 0;
    for (int y = 30; y < 50; ++y)
        for (int x = 50; x < 70; ++x) {
            glyph += qGray(alone.pixel(x, y)) < 100 ? 1 : 0;
            EXPECT_FALSE(qGray(alone.pixel(x, y)) < 100 && qGray(covered.pixel(x, y)) > 110);
            if (covered.pixel(x, y) != paper)
                continue;
            ++border;
            EXPECT_EQ(alone.pixel(x, y), paper) << x << ", " << y;
        }
    EXPECT_GE(glyph, 10);
    EXPECT_GE(border, 15);
    EXPECT_EQ(covered.pixelColor(50, 40), QColor(Qt::blue)) << "the border is too wide";
}

TEST(QtSurface, TextIsPlacedWrongly)
{
    const struct {
        HorizontalAlign Horizontal;
        VerticalAlign Vertical;
        double Left; // of the box, in its widths and heights from the anchor
        double Top;
    } cases[] = {
        {HorizontalAlign::Left, VerticalAlign::Top, 0, 0},
        {HorizontalAlign::Center, VerticalAlign::Center, -0.5, -0.5},
        {HorizontalAlign::Right, VerticalAlign::Bottom, -1, -1},
    };
    for (const auto& test : cases) {
        PixelSize size;
        const QImage image = Painted(Antialias::On, [&](QtSurface& s) {
            size = s.TextSize("\u22121.5");
            s.Text({{60, 40}, test.Horizontal, test.Vertical}, "\u22121.5", kBlack);
        });
        QRect ink;
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x)
                if (image.pixel(x, y) != kPaper)
                    ink |= QRect(x, y, 1, 1);
        const QRectF box(60.5 + test.Left * size.Width, 40.5 + test.Top * size.Height, size.Width,
                         size.Height);
        EXPECT_TRUE(box.adjusted(-1, -1, 1, 1).contains(QRectF(ink)))
            << test.Left << ", " << test.Top;
        EXPECT_GT(ink.width(), size.Width * 0.7);
        EXPECT_GT(size.Height, 11);
        EXPECT_LT(size.Height, 20);
    }
}

TEST(QtSurface, FineScreenShowsCurvesElsewhere)
{
    QImage image(kWidth * 2, kHeight * 2, QImage::Format_RGB32);
    image.setDevicePixelRatio(2);
    QtSurface surface(image, {kWidth, kHeight}, {Antialias::On, 0.5});
    surface.Clear(kWhite);
    surface.Line({10, 20}, {12, 20}, kBlue); // round ends: half a pixel further
    surface.Pixel({40, 30}, kBlue);
    surface.Finish();
    std::string dot;
    for (int y : {60, 61})
        for (int x : {80, 81})
            dot += std::to_string(x) + "," + std::to_string(y) + " ";
    const std::string marked = Marked(image);
    EXPECT_TRUE(marked.ends_with(dot)) << marked;
    for (int x = 21; x <= 24; ++x)
        for (int y : {40, 41})
            EXPECT_EQ(image.pixelColor(x, y), QColor(Qt::blue)) << x << ", " << y;
    for (int x = 0; x < kWidth * 2; ++x)
        EXPECT_EQ(image.pixel(x, 39), kPaper) << x;
}

} // namespace
} // namespace kelvane
