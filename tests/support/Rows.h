#pragma once

#include <QTest>

#include <memory>

/// A test of many cases: its name, its parameters in brackets, its rows, and then its body, once for each. A row is
/// {"name", cells...}. Where the parameters are texts it may also be the text u"one -> other", or u"one" alone, and is
/// named by the first. Qt Test runs every row, whatever became of those before, and tells the name of one that fails.
#define TABLE_TEST(test, parameters, ...)                                                                              \
    void test##_data()                                                                                                 \
    {                                                                                                                  \
        AddRows(&std::remove_pointer_t<decltype(this)>::test##_row, {__VA_ARGS__});                                    \
    }                                                                                                                  \
    void test()                                                                                                        \
    {                                                                                                                  \
        RunRow(*this, &std::remove_pointer_t<decltype(this)>::test##_row);                                             \
    }                                                                                                                  \
    void test##_row parameters

template <typename... Parameters>
using Cells = std::tuple<std::remove_cvref_t<Parameters>...>;

template <typename Test, typename... Parameters>
void AddRows(void (Test::*)(Parameters...),
             std::initializer_list<std::tuple<const char *, std::remove_cvref_t<Parameters>...>> rows)
{
    QTest::addColumn<Cells<Parameters...>>("cells");
    const auto cells = [](const char *, const auto &...values) { return Cells<Parameters...>(values...); };
    for (const auto &row : rows)
        QTest::newRow(std::get<0>(row)) << std::apply(cells, row);
}

template <typename Test, typename... Parameters>
void AddRows(void (Test::*)(Parameters...), std::initializer_list<const char16_t *> rows)
{
    QTest::addColumn<Cells<Parameters...>>("cells");
    for (const char16_t *row : rows) {
        const QString text = QString::fromUtf16(row);
        const QString one = text.section(QStringLiteral(" -> "), 0, 0);
        const std::unique_ptr<char[]> name(QTest::toString(one));
        if constexpr (sizeof...(Parameters) == 1)
            QTest::newRow(name.get()) << Cells<Parameters...>(one);
        else
            QTest::newRow(name.get()) << Cells<Parameters...>(one, text.section(QStringLiteral(" -> "), 1));
    }
}

template <typename Test, typename... Parameters>
void RunRow(Test &test, void (Test::*run)(Parameters...))
{
    using Row = Cells<Parameters...>;
    std::apply([&](const auto &...cells) { (test.*run)(cells...); },
               *static_cast<const Row *>(QTest::qData("cells", qMetaTypeId<Row>())));
}
