#include "CsvLine.h"

#include <utility>

namespace Encodings {
namespace {

constexpr QChar kQuote = u'"';
constexpr QChar kComma = u',';

enum class State { BeforeString, InsideQuotedString, InsideUnquotedString, AfterString };

/// The position of the first character from `from` on that `isEnd` accepts, or the line's end.
template <typename Predicate>
qsizetype FindEnd(QStringView line, qsizetype from, Predicate isEnd)
{
    while (from < line.size() && !isEnd(line[from]))
        ++from;
    return from;
}

/// Most fields are one stretch, which then fits its storage exactly.
void Extend(QString &field, QStringView stretch)
{
    if (field.isEmpty())
        field = stretch.toString();
    else
        field += stretch;
}

} // namespace

CsvFields ParseCSVLine(QStringView line)
{
    CsvFields fields;
    QString field;
    const auto appendField = [&fields, &field] { fields.append(std::exchange(field, {})); };
    State state = State::BeforeString;
    qsizetype i = 0;
    while (i < line.size()) {
        switch (state) {
        case State::BeforeString:
            if (line[i] == kQuote) {
                state = State::InsideQuotedString;
                ++i;
            } else if (line[i] == kComma) {
                appendField();
                ++i;
            } else {
                state = State::InsideUnquotedString;
            }
            break;
        case State::InsideQuotedString: {
            const qsizetype end = FindEnd(line, i, [](QChar c) { return c == kQuote; });
            Extend(field, line.sliced(i, end - i));
            i = end + 1;
            if (i < line.size() && line[i] == kQuote) {
                field += kQuote;
                ++i;
            } else if (end < line.size()) {
                appendField();
                state = State::AfterString;
            }
            break;
        }
        case State::InsideUnquotedString: {
            const qsizetype end = FindEnd(line, i, [](QChar c) { return c == kQuote || c == kComma; });
            field = line.sliced(i, end - i).toString();
            i = end + 1;
            if (end < line.size()) {
                appendField();
                state = line[end] == kComma ? State::BeforeString : State::AfterString;
            }
            break;
        }
        case State::AfterString:
            i = FindEnd(line, i, [](QChar c) { return c == kComma; }) + 1;
            if (i <= line.size())
                state = State::BeforeString;
            break;
        }
    }
    // In every other state the end of the line ends a field, an unclosed quoted one included.
    if (state != State::AfterString)
        appendField();
    return fields;
}

} // namespace Encodings
