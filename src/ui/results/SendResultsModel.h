#pragma once

#include "Icons.h"
#include "LxMessageRequest.h"

#include <QAbstractTableModel>

/// What became of each message, in the order in which they were sent.
class SendResultsModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Status, Name, Mobile, Message, ColumnCount };
    /// Why it was not sent, or why nobody knows; empty when there is nothing to say.
    enum Role { ReasonRole = Qt::UserRole };

    explicit SendResultsModel(QObject *parent);

    void SetRequests(const LxMessageRequests &requests);

    /// The rows whose message was surely not sent.
    [[nodiscard]] QList<int> FailedRows() const;
    [[nodiscard]] bool HasUnknown() const;
    [[nodiscard]] LxMessageRequests Requests(const QList<int> &rows) const;
    /// Puts other messages, as many, into these rows.
    void Replace(const QList<int> &rows, const LxMessageRequests &requests);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const QIcon m_tick = Icons::Get(QLatin1StringView("tick"));
    const QIcon m_cross = Icons::Get(QLatin1StringView("cross"));
    LxMessageRequests m_requests;
};
