#include "Clock.h"
#include "LxPhoneBook.h"
#include "Maintenance.h"
#include "Require.h"
#include "SampleData.h"
#include "TextFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <malloc.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kContacts = 100'000;
constexpr int kGroups = 200;

/// A phone-book file on disk and the countries that it needs.
struct Fixture
{
    explicit Fixture(int contacts = kContacts)
        : bytes(SampleData::PhoneBookFile(contacts, kGroups))
    {
        Write(bytes);
    }

    /// The phone book's file as it is written now.
    [[nodiscard]] QByteArray Saved(LxPhoneBook &phoneBook) const
    {
        phoneBook.Backup(path + u".copy"_s);
        QFile file(path + u".copy"_s);
        Require(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    void Write(const QByteArray &content) const
    {
        QFile file(path);
        Require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush());
        ::fsync(file.handle());
    }

    QTemporaryDir folder;
    QString path = folder.filePath(u"sample.kpb"_s);
    QByteArray bytes;
    LxCountryList countries = SampleData::Countries();
    SystemClock clock;
};

/// Reading, decoding and splitting every line at its commas, with Qt alone.
void OpenBaseline(benchmark::State &state)
{
    const Fixture fixture;
    for (auto _ : state) {
        QFile file(fixture.path);
        Require(file.open(QIODevice::ReadOnly));
        const QString text = TextFile::Decode(file.readAll());
        for (const QString &line : text.split(u"\r\n"_s))
            benchmark::DoNotOptimize(line.split(u','));
    }
}
BENCHMARK(OpenBaseline)->Unit(benchmark::kMillisecond);

void OpenPhoneBook(benchmark::State &state)
{
    const Fixture fixture;
    for (auto _ : state) {
        auto phoneBook = std::make_unique<LxPhoneBook>(fixture.countries, fixture.clock);
        phoneBook->OpenPhoneBook(fixture.path);
        Require(phoneBook->AllContacts().Count() == kContacts);
        state.PauseTiming();
        phoneBook.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(OpenPhoneBook)->Unit(benchmark::kMillisecond);

/// Writing the same bytes and flushing them to the disk.
void SaveBaseline(benchmark::State &state)
{
    const Fixture fixture;
    for (auto _ : state)
        fixture.Write(fixture.bytes);
}
BENCHMARK(SaveBaseline)->Unit(benchmark::kMillisecond)->UseRealTime();

void SavePhoneBook(benchmark::State &state)
{
    const Fixture fixture;
    LxPhoneBook phoneBook(fixture.countries, fixture.clock);
    phoneBook.OpenPhoneBook(fixture.path);
    for (auto _ : state)
        phoneBook.SavePhoneBook();
}
BENCHMARK(SavePhoneBook)->Unit(benchmark::kMillisecond)->UseRealTime();

void MemoryOfContacts(benchmark::State &state)
{
    const Fixture fixture;
    for (auto _ : state) {
        const size_t before = mallinfo2().uordblks;
        LxPhoneBook phoneBook(fixture.countries, fixture.clock);
        phoneBook.OpenPhoneBook(fixture.path);
        state.counters["bytes_per_contact"] =
            static_cast<double>(mallinfo2().uordblks - before) / phoneBook.AllContacts().Count();
    }
}
BENCHMARK(MemoryOfContacts)->Unit(benchmark::kMillisecond)->Iterations(3);

/// Deletes contacts, the last first, as one command, and takes that back.
void UndoDelete(benchmark::State &state)
{
    const Fixture fixture(static_cast<int>(state.range(1)));
    LxPhoneBook phoneBook(fixture.countries, fixture.clock);
    phoneBook.OpenPhoneBook(fixture.path);
    const QByteArray before = fixture.Saved(phoneBook);
    for (auto _ : state) {
        state.PauseTiming();
        {
            const PhoneBookHistory::Recording recording(phoneBook.History());
            LxContactList all = phoneBook.AllContacts().ContactList();
            const int step = all.Count() / static_cast<int>(state.range(0));
            for (int place = all.Count(); place > 0; place -= step)
                all.Item(place)->Destroy();
        }
        state.ResumeTiming();
        phoneBook.History().Undo();
    }
    Require(fixture.Saved(phoneBook) == before);
}
BENCHMARK(UndoDelete)
    ->Args({100, kContacts})
    ->Args({1000, kContacts})
    ->Args({1000, kContacts / 10})
    ->Args({10'000, kContacts})
    ->Unit(benchmark::kMicrosecond)
    ->Iterations(10);

/// Twenty merges, in each of which another twentieth of the contacts gets the numbers of others, that are then taken
/// back. Or, where they are taken back at once, twenty times the same merge of three in ten contacts.
void MemoryOfUndoneMerges(benchmark::State &state, bool atOnce)
{
    constexpr int kMerges = 20;
    constexpr double kMebibyte = 1024.0 * 1024.0;
    const Fixture fixture;
    if (atOnce) {
        fixture.Write(SampleData::PhoneBookFile(kContacts / 10 * 7, kGroups) +
                      SampleData::PhoneBookFile(kContacts / 10 * 3, kGroups - 1));
    }
    for (auto _ : state) {
        LxPhoneBook phoneBook(fixture.countries, fixture.clock);
        phoneBook.OpenPhoneBook(fixture.path);
        PhoneBookHistory &history = phoneBook.History();
        const QByteArray file = fixture.Saved(phoneBook);
        const size_t before = mallinfo2().uordblks;
        size_t most = before;
        for (int merge = 0; merge < kMerges; ++merge) {
            {
                const PhoneBookHistory::Recording recording(history);
                LxContactList all = phoneBook.AllContacts().ContactList();
                const int count = atOnce ? 0 : kContacts / 2 / kMerges;
                for (int i = 1; i <= count; ++i)
                    all.Item(all.Count() - i)->SetMobile(all.Item(i)->InternationalMobile());
                Maintenance::MergeDuplicates(phoneBook);
                Require(atOnce || phoneBook.AllContacts().Count() == all.Count() - count);
            }
            most = std::max(most, mallinfo2().uordblks);
            if (atOnce)
                history.Undo();
        }
        while (history.Undo())
            most = std::max(most, mallinfo2().uordblks);
        Require(fixture.Saved(phoneBook) == file);
        state.counters["MiB"] = static_cast<double>(most - before) / kMebibyte;
    }
}
BENCHMARK_CAPTURE(MemoryOfUndoneMerges, OneAtATime, true)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK_CAPTURE(MemoryOfUndoneMerges, Twenty, false)->Unit(benchmark::kMillisecond)->Iterations(2);

} // namespace

BENCHMARK_MAIN();
