#include "Require.h"
#include "SentLog.h"
#include "SentMessages.h"
#include "Settings.h"
#include "YesPrompts.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>

#include <benchmark/benchmark.h>

#include <fstream>

using namespace Qt::StringLiterals;

namespace {

/// Resident memory, in MiB.
double Memory()
{
    std::ifstream statm("/proc/self/statm");
    double pages = 0;
    statm >> pages >> pages;
    return pages / 256;
}

/// The window over a file of a million messages that bench_history made beside this program.
struct Window : YesProfile
{
    explicit Window(const char *file)
        : log(QCoreApplication::applicationDirPath() + u'/' + QString::fromLatin1(file) + u"_texts.sent"_s, clock)
    {
    }

    void Open()
    {
        window.emplace(WindowServices{settings, prompts, shell}, log, nullptr, nullptr);
        list = window->findChild<QTableView *>(u"lvwSentMessages"_s);
        find = window->findChild<QLineEdit *>(u"txtFind"_s);
        window->show();
        Paint();
    }

    void Paint() const
    {
        QCoreApplication::processEvents();
        list->grab();
    }

    void Settle() const
    {
        const auto *button = window->findChild<QWidget *>(u"cmdExport"_s);
        const auto *status = window->findChild<QLabel *>(u"lblStatus"_s);
        while (!button->isEnabled() && !status->text().startsWith(u"0 messages"))
            QCoreApplication::processEvents();
    }

    Settings settings{Settings::DefaultFileName(), prompts};
    SentLog log;
    std::optional<SentMessages> window;
    QTableView *list = nullptr;
    QLineEdit *find = nullptr;
};

template <typename Act>
void Time(benchmark::State &state, Act act)
{
    QElapsedTimer timer;
    timer.start();
    act();
    state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) / 1e9);
}

void Open(benchmark::State &state, const char *file)
{
    Window sent(file);
    const double before = Memory();
    for (auto _ : state) {
        sent.window.reset();
        Time(state, [&sent] { sent.Open(); });
        sent.Settle();
    }
    Require(sent.list->model()->rowCount() == 1'000'000);
    state.counters["MiB"] = Memory() - before;
}

void Find(benchmark::State &state, const char *file, const QString &text)
{
    Window sent(file);
    sent.Open();
    sent.Settle();
    double longest = 0;
    for (auto _ : state) {
        sent.find->clear();
        sent.Settle();
        sent.find->setText(text.chopped(1));
        Time(state, [&] {
            sent.find->setText(text);
            sent.Paint();
        });
        QElapsedTimer timer;
        timer.start();
        sent.Settle();
        longest = qMax(longest, static_cast<double>(timer.nsecsElapsed()) / 1e6);
    }
    state.counters["then_ms"] = longest;
}

void Clear(benchmark::State &state, const char *file)
{
    Window sent(file);
    sent.Open();
    for (auto _ : state) {
        sent.find->setText(u"zzz"_s);
        sent.Settle();
        Time(state, [&] {
            sent.find->clear();
            sent.Paint();
        });
    }
}

void Scroll(benchmark::State &state, const char *file)
{
    Window sent(file);
    sent.Open();
    sent.Settle();
    int place = 0;
    for (auto _ : state) {
        place = (place + 611'953) % 1'000'000;
        Time(state, [&] {
            sent.list->verticalScrollBar()->setValue(place);
            sent.Paint();
        });
    }
}

} // namespace

int main(int argc, char *argv[])
{
    benchmark::Initialize(&argc, argv);
    const QApplication application(argc, argv);
    for (const char *file : {"shared", "own"}) {
        const auto add = [file](const std::string &name, auto run) {
            benchmark::RegisterBenchmark((name + '/' + file).c_str(), run)
                ->Unit(benchmark::kMillisecond)
                ->UseManualTime()
                ->Iterations(10);
        };
        add("Open", [file](benchmark::State &state) { Open(state, file); });
        for (const auto &text : {u"e"_s, u"meet"_s, u"item 7"_s, u"447700000"_s})
            add("Find:" + text.toStdString(), [=](benchmark::State &state) { Find(state, file, text); });
        add("Clear", [file](benchmark::State &state) { Clear(state, file); });
        add("Scroll", [file](benchmark::State &state) { Scroll(state, file); });
    }
    benchmark::RunSpecifiedBenchmarks();
}
