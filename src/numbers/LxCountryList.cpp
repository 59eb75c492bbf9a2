#include "LxCountryList.h"

#include "CountryFile.h"
#include "Error.h"
#include "Prompts.h"
#include "TextFile.h"
#include "Utils.h"

#include <QCoreApplication>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kFileName = u"countries.csv";
constexpr qint16 kTestCountryCode = 99;

QString Tr(const char *text)
{
    return QCoreApplication::translate("LxCountryList", text);
}

QString FileName()
{
    return QString::fromUtf16(kFileName);
}

void TellToReinstall(const QString &problem, Prompts &prompts)
{
    prompts.ShowMessageBox({problem + u"\r\n\r\n"_s + Tr("Please re-install Brevio."), PromptIcon::Critical});
}

bool AskToContinue(int line, Prompts &prompts)
{
    const QString text = Tr("Error reading line ") + QString::number(line) + Tr(" in ") + FileName() + u"\r\n\r\n"_s +
                         Tr("Continue reading data from the file?");
    return prompts.ShowMessageBox({text, PromptIcon::Critical, PromptButtons::YesNo}) == PromptAnswer::Yes;
}

} // namespace

void LxCountryList::LoadCountries(const QString &folder, const QStringList &arguments, Prompts &prompts)
{
    QString text;
    try {
        text = TextFile::Decode(Utils::ReadTextFile(folder + u'/' + FileName()));
    } catch (const Error &) {
        TellToReinstall(Tr("Cannot open ") + FileName() + Tr(" for reading."), prompts);
        return;
    }
    if (!ReadFile(text, prompts))
        return;
    const bool wantsTestCountry = std::any_of(arguments.begin(), arguments.end(), [](const QString &argument) {
        return argument.contains("usetestcountry"_L1, Qt::CaseInsensitive);
    });
    if (wantsTestCountry)
        Add({Tr("Test Country"), kTestCountryCode, false});
    if (m_countries.isEmpty())
        TellToReinstall(Tr("No country data was found in ") + FileName(), prompts);
}

bool LxCountryList::ReadFile(const QString &text, Prompts &prompts)
{
    CountryFile file(text);
    if (!file.HasThreeColumns()) {
        TellToReinstall(Tr("Wrong number of columns in ") + FileName() + Tr(". There should be 3 columns."), prompts);
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
        throw Error(ErrorNumber::kInvalidArgument, u"Corvane.CountryList"_s,
                    Tr("Unknown country ") + QString::number(code));
    }
    return m_countries[*row];
}
