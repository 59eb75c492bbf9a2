#include "ContactTable.h"

#include <algorithm>

void ContactTable::AppendCell(QStringView text)
{
    m_text += text;
    m_cellEnds.push_back(static_cast<quint32>(m_text.size()));
}

void ContactTable::EndRow()
{
    const size_t firstCell = m_rowEnds.empty() ? 0 : m_rowEnds.back();
    const qsizetype begin = firstCell == 0 ? 0 : m_cellEnds[firstCell - 1];
    if (QStringView(m_text).sliced(begin).trimmed().isEmpty()) {
        m_text.truncate(begin);
        m_cellEnds.resize(firstCell);
        return;
    }
    m_columnCount = std::max(m_columnCount, static_cast<int>(m_cellEnds.size() - firstCell));
    m_rowEnds.push_back(static_cast<quint32>(m_cellEnds.size()));
}

int ContactTable::RowCount() const
{
    return static_cast<int>(m_rowEnds.size()) - (m_hasHeading && !m_rowEnds.empty() ? 1 : 0);
}

QString ContactTable::Heading(int column) const
{
    return m_hasHeading ? CellOfLine(0, column).toString() : QString();
}

QStringView ContactTable::Cell(int row, int column) const
{
    return CellOfLine(row + (m_hasHeading ? 1 : 0), column);
}

QStringView ContactTable::CellOfLine(qsizetype line, int column) const
{
    if (line < 0 || line >= static_cast<qsizetype>(m_rowEnds.size()) || column < 0)
        return {};
    const size_t row = static_cast<size_t>(line);
    const size_t cell = (row == 0 ? 0 : m_rowEnds[row - 1]) + static_cast<size_t>(column);
    if (cell >= m_rowEnds[row])
        return {};
    const qsizetype begin = cell == 0 ? 0 : m_cellEnds[cell - 1];
    return QStringView(m_text).sliced(begin, m_cellEnds[cell] - begin).trimmed();
}
