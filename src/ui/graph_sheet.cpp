#include "ui/graph_sheet.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWheelEvent>
#include <utility>

#include "graph/axes.h"
#include "ui/editor_keys.h"
#include "ui/steady_clock.h"

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
    m_curves = false;
    QtSurface surface(m_box.NewImage(), m_box.Extent(), {});
    m_division =
        kelvane::InitAxis(surface, m_state.View, m_state.Axes, m_state.Settings.SheetColor);
    surface.Finish();
    m_box.update();
}

void GraphSheet::Draw()
{
    if (m_drawing)
        return;
    m_drawn = {m_state.Sheet, m_state.Ticks};
    DrawEquations();
}

void GraphSheet::Refresh()
{
    if (m_drawing)
        return;
    if (!m_curves)
        return InitAxis();
    m_silent = true; // what is wrong with these equations has been said
    DrawEquations();
    m_silent = false;
}

void GraphSheet::DrawEquations()
{
    BeginDrawing();
    const double fineness = m_box.devicePixelRatioF();
    m_surface = std::make_unique<QtSurface>(
        m_box.NewImage(), m_box.Extent(),
        QtSurface::Options{.Smooth = Antialias::On, .ColumnWidth = 1 / fineness});
    m_division =
        kelvane::InitAxis(*m_surface, m_state.View, m_state.Axes, m_state.Settings.SheetColor);
    m_surface->ShowSoFar(); // a long draw must not look bare
    const SteadyClock clock;
    const DrawEnd end = kelvane::Draw(MakeDrawContext(m_state, m_drawn, *m_surface, *this, clock));
    m_curves = end != DrawEnd::Refused || m_state.Stats.Samples > 0;
    m_surface.reset();
    EndDrawing();
}

bool GraphSheet::FitArea()
{
    ViewState& view = m_state.View;
    const bool fits = m_rangeY ? FitRange(view, m_rangeX, *m_rangeY, m_box.Extent())
                               : FitEqualUnits(view, m_rangeX, m_box.Extent());
    return UpdatePixPerStep(view) && fits;
}

bool GraphSheet::SetRange(Interval x, std::optional<Interval> y)
{
    const Interval oldX = std::exchange(m_rangeX, x);
    const auto oldY = std::exchange(m_rangeY, y);
    if (FitArea()) {
        // Short ranges need closer samples for a smooth curve, long ones cannot have as many.
        const auto step = StepFromResolution(ResolutionFor(x.High - x.Low));
        m_state.View.Step2D = step.value_or(m_state.View.Step2D);
        return SetZoom(m_state.View, 1) && SetCenter(m_state.View, {0, 0});
    }
    m_rangeX = oldX;
    m_rangeY = oldY;
    FitArea();
    return false;
}

void GraphSheet::BeginDrawing()
{
    m_drawing = true;
    m_stopRequested = false;
    m_closeRequested = false;
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
    if (event->type() == QEvent::Wheel)
        KeepWheel(target, *static_cast<QWheelEvent*>(event));
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

void GraphSheet::Breathe()
{
    m_box.update();
    QCoreApplication::processEvents();
}

} // namespace kelvane
