#include "Encodings.h"

namespace Encodings {
namespace {

enum class State { BeforeString, InsideQuotedString, InsideUnquotedString, AfterString };

void AppendField(QString &field, QStringList &fields)
{
    fields.append(field);
    field.clear();
}

} // namespace

QStringList ParseCSVLine(QStringView line)
{
    constexpr QChar kQuote = u'"';
    constexpr QChar kComma = u',';
    QStringList fields;
    QString field;
    State state = State::BeforeString;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        switch (state) {
        case State::BeforeString:
            if (c == kQuote) {
                state = State::InsideQuotedString;
            } else if (c == kComma) {
                AppendField(field, fields);
            } else {
                state = State::InsideUnquotedString;
                field += c;
            }
            break;
        case State::InsideQuotedString:
            if (c != kQuote) {
                field += c;
            } else if (i + 1 < line.size() && line[i + 1] == kQuote) {
                field += kQuote;
                ++i;
            } else {
                AppendField(field, fields);
                state = State::AfterString;
            }
            break;
        case State::InsideUnquotedString:
            if (c == kComma) {
                AppendField(field, fields);
                state = State::BeforeString;
            } else if (c == kQuote) {
                AppendField(field, fields);
                state = State::AfterString;
            } else {
                field += c;
            }
            break;
        case State::AfterString:
            if (c == kComma)
                state = State::BeforeString;
            break;
        }
    }
    // In every other state the end of the line ends a field, an unclosed quoted one included.
    if (state != State::AfterString)
        AppendField(field, fields);
    return fields;
}

} // namespace Encodings
