#pragma once

#include <QColor>
#include <QObject>
#include <QPointer>
#include <memory>
#include <vector>

#include "app/shared_state.h"
#include "ui/draw_box.h"
#include "ui/qt_surface.h"

class QWheelEvent;

namespace kelvane {

// The graph on the draw area: draws the frame and the ticked equations into the image of a DrawBox,
// and again after every change of the view.
//
// While a draw runs the window goes on living: it repaints, and Esc, the Stop key and the closing
// of the window stop the draw. No other input gets through. What is typed meanwhile, the turns of
// the wheel and the release of a mouse button are kept and delivered afterwards.
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

    // Makes the view fit the area's size; false where it cannot. Not while a draw runs.
    bool FitArea();

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
    bool MayGoOn() const override { return !m_stopRequested; }

    void DrawEquations();
    void BeginDrawing();
    void EndDrawing();
    bool MayPass(QObject* target, QEvent* event);
    void KeepWheel(QObject* target, const QWheelEvent& wheel);

    SharedState& m_state;
    DrawBox& m_box;
    QPointer<QWidget> m_stopKey;
    std::unique_ptr<QtSurface> m_surface; // while painting
    std::vector<KeptEvent> m_kept;        // to be delivered after the draw
    Interval m_rangeX{-10, 10};
    std::optional<Interval> m_rangeY;
    std::vector<Message> m_messages; // of the running draw, shown at its end
    double m_division = 1;
    SheetEquations m_drawn; // what the curves on the area show
    bool m_drawing = false;
    bool m_curves = false;
    bool m_stopRequested = false;
    bool m_silent = false; // messages have been shown already
    bool m_closeRequested = false;
};

} // namespace kelvane
