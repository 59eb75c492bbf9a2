#pragma once

#include <QTest>

using TextTable = std::initializer_list<std::pair<const char16_t *, const char16_t *>>;

/// Compares what `call` makes of the first text of every row with the row's second.
template <typename Call>
void CompareTable(TextTable rows, Call call)
{
    for (const auto &[in, out] : rows) {
        const QString text = QString::fromUtf16(in);
        QTest::qCompare(call(text), QString::fromUtf16(out), qUtf8Printable(text), "expected", __FILE__, __LINE__);
    }
}
