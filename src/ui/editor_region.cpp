#include "ui/editor_region.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDateTime>
#include <QFontDatabase>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalBlocker>
#include <QTimer>

#include "ui/bracket_hints.h"
#include "ui/formula_editor.h"
#include "ui/icon_theme.h"

namespace kelvane {

namespace {

constexpr int kGutterWidth = 28;
constexpr int kFullFade = 500;
constexpr int kFadeStep = 10;
constexpr double kPowerHintSeconds = 4;
constexpr int kSlots = 701; // that ticks have room for

double SecondsSinceMidnight()
{
    return QTime::currentTime().msecsSinceStartOfDay() / 1000.0;
}

} // namespace

EditorRegion::EditorRegion(SharedState& state, EquationPages& pages, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_pages(pages)
{
    setObjectName("TextFrame");
    BuildTimers(); // first: the editor starts some
    BuildEditor();
    BuildPager();
    BuildKeys();
    auto* hintRow = new QHBoxLayout;
    hintRow->addWidget(m_hint, 1);
    hintRow->addWidget(m_power);
    hintRow->addWidget(m_pager);
    auto* keyRow = new QHBoxLayout;
    for (QPushButton* key : {m_newEquation, m_unselect, m_shortKeys})
        keyRow->addWidget(key, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 4);
    layout->setSpacing(4);
    layout->addWidget(EditorRow(), 1);
    layout->addLayout(hintRow);
    layout->addLayout(keyRow);
}

QWidget* EditorRegion::EditorRow()
{
    auto* row = new QWidget;
    row->setObjectName("TextEditor");
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_gutter);
    layout->addWidget(m_editor, 1);
    layout->addWidget(m_scroll);
    return row;
}

void EditorRegion::BuildEditor()
{
    m_gutter = new QWidget;
    m_gutter->setFixedWidth(kGutterWidth);
    for (int i = 0; i < kCheckBoxes; ++i) {
        auto* check = new QCheckBox(m_gutter);
        check->setObjectName(QString("Check1(%1)").arg(i));
        check->setAccessibleName(tr("Draw line %1").arg(i + 1));
        check->setToolTip(tr("Draw this equation"));
        check->hide();
        connect(check, &QCheckBox::toggled, this, [this, i](bool on) { TakeTick(i, on); });
        m_checks[static_cast<std::size_t>(i)] = check;
    }
    m_editor = new FormulaEditor(this);
    m_editor->setContextMenuPolicy(Qt::CustomContextMenu);
    m_editor->viewport()->installEventFilter(this);
    connect(m_editor->verticalScrollBar(), &QScrollBar::valueChanged, this,
            &EditorRegion::PlaceCheckBoxes);
    connect(m_editor, &FormulaEditor::topKeyPressed, this, &EditorRegion::topKeyPressed);
    connect(m_editor, &FormulaEditor::stopRequested, this, &EditorRegion::stopRequested);
    connect(m_editor, &FormulaEditor::messageRequested, this, &EditorRegion::messageWanted);
    connect(m_editor, &FormulaEditor::nextPageRequested, this, &EditorRegion::GoToNextPage);
    connect(m_editor, &FormulaEditor::lineChanged, this, &EditorRegion::FollowLine);
    for (const auto& [keys, step] :
         {std::pair(Qt::CTRL | Qt::Key_PageUp, -1), std::pair(Qt::CTRL | Qt::Key_PageDown, 1)}) {
        auto* shortcut =
            new QShortcut(keys, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this,
                [this, step = step] { m_scroll->setValue(m_scroll->value() + step); });
    }
    connect(m_editor, &FormulaEditor::powerModeStarted, this, [this] {
        ShowHint("Press ENTER to quit power (^) mode!");
        m_fadeTimer->stop();
        m_powerHintTime = SecondsSinceMidnight();
    });
    connect(m_editor, &QTextEdit::textChanged, this, [this] { m_hintTimer->start(); });
    connect(m_editor, &QTextEdit::cursorPositionChanged, this, [this] { m_hintTimer->start(); });
    connect(m_editor, &QWidget::customContextMenuRequested, this, &EditorRegion::ShowEditMenu);
}

void EditorRegion::BuildPager()
{
    m_scroll = new QScrollBar(Qt::Vertical);
    m_scroll->setObjectName("VScroll1");
    m_scroll->setAccessibleName(tr("Equation page"));
    m_scroll->setToolTip(tr("Pages"));
    m_scroll->setFocusPolicy(Qt::StrongFocus);
    m_scroll->setRange(0, 0);
    m_scroll->setPageStep(1);
    connect(m_scroll, &QScrollBar::valueChanged, this, &EditorRegion::ChangePage);
    m_pager = new QLabel;
    m_pager->setObjectName("Pager");
    m_pager->setAccessibleName(tr("Page"));
    QFont serif("Times New Roman", font().pointSize() + 1);
    serif.setStyleHint(QFont::Serif);
    m_pager->setFont(serif);
    m_pager->setMinimumWidth(QFontMetrics(serif).horizontalAdvance("100/100"));
    m_pager->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_power = new QLabel("x\u02b8");
    m_power->setObjectName("Label1");
    m_power->setAccessibleName(tr("Power mode"));
    m_power->setToolTip(tr("Power mode: ENTER returns to the line"));
    QSizePolicy steady = m_power->sizePolicy();
    steady.setRetainSizeWhenHidden(true);
    m_power->setSizePolicy(steady);
    m_power->setStyleSheet("color: palette(highlighted-text); background: palette(highlight);"
                           "border-radius: 4px; padding: 0 4px;");
    m_power->hide();
    m_hint = new QLineEdit;
    m_hint->setObjectName("Text2");
    m_hint->setAccessibleName(tr("Hint"));
    m_hint->setReadOnly(true);
    m_hint->setFocusPolicy(Qt::NoFocus);
    m_hint->setFrame(false);
    ShadeHint();
}

void EditorRegion::BuildKeys()
{
    const auto key = [](const char* name, const QString& caption) {
        auto* button = new QPushButton(caption);
        button->setObjectName(name);
        button->setMinimumWidth(40);
        return button;
    };
    m_newEquation = key("NewEqu", "New Equation ...");
    m_unselect = key("Command2", "Unselect All");
    m_shortKeys = key("ShortKeys", "Short Keys ...");
    connect(m_newEquation, &QPushButton::clicked, this, &EditorRegion::newEquationWanted);
    connect(m_shortKeys, &QPushButton::clicked, this, &EditorRegion::shortKeysWanted);
    connect(m_unselect, &QPushButton::clicked, this, &EditorRegion::UnselectAll);
}

void EditorRegion::BuildTimers()
{
    const auto timer = [this](const char* name, int interval) {
        auto* made = new QTimer(this);
        made->setObjectName(name);
        made->setInterval(interval);
        return made;
    };
    m_powerTimer = timer("Timer11", 50);
    connect(m_powerTimer, &QTimer::timeout, this, &EditorRegion::WatchPower);
    m_powerTimer->start();
    m_hintTimer = timer("Timer13", 400);
    m_hintTimer->setSingleShot(true);
    connect(m_hintTimer, &QTimer::timeout, this, &EditorRegion::GiveHint);
    m_placeTimer = timer("Placing", 0);
    m_placeTimer->setSingleShot(true);
    connect(m_placeTimer, &QTimer::timeout, this, &EditorRegion::PlaceCheckBoxes);
    m_fadeTimer = timer("Timer14", 60);
    connect(m_fadeTimer, &QTimer::timeout, this, &EditorRegion::FadeHint);
}

// ---- pages and ticks

void EditorRegion::FixLines()
{
    const int fitting = m_editor->viewport()->height() / std::max(m_editor->LineHeight(), 1);
    m_pages.LinesPerPage = std::clamp(fitting, 1, kCheckBoxes);
    m_state.Sheet.LinesPerPage = m_pages.LinesPerPage;
    m_editor->FillText(m_pages.LinesPerPage);
    ShowPage();
}

void EditorRegion::Store()
{
    StorePage(m_pages, m_state.Sheet, m_editor->Page());
}

void EditorRegion::ShowPage()
{
    const RichPage& page = m_pages.PageText[static_cast<std::size_t>(m_pages.CurrentPage)];
    if (page.empty())
        m_editor->FillText(m_pages.LinesPerPage);
    else
        m_editor->SetPage(page);
    for (int i = 0; i < m_pages.LinesPerPage; ++i) {
        QCheckBox* check = m_checks[static_cast<std::size_t>(i)];
        const int slot = EquationSlot(m_pages, m_pages.CurrentPage, i);
        const QSignalBlocker blocker(check);
        check->setChecked(m_state.Ticks.On(slot));
        check->setEnabled(slot < kSlots);
        check->setToolTip(slot < kSlots ? tr("Draw this equation")
                                        : tr("Only the first 700 equations can be drawn"));
    }
    const QSignalBlocker blocker(m_scroll);
    m_scroll->setRange(0, m_pages.LastPage);
    m_scroll->setValue(m_pages.CurrentPage);
    UpdatePager();
    PlaceCheckBoxes();
    FollowLine(m_editor->CurrentLine());
}

void EditorRegion::UpdatePager()
{
    m_pager->setText(QString::fromStdString(PageLabel(m_pages)));
}

void EditorRegion::TakeTick(int line, bool on)
{
    m_editor->setFocus();
    const int slot = EquationSlot(m_pages, m_pages.CurrentPage, line);
    if (slot < kSlots)
        m_state.Ticks.EquationOn[static_cast<std::size_t>(slot)] = on;
}

void EditorRegion::UnselectAll()
{
    m_editor->setFocus();
    m_state.Ticks = {};
    for (QCheckBox* check : m_checks) {
        const QSignalBlocker blocker(check);
        check->setChecked(false);
    }
}

void EditorRegion::ChangePage(int page)
{
    Store();
    m_pages.CurrentPage = page;
    ShowPage();
}

void EditorRegion::GoToNextPage()
{
    Store();
    if (kelvane::GoToNextPage(m_pages) == PageStep::LimitReached) {
        Q_EMIT messageWanted("", "Page Limit Reached!");
        return;
    }
    ShowPage();
    m_editor->setFocus();
}

// Of all ticks the current line's alone is reached by Tab, from the editor.
void EditorRegion::FollowLine(int line)
{
    for (int i = 0; i < kCheckBoxes; ++i)
        m_checks[static_cast<std::size_t>(i)]->setFocusPolicy(i == line ? Qt::StrongFocus
                                                                        : Qt::ClickFocus);
}

void EditorRegion::PlaceCheckBoxes()
{
    const int top =
        m_editor->viewport()->mapTo(this, QPoint()).y() - m_gutter->mapTo(this, QPoint()).y();
    for (int i = 0; i < kCheckBoxes; ++i) {
        QCheckBox* check = m_checks[static_cast<std::size_t>(i)];
        check->setVisible(i < m_pages.LinesPerPage);
        if (i >= m_pages.LinesPerPage)
            continue;
        const QRect line = m_editor->LineRect(i);
        const QSize size = check->sizeHint();
        check->setGeometry((kGutterWidth - size.width()) / 2,
                           top + line.center().y() - size.height() / 2 + 1, size.width(),
                           size.height());
    }
}

bool EditorRegion::eventFilter(QObject* target, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        m_placeTimer->start();
    return QWidget::eventFilter(target, event);
}

void EditorRegion::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    PlaceCheckBoxes();
}

void EditorRegion::ShowEditMenu(QPoint position)
{
    QMenu menu;
    menu.setObjectName("EditMenu");
    menu.setTitle("Edit Menu");
    const auto press = [this](Qt::KeyboardModifiers modifiers) {
        m_editor->setFocus();
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Insert, modifiers);
        QCoreApplication::sendEvent(m_editor, &down);
    };
    QAction* copy =
        menu.addAction(ThemeIcon("copy"), "Copy", this, [press] { press(Qt::ControlModifier); });
    copy->setObjectName("CopyMenu");
    copy->setEnabled(m_editor->textCursor().hasSelection());
    menu.addAction(ThemeIcon("paste"), "Paste", this, [press] { press(Qt::ShiftModifier); })
        ->setObjectName("PasteMenu");
    menu.exec(m_editor->viewport()->mapToGlobal(position));
}

// ---- power indicator and hints

void EditorRegion::WatchPower()
{
    m_power->setVisible(m_editor->CaretIsRaised());
    if (m_powerHintTime < 0)
        return;
    const double passed = SecondsSinceMidnight() - m_powerHintTime;
    if (passed >= kPowerHintSeconds || passed < 0) { // midnight ends it too
        m_powerHintTime = -1;
        m_fadeTimer->start();
    }
}

void EditorRegion::ShowHint(const QString& text)
{
    m_powerHintTime = -1;
    m_fade = kFullFade;
    m_hint->setText(text);
    m_hint->setCursorPosition(0); // or a long hint would show its end
    m_hint->setToolTip(text);
    ShadeHint();
    m_fadeTimer->start();
}

void EditorRegion::GiveHint()
{
    if (!m_editor->hasFocus() || m_powerHintTime >= 0)
        return;
    const QString hint = BracketHint(m_editor->textCursor());
    if (!hint.isEmpty() && hint != m_hint->text())
        ShowHint(hint);
}

void EditorRegion::FadeHint()
{
    m_fade = std::max(m_fade - kFadeStep, 0);
    ShadeHint();
    if (m_fade > 0)
        return;
    m_fadeTimer->stop();
    m_hint->clear();
}

// From bright yellow to the black that it stands on.
void EditorRegion::ShadeHint()
{
    const int shade = std::min(m_fade, 255);
    m_hint->setStyleSheet(
        m_fade == 0 ? QString("background: transparent;")
                    : QString("background: #101010; color: rgb(%1, %1, 0); border-radius: 4px;")
                          .arg(shade));
}

} // namespace kelvane
