#pragma once

#include <QString>
#include <QStringView>

#include <vector>

/// The rows of a file that another program wrote, as text, of which the first may be a heading. Made once and read in
/// any order; rows may differ in length. A cell costs four bytes beside its text, as such files have many empty ones.
class ContactTable final
{
public:
    /// Adds a cell to the row that is being made.
    void AppendCell(QStringView text);
    /// Adds the row that is being made, unless all its cells are blank, and then begins another.
    void EndRow();

    /// Whether the first row is the heading. It is none of the rows that the others count and give.
    void SetHasHeading(bool hasHeading) { m_hasHeading = hasHeading; }
    [[nodiscard]] bool HasHeading() const { return m_hasHeading; }

    [[nodiscard]] int RowCount() const;
    /// The cells of the longest row.
    [[nodiscard]] int ColumnCount() const { return m_columnCount; }

    /// The heading of a column; empty where there is none.
    [[nodiscard]] QString Heading(int column) const;
    /// Rows and columns count from 0; empty beyond the end of a row.
    [[nodiscard]] QStringView Cell(int row, int column) const;

    /// What separates the groups in a cell; empty where that is to be found out.
    [[nodiscard]] const QString &GroupSeparator() const { return m_groupSeparator; }
    void SetGroupSeparator(const QString &separator) { m_groupSeparator = separator; }

private:
    [[nodiscard]] QStringView CellOfLine(qsizetype line, int column) const;

    QString m_text;
    /// Where each cell's text ends, and where each row's cells end.
    std::vector<quint32> m_cellEnds;
    std::vector<quint32> m_rowEnds;
    int m_columnCount = 0;
    bool m_hasHeading = false;
    QString m_groupSeparator;
};
