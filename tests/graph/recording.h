#pragma once

#include <algorithm>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "app/shared_state.h"

// Stand-ins for the outside world of a draw. They write what happens as lines of text.

namespace kelvane {

class RecordingSurface : public Surface {
public:
    RecordingSurface(PixelSize size = {200, 100})
        : m_size(size)
    {
    }

    PixelSize Size() const override { return m_size; }
    void Clear(Rgb sheet) override { Note() << "clear " << ColorHex(sheet); }
    void SetLineWidth(int width) override { Note() << "width " << width; }
    void Pixel(PixelPoint at, Rgb color) override
    {
        Note() << "pixel " << at.X << ',' << at.Y << ' ' << ColorHex(color);
    }
    void Line(PixelPoint from, PixelPoint to, Rgb color) override
    {
        Note() << "line " << from.X << ',' << from.Y << ' ' << to.X << ',' << to.Y << ' '
               << ColorHex(color);
    }
    void FillRect(PixelRect r, Rgb color) override
    {
        Note() << "rect " << r.X << ',' << r.Y << ' ' << r.Width << 'x' << r.Height << ' '
               << ColorHex(color);
    }
    void Text(const TextPlace& place, std::string_view text, Rgb) override
    {
        Note() << "text " << place.Anchor.X << ',' << place.Anchor.Y << ' '
               << "LCR"[static_cast<int>(place.Horizontal)]
               << "TCB"[static_cast<int>(place.Vertical)] << ' ' << text;
    }

    // Every character (not byte) takes 7 pixels.
    PixelSize TextSize(std::string_view text) const override
    {
        double characters = 0;
        for (const char c : text)
            characters += (static_cast<unsigned char>(c) & 0xC0U) != 0x80U ? 1 : 0;
        return {7 * characters, 12};
    }

    // The lines that begin with the word, or all.
    std::vector<std::string> Lines(const std::string& word = "") const
    {
        std::vector<std::string> found;
        for (const auto& line : m_lines) {
            if (line.str().rfind(word, 0) == 0)
                found.push_back(line.str());
        }
        return found;
    }

    std::string Transcript(const std::string& word = "") const
    {
        std::string all;
        for (const std::string& line : Lines(word))
            all += line + "\n";
        return all;
    }

private:
    std::ostringstream& Note() { return m_lines.emplace_back(); }

    PixelSize m_size;
    std::vector<std::ostringstream> m_lines;
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
    void Breathe() override
    {
        if (OnBreathe)
            OnBreathe();
    }
    bool MayGoOn() const override { return Questions++ < StopAfter; }

    std::string Messages;
    std::vector<double> Fractions;
    int Resets = 0;
    Rgb ProgressColor;
    std::function<void()> OnBreathe;
    int StopAfter = 1'000'000; // samples
    mutable int Questions = 0;
};

// Moves on by a fixed time whenever it is read.
class SteppingClock : public Clock {
public:
    explicit SteppingClock(double step)
        : m_step(step)
    {
    }
    double Seconds() const override { return m_now += m_step; }

private:
    double m_step;
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
        View.OriginX = 100;
        View.OriginY = 50;
        View.UnitPixels = 10;
        View.XMin = -2;
        View.XMax = 2;
        View.YMin = -5;
        View.YMax = 5;
        View.Step2D = 1;
        Settings.SolidColor = kBlack;
    }

    DrawEnd Run()
    {
        Target = {};
        return Draw(MakeDrawContext(*this, Target, Host, Time));
    }

    RecordingSurface Target; // of the last run
    RecordingHost Host;
    SteppingClock Time{1.0 / 1024};
};

} // namespace kelvane
