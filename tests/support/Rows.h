#pragma once

#include <QTest>

#include <memory>

/// Tables, one habit for all: a "_data" function gives the rows, and the test takes its own by Row. Qt Test runs every
/// row, whatever became of those before, and tells the name of one that fails.

/// Rows of these cells, each after its name.
template <typename... Cells>
void AddRows(std::initializer_list<std::tuple<const char *, Cells...>> rows)
{
    using Values = std::tuple<Cells...>;
    QTest::addColumn<Values>("row");
    const auto values = [](const char *, const Cells &...cells) { return Values(cells...); };
    for (const auto &row : rows)
        QTest::newRow(std::get<0>(row)) << std::apply(values, row);
}

/// Rows of two texts, each written "text -> what comes of it" and named by the first. A text alone gives empty text.
inline void AddTextRows(std::initializer_list<const char16_t *> rows)
{
    QTest::addColumn<std::tuple<QString, QString>>("row");
    for (const QStringView row : rows) {
        const QString text = row.toString();
        const QString in = text.section(QStringLiteral(" -> "), 0, 0);
        const std::unique_ptr<char[]> name(QTest::toString(in));
        QTest::newRow(name.get()) << std::tuple(in, text.section(QStringLiteral(" -> "), 1));
    }
}

/// The cells of the row that runs: the types that AddRows was given, or two texts.
template <typename... Cells>
std::tuple<Cells...> Row()
{
    using Values = std::tuple<Cells...>;
    return *static_cast<Values *>(QTest::qData("row", qMetaTypeId<Values>()));
}
