#pragma once

#include "Clock.h"
#include "LxCountryList.h"
#include "PhoneBook.h"
#include "Prompts.h"
#include "Settings.h"
#include "Shell.h"
#include "WindowServices.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <benchmark/benchmark.h>

#include <cstdlib>

/// Ends the run when a command did not do its work.
inline void Require(bool holds)
{
    if (!holds)
        std::abort();
}

/// What the flushes to the disk took, and how many of them were saves of the phone book, since it was last reset.
struct Flushes
{
    qint64 nanoseconds = 0;
    int saves = 0;
};
[[nodiscard]] Flushes &FlushesSoFar();

/// Says Yes to whatever a command asks, and names `file` where it asks for one.
class YesPrompts final : public Prompts
{
public:
    PromptAnswer ShowMessageBox(const MessageBoxRequest &, QObject *) override { return PromptAnswer::Yes; }
    QString AskOpenFile(const FileDialogRequest &, QObject *) override { return file; }
    QString AskSaveFile(const FileDialogRequest &, QObject *) override { return file; }

    QString file;
};

class NoShell final : public Shell
{
public:
    bool OpenWithShell(const QString &) override { return false; }
};

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
struct PhoneBookFixture
{
    static constexpr int kGroups = 200;

    /// Over a phone book of so many sample contacts.
    explicit PhoneBookFixture(int contactCount);
    /// Over the phone book of this file.
    explicit PhoneBookFixture(const QByteArray &phoneBookFile);

    void Show();

    /// Until the list of contacts is painted and nothing is left to do.
    void Settle();

    template <typename T>
    [[nodiscard]] T *Child(const QString &name) const
    {
        return window.findChild<T *>(name);
    }

    void Trigger(const QString &action) const { Child<QAction>(action)->trigger(); }

    /// Triggers a command that opens a dialog, and has that answered as soon as it is there.
    template <typename Answer>
    void Trigger(const QString &action, Answer answer) const
    {
        // Not in the name of the window, which at a command handles what waits for it.
        QTimer::singleShot(0, qApp, [answer] { answer(*QApplication::activeModalWidget()); });
        Trigger(action);
    }

    [[nodiscard]] int RowCount() const { return contacts->model()->rowCount(); }

    void ClickHeader(int column) const;

    /// Selects `count` contacts. They stand together in one order and apart in the other, so they are many ranges.
    void SelectRows(int count);

    QTemporaryDir folder;
    LxCountryList countries;
    SystemClock clock;
    YesPrompts prompts;
    NoShell shell;
    Settings settings{folder.filePath(QStringLiteral("settings.json")), prompts};
    /// Until the window takes it.
    std::unique_ptr<LxPhoneBook> newBook = std::make_unique<LxPhoneBook>(countries, clock);
    LxPhoneBook &phoneBook = *newBook;
    PhoneBook window{PhoneBook::Services{countries, clock, {settings, prompts, shell}}, std::move(newBook)};
    PaintWatch paints;
    QTreeView *contacts = nullptr;
    QTreeView *groups = nullptr;
    QLineEdit *find = nullptr;
};

void WriteFile(const QString &path, const QByteArray &bytes);

/// Answers a dialog by its OK button.
void Accept(QWidget &dialog);

/// Times the command to the painted, settled list. The time within fsync is left out, and counted beside.
template <typename Command>
void Time(benchmark::State &state, PhoneBookFixture &fixture, Command command)
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
