#pragma once

#include "PhoneBookWindow.h"
#include "Require.h"
#include "YesPrompts.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>

#include <benchmark/benchmark.h>

/// What the flushes to the disk took, and how many of them were saves of the phone book, since it was last reset.
struct Flushes
{
    qint64 nanoseconds = 0;
    int saves = 0;
};
[[nodiscard]] Flushes &FlushesSoFar();

/// Whether the watched widget was painted.
class PaintWatch final : public QObject
{
public:
    bool eventFilter(QObject *, QEvent *event) override
    {
        isPainted = isPainted || event->type() == QEvent::Paint;
        return false;
    }

    bool isPainted = false;
};

/// The window over a phone book of its own.
struct TimedWindow : YesProfile, PhoneBookWindow
{
    static constexpr int kGroups = 200;

    /// Over a phone book of so many sample contacts.
    explicit TimedWindow(int contactCount);
    /// Over the phone book of this file.
    explicit TimedWindow(const QByteArray &phoneBookFile);

    void Show();

    /// Until the list of contacts is painted and nothing is left to do.
    void Settle();

    using PhoneBookWindow::Trigger;

    /// Triggers a command that opens a dialog, and has that answered as soon as it is there.
    template <typename Answer>
    void Trigger(const QString &action, Answer answer) const
    {
        // Not in the name of the window, which at a command handles what waits for it.
        QTimer::singleShot(0, qApp, [answer] { answer(*QApplication::activeModalWidget()); });
        Trigger(action);
    }

    [[nodiscard]] int RowCount() const { return Contacts().model()->rowCount(); }

    void ClickHeader(int column) const;

    /// Selects `count` contacts. They stand together in one order and apart in the other, so they are many ranges.
    void SelectRows(int count);

    PaintWatch paints;
};

/// Answers a dialog by its OK button.
void Accept(QWidget &dialog);

/// Times the command to the painted, settled list. The time within fsync is left out, and counted beside.
template <typename Command>
void Time(benchmark::State &state, TimedWindow &fixture, Command command)
{
    FlushesSoFar() = {};
    QElapsedTimer timer;
    timer.start();
    command();
    fixture.Settle();
    const qint64 elapsed = timer.nsecsElapsed();
    const Flushes flushes = FlushesSoFar();
    state.SetIterationTime(static_cast<double>(elapsed - flushes.nanoseconds) / 1e9);
    state.counters["flush_ms"] = static_cast<double>(flushes.nanoseconds) / 1e6;
    state.counters["saves"] = flushes.saves;
}

/// Runs the benchmarks of the program; gives its exit code.
int RunWindowBenchmarks(int argc, char *argv[]);
