#include "SendResultsModel.h"

#include "SendingSMS.h"

using namespace Qt::StringLiterals;

namespace {

/// A message that the gateway said nothing of counts as not sent.
bool IsSent(const LxMessageRequest &request)
{
    return request.Response && request.Response->IsOK;
}

} // namespace

SendResultsModel::SendResultsModel(QObject *parent)
    : QAbstractTableModel(parent)
{
}

void SendResultsModel::SetRequests(const LxMessageRequests &requests)
{
    beginResetModel();
    m_requests = requests;
    endResetModel();
}

QList<int> SendResultsModel::FailedRows() const
{
    QList<int> rows;
    for (int row = 0; row < rowCount(); ++row) {
        const SentOutcome outcome = m_requests[static_cast<size_t>(row)].Outcome.outcome;
        if (outcome == SentOutcome::Refused || outcome == SentOutcome::NotSent)
            rows.append(row);
    }
    return rows;
}

bool SendResultsModel::HasUnknown() const
{
    return SendingSMS::HasUnknown(m_requests);
}

LxMessageRequests SendResultsModel::Requests(const QList<int> &rows) const
{
    LxMessageRequests requests;
    for (const int row : rows)
        requests.push_back(m_requests[static_cast<size_t>(row)]);
    return requests;
}

void SendResultsModel::Replace(const QList<int> &rows, const LxMessageRequests &requests)
{
    for (qsizetype i = 0; i < rows.size(); ++i)
        m_requests[static_cast<size_t>(rows[i])] = requests[static_cast<size_t>(i)];
    emit dataChanged(index(rows.constFirst(), 0), index(rows.constLast(), ColumnCount - 1));
}

int SendResultsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_requests.size());
}

int SendResultsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant SendResultsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const LxMessageRequest &request = m_requests[static_cast<size_t>(index.row())];
    if (role == Qt::DecorationRole && index.column() == Status)
        return IsSent(request) ? m_tick : m_cross;
    const QString &reason = request.Outcome.reason;
    if (role == ReasonRole)
        return reason;
    // Escaped and in a tag, so that the tool tip neither takes it for markup nor shows the escapes.
    if (role == Qt::ToolTipRole && !reason.isEmpty())
        return QString("<span>"_L1 + reason.toHtmlEscaped() + "</span>"_L1);
    if (role == Qt::AccessibleTextRole && index.column() == Status && !reason.isEmpty())
        return QString(data(index, Qt::DisplayRole).toString() + ": "_L1 + reason);
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case Status:
        return IsSent(request) ? tr("Sent") : tr("Not sent");
    case Name:
        return request.Name;
    case Mobile:
        return request.InternationalMobile;
    case Message:
        return request.Message;
    default:
        return {};
    }
}

QVariant SendResultsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Status:
        return tr("Status");
    case Name:
        return tr("Name");
    case Mobile:
        return tr("Mobile");
    case Message:
        return tr("Message");
    default:
        return {};
    }
}
