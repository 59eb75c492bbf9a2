#pragma once

#include "LxCountry.h"

#include <QCoreApplication>
#include <QHash>
#include <QList>
#include <QStringList>

#include <functional>

class Prompts;

/// The countries that the program knows, in the order of their file. Built once at start-up and handed by reference
/// to whatever asks about dialling codes.
class LxCountryList final
{
    Q_DECLARE_TR_FUNCTIONS(LxCountryList)

public:
    /// In file order, the test country last. Codes are unique.
    [[nodiscard]] const QList<LxCountry> &Countries() const { return m_countries; }

    /// Reads "countries.csv" in `folder`. Problems are told through `prompts`, never raised; the list is then empty
    /// or short. `arguments` are those of the program, without its name: when one of them holds the switch, the country
    /// "Test Country" with code 99 is added.
    void LoadCountries(const QString &folder, const QStringList &arguments, Prompts &prompts);

    /// Whether an argument holds "usetestcountry", in any case.
    [[nodiscard]] static bool HoldsTestCountrySwitch(const QString &argument);

    /// Adds a country at the end. False when its code is taken.
    bool Add(const LxCountry &country);

    /// Calls `addItem` for every country, in order, with "name (+code)" and the code.
    void FillCountryCombo(const std::function<void(const QString &text, int data)> &addItem) const;

    [[nodiscard]] bool CountryExists(int code) const { return m_rowOfCode.contains(code); }

    /// Raises number 5, source "Corvane.CountryList", for an unknown code.
    [[nodiscard]] const LxCountry &Lookup(int code) const;

private:
    bool ReadFile(const QString &text, Prompts &prompts);

    QList<LxCountry> m_countries;
    QHash<int, qsizetype> m_rowOfCode;
};
