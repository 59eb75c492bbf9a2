#pragma once

#include <QTest>

#include <initializer_list>
#include <utility>

/// Fills the columns "in" and "out" of a data function; each row is named after its input.
inline void AddTextTable(std::initializer_list<std::pair<const char16_t *, const char16_t *>> rows)
{
    QTest::addColumn<QString>("in");
    QTest::addColumn<QString>("out");
    for (const auto &[in, out] : rows) {
        const QString text = QString::fromUtf16(in);
        QTest::addRow("'%s'", qUtf8Printable(text.simplified())) << text << QString::fromUtf16(out);
    }
}
