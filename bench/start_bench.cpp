// The time from the start of the process to the first painted window: of an empty Qt window and of
// Kelvane's, started in turns.

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QWidget>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "ui/plexa.h"

namespace {

constexpr int kStarts = 21; // of each

// Ends the process as soon as the window has been painted.
class FirstPaint : public QObject {
public:
    explicit FirstPaint(QObject& window)
        : m_window(window)
    {
    }

protected:
    bool eventFilter(QObject* target, QEvent* event) override
    {
        if (m_painted)
            std::_Exit(0);
        m_painted = target == &m_window && event->type() == QEvent::Paint;
        return false;
    }

private:
    QObject& m_window;
    bool m_painted = false;
};

// Shows a window by starting it.
template <class Window, class Start>
int Show(QApplication& application, Start start)
{
    Window window;
    FirstPaint watcher(window);
    application.installEventFilter(&watcher);
    start(window);
    return QApplication::exec();
}

double MillisecondsOf(const QString& program, const QString& kind)
{
    QElapsedTimer timer;
    timer.start();
    if (QProcess::execute(program, {kind}) != 0) {
        std::fprintf(stderr, "the window '%s' did not start\n", qUtf8Printable(kind));
        std::exit(1);
    }
    return static_cast<double>(timer.nsecsElapsed()) * 1e-6;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const std::string kind = argc > 1 ? argv[1] : "";
    if (kind == "empty" || kind == "kelvane") {
        QApplication application(argc, argv);
        QApplication::setStyle("Fusion");
        return kind == "empty"
                   ? Show<QWidget>(application, [](QWidget& window) { window.show(); })
                   : Show<kelvane::Plexa>(application, [](kelvane::Plexa& w) { w.Start(); });
    }
    std::map<QString, std::vector<double>> times;
    for (int i = 0; i < kStarts; ++i) {
        for (const QString what : {"empty", "kelvane"})
            times[what].push_back(MillisecondsOf(argv[0], what));
    }
    const auto median = [&times](const QString& what) {
        std::vector<double>& all = times[what];
        std::nth_element(all.begin(), all.begin() + kStarts / 2, all.end());
        return all[kStarts / 2];
    };
    char table[400];
    std::snprintf(table, sizeof table,
                  "## Starting\n\nFrom the start of the process to the first painted window, the "
                  "start of the process included; medians of %d starts in turns.\n\n"
                  "| empty Qt window, ms | Kelvane, ms | times as long |\n| --: | --: | --: |\n"
                  "| %.1f | %.1f | %.2f |\n\n",
                  kStarts, median("empty"), median("kelvane"), median("kelvane") / median("empty"));
    std::fputs(table, stdout);
    if (const char* report = std::getenv("KELVANE_BENCH_REPORT"))
        std::ofstream(report, std::ios::app) << table;
}
