#include "Files.h"
#include "LxContact.h"
#include "LxGroup.h"
#include "SampleData.h"
#include "TimedWindow.h"

#include <QFile>
#include <QPlainTextEdit>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

/// Three in ten contacts have the number of one before, and are in other groups.
void MergeDuplicates(benchmark::State &state)
{
    const auto count = static_cast<int>(state.range(0));
    const int kept = count / 10 * 7;
    for (auto _ : state) {
        TimedWindow fixture(SampleData::PhoneBookFile(kept, TimedWindow::kGroups) +
                            SampleData::PhoneBookFile(count - kept, TimedWindow::kGroups - 1));
        fixture.Show();
        Require(fixture.RowCount() == count);
        Time(state, fixture, [&] { fixture.Trigger(u"mnuMergeDuplicates"_s); });
        Require(fixture.RowCount() == kept);
    }
}
BENCHMARK(MergeDuplicates)->Arg(50'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

/// Lines that name every hundredth contact, by turns in each of the ways in which that can be done.
QString LinesOfEveryHundredth(const LxGroup &contacts)
{
    QStringList lines;
    int place = 0;
    for (const LxContactPtr &contact : contacts) {
        if (place % 300 == 0)
            lines += contact->Name().toUpper();
        else if (place % 300 == 100)
            lines += u'0' + contact->LocalMobile();
        else if (place % 300 == 200)
            lines += contact->InternationalMobile();
        ++place;
    }
    return lines.join(u'\n');
}

/// As many lines that name nobody.
QString LinesOfNobody(int count)
{
    QStringList lines;
    for (int i = 0; i < count; ++i)
        lines += i % 2 == 0 ? u"Nobody %1"_s.arg(i) : u"0799900%1"_s.arg(i, 4, 10, QChar(u'0'));
    return lines.join(u'\n');
}

void DeleteMany(benchmark::State &state, bool matches)
{
    const auto lineCount = static_cast<int>(state.range(0));
    for (auto _ : state) {
        TimedWindow fixture(100 * lineCount);
        fixture.Show();
        const QString lines = matches ? LinesOfEveryHundredth(fixture.Book().AllContacts()) : LinesOfNobody(lineCount);
        Require(lines.count(u'\n') + 1 == lineCount);
        Time(state, fixture, [&] {
            fixture.Trigger(u"mnuExclude"_s, [&lines](QWidget &dialog) {
                dialog.findChild<QPlainTextEdit *>(u"txtExclude"_s)->setPlainText(lines);
                Accept(dialog);
            });
        });
        Require(fixture.RowCount() == (matches ? 99 : 100) * lineCount);
    }
}
BENCHMARK_CAPTURE(DeleteMany, Matching, true)
    ->Arg(500)
    ->Arg(1000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(5);
BENCHMARK_CAPTURE(DeleteMany, Nobody, false)
    ->Arg(500)
    ->Arg(1000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(5);

/// A file of another program: names, and numbers with or without a column for the country. With addresses, each line
/// names a group of its own.
QByteArray ForeignFile(int lines, bool hasAddresses)
{
    QByteArray file = "Name,Mobile\r\n";
    for (int i = 0; i < lines; ++i) {
        const QByteArray number = QByteArray::number(7700000000 + i);
        file += "\"Ann Lee " + QByteArray::number(i) + "\",";
        if (i % 3 == 0)
            file += '0' + number.left(4) + ' ' + number.mid(4) + ",44";
        else
            file += (i % 3 == 1 ? "+353 (0)" : "44") + number;
        if (hasAddresses)
            file += ",ann.lee." + QByteArray::number(i) + "@example.com";
        file += "\r\n";
    }
    return file;
}

void Import(benchmark::State &state, bool hasAddresses)
{
    const auto count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        TimedWindow fixture(0);
        const QString path = fixture.home.filePath(u"contacts.csv"_s);
        Require(WriteBytes(path, ForeignFile(count, hasAddresses)));
        fixture.settings.Save(u"Import Contacts"_s, u"FileName"_s, path);
        fixture.Show();
        Time(state, fixture, [&] { fixture.Trigger(u"mnuContactsImport"_s, Accept); });
        LxPhoneBook &phoneBook = fixture.Book();
        Require(fixture.RowCount() == count && phoneBook.AllContacts().Count() == count);
        Require(phoneBook.Groups().Count() == 2);
    }
}
BENCHMARK_CAPTURE(Import, NamesAndNumbers, false)
    ->Arg(50'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(5);
BENCHMARK_CAPTURE(Import, Addresses, true)
    ->Arg(50'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(5);

void Export(benchmark::State &state)
{
    TimedWindow fixture(static_cast<int>(state.range(0)));
    fixture.prompts.file = fixture.home.filePath(u"export.csv"_s);
    fixture.Show();
    for (auto _ : state) {
        Time(state, fixture, [&] { fixture.Trigger(u"mnuContactsExport"_s); });
        constexpr int kHeadingLines = 5;
        Require(ReadBytes(fixture.prompts.file).count('\n') == kHeadingLines + state.range(0));
        QFile::remove(fixture.prompts.file);
    }
}
BENCHMARK(Export)->Arg(50'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

void Backup(benchmark::State &state)
{
    const QByteArray phoneBook = SampleData::PhoneBookFile(static_cast<int>(state.range(0)), TimedWindow::kGroups);
    TimedWindow fixture(phoneBook);
    fixture.prompts.file = fixture.home.filePath(u"backup.kpb"_s);
    fixture.Show();
    for (auto _ : state) {
        Time(state, fixture, [&] { fixture.Trigger(u"mnuBackup"_s); });
        Require(ReadBytes(fixture.prompts.file) == phoneBook);
        QFile::remove(fixture.prompts.file);
    }
}
BENCHMARK(Backup)->Arg(50'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

void Restore(benchmark::State &state)
{
    const auto count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        TimedWindow fixture(count - 1);
        fixture.prompts.file = fixture.home.filePath(u"backup.kpb"_s);
        Require(WriteBytes(fixture.prompts.file, SampleData::PhoneBookFile(count, TimedWindow::kGroups)));
        fixture.Show();
        Time(state, fixture, [&] { fixture.Trigger(u"mnuRestore"_s); });
        Require(fixture.RowCount() == count);
    }
}
BENCHMARK(Restore)->Arg(50'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

} // namespace

int main(int argc, char *argv[])
{
    return RunWindowBenchmarks(argc, argv);
}
