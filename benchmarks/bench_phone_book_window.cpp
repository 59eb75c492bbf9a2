#include "ContactColumns.h"
#include "LxGroup.h"
#include "NameListView.h"
#include "RowKeys.h"
#include "TimedWindow.h"

#include <QAbstractItemModel>
#include <QElapsedTimer>
#include <QItemSelectionModel>
#include <QKeyEvent>

#include <malloc.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kContacts = 100'000;

void OpenWindow(benchmark::State &state)
{
    for (auto _ : state) {
        TimedWindow fixture(kContacts);
        QElapsedTimer timer;
        timer.start();
        fixture.Show();
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) / 1e9);
    }
}
BENCHMARK(OpenWindow)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

/// The phone book and the window that shows it sorted by name, all rows selected.
void MemoryOfContacts(benchmark::State &state)
{
    for (auto _ : state) {
        const size_t before = mallinfo2().uordblks;
        TimedWindow fixture(kContacts);
        fixture.Show();
        fixture.Trigger(u"mnuPopupSelectAllContacts"_s);
        fixture.ClickHeader(ContactColumns::Name);
        fixture.Settle();
        state.counters["bytes_per_contact"] = static_cast<double>(mallinfo2().uordblks - before) / kContacts;
    }
}
BENCHMARK(MemoryOfContacts)->Unit(benchmark::kMillisecond)->Iterations(3);

/// The last character of a text is typed into the find box.
void TypeToFind(benchmark::State &state, const QString &text)
{
    TimedWindow fixture(kContacts);
    fixture.Show();
    for (auto _ : state) {
        fixture.Find().setText(text.chopped(1));
        fixture.Settle();
        Time(state, fixture, [&] {
            QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, text.right(1));
            QCoreApplication::sendEvent(&fixture.Find(), &press);
        });
        state.counters["rows"] = fixture.RowCount();
    }
}
BENCHMARK_CAPTURE(TypeToFind, Many, u"e"_s)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(1);
BENCHMARK_CAPTURE(TypeToFind, Few, u"ann lee 5600"_s)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(1);
BENCHMARK_CAPTURE(TypeToFind, Number, u"07700012"_s)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(1);
BENCHMARK_CAPTURE(TypeToFind, None, u"z"_s)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(1);

/// A click on a column that is not yet sorted by, with as many rows selected as the argument says.
void ClickColumn(benchmark::State &state, int column)
{
    TimedWindow fixture(kContacts);
    fixture.Show();
    if (state.range(0) > 0)
        fixture.SelectRows(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        fixture.ClickHeader((column + 1) % ContactColumns::Count);
        fixture.Settle();
        Time(state, fixture, [&] { fixture.ClickHeader(column); });
    }
}
BENCHMARK_CAPTURE(ClickColumn, Name, ContactColumns::Name)
    ->Arg(0)
    ->Arg(10'000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(10);
BENCHMARK_CAPTURE(ClickColumn, Mobile, ContactColumns::Mobile)
    ->Arg(0)
    ->Arg(10'000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(10);
BENCHMARK_CAPTURE(ClickColumn, GroupMembership, ContactColumns::GroupMembership)
    ->Arg(0)
    ->Arg(10'000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(10);

void DeleteSelected(benchmark::State &state)
{
    for (auto _ : state) {
        TimedWindow fixture(static_cast<int>(100 * state.range(0)));
        fixture.Show();
        fixture.SelectRows(static_cast<int>(state.range(0)));
        Time(state, fixture, [&] { fixture.Trigger(u"mnuPopupDeleteContacts"_s); });
        Require(fixture.RowCount() == 99 * state.range(0));
    }
}
BENCHMARK(DeleteSelected)->Arg(500)->Arg(1000)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

void UndoDeleteSelected(benchmark::State &state)
{
    for (auto _ : state) {
        TimedWindow fixture(static_cast<int>(100 * state.range(0)));
        fixture.Show();
        fixture.SelectRows(static_cast<int>(state.range(0)));
        fixture.Trigger(u"mnuPopupDeleteContacts"_s);
        Time(state, fixture, [&] { fixture.Trigger(u"mnuUndo"_s); });
        Require(fixture.RowCount() == 100 * state.range(0));
    }
}
BENCHMARK(UndoDeleteSelected)->Arg(500)->Arg(1000)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

void AddToGroup(benchmark::State &state)
{
    for (auto _ : state) {
        TimedWindow fixture(static_cast<int>(10 * state.range(0)));
        fixture.Show();
        fixture.SelectRows(static_cast<int>(state.range(0)));
        // The dialog's first group is taken.
        Time(state, fixture, [&] { fixture.Trigger(u"mnuPopupAddContactsToExistingGroup"_s, Accept); });
        LxGroup &group = *fixture.Book().GroupsExcludingAllContacts().GetFirstGroup();
        Require(group.Count() >= state.range(0));
    }
}
BENCHMARK(AddToGroup)->Arg(5'000)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

void RenameGroup(benchmark::State &state)
{
    TimedWindow fixture(static_cast<int>(2 * state.range(0)));
    fixture.Show();
    LxGroup &group = fixture.phoneBook.CreateNewGroup(false);
    int place = 0;
    for (const LxContactPtr &contact : fixture.Book().AllContacts()) {
        if (++place % 2 == 0)
            group.Add(contact);
    }
    fixture.Find().setFocus();
    fixture.phoneBook.SelectGroup(group);
    fixture.Settle();
    int round = 0;
    for (auto _ : state) {
        Time(state, fixture, [&] {
            emit Control<NameListView>(fixture.phoneBook, "lvwGroups")
                .NameTyped(RowKeys::OfGroup(group.GroupID()), u"Big %1"_s.arg(++round));
        });
    }
    Require(group.Name() == u"Big %1"_s.arg(round));
}
BENCHMARK(RenameGroup)->Arg(25'000)->Arg(50'000)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

} // namespace

int main(int argc, char *argv[])
{
    return RunWindowBenchmarks(argc, argv);
}
