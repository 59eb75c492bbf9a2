#pragma once

#include "SentList.h"

#include <QAbstractTableModel>
#include <QTimer>

/// The messages of the log that answer to a find text, a row each, in the columns of SentColumn. Rows come to be bit by
/// bit from the event loop, so that nothing waits for a million of them; rows that are there stay there only where all
/// are to come after them.
class SentMessagesModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    static constexpr int kColumns = 6;

    /// Without rows until the first SortBy. The log must outlive the model.
    SentMessagesModel(SentLog &log, QObject *parent);

    /// As of the list; the first rows are there when they return.
    void Find(const QString &text);
    void SortBy(SentColumn column, Qt::SortOrder order);

    /// Deletes rows, in any order, or all messages, found or not. Raises what SentList raises, after which all is read
    /// again.
    void Delete(const std::vector<int> &rows);
    void Clear();

    /// Whether all rows are there, in order, and stay until the next call.
    [[nodiscard]] bool IsSettled() const { return m_list.IsSettled() && m_problem.isEmpty(); }
    /// Why the messages can't be read; empty when they can.
    [[nodiscard]] const QString &Problem() const { return m_problem; }
    [[nodiscard]] qint64 Total() const { return m_list.Total(); }
    [[nodiscard]] int RowOf(qint64 id) const { return m_list.RowOf(id); }

    /// The message of a row, empty where it can't be read.
    [[nodiscard]] SentMessage At(int row) const;

    /// The row as told outside of the window: texts whole, the time in a form that sorts.
    [[nodiscard]] QStringList Fields(int row) const;

    [[nodiscard]] static QString OutcomeText(SentOutcome outcome);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    /// What the model tells beside its rows may be other.
    void Advanced();

private:
    void Ask();
    void Advance();
    void ShowRows();

    /// What views ask for is read then, and may turn out not to be readable.
    mutable SentList m_list;
    mutable QString m_problem;
    mutable QTimer m_timer;
    int m_revision = 0;
    /// How many rows the views know of.
    int m_count = 0;
    /// Whether the rows that come next are appended to those that are there.
    bool m_appends = false;
    bool m_isNewestFirst = true;
    QString m_findText;
};
