#include "ui/help_viewer.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QEvent>
#include <QPushButton>
#include <QScreen>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextCursor>
#include <QVBoxLayout>
#include <cstdlib>

// The linker drops a static library's resources unless something asks for them; the macro must
// stand outside of all namespaces.
static void LoadPages()
{
    Q_INIT_RESOURCE(help);
}

namespace kelvane {

namespace {

constexpr QSize kPageSize(600, 560);
constexpr const char* kContents = "contents";

struct Topic {
    const char* Name;
    const char* Page;
};

constexpr Topic kTopics[] = {{"Calculation Setup", "calculation_setup"},
                             {"Slope Mode", "slope_mode"},
                             {"Value Table", "value_table"},
                             {"Axis Setup", "axis_setup"},
                             {"Axis3D Setup", "axis3d_setup"},
                             {"Draw Setup", "draw_setup"},
                             {"Color Setup", "color_setup"},
                             {"Rotate", "rotate"},
                             {"Matrix", "matrix"}};

QUrl PageOf(const QString& topic)
{
    QString page = kContents;
    for (const Topic& known : kTopics) {
        if (topic.compare(QLatin1String(known.Name), Qt::CaseInsensitive) == 0)
            page = known.Page;
    }
    return {"qrc:/help/" + page + ".md"};
}

QColor LinkColor(const QPalette& palette)
{
    constexpr int kEnoughContrast = 100; // of 255 levels of grey
    const QColor link = palette.color(QPalette::Link);
    const int ground = qGray(palette.color(QPalette::Base).rgb());
    if (std::abs(qGray(link.rgb()) - ground) >= kEnoughContrast)
        return link;
    return ground < 128 ? QColor(0x8a, 0xb4, 0xf8) : QColor(0x1a, 0x4f, 0xa8);
}

} // namespace

HelpViewer::HelpViewer(QWidget* parent)
    : QDialog(parent)
{
    LoadPages();
    setObjectName("HelpViewer");
    setWindowTitle("Kelvane Help");
    m_page = new QTextBrowser;
    m_page->setObjectName("HelpPage");
    m_page->setAccessibleName("Help page");
    m_page->setFrameShape(QFrame::NoFrame);
    m_page->document()->setDocumentMargin(16);
    m_page->setOpenExternalLinks(false);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    QPushButton* back = buttons->addButton("&Back", QDialogButtonBox::ResetRole);
    back->setObjectName("HelpBack");
    back->setShortcut(QKeySequence("Alt+Left"));
    back->setToolTip("The page before (Alt+Left)");
    back->setEnabled(false);
    connect(back, &QPushButton::clicked, m_page, &QTextBrowser::backward);
    connect(m_page, &QTextBrowser::backwardAvailable, back, &QPushButton::setEnabled);
    connect(m_page, &QTextBrowser::sourceChanged, this, &HelpViewer::UsePalette);
    QPushButton* contents = buttons->addButton("C&ontents", QDialogButtonBox::ResetRole);
    contents->setObjectName("HelpContents");
    connect(contents, &QPushButton::clicked, this, [this] { Open({}); });
    for (QPushButton* button : buttons->findChildren<QPushButton*>())
        button->setAutoDefault(false); // none is more likely than the others

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_page, 1);
    buttons->setContentsMargins(12, 12, 12, 12);
    layout->addWidget(buttons);
    resize(kPageSize.boundedTo(screen()->availableSize() - QSize(40, 80)));
}

void HelpViewer::Open(const QString& topic)
{
    m_page->setSource(PageOf(topic));
    m_page->setFocus();
}

void HelpViewer::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && m_page != nullptr)
        UsePalette();
}

// Links in a colour that can be read on the page: that of a dark scheme is often the one for white.
void HelpViewer::UsePalette()
{
    QTextCharFormat link;
    link.setForeground(LinkColor(palette()));
    QTextCursor cursor(m_page->document());
    for (QTextBlock block = m_page->document()->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (!fragment.charFormat().isAnchor())
                continue;
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.mergeCharFormat(link);
        }
    }
}

void ShowHelp(QWidget* parent, const QString& topic)
{
    HelpViewer* viewer = nullptr;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (viewer == nullptr)
            viewer = qobject_cast<HelpViewer*>(window);
    }
    // A modal dialog blocks every window but those that belong to it.
    QWidget* owner = parent == nullptr ? nullptr : parent->window();
    if (viewer == nullptr)
        viewer = new HelpViewer(owner);
    else if (viewer->parentWidget() != owner) {
        const QRect place = viewer->geometry();
        viewer->setParent(owner, viewer->windowFlags());
        viewer->setGeometry(place);
    }
    viewer->Open(topic);
    viewer->show();
    viewer->raise();
    viewer->activateWindow();
}

} // namespace kelvane
