#pragma once

#include <algorithm>
#include <functional>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "app/shared_state.h"

// Stand-ins for the outside world of a draw. They write what happens as lines of text.

namespace kelvane {

class RecordingSurface : public Surface {
public:
    PixelSize Size() const override { return Extent; }
    void Clear(Rgb sheet) override { Note("clear ", ColorHex(sheet)); }
    void SetLineWidth(int width) override { Note("width ", width); }
    void Pixel(PixelPoint at, Rgb color) override
    {
        Note("pixel ", at.X, ',', at.Y, ' ', ColorHex(color));
    }
    void Line(PixelPoint from, PixelPoint to, Rgb color) override
    {
        Note("line ", from.X, ',', from.Y, ' ', to.X, ',', to.Y, ' ', ColorHex(color));
    }
    void FillRect(PixelRect r, Rgb color) override
    {
        Note("rect ", r.X, ',', r.Y, ' ', r.Width, 'x', r.Height, ' ', ColorHex(color));
    }
    void Hatch(std::span<const PixelPoint> corners, Rgb color) override
    {
        std::ostringstream line;
        for (const PixelPoint& corner : corners)
            line << corner.X << ',' << corner.Y << ' ';
        Note("hatch ", line.str(), ColorHex(color));
    }
    void Text(const TextPlace& place, std::string_view text, Rgb) override
    {
        Note("text ", place.Anchor.X, ',', place.Anchor.Y, ' ',
             "LCR"[static_cast<int>(place.Horizontal)], "TCB"[static_cast<int>(place.Vertical)],
             ' ', text);
    }

    // Every character (not byte) takes 7 pixels.
    PixelSize TextSize(std::string_view text) const override
    {
        const auto begins = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; };
        return {7.0 * static_cast<double>(std::count_if(text.begin(), text.end(), begins)), 12};
    }

    // The lines that begin with the word, or all.
    std::string Transcript(const std::string& word = "") const
    {
        std::string all;
        for (const std::string& line : Lines)
            all += line.rfind(word, 0) == 0 ? line + "\n" : "";
        return all;
    }

    PixelSize Extent{200, 100};
    std::vector<std::string> Lines;

private:
    template <typename... Parts>
    void Note(const Parts&... parts)
    {
        std::ostringstream line;
        (line << ... << parts);
        Lines.push_back(line.str());
    }
};

class RecordingHost : public DrawHost {
public:
    void ShowMessage(const Message& message) override
    {
        Messages += message.Title + ": " + message.Text + "\n";
    }
    void PercentGo(double fraction) override { Fractions.push_back(fraction); }
    void InitPerc() override { ++Resets; }
    void SetProgressColor(Rgb color) override { ProgressColor = color; }
    void Breathe() override { OnBreathe(); }
    bool IsWatched() const override { return Watched; }
    void ShowSoFar() override { ++Looks; }
    bool MayGoOn() const override { return Questions++ < StopAfter; }

    std::string Messages;
    std::vector<double> Fractions;
    int Resets = 0;
    int Looks = 0; // at what has been drawn so far
    bool Watched = false;
    Rgb ProgressColor;
    std::function<void()> OnBreathe = [] {};
    int StopAfter = 1'000'000; // questions
    mutable int Questions = 0;
};

// Moves on by a fixed time whenever it is read.
class SteppingClock : public Clock {
public:
    double Seconds() const override { return m_now += 1.0 / 1024; }

private:
    mutable double m_now = 0;
};

// A sheet of the given lines, all ticked, ten pixels a unit, a sample a unit: x from
// -2 to 2, y from -5 to 5, the origin at (100, 50).
struct TestSheet : SharedState {
    explicit TestSheet(const std::string& lines)
    {
        Sheet.PagePlain[0] = lines;
        Sheet.LinesPerPage = 600;
        const auto breaks = std::count(lines.begin(), lines.end(), '\r');
        std::fill_n(&Ticks.EquationOn[1], breaks + 1, true);
        View = {.OriginX = 100, .OriginY = 50, .UnitPixels = 10, .Step2D = 1, .ColumnCache = {}};
        std::tie(View.XMin, View.XMax, View.YMin, View.YMax) = std::tuple(-2, 2, -5, 5);
        Settings.SolidColor = kBlack;
    }

    DrawEnd Run()
    {
        Target = {};
        return Draw(MakeDrawContext(*this, Target, Host, Time));
    }

    RecordingSurface Target; // of the last run
    RecordingHost Host;
    SteppingClock Time;
};

} // namespace kelvane
