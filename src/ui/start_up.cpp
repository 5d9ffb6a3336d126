#include "ui/start_up.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QMessageBox>
#include <QScreen>
#include <QTimer>

#include "ui/outlined_style.h"
#include "ui/plexa.h"
#include "ui/splash.h"

namespace kelvane {

namespace {

constexpr int kNarrowScreen = 800; // pixels
constexpr int kSplashMilliseconds = 1000;
constexpr const char* kWarnedFile = "ResWarn.dat"; // in AppFolder

// Says that the screen is narrow, unless the user has had enough of it.
void WarnOfNarrowScreen()
{
    const QString warned = AppFolder() + kWarnedFile;
    if (QFile(warned).open(QIODevice::ReadOnly))
        return;
    QMessageBox box(QMessageBox::NoIcon, "Kelvane",
                    "This screen is narrower than 800 pixels. Kelvane works, but some parts of its "
                    "window will be small.",
                    QMessageBox::Ok);
    auto* never = new QCheckBox("Do not show this again");
    box.setCheckBox(never);
    box.exec();
    if (never->isChecked())
        QFile(warned).open(QIODevice::WriteOnly); // if it cannot, the warning comes again
}

// Lets the program live on for a while.
void Wait(int milliseconds)
{
    QEventLoop loop;
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    timer.start(milliseconds);
    loop.exec();
}

// One accent colour; all others are the system's, and follow it.
void UseAccent()
{
    QPalette palette;
    palette.setColor(QPalette::Highlight, QColor(0x25, 0x63, 0xc9));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    QApplication::setPalette(palette);
}

} // namespace

const QString& AppFolder()
{
    static const QString folder = QDir::toNativeSeparators(QDir::currentPath() + '/');
    return folder;
}

bool HasDisplay()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || qEnvironmentVariableIsSet("DISPLAY") ||
           qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
#else
    return true;
#endif
}

int RunWindow(int argc, char** argv, const QString& file)
{
    QApplication application(argc, argv);
    QApplication::setApplicationName("Kelvane");
    QApplication::setApplicationVersion(KELVANE_VERSION);
    QApplication::setStyle(MakeOutlinedStyle()); // which takes it
    // Buttons of dialogs without pictures, which would be of another style than our icons.
    application.setStyleSheet("QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 0; }");
    UseAccent();
    AppFolder();
    if (QApplication::primaryScreen()->size().width() < kNarrowScreen)
        WarnOfNarrowScreen();
    Splash splash;
    splash.show();
    application.installEventFilter(&splash);
    QCoreApplication::processEvents();
    QElapsedTimer shown;
    shown.start();
    Plexa window;
    window.Start();
    splash.raise();
    while (!splash.IsDismissed() && shown.elapsed() < kSplashMilliseconds)
        Wait(20);
    splash.hide();
    application.removeEventFilter(&splash);
    window.activateWindow();
    window.BeginWork(file);
    return QApplication::exec();
}

} // namespace kelvane
