#include "Clock.h"
#include "LxPhoneBook.h"
#include "Require.h"
#include "SampleData.h"
#include "TextFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <malloc.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kContacts = 100'000;
constexpr int kGroups = 200;

/// A phone-book file on disk and the countries that it needs.
struct Fixture
{
    Fixture() { Write(bytes); }

    void Write(const QByteArray &content) const
    {
        QFile file(path);
        Require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush());
        ::fsync(file.handle());
    }

    QTemporaryDir folder;
    QString path = folder.filePath(u"sample.kpb"_s);
    QByteArray bytes = SampleData::PhoneBookFile(kContacts, kGroups);
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

} // namespace

BENCHMARK_MAIN();
