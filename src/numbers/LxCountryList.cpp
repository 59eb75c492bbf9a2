#include "LxCountryList.h"

#include "CountryFile.h"
#include "Error.h"
#include "Prompts.h"
#include "TextFile.h"
#include "Utils.h"

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kFileName = u"countries.csv";
constexpr qint16 kTestCountryCode = 99;

QString FileName()
{
    return QString::fromUtf16(kFileName);
}

void TellToReinstall(const QString &problem, Prompts &prompts)
{
    prompts.ShowMessageBox(
        {problem + u"\r\n\r\n"_s + LxCountryList::tr("Please re-install Brevio."), PromptIcon::Critical});
}

bool AskToContinue(int line, Prompts &prompts)
{
    const QString text = LxCountryList::tr("Error reading line %1 in %2").arg(QString::number(line), FileName()) +
                         u"\r\n\r\n"_s + LxCountryList::tr("Continue reading data from the file?");
    return prompts.ShowMessageBox({text, PromptIcon::Critical, PromptButtons::YesNo}) == PromptAnswer::Yes;
}

} // namespace

void LxCountryList::LoadCountries(const QString &folder, const QStringList &arguments, Prompts &prompts)
{
    QString text;
    try {
        text = TextFile::Decode(Utils::ReadTextFile(folder + u'/' + FileName()));
    } catch (const Error &) {
        TellToReinstall(tr("Cannot open %1 for reading.").arg(FileName()), prompts);
        return;
    }
    if (!ReadFile(text, prompts))
        return;
    if (std::any_of(arguments.begin(), arguments.end(), HoldsTestCountrySwitch))
        Add({tr("Test Country"), kTestCountryCode, false});
    if (m_countries.isEmpty())
        TellToReinstall(tr("No country data was found in %1").arg(FileName()), prompts);
}

bool LxCountryList::HoldsTestCountrySwitch(const QString &argument)
{
    return argument.contains("usetestcountry"_L1, Qt::CaseInsensitive);
}

bool LxCountryList::ReadFile(const QString &text, Prompts &prompts)
{
    CountryFile file(text);
    if (!file.HasThreeColumns()) {
        TellToReinstall(tr("Wrong number of columns in %1. There should be 3 columns.").arg(FileName()), prompts);
        return false;
    }
    bool anyError = false;
    for (int line = 2; !file.AtEnd(); ++line) {
        const std::optional<LxCountry> country = file.ReadRecord();
        if (!country || !Add(*country))
            anyError = true;
        // Once there was an error, the question comes after every later record, good or bad. That is meant.
        if (anyError && !AskToContinue(line, prompts))
            break;
    }
    return true;
}

bool LxCountryList::Add(const LxCountry &country)
{
    if (CountryExists(country.CountryCode))
        return false;
    m_rowOfCode.insert(country.CountryCode, m_countries.size());
    m_countries.append(country);
    return true;
}

void LxCountryList::FillCountryCombo(const std::function<void(const QString &, int)> &addItem) const
{
    for (const LxCountry &country : m_countries)
        addItem(u"%1 (+%2)"_s.arg(country.CountryName, QString::number(country.CountryCode)), country.CountryCode);
}

const LxCountry &LxCountryList::Lookup(int code) const
{
    const auto row = m_rowOfCode.constFind(code);
    if (row == m_rowOfCode.constEnd()) {
        throw Error(ErrorNumber::kInvalidArgument, u"Corvane.CountryList"_s, tr("Unknown country %1").arg(code));
    }
    return m_countries[*row];
}
