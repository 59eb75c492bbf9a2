#include "Clock.h"
#include "Require.h"
#include "SentList.h"
#include "SentLog.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <filesystem>
#include <malloc.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// What was spent waiting for the disk, which figures leave out.
double secondsOfSync = 0;

int TimedSync(long call, int file)
{
    QElapsedTimer timer;
    timer.start();
    const auto result = static_cast<int>(::syscall(call, file));
    secondsOfSync += static_cast<double>(timer.nsecsElapsed()) / 1e9;
    return result;
}

constexpr int kMessages = 1'000'000;
constexpr int kPerClick = 1'000;
constexpr int kPeople = 100'000;

/// Whether a text goes to a hundred people or each message has its own.
enum Texts { Shared, Own };

QList<SentNote> Click(int first, int count, Texts texts, bool isNewPeople = false)
{
    QList<SentNote> messages;
    for (int i = first; i < first + count; ++i) {
        const int person = static_cast<int>(qint64(i) * 7'919 % kPeople) + (isNewPeople ? i : 0);
        const int text = texts == Own ? i : i / 100;
        messages += {u"4477%1"_s.arg(person * 97, 8, 10, QChar(u'0')), u"Ann Lee %1"_s.arg(person),
                     u"The meeting is moved to room %1 on day %2, please confirm and bring item %3"_s.arg(text % 977)
                         .arg(text % 365)
                         .arg(text)};
    }
    return messages;
}

/// The file of a million messages, made once beside the program and brought into the index.
QString SampleFile(Texts texts)
{
    const std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const QString path = QString::fromStdString(folder / (texts == Own ? "own_texts.sent" : "shared_texts.sent"));
    if (QFile::exists(path))
        return path;
    const SystemClock clock;
    const QString unfinished = path + u".new"_s;
    QFile::remove(unfinished);
    {
        SentLog log(unfinished, clock);
        for (int i = 0; i < kMessages; i += kPerClick) {
            const auto click = log.Note(Click(i, kPerClick, texts));
            Require(click.has_value());
            log.Settle(*click, QList<SentSettlement>(kPerClick, {SentOutcome::Sent, {}, i}));
        }
        SentList list(log);
        while (list.Advance(1s))
            continue;
    }
    Require(QFile::rename(unfinished, path));
    return path;
}

void ReadScreen(SentList &list, int first)
{
    constexpr int kRowsOfScreen = 50;
    for (int row = first; row < std::min(first + kRowsOfScreen, list.Count()); ++row)
        Require(list.At(row).id > 0);
}

struct Fixture
{
    explicit Fixture(Texts texts)
        : log(SampleFile(texts), clock)
    {
    }

    SystemClock clock;
    SentLog log;
};

/// How long a window goes without an event at most.
constexpr auto kSlice = 20ms;

void Open(benchmark::State &state, Texts texts)
{
    SampleFile(texts);
    double settled = 0;
    for (auto _ : state) {
        const size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
        QElapsedTimer timer;
        timer.start();
        Fixture fixture(texts);
        SentList list(fixture.log);
        list.Advance(kSlice);
        ReadScreen(list, 0);
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) / 1e9);
        Require(list.Total() == kMessages);
        while (!list.IsSettled())
            list.Advance(kSlice);
        settled = static_cast<double>(timer.nsecsElapsed()) / 1e6;
        Require(list.Count() == kMessages);
        list.SortBy(SentColumn::Text, Qt::AscendingOrder);
        list.Advance(kSlice);
        state.counters["MiB"] = static_cast<double>(mallinfo2().uordblks + mallinfo2().hblkhd - before) / (1 << 20);
    }
    state.counters["all_rows_ms"] = settled;
}

void Find(benchmark::State &state, Texts texts, const char16_t *text)
{
    Fixture fixture(texts);
    SentList list(fixture.log);
    while (list.Advance(1s))
        continue;
    double settled = 0;
    for (auto _ : state) {
        list.Find({});
        list.Advance(1s);
        QElapsedTimer timer;
        timer.start();
        list.Find(QString::fromUtf16(text));
        list.Advance(kSlice);
        ReadScreen(list, 0);
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) / 1e9);
        while (!list.IsSettled())
            list.Advance(kSlice);
        settled = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    }
    state.counters["found"] = list.Count();
    state.counters["all_rows_ms"] = settled;
}

void Scroll(benchmark::State &state, Texts texts)
{
    Fixture fixture(texts);
    SentList list(fixture.log);
    list.Advance(1min);
    int row = 0;
    for (auto _ : state) {
        row = (row + 611'953) % kMessages;
        ReadScreen(list, row);
    }
}

void SortBy(benchmark::State &state, Texts texts, SentColumn column)
{
    Fixture fixture(texts);
    SentList list(fixture.log);
    list.Advance(1min);
    int turns = 0;
    for (auto _ : state) {
        list.SortBy(column, ++turns % 2 != 0 ? Qt::AscendingOrder : Qt::DescendingOrder);
        list.Advance(kSlice);
        ReadScreen(list, 0);
    }
}

/// On a copy of the file, to people that it has or to such as it has not.
void NoteAndSettle(benchmark::State &state, Texts texts, bool settles, bool isNewPeople = false)
{
    QTemporaryDir folder(
        QString::fromStdString(std::filesystem::read_symlink("/proc/self/exe").parent_path() / "XXXXXX"));
    const QString path = folder.filePath(u"ann.sent"_s);
    Require(QFile::copy(SampleFile(texts), path));
    const SystemClock clock;
    SentLog log(path, clock);
    constexpr int kMany = 3'000;
    int first = kMessages;
    for (auto _ : state) {
        const QList<SentNote> messages = Click(first += kMany, kMany, texts, isNewPeople);
        QList<SentSettlement> settlements;
        for (int i = 0; i < kMany; ++i)
            settlements +=
                {i % 10 == 0 ? SentOutcome::Refused : SentOutcome::Sent, i % 10 == 0 ? u"No credit"_s : QString(), i};
        QElapsedTimer timer;
        timer.start();
        secondsOfSync = 0;
        const auto click = log.Note(messages);
        if (settles) {
            timer.restart();
            secondsOfSync = 0;
            log.Settle(*click, settlements);
        }
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) / 1e9 - secondsOfSync);
        if (!settles)
            log.Settle(*click, settlements);
        Require(log.TakeNotice().isEmpty());
    }
}

void Delete(benchmark::State &state, Texts texts)
{
    QTemporaryDir folder(
        QString::fromStdString(std::filesystem::read_symlink("/proc/self/exe").parent_path() / "XXXXXX"));
    const QString path = folder.filePath(u"ann.sent"_s);
    Require(QFile::copy(SampleFile(texts), path));
    const SystemClock clock;
    SentLog log(path, clock);
    SentList list(log);
    list.Advance(1min);
    for (auto _ : state) {
        std::vector<int> rows;
        for (int row = 0; row < state.range(0); ++row)
            rows.push_back(1'000 + row);
        QElapsedTimer timer;
        timer.start();
        secondsOfSync = 0;
        list.Delete(rows);
        list.Advance(0ms);
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) / 1e9 - secondsOfSync);
    }
}

void AddAll()
{
    for (const Texts texts : {Shared, Own}) {
        const std::string of = texts == Own ? "/own_texts" : "/shared_texts";
        const auto add = [&of](const std::string &name, auto run) {
            return benchmark::RegisterBenchmark((name + of).c_str(), run)->Unit(benchmark::kMillisecond);
        };
        add("Open", [texts](auto &state) { Open(state, texts); })->UseManualTime()->Iterations(5);
        for (const char16_t *text :
             {u"e", u"q", u"7", u"em", u"zz", u"é", u"meet", u"item 7", u"Lee 12345", u"zzz", u"447700000"})
            add("Find:" + QString::fromUtf16(text).toStdString(), [=](auto &state) { Find(state, texts, text); })
                ->UseManualTime()
                ->Iterations(5);
        add("Scroll", [texts](auto &state) { Scroll(state, texts); });
        for (const SentColumn column : {SentColumn::Date, SentColumn::Name, SentColumn::Text, SentColumn::Outcome})
            add("Sort:" + std::to_string(static_cast<int>(column)), [=](auto &state) { SortBy(state, texts, column); });
        add("Note", [texts](auto &state) { NoteAndSettle(state, texts, false); })->UseManualTime()->Iterations(10);
        add("Note:new_people", [texts](auto &state) { NoteAndSettle(state, texts, false, true); })
            ->UseManualTime()
            ->Iterations(10);
        add("Settle", [texts](auto &state) { NoteAndSettle(state, texts, true); })->UseManualTime()->Iterations(10);
        add("Delete", [texts](auto &state) { Delete(state, texts); })
            ->UseManualTime()
            ->Arg(1)
            ->Arg(1'000)
            ->Iterations(5);
    }
}

} // namespace

extern "C" int fsync(int file)
{
    return TimedSync(SYS_fsync, file);
}

extern "C" int fdatasync(int file)
{
    return TimedSync(SYS_fdatasync, file);
}

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    AddAll();
    benchmark::RunSpecifiedBenchmarks();
}
