#include "TableReader.h"

#include "ForeignText.h"
#include "ImportColumns.h"

#include <QCoreApplication>

#include <csv.h>

#include <algorithm>
#include <map>
#include <memory>
#include <new>
#include <vector>

namespace TableReader {
namespace {

using Field = void (*)(void *, size_t, void *);
using Row = void (*)(int, void *);

/// Calls `field` with every field of UTF-8 text and `row` after each row, both with `data`. False when the text ends
/// within quotes.
bool Parse(QByteArrayView text, char separator, Field field, Row row, void *data)
{
    csv_parser parser;
    csv_init(&parser, 0);
    const std::unique_ptr<csv_parser, decltype(&csv_free)> owner(&parser, csv_free);
    csv_set_delim(&parser, static_cast<unsigned char>(separator));
    const auto size = static_cast<size_t>(text.size());
    if (csv_parse(&parser, text.data(), size, field, row, data) != size)
        throw std::bad_alloc();
    // It may be strict about the end alone, not about quotes within a field.
    csv_set_opts(&parser, CSV_STRICT | CSV_STRICT_FINI);
    return csv_fini(&parser, field, row, data) == 0;
}

/// How many fields the rows have.
struct Widths
{
    std::vector<int> rows;
    int current = 0;
    bool isBlank = true;
};

/// How well a separator explains a table: how many rows in ten have the width that most have, and that width.
std::pair<qsizetype, int> FitOf(QByteArrayView sample, bool isCut, char separator)
{
    Widths widths;
    Parse(
        sample, separator,
        [](void *, size_t size, void *data) {
            auto &found = *static_cast<Widths *>(data);
            ++found.current;
            found.isBlank = found.isBlank && size == 0;
        },
        [](int, void *data) {
            auto &found = *static_cast<Widths *>(data);
            if (!found.isBlank)
                found.rows.push_back(found.current);
            found.current = 0;
            found.isBlank = true;
        },
        &widths);
    if (isCut && widths.rows.size() > 1)
        widths.rows.pop_back();
    std::map<int, qsizetype> countOf;
    for (const int width : widths.rows)
        ++countOf[width];
    std::pair<qsizetype, int> best;
    for (const auto &[width, count] : countOf) {
        if (width > 1)
            best = std::max(best, {count * 10 / static_cast<qsizetype>(widths.rows.size()), width});
    }
    return best;
}

char SeparatorOf(QByteArrayView text)
{
    constexpr qsizetype kSampleSize = 65'536;
    const bool isCut = text.size() > kSampleSize;
    const QByteArrayView sample = text.first(isCut ? kSampleSize : text.size());
    char separator = '\t';
    std::pair<qsizetype, int> best;
    // Of those that fit alike it is the one that texts themselves hold least.
    for (const char other : {'\t', ';', '|', ','}) {
        if (const auto fit = FitOf(sample, isCut, other); fit > best) {
            best = fit;
            separator = other;
        }
    }
    return separator;
}

/// Takes the first line off that tells a spreadsheet the separator.
std::optional<char> TakeToldSeparator(QByteArrayView &text)
{
    constexpr QByteArrayView kName = "sep=";
    const auto isEnd = [](char c) { return c == '\r' || c == '\n'; };
    const auto end = std::find_if(text.begin(), text.end(), isEnd);
    const QByteArray line = text.first(end - text.begin()).toByteArray().replace('"', "");
    if (line.size() != kName.size() + 1 || !line.toLower().startsWith(kName.toByteArray()))
        return std::nullopt;
    text = text.sliced(end - text.begin());
    return line.back();
}

} // namespace

ContactTable Read(const QByteArray &bytes)
{
    const QByteArray utf8 = ForeignText::Decode(bytes).toUtf8();
    QByteArrayView text = utf8;
    const std::optional<char> told = TakeToldSeparator(text);
    ContactTable table;
    const bool isWhole = Parse(
        text, told ? *told : SeparatorOf(text),
        [](void *field, size_t size, void *data) {
            const QUtf8StringView cell(static_cast<const char *>(field), static_cast<qsizetype>(size));
            static_cast<ContactTable *>(data)->AppendCell(cell.toString());
        },
        [](int, void *data) { static_cast<ContactTable *>(data)->EndRow(); }, &table);
    if (!isWhole) {
        const QString cut = QCoreApplication::translate(
            "ContactFile", "The file is cut off: it ends within quotes, which begin in row %1.");
        ForeignText::Raise(cut.arg(table.RowCount()));
    }
    // Nor could it be shown.
    constexpr int kMaxColumns = 1000;
    if (table.ColumnCount() > kMaxColumns)
        ForeignText::Raise(QCoreApplication::translate("ContactFile", "The file is no table of contacts."));
    table.SetHasHeading(ImportColumns::LooksLikeHeading(table));
    return table;
}

} // namespace TableReader
