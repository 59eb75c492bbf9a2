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
                m_rows.insert(row, Cells(row));
        });
        connect(model, &QAbstractItemModel::rowsRemoved, this,
                [this](const QModelIndex &, int first, int last) { m_rows.remove(first, last - first + 1); });
        connect(model, &QAbstractItemModel::dataChanged, this,
                [this](const QModelIndex &first, const QModelIndex &last) {
                    for (int row = first.row(); row <= last.row(); ++row) {
                        for (int column = first.column(); column <= last.column(); ++column)
                            m_rows[row][column] = Cells(row)[column];
                    }
                });
    }

    /// The first row of which the view was not told as it is now; empty when there is none.
    [[nodiscard]] QString Stale() const
    {
        for (int row = 0; row < qMax(m_rows.size(), m_model->rowCount()); ++row) {
            if (m_rows.value(row) != Cells(row))
                return QString::number(row) + QStringLiteral(": ") + (m_rows.value(row) + Cells(row)).join(u'|');
        }
        return {};
    }

private:
    [[nodiscard]] QStringList Cells(int row) const
    {
        QStringList cells;
        for (int column = 0; column < m_model->columnCount(); ++column)
            cells += m_model->index(row, column).data().toString();
        return cells;
    }
    void ReadAll()
    {
        m_rows.clear();
        for (int row = 0; row < m_model->rowCount(); ++row)
            m_rows += Cells(row);
    }

    QAbstractItemModel *m_model;
    QAbstractItemModelTester m_tester{m_model};
    QList<QStringList> m_rows;
};
