#include "ui/graph_sheet.h"

#include <QApplication>
#include <QKeyEvent>
#include <QSlider>
#include <QWheelEvent>
#include <array>
#include <cmath>
#include <utility>

#include "graph/axes_3d.h"
#include "graph/clipped_surface.h"
#include "ui/editor_keys.h"
#include "ui/steady_clock.h"
#include "ui/value_text.h"

namespace kelvane {

namespace {

bool IsInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::Drop:
    case QEvent::TouchBegin:
    case QEvent::Close:
        return true;
    default:
        return false;
    }
}

} // namespace

GraphSheet::GraphSheet(SharedState& state, DrawBox& box, QObject* parent)
    : QObject(parent)
    , m_state(state)
    , m_box(box)
{
}

GraphSheet::~GraphSheet() = default;

void GraphSheet::InitAxis()
{
    if (m_drawing)
        return;
    m_curves = m_wanted = false;
    QtSurface surface(m_box.NewImage(), m_box.Extent(), {});
    DrawFrame(surface);
    surface.Finish();
    m_box.update();
}

std::optional<Box> GraphSheet::SquareArea() const
{
    return m_state.AxisScale.SquareWorkSheet ? std::optional(CentredSquare(m_box.Extent()))
                                             : std::nullopt;
}

// Clears the surface and draws the axes of the sheet, in the square of a square work sheet.
void GraphSheet::DrawFrame(Surface& surface)
{
    const Rgb sheet = m_state.Settings.SheetColor;
    const auto draw = [&](Surface& target) {
        return m_state.Modes.Mode3D ? InitAxis3D(target, m_state.View, m_state.Axes, m_state.Axis3D,
                                                 m_state.ViewMatrix, sheet)
                                    : kelvane::InitAxis(target, m_state.View, m_state.Axes, sheet);
    };
    const auto square = SquareArea();
    if (!square) {
        m_division = draw(surface);
        return;
    }
    ClippedSurface part(surface, *square);
    m_division = draw(part);
    part.DrawFrame(FrameColorsOn(sheet).Grid);
}

void GraphSheet::Draw()
{
    if (m_drawing)
        return;
    m_drawn = {m_state.Sheet, m_state.Ticks};
    m_wanted = true;
    DrawEquations();
}

void GraphSheet::DrawAgain()
{
    if (m_drawing)
        return;
    if (m_wanted)
        DrawEquations();
    else
        InitAxis();
}

void GraphSheet::Refresh()
{
    if (m_drawing)
        return;
    if (!m_curves) {
        const bool wanted = m_wanted;
        InitAxis();
        m_wanted = wanted;
        return;
    }
    m_silent = m_redraws = true; // what is wrong with these equations has been said
    DrawEquations();
    m_silent = m_redraws = false;
}

void GraphSheet::DrawEquations()
{
    BeginDrawing();
    const double fineness = m_box.devicePixelRatioF();
    m_surface = std::make_unique<QtSurface>(
        m_box.NewImage(), m_box.Extent(),
        QtSurface::Options{.Smooth = Antialias::On, .ColumnWidth = 1 / fineness});
    m_end = DrawOn(*m_surface);
    m_curves = m_end != DrawEnd::Refused || m_state.Stats.Samples > 0;
    m_surface.reset();
    EndDrawing();
}

// The axes and the equations that are shown.
DrawEnd GraphSheet::DrawOn(QtSurface& surface)
{
    DrawFrame(surface);
    surface.ShowSoFar(); // a long draw must not look bare
    const SteadyClock clock;
    const auto draw = [&](Surface& target) {
        return kelvane::Draw(MakeDrawContext(m_state, m_drawn, target, *this, clock));
    };
    const auto square = SquareArea();
    if (!square)
        return draw(surface);
    ClippedSurface part(surface, *square);
    return draw(part);
}

bool GraphSheet::PaintAgain(QtSurface& surface)
{
    if (m_drawing)
        return false;
    if (!m_curves) {
        DrawFrame(surface);
        return true;
    }
    m_silent = true;
    BeginDrawing();
    const bool whole = DrawOn(surface) != DrawEnd::Stopped;
    EndDrawing();
    m_silent = false;
    return whole;
}

float GraphSheet::AxisHalfSpan() const
{
    const auto square = SquareArea();
    const double width = square ? square->Right - square->Left + 1 : m_box.Extent().Width;
    return static_cast<float>(width / 2 - 1);
}

bool GraphSheet::FitArea()
{
    FollowArea();
    ViewState& view = m_state.View;
    const auto square = SquareArea();
    const PixelSize size =
        square ? PixelSize{square->Right - square->Left + 1, square->Bottom - square->Top + 1}
               : m_box.Extent();
    bool fits = true;
    if (m_scaledBy == ScaledBy::AxisSetup) {
        const AxisScaling scaling = ScalingOf(m_state.AxisScale);
        const double x = size.Width / 2 / scaling.UnitPixels;
        const double y = size.Height / 2 / scaling.UnitPixels / scaling.YRatio;
        fits = FitRange(view, {-x, x}, {-y, y}, size);
        view.UnitPixels = scaling.UnitPixels;
        view.YRatio = scaling.YRatio;
        view.ZRatio = scaling.ZRatio;
        view.ZMax = static_cast<float>(y * scaling.YRatio / scaling.ZRatio);
        view.ZMin = -view.ZMax;
    } else {
        fits = FitRangeTo(size);
    }
    if (square) {
        view.OriginX += static_cast<float>(square->Left);
        view.OriginY += static_cast<float>(square->Top);
    }
    return UpdatePixPerStep(view) && fits;
}

// Units keep their share of the area when its size changes, and stay as accepted until then.
void GraphSheet::FollowArea()
{
    const float span = AxisHalfSpan();
    const float before = std::exchange(m_unitsSpan, span);
    if (span == before)
        return;
    AxisSetup& setup = m_state.AxisScale;
    for (std::size_t i = 0; i < setup.Units.size(); ++i) {
        const bool whole = setup.Units[i] == UnitFor(before, setup.Divisions[i]);
        setup.Units[i] = whole ? UnitFor(span, setup.Divisions[i]) : setup.Units[i] * span / before;
    }
}

bool GraphSheet::FitRangeTo(PixelSize size)
{
    ViewState& view = m_state.View;
    view.ZRatio = 1;
    view.ZMin = static_cast<float>(m_rangeX.Low);
    view.ZMax = static_cast<float>(m_rangeX.High);
    if (!m_state.Modes.Mode3D)
        return m_rangeY ? FitRange(view, m_rangeX, *m_rangeY, size)
                        : FitEqualUnits(view, m_rangeX, size);
    const bool fits = FitEqualUnits(view, m_rangeX, size);
    const Interval y = m_rangeY.value_or(m_rangeX);
    view.YMin = static_cast<float>(y.Low);
    view.YMax = static_cast<float>(y.High);
    return FitSpace(view, m_state.Axis3D, size) && fits;
}

void GraphSheet::PrepareAxisSetup()
{
    AxisSetup& setup = m_state.AxisScale;
    const ViewState& view = m_state.View;
    setup.Center = {view.CenterX, -view.CenterY, view.CenterZ};
    m_prepared = setup;
    if (m_scaledBy == ScaledBy::AxisSetup)
        return;
    const float halfSpan = m_unitsSpan = AxisHalfSpan();
    const std::array<float, 3> ratios{1, view.YRatio, view.ZRatio};
    for (std::size_t axis = 0; axis < ratios.size(); ++axis) {
        setup.Units[axis] = view.UnitPixels * 10 / ratios[axis];
        setup.Divisions[axis] = DivisionsFor(halfSpan, setup.Units[axis]);
    }
    m_prepared = setup;
}

bool GraphSheet::TakeAxisSetup()
{
    const AxisSetup& setup = m_state.AxisScale;
    const ViewState oldView = m_state.View;
    const ScaledBy oldScale = m_scaledBy;
    const bool sameScale =
        setup.Units == m_prepared.Units && setup.SquareWorkSheet == m_prepared.SquareWorkSheet;
    if (!sameScale)
        m_scaledBy = ScaledBy::AxisSetup;
    m_state.View.CenterZ = setup.Center[2];
    if (!(sameScale || FitArea()) || !SetCenter(m_state.View, {setup.Center[0], setup.Center[1]})) {
        m_state.View = oldView;
        m_state.AxisScale = m_prepared;
        m_scaledBy = oldScale;
        return false;
    }
    m_state.Axes.ShowAxes = !setup.HideAxis;
    m_state.Axes.UnitThickness = setup.UnitThickness;
    return true;
}

void GraphSheet::ShowSheet(bool in3D)
{
    if (m_drawing || m_state.Modes.Mode3D == in3D)
        return Refresh();
    m_state.Modes.Mode3D = in3D;
    FitArea();
    SetZoom(m_state.View, 1);
    InitAxis();
}

bool GraphSheet::Move(double right, double down)
{
    ViewState& view = m_state.View;
    if (!m_state.Modes.Mode3D)
        return MoveGraph(view, right, down);
    view.OriginX += static_cast<float>(right); // until the area's size changes
    view.OriginY += static_cast<float>(down);
    return true;
}

bool GraphSheet::ZoomTo(PixelBox box)
{
    ViewState& view = m_state.View;
    const PixelSize size = m_box.Extent();
    if (!m_state.Modes.Mode3D)
        return ZoomToBox(view, box, size);
    const double factor = std::max(std::fabs(box.To.X - box.From.X) / size.Width,
                                   std::fabs(box.To.Y - box.From.Y) / size.Height);
    const PixelPoint middle{(box.From.X + box.To.X) / 2, (box.From.Y + box.To.Y) / 2};
    if (!(factor > 0) || !SetZoom(view, view.ZoomFactor * factor))
        return false;
    const PixelPoint seen{view.OriginX + (middle.X - view.OriginX) / factor,
                          view.OriginY + (middle.Y - view.OriginY) / factor};
    return Move(size.Width / 2 - seen.X, size.Height / 2 - seen.Y);
}

void GraphSheet::TakeResolution()
{
    const double wanted = m_state.Settings.Resolution;
    const double span = static_cast<double>(m_state.View.XMax) - m_state.View.XMin;
    const double finer = span > 0 ? ResolutionFor(span, wanted) : wanted;
    if (const auto step = StepFromResolution(std::max(finer, wanted)))
        m_state.View.Step2D = *step;
}

bool GraphSheet::Zoom(double factor, PixelPoint at)
{
    ViewState& view = m_state.View;
    const PixelPoint crossing{view.OriginX, view.OriginY};
    return ZoomAround(view, factor, m_state.Modes.Mode3D ? crossing : at);
}

bool GraphSheet::Center(PixelPoint at)
{
    const auto world = WorldAt(at);
    return world && SetCenter(m_state.View, *world);
}

std::optional<WorldPoint> GraphSheet::WorldAt(PixelPoint pixel) const
{
    if (!m_state.Modes.Mode3D)
        return PixelToWorld(m_state.View, pixel);
    const Projection projection = MakeProjection(m_state.View, m_state.Axis3D, m_state.ViewMatrix);
    const auto ground = UnprojectToPlane(projection, pixel, {SpaceAxis::Z, 0});
    return ground ? std::optional(WorldPoint{ground->X, ground->Y}) : std::nullopt;
}

bool GraphSheet::SetRange(Interval x, std::optional<Interval> y)
{
    const Interval oldX = std::exchange(m_rangeX, x);
    const auto oldY = std::exchange(m_rangeY, y);
    const ScaledBy oldScale = std::exchange(m_scaledBy, ScaledBy::Range);
    if (FitArea()) {
        // Short ranges need closer samples for a smooth curve, long ones cannot have as many.
        const auto step =
            StepFromResolution(ResolutionFor(x.High - x.Low, m_state.Settings.Resolution));
        m_state.View.Step2D = step.value_or(m_state.View.Step2D);
        return SetZoom(m_state.View, 1) && SetCenter(m_state.View, {0, 0});
    }
    m_rangeX = oldX;
    m_rangeY = oldY;
    m_scaledBy = oldScale;
    FitArea();
    return false;
}

QString GraphSheet::Description() const
{
    QStringList drawn;
    const int lines = m_curves ? static_cast<int>(m_drawn.Ticks.EquationOn.size()) : 0;
    for (int line = 1; line < lines; ++line) {
        if (m_drawn.Ticks.On(line))
            drawn += QString::number(line);
    }
    QString equations = drawn.isEmpty() ? tr("No equation is drawn.")
                                        : tr("Equations drawn: %1.").arg(drawn.join(", "));
    if (LastEnd() == DrawEnd::Stopped)
        equations += tr(" Stopped before all was drawn.");
    if (UnresolvedPixels() > 0)
        equations += tr(" Unresolved and hatched: %1 pixels.").arg(UnresolvedPixels());
    if (m_state.Modes.Mode3D)
        return tr("3D sheet. %1").arg(equations);
    const PixelSize size = m_box.Extent();
    const WorldPoint low = PixelToWorld(m_state.View, {0, size.Height - 1});
    const WorldPoint high = PixelToWorld(m_state.View, {size.Width - 1, 0});
    return tr("2D sheet, x from %1 to %2, y from %3 to %4. %5")
        .arg(ValueText(low.X), ValueText(high.X), ValueText(low.Y), ValueText(high.Y), equations);
}

void GraphSheet::BeginDrawing()
{
    m_drawing = true;
    m_stopRequested = false;
    m_closeRequested = false;
    m_changeWaits = false;
    m_sinceBegin.start();
    qApp->installEventFilter(this);
    Q_EMIT drawingChanged(true);
}

void GraphSheet::EndDrawing()
{
    qApp->removeEventFilter(this);
    m_drawing = false;
    m_box.update();
    Q_EMIT progressReset(); // also after a stop
    Q_EMIT drawingChanged(false);
    Q_EMIT drawn();
    for (const Message& message : std::exchange(m_messages, {}))
        Q_EMIT messageWanted(QString::fromStdString(message.Title),
                             QString::fromStdString(message.Text));
    for (KeptEvent& kept : std::exchange(m_kept, {})) {
        const bool zoomsOn = kept.Event->type() == QEvent::Wheel && m_stopRequested;
        if (kept.Target && !zoomsOn) // who stops a draw wants no further one
            QCoreApplication::postEvent(kept.Target, kept.Event.release());
    }
    if (m_closeRequested)
        Q_EMIT closeWanted();
}

// Whether an event reaches its target during a draw.
bool GraphSheet::MayPass(QObject* target, QEvent* event)
{
    if (!IsInput(event->type()) || target == m_stopKey)
        return true;
    auto* widget = qobject_cast<QWidget*>(target);
    if (widget == nullptr) // a window of the window system hands its input on to widgets
        return event->type() != QEvent::Shortcut;
    if (event->type() == QEvent::Close) {
        if (widget != m_box.window())
            return true;
        m_closeRequested = m_stopRequested = true;
        event->ignore();
        return false;
    }
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    const bool isCommand = isKey && TopKeyOf(*static_cast<QKeyEvent*>(event)).has_value();
    const bool isTyping = (isKey && !isCommand) || event->type() == QEvent::InputMethod;
    const bool endsDrag = event->type() == QEvent::MouseButtonRelease;
    const bool movesGraph = widget == &m_box && m_box.IsMovingGraph();
    const bool isDrag = event->type() == QEvent::MouseMove &&
                        (movesGraph || qobject_cast<QSlider*>(widget) != nullptr) &&
                        static_cast<QMouseEvent*>(event)->buttons() != Qt::NoButton;
    const bool isTurn = event->type() == QEvent::Wheel && widget == &m_box;
    m_changeWaits = m_changeWaits || isDrag || isTurn || (endsDrag && movesGraph);
    if (event->type() == QEvent::Wheel)
        KeepWheel(target, *static_cast<QWheelEvent*>(event));
    if (isDrag)
        KeepDrag(target, *event);
    if (isKey && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
        m_stopRequested = true;
    else if (endsDrag || (isTyping && widget == QApplication::focusWidget()))
        m_kept.push_back({target, std::unique_ptr<QEvent>(event->clone())});
    return false;
}

// The turns of a wheel add up to one.
void GraphSheet::KeepWheel(QObject* target, const QWheelEvent& wheel)
{
    QPoint angle = wheel.angleDelta();
    if (!m_kept.empty() && m_kept.back().Target == target &&
        m_kept.back().Event->type() == QEvent::Wheel) {
        angle += static_cast<QWheelEvent&>(*m_kept.back().Event).angleDelta();
        m_kept.pop_back();
    }
    m_kept.push_back({target, std::make_unique<QWheelEvent>(
                                  wheel.position(), wheel.globalPosition(), QPoint(), angle,
                                  wheel.buttons(), wheel.modifiers(), Qt::NoScrollPhase, false)});
}

// Of a drag only its last position counts.
void GraphSheet::KeepDrag(QObject* target, const QEvent& move)
{
    if (!m_kept.empty() && m_kept.back().Target == target &&
        m_kept.back().Event->type() == QEvent::MouseMove)
        m_kept.pop_back();
    m_kept.push_back({target, std::unique_ptr<QEvent>(move.clone())});
}

// A redraw whose view will not stay lasts long enough for a glimpse of the graph.
bool GraphSheet::IsOutdated() const
{
    constexpr qint64 kGlimpse = 150; // ms
    return m_redraws && m_changeWaits && m_sinceBegin.hasExpired(kGlimpse);
}

bool GraphSheet::eventFilter(QObject* target, QEvent* event)
{
    return !MayPass(target, event);
}

void GraphSheet::ShowMessage(const Message& message)
{
    if (!m_silent)
        m_messages.push_back(message);
}

void GraphSheet::PercentGo(double fraction)
{
    Q_EMIT progressed(fraction);
}

void GraphSheet::InitPerc()
{
    Q_EMIT progressReset();
}

void GraphSheet::SetProgressColor(Rgb color)
{
    Q_EMIT progressColored(ToQColor(color));
}

void GraphSheet::ShowSoFar()
{
    if (m_surface)
        m_surface->ShowSoFar();
    m_box.update();
}

// Showing the area takes longer than all else on large screens: only when there is something new.
void GraphSheet::Breathe()
{
    const double painted = m_surface ? m_surface->PaintSeconds() : m_shownPaint;
    if (std::exchange(m_shownPaint, painted) != painted)
        m_box.update();
    QCoreApplication::processEvents();
}

} // namespace kelvane
