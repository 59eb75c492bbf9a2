#include "ProgramOptions.h"
#include "Rows.h"
#include "Version.h"

using namespace Qt::StringLiterals;

class TestProgramOptions final : public QObject
{
    Q_OBJECT

    /// What becomes of a command line: the text that is printed and its code, or the flags and the operands.
    static QString Read(const QString &line, const ProgramOptions::Program &program)
    {
        const auto options = ProgramOptions::Parse(line.split(u' ', Qt::SkipEmptyParts), program);
        if (!options.answer)
            return (options.flags + options.operands).join(u' ');
        const QString text = options.answer->text.trimmed().replace(ReleaseText(ProgramVersion()), "VERSION"_L1);
        return text + u" = "_s + QString::number(options.answer->exitCode);
    }

private slots:
    TABLE_TEST(aProgramWithoutOperandsStartsOrAnswers, (const QString &line, const QString &outcome), u"",
               u"--help -> H = 0", u"-h --bogus -> H = 0", u"--version -> p VERSION = 0", u"-v -> p VERSION = 0",
               u"--bogus -> p: There is nothing to do with \"--bogus\". Try --help. = 2",
               u"--dark -> p: There is nothing to do with \"--dark\". Try --help. = 2",
               u"- -> p: There is nothing to do with \"-\". Try --help. = 2",
               u"file --help -> p: There is nothing to do with \"file\". Try --help. = 2", u"usetestcountry",
               u"--UseTestCountry=1 -reverse", u"/xuseTESTcountryx",
               u"-platform offscreen --style fusion -style=windows", u"-title --help -session 1_2 --reverse",
               u"-platform")
    {
        QCOMPARE(Read(line, {u"p"_s, u"H\n"_s}), outcome);
    }
};

QTEST_GUILESS_MAIN(TestProgramOptions)
#include "test_program_options.moc"
