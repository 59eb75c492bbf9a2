#pragma once

#include "LxCountry.h"

#include <QStringView>

#include <optional>

/// Reads the records of the country file: after a header line, a record is three fields (code, name, guarantee
/// flag) separated by commas or line ends, whichever lines they lie on. A field may stand between double quotes;
/// spaces before it are skipped. The flag is an integer, 0 for not guaranteed.
class CountryFile final
{
public:
    /// `text` must outlive the reader.
    explicit CountryFile(QStringView text);

    /// Whether the header splits at every comma, quoted or not, into three pieces.
    [[nodiscard]] bool HasThreeColumns() const;
    [[nodiscard]] bool AtEnd() const { return m_rest.isEmpty(); }

    /// The next record, or none when a field is no number or out of range, or the file ends inside the record.
    [[nodiscard]] std::optional<LxCountry> ReadRecord();

private:
    [[nodiscard]] std::optional<QString> ReadField();

    QStringView m_header;
    QStringView m_rest;
};
