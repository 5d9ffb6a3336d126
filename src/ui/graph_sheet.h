#pragma once

#include <QColor>
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <memory>
#include <vector>

#include "app/shared_state.h"
#include "graph/layout.h"
#include "ui/draw_box.h"
#include "ui/qt_surface.h"

class QWheelEvent;

namespace kelvane {

// The graph on the draw area: draws the frame and the ticked equations into the image of a DrawBox,
// and again after every change of the view.
//
// While a draw runs the window goes on living: it repaints, and Esc, the Stop key and the closing
// of the window stop the draw. No other input gets through. What is typed meanwhile, the turns of
// the wheel and the end of a drag are kept and delivered afterwards. Where they will change the
// view again, a redraw of it is cut short.
class GraphSheet : public QObject, private DrawHost {
    Q_OBJECT

public:
    GraphSheet(SharedState& state, DrawBox& box, QObject* parent = nullptr);
    ~GraphSheet() override;

    // Clears the area and draws the axes; the curves are gone.
    void InitAxis();

    // InitAxis, then all ticked equations of the state. Ignored while a draw runs.
    void Draw();

    // Draws what is there again, the curves too, as after a change of the view: the equations as
    // they were drawn, whatever has been typed or ticked since.
    void Refresh();

    // Draws again what was asked for last, also what was refused then, and says so if it is refused
    // now: after a change of the modes. Nothing but the axes where no draw was asked for, or where
    // the area has been cleared since.
    void DrawAgain();

    // Paints what is on the area on another surface of its size, as Refresh would. False where that
    // was stopped.
    bool PaintAgain(QtSurface& surface);

    // Makes the view fit the area's size, as the range or the axis setup says, whichever was
    // accepted last; false where it cannot. Not while a draw runs.
    bool FitArea();

    // The units, ratios and centre of the accepted axis setup become the view's, and the range is
    // what the area then shows; a scale that was left as it was stays. False, and all is as before
    // the dialog, where single precision cannot hold that.
    bool TakeAxisSetup();

    // The accepted 2D resolution, or a finer one where the range is short.
    void TakeResolution();

    // The axis setup as the view is now, before it is shown.
    void PrepareAxisSetup();

    QSize Area() const { return m_box.size(); }

    // Half of the area's width in pixels, minus 1: it ties divisions to units in the axis setup.
    float AxisHalfSpan() const;

    // Another sheet, 2D or 3D, with its axes alone, at zoom factor 1.
    void ShowSheet(bool in3D);

    // The view moved by so many pixels, zoomed (2 shows twice as much; on a 2D sheet the point
    // under the pixel stays), and its axes crossing in the point under the pixel. False where that
    // is not possible.
    bool Move(double right, double down);
    bool Zoom(double factor, PixelPoint at);
    bool ZoomTo(PixelBox box); // shows the box as large as possible
    bool Center(PixelPoint at);

    // The world point under a pixel, on a 3D sheet the one on the ground; nothing where that is
    // seen edge-on.
    std::optional<WorldPoint> WorldAt(PixelPoint pixel) const;

    // The window that FitArea shows from edge to edge at zoom factor 1; without a y range units are
    // equal. Zoom factor and centre go back to 1 and (0,0), so that it is what is seen. False, and
    // nothing changed, where single precision cannot hold it.
    bool SetRange(Interval x, std::optional<Interval> y);
    Interval RangeX() const { return m_rangeX; }
    const std::optional<Interval>& RangeY() const { return m_rangeY; }

    // The widget that may be clicked during a draw: the Stop key.
    void SetStopKey(QWidget* key) { m_stopKey = key; }

    void RequestStop() { m_stopRequested = true; }
    bool IsDrawing() const { return m_drawing; }
    bool ShowsCurves() const { return m_curves; }

    // The equations whose curves are on the area.
    const SheetEquations& Drawn() const { return m_drawn; }

    // The pixels on the area that are hatched, because it is not known what is there.
    std::int64_t UnresolvedPixels() const { return m_curves ? m_state.Stats.UnresolvedPixels : 0; }

    // How the draw ended whose curves are on the area; Complete where there are none.
    DrawEnd LastEnd() const { return m_curves ? m_end : DrawEnd::Complete; }

    // What a screen reader says of the sheet.
    QString Description() const;

    // The distance of the divisions of x, world units.
    double EachDivision() const { return m_division; }

Q_SIGNALS:
    void drawingChanged(bool drawing);
    void progressed(double fraction);
    void progressReset();
    void progressColored(QColor color);
    void messageWanted(QString title, QString text);
    void drawn();       // a draw has ended, however; State.Stats tell what it did
    void closeWanted(); // the window was to be closed during a draw, which has now ended

protected:
    bool eventFilter(QObject* target, QEvent* event) override;

private:
    struct KeptEvent {
        QPointer<QObject> Target;
        std::unique_ptr<QEvent> Event;
    };

    void ShowMessage(const Message& message) override;
    void PercentGo(double fraction) override;
    void InitPerc() override;
    void SetProgressColor(Rgb color) override;
    void Breathe() override;
    bool IsWatched() const override { return m_surface != nullptr; } // another surface is not seen
    void ShowSoFar() override;
    bool MayGoOn() const override { return !m_stopRequested && !IsOutdated(); }

    // By what the view is scaled when the area's size changes.
    enum class ScaledBy { Range, AxisSetup };

    void DrawFrame(Surface& surface);
    DrawEnd DrawOn(QtSurface& surface);
    std::optional<Box> SquareArea() const;
    void FollowArea();
    bool FitRangeTo(PixelSize size);
    void DrawEquations();
    void BeginDrawing();
    void EndDrawing();
    bool MayPass(QObject* target, QEvent* event);
    void KeepWheel(QObject* target, const QWheelEvent& wheel);
    void KeepDrag(QObject* target, const QEvent& move);
    bool IsOutdated() const;

    SharedState& m_state;
    DrawBox& m_box;
    QPointer<QWidget> m_stopKey;
    std::unique_ptr<QtSurface> m_surface; // while painting
    std::vector<KeptEvent> m_kept;        // to be delivered after the draw
    ScaledBy m_scaledBy = ScaledBy::Range;
    Interval m_rangeX{-10, 10};
    std::optional<Interval> m_rangeY;
    AxisSetup m_prepared;            // as the axis setup was opened
    float m_unitsSpan = 1;           // the half span that AxisScale's units are for
    std::vector<Message> m_messages; // of the running draw, shown at its end
    double m_division = 1;
    SheetEquations m_drawn; // what the curves on the area show
    bool m_drawing = false;
    bool m_curves = false;
    DrawEnd m_end = DrawEnd::Complete; // of the last draw
    bool m_wanted = false;             // m_drawn is what the user wants to see
    bool m_stopRequested = false;
    double m_shownPaint = 0;    // QtSurface::PaintSeconds when the area was last shown
    QElapsedTimer m_sinceBegin; // of the draw
    bool m_redraws = false;     // the draw follows a change of the view
    bool m_changeWaits = false; // what is kept will change it again
    bool m_silent = false;      // messages have been shown already
    bool m_closeRequested = false;
};

} // namespace kelvane
