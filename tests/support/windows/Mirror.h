#pragma once

#include <QAbstractItemModelTester>
#include <QObject>

/// What a view was told of its model: texts that only the model's signals refresh. Where they are not what the model
/// says, a view shows an old row.
class Mirror final : public QObject
{
public:
    explicit Mirror(QAbstractItemModel *model)
        : QObject(model)
        , m_model(model)
    {
        ReadAll();
        connect(model, &QAbstractItemModel::modelReset, this, &Mirror::ReadAll);
        connect(model, &QAbstractItemModel::layoutChanged, this, &Mirror::ReadAll);
        connect(model, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex &, int first, int last) {
            for (int row = first; row <= last; ++row)
                m_rows.insert(row, Text(row));
        });
        connect(model, &QAbstractItemModel::rowsRemoved, this,
                [this](const QModelIndex &, int first, int last) { m_rows.remove(first, last - first + 1); });
        connect(model, &QAbstractItemModel::dataChanged, this,
                [this](const QModelIndex &first, const QModelIndex &last) {
                    for (int row = first.row(); row <= last.row(); ++row)
                        m_rows[row] = Text(row);
                });
    }

    /// The first row of which the view was not told as it is now; empty when there is none.
    [[nodiscard]] QString Stale() const
    {
        for (int row = 0; row < qMax(m_rows.size(), m_model->rowCount()); ++row) {
            if (m_rows.value(row) != Text(row))
                return QStringLiteral("row %1: %2 instead of %3").arg(row).arg(m_rows.value(row), Text(row));
        }
        return {};
    }

private:
    [[nodiscard]] QString Text(int row) const
    {
        QStringList cells;
        for (int column = 0; column < m_model->columnCount(); ++column)
            cells += m_model->index(row, column).data().toString();
        return cells.join(u'|');
    }
    void ReadAll()
    {
        m_rows.clear();
        for (int row = 0; row < m_model->rowCount(); ++row)
            m_rows += Text(row);
    }

    QAbstractItemModel *m_model;
    QAbstractItemModelTester m_tester{m_model};
    QStringList m_rows;
};
