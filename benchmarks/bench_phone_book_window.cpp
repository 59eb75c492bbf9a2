#include "Clock.h"
#include "ContactModel.h"
#include "LxCountryList.h"
#include "LxGroup.h"
#include "PhoneBook.h"
#include "Prompts.h"
#include "SampleData.h"
#include "Settings.h"
#include "Shell.h"

#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <benchmark/benchmark.h>

#include <malloc.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int kContacts = 100'000;
constexpr int kGroups = 200;

qint64 g_flushTime = 0;

} // namespace

/// The flush of a save takes what the disk takes. It stands before the C library's, and is timed apart.
extern "C" int fsync(int descriptor)
{
    QElapsedTimer timer;
    timer.start();
    const auto result = static_cast<int>(::syscall(SYS_fsync, descriptor));
    g_flushTime += timer.nsecsElapsed();
    return result;
}

namespace {

/// Says Yes to whatever a command asks.
class YesPrompts final : public Prompts
{
public:
    PromptAnswer ShowMessageBox(const MessageBoxRequest &, QObject *) override { return PromptAnswer::Yes; }
    QString AskOpenFile(const FileDialogRequest &, QObject *) override { return {}; }
    QString AskSaveFile(const FileDialogRequest &, QObject *) override { return {}; }
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
struct Fixture
{
    explicit Fixture(int contactCount)
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(folder.path()));
        SampleData::FillCountries(countries);
        const QString path = LxPhoneBook::DefaultFileName();
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            std::abort();
        file.write(SampleData::PhoneBookFile(contactCount, kGroups));
        file.close();
        window.LoadData();
    }

    void Show()
    {
        window.show();
        contacts = Child<QTreeView>(u"lvwContacts"_s);
        groups = Child<QTreeView>(u"lvwGroups"_s);
        find = Child<QLineEdit>(u"txtFind"_s);
        contacts->viewport()->installEventFilter(&paints);
        Settle();
    }

    /// Until the list of contacts is painted and nothing is left to do.
    void Settle()
    {
        QCoreApplication::processEvents();
        paints.isPainted = false;
        contacts->viewport()->update();
        while (!paints.isPainted)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::processEvents();
    }

    template <typename T>
    [[nodiscard]] T *Child(const QString &name) const
    {
        return window.findChild<T *>(name);
    }

    void Trigger(const QString &action) const { Child<QAction>(action)->trigger(); }

    void ClickHeader(int column) const { emit contacts->header()->sectionClicked(column); }

    /// Selects `count` contacts. They stand together in one order and apart in the other, so they are many ranges.
    void SelectRows(int count)
    {
        ClickHeader(ContactModel::Mobile);
        const QAbstractItemModel &model = *contacts->model();
        contacts->selectionModel()->select({model.index(0, 0), model.index(count - 1, 0)},
                                           QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        ClickHeader(ContactModel::Name);
        Settle();
    }

    QTemporaryDir folder;
    LxCountryList countries;
    SystemClock clock;
    YesPrompts prompts;
    NoShell shell;
    Settings settings{folder.filePath(u"settings.json"_s), prompts};
    PhoneBook window{PhoneBook::Services{countries, clock, prompts, shell, settings}};
    PaintWatch paints;
    QTreeView *contacts = nullptr;
    QTreeView *groups = nullptr;
    QLineEdit *find = nullptr;
};

/// Times the command to the painted, settled list. The time within fsync is left out, and counted beside.
template <typename Command>
void Time(benchmark::State &state, Fixture &fixture, Command command)
{
    g_flushTime = 0;
    QElapsedTimer timer;
    timer.start();
    command();
    fixture.Settle();
    state.SetIterationTime(static_cast<double>(timer.nsecsElapsed() - g_flushTime) / 1e9);
    state.counters["flush_ms"] = static_cast<double>(g_flushTime) / 1e6;
}

void OpenWindow(benchmark::State &state)
{
    for (auto _ : state) {
        Fixture fixture(kContacts);
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
        Fixture fixture(kContacts);
        fixture.Show();
        fixture.Trigger(u"mnuPopupSelectAllContacts"_s);
        fixture.ClickHeader(ContactModel::Name);
        fixture.Settle();
        state.counters["bytes_per_contact"] = static_cast<double>(mallinfo2().uordblks - before) / kContacts;
    }
}
BENCHMARK(MemoryOfContacts)->Unit(benchmark::kMillisecond)->Iterations(3);

/// The last character of a text is typed into the find box.
void TypeToFind(benchmark::State &state, const QString &text)
{
    Fixture fixture(kContacts);
    fixture.Show();
    for (auto _ : state) {
        fixture.find->setText(text.chopped(1));
        fixture.Settle();
        Time(state, fixture, [&] {
            QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, text.right(1));
            QCoreApplication::sendEvent(fixture.find, &press);
        });
        state.counters["rows"] = fixture.contacts->model()->rowCount();
    }
}
BENCHMARK_CAPTURE(TypeToFind, Many, u"e"_s)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(1);
BENCHMARK_CAPTURE(TypeToFind, Few, u"ann lee 5600"_s)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(1);
BENCHMARK_CAPTURE(TypeToFind, Number, u"07700012"_s)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(1);
BENCHMARK_CAPTURE(TypeToFind, None, u"z"_s)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(1);

/// A click on a column that is not yet sorted by, with as many rows selected as the argument says.
void ClickColumn(benchmark::State &state, int column)
{
    Fixture fixture(kContacts);
    fixture.Show();
    if (state.range(0) > 0)
        fixture.SelectRows(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        fixture.ClickHeader((column + 1) % ContactModel::ColumnCount);
        fixture.Settle();
        Time(state, fixture, [&] { fixture.ClickHeader(column); });
    }
}
BENCHMARK_CAPTURE(ClickColumn, Name, ContactModel::Name)
    ->Arg(0)
    ->Arg(10'000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(10);
BENCHMARK_CAPTURE(ClickColumn, Mobile, ContactModel::Mobile)
    ->Arg(0)
    ->Arg(10'000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(10);
BENCHMARK_CAPTURE(ClickColumn, GroupMembership, ContactModel::GroupMembership)
    ->Arg(0)
    ->Arg(10'000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(10);

void DeleteSelected(benchmark::State &state)
{
    for (auto _ : state) {
        Fixture fixture(static_cast<int>(100 * state.range(0)));
        fixture.Show();
        fixture.SelectRows(static_cast<int>(state.range(0)));
        Time(state, fixture, [&] { fixture.Trigger(u"mnuPopupDeleteContacts"_s); });
        if (fixture.contacts->model()->rowCount() != 99 * state.range(0))
            std::abort();
    }
}
BENCHMARK(DeleteSelected)->Arg(500)->Arg(1000)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

void AddToGroup(benchmark::State &state)
{
    for (auto _ : state) {
        Fixture fixture(static_cast<int>(10 * state.range(0)));
        fixture.Show();
        fixture.SelectRows(static_cast<int>(state.range(0)));
        Time(state, fixture, [&] {
            // The dialog's first group is taken as soon as it is there.
            QTimer::singleShot(0, &fixture.window,
                               [] { QMetaObject::invokeMethod(QApplication::activeModalWidget(), "accept"); });
            fixture.Trigger(u"mnuPopupAddContactsToExistingGroup"_s);
        });
        LxGroup &group = *fixture.window.ReadOnlyPhoneBook().GroupsExcludingAllContacts().GetFirstGroup();
        if (group.Count() < state.range(0))
            std::abort();
    }
}
BENCHMARK(AddToGroup)->Arg(5'000)->Arg(10'000)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

void RenameGroup(benchmark::State &state)
{
    Fixture fixture(static_cast<int>(2 * state.range(0)));
    fixture.Show();
    LxPhoneBook &phoneBook = fixture.window.ReadOnlyPhoneBook();
    LxGroup &group = fixture.window.CreateNewGroup(false);
    int place = 0;
    for (const LxContactPtr &contact : phoneBook.AllContacts()) {
        if (++place % 2 == 0)
            group.Add(contact);
    }
    fixture.find->setFocus();
    fixture.window.SelectGroup(group);
    fixture.Settle();
    int round = 0;
    for (auto _ : state) {
        Time(state, fixture, [&] {
            fixture.groups->model()->setData(fixture.groups->currentIndex(), u"Big %1"_s.arg(++round), Qt::EditRole);
        });
    }
    if (group.Name() != u"Big %1"_s.arg(round))
        std::abort();
}
BENCHMARK(RenameGroup)->Arg(25'000)->Arg(50'000)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

} // namespace

int main(int argc, char *argv[])
{
    // A platform without a screen else waits a while before it paints, which is no work.
    qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
