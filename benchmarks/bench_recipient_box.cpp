#include "Clock.h"
#include "Files.h"
#include "LxPhoneBook.h"
#include "RecipientBox.h"
#include "Require.h"
#include "SampleData.h"

#include <QApplication>
#include <QLineEdit>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

/// A shown box and a phone book of 100,000 contacts in 200 groups.
struct Fixture
{
    Fixture()
    {
        const QString path = folder.filePath(u"sample.kpb"_s);
        Require(WriteBytes(path, SampleData::PhoneBookFile(100'000, 200)));
        phoneBook.OpenPhoneBook(path);
        box.show();
        QCoreApplication::processEvents();
    }

    QTemporaryDir folder;
    LxCountryList countries = SampleData::Countries();
    SystemClock clock;
    LxPhoneBook phoneBook{countries, clock};
    RecipientBox box;
};

void RefillUnchanged(benchmark::State &state)
{
    Fixture fixture;
    fixture.box.Refill(fixture.phoneBook);
    for (auto _ : state) {
        fixture.box.Refill(fixture.phoneBook);
        QCoreApplication::processEvents();
    }
}
BENCHMARK(RefillUnchanged)->Unit(benchmark::kMillisecond);

void RefillAfterAChange(benchmark::State &state)
{
    Fixture fixture;
    fixture.box.Refill(fixture.phoneBook);
    const LxContactPtr contact = *fixture.phoneBook.AllContacts().begin();
    int round = 0;
    for (auto _ : state) {
        contact->SetName(QString::number(++round));
        fixture.box.Refill(fixture.phoneBook);
        QCoreApplication::processEvents();
    }
}
BENCHMARK(RefillAfterAChange)->Unit(benchmark::kMillisecond);

void CompleteAKeystroke(benchmark::State &state)
{
    Fixture fixture;
    fixture.box.Refill(fixture.phoneBook);
    // Nothing begins so, and every name is looked at.
    const QString typed = u"zzz"_s;
    fixture.box.setEditText(typed);
    for (auto _ : state)
        emit fixture.box.lineEdit()->textEdited(typed);
}
BENCHMARK(CompleteAKeystroke)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
