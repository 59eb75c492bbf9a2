#include "Candidates.h"
#include "ContactFile.h"
#include "Files.h"
#include "LxGroup.h"
#include "NumberJudge.h"
#include "SampleData.h"
#include "TimedWindow.h"

#include <QProgressBar>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

constexpr int kRows = 100'000;

/// A mobile in national form, each another one.
QByteArray Number(int i)
{
    return "07400 " + QByteArray::number(i).rightJustified(6, '0');
}

QByteArray Table(int rows)
{
    QByteArray file = "First Name,Last Name,Company,Mobile Phone,Home Phone,Categories,Birthday\r\n";
    for (int i = 0; i < rows; ++i)
        file += "Ann,\"Lee, " + QByteArray::number(i) + "\",Some Company," + Number(i) + ",,Team " +
                QByteArray::number(i % 50) + ",1980-01-31\r\n";
    return file;
}

QByteArray Cards(int rows)
{
    QByteArray file;
    for (int i = 0; i < rows; ++i)
        file += "BEGIN:VCARD\r\nVERSION:3.0\r\nN:Lee " + QByteArray::number(i) + ";Ann;;;\r\nFN:Ann Lee " +
                QByteArray::number(i) + "\r\nTEL;TYPE=CELL:" + Number(i) + "\r\nCATEGORIES:Team " +
                QByteArray::number(i % 50) + "\r\nEND:VCARD\r\n";
    return file;
}

const NumberJudge &Judge()
{
    return NumberJudge::Load(QCoreApplication::applicationDirPath());
}

/// The first of these are judged.
std::vector<Candidate> CandidatesOf(const QByteArray &file, const NumberRules &rules, size_t judged)
{
    const ContactFile::Content content = ContactFile::Read(file);
    std::vector<Candidate> candidates = Candidates::Of(content.table, content.columns);
    Require(Candidates::Judge(std::span(candidates).first(judged), rules, false));
    return candidates;
}

void ReadFile(benchmark::State &state, QByteArray (*make)(int))
{
    const QByteArray file = make(kRows);
    for (auto _ : state)
        Require(ContactFile::Read(file).table.RowCount() == kRows);
}
BENCHMARK_CAPTURE(ReadFile, Table, &Table)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadFile, Cards, &Cards)->Unit(benchmark::kMillisecond);

void MakeCandidates(benchmark::State &state)
{
    const ContactFile::Content content = ContactFile::Read(Table(kRows));
    for (auto _ : state)
        Require(Candidates::Of(content.table, content.columns).size() == kRows);
}
BENCHMARK(MakeCandidates)->Unit(benchmark::kMillisecond);

void MakeRules(benchmark::State &state)
{
    const LxCountryList countries = SampleData::Countries();
    for (auto _ : state)
        benchmark::DoNotOptimize(NumberRules(Judge(), countries, u"GB"_s));
}
BENCHMARK(MakeRules)->Unit(benchmark::kMillisecond);

void JudgeTenThousand(benchmark::State &state)
{
    constexpr int kCount = 10'000;
    const LxCountryList countries = SampleData::Countries();
    const NumberRules rules(Judge(), countries, u"GB"_s);
    std::vector<Candidate> candidates = CandidatesOf(Table(kCount), rules, 0);
    for (auto _ : state)
        Require(Candidates::Judge(candidates, rules, false));
}
BENCHMARK(JudgeTenThousand)->Unit(benchmark::kMillisecond);

/// All of a file that are judged, against a phone book of as many.
void Settle(benchmark::State &state)
{
    TimedWindow fixture(kRows);
    const NumberRules rules(Judge(), fixture.countries, u"GB"_s);
    const std::vector<Candidate> judged = CandidatesOf(Table(kRows), rules, kRows);
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<Candidate> candidates = judged;
        state.ResumeTiming();
        Candidates::Settle(candidates, fixture.Book());
        Require(candidates.back().isTicked);
    }
}
BENCHMARK(Settle)->Unit(benchmark::kMillisecond);

/// The whole way in the windows: from the chosen file to the first painted rows, or from Import to the painted window.
/// How long the judging took in between, on all cores, is told beside.
void Assistant(benchmark::State &state, QByteArray (*make)(int), bool timesTaking)
{
    for (auto _ : state) {
        TimedWindow fixture(0);
        fixture.programFolder = QCoreApplication::applicationDirPath();
        fixture.prompts.file = fixture.home.filePath(u"contacts.csv"_s);
        fixture.settings.Save(u"Import from Other Programs"_s, u"Country"_s, u"GB"_s);
        Require(WriteBytes(fixture.prompts.file, make(kRows)));
        fixture.Show();
        qint64 shown = 0;
        qint64 judged = 0;
        QElapsedTimer timer;
        timer.start();
        fixture.Trigger(u"mnuContactsImportOther"_s, [&](QWidget &dialog) {
            PaintWatch watch;
            dialog.findChild<QTreeView *>(u"lvwCandidates"_s)->viewport()->installEventFilter(&watch);
            while (!watch.isPainted)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            shown = timer.nsecsElapsed();
            const auto &progress = *dialog.findChild<QProgressBar *>(u"prgJudging"_s);
            while (!progress.isHidden())
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            judged = timer.nsecsElapsed();
            FlushesSoFar() = {};
            Accept(dialog);
        });
        fixture.Settle();
        const qint64 taken = timer.nsecsElapsed() - judged - FlushesSoFar().nanoseconds;
        Require(fixture.RowCount() == kRows && FlushesSoFar().saves == 1);
        state.SetIterationTime(static_cast<double>(timesTaking ? taken : shown) / 1e9);
        state.counters["judging_ms"] = static_cast<double>(judged - shown) / 1e6;
    }
}
BENCHMARK_CAPTURE(Assistant, FirstRowsOfTable, &Table, false)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(3);
BENCHMARK_CAPTURE(Assistant, FirstRowsOfCards, &Cards, false)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(3);
BENCHMARK_CAPTURE(Assistant, Taking, &Table, true)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3);

} // namespace

int main(int argc, char *argv[])
{
    return RunWindowBenchmarks(argc, argv);
}
