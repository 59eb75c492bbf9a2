#include "CsvLine.h"

#include "Utf8.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace Encodings {
namespace {

constexpr char kQuote = '"';
constexpr char kComma = ',';

enum class State { BeforeString, InsideQuotedString, InsideUnquotedString, AfterString };

/// The position of the first such character from `from` on, or the line's end.
qsizetype FindEnd(QByteArrayView line, qsizetype from, char c)
{
    const void *const end = std::memchr(line.data() + from, c, static_cast<size_t>(line.size() - from));
    return end ? static_cast<const char *>(end) - line.data() : line.size();
}

} // namespace

CsvFields ParseCSVLine(QStringView line)
{
    CsvFields fields;
    const QByteArray utf8 = line.toUtf8();
    QByteArray joined;
    for (const QByteArrayView field : SplitCSVLine(utf8, joined))
        fields.append(Utf8::Decoded(field));
    return fields;
}

QVarLengthArray<QByteArrayView, 4> SplitCSVLine(QByteArrayView line, QByteArray &joined)
{
    QVarLengthArray<QByteArrayView, 4> fields;
    QByteArrayView field;
    qsizetype joinedFrom = -1;
    const auto appendStretch = [&](QByteArrayView stretch) {
        if (field.isEmpty()) {
            field = stretch;
            return;
        }
        if (joinedFrom < 0) {
            // Room for all at once, so that what lies there stays where it is.
            if (joined.isEmpty())
                joined.reserve(line.size());
            joinedFrom = joined.size();
            joined += field;
        }
        joined += stretch;
        field = QByteArrayView(joined).sliced(joinedFrom);
    };
    const auto appendField = [&] {
        fields.append(std::exchange(field, {}));
        joinedFrom = -1;
    };
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
            const qsizetype end = FindEnd(line, i, kQuote);
            appendStretch(line.sliced(i, end - i));
            i = end + 1;
            if (i < line.size() && line[i] == kQuote) {
                // The second of the two.
                appendStretch(line.sliced(i, 1));
                ++i;
            } else if (end < line.size()) {
                appendField();
                state = State::AfterString;
            }
            break;
        }
        case State::InsideUnquotedString: {
            const auto isEnd = [](char c) { return c == kQuote || c == kComma; };
            const qsizetype end = std::find_if(line.begin() + i, line.end(), isEnd) - line.begin();
            appendStretch(line.sliced(i, end - i));
            i = end + 1;
            if (end < line.size()) {
                appendField();
                state = line[end] == kComma ? State::BeforeString : State::AfterString;
            }
            break;
        }
        case State::AfterString:
            i = FindEnd(line, i, kComma) + 1;
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
