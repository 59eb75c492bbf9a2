#include "SentMessagesModel.h"

#include "Error.h"

#include <QDateTime>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// What a key or a click may wait for.
constexpr auto kSlice = std::chrono::milliseconds(10);

} // namespace

SentMessagesModel::SentMessagesModel(SentLog &log, QObject *parent)
    : QAbstractTableModel(parent)
    , m_list(log)
{
    m_timer.callOnTimeout(this, &SentMessagesModel::Advance);
}

void SentMessagesModel::Find(const QString &text)
{
    m_findText = text;
    m_list.Find(text);
    Ask();
}

void SentMessagesModel::SortBy(SentColumn column, Qt::SortOrder order)
{
    m_isNewestFirst = column == SentColumn::Date && order == Qt::DescendingOrder;
    m_list.SortBy(column, order);
    Ask();
}

void SentMessagesModel::Ask()
{
    m_appends = false;
    m_problem.clear();
    m_timer.start(0);
    Advance();
    // What is there is painted before more is looked for.
    constexpr int kUntilPaintedMs = 5;
    if (m_timer.isActive())
        m_timer.setInterval(kUntilPaintedMs);
}

void SentMessagesModel::Advance()
{
    const bool wasSettled = IsSettled();
    try {
        m_timer.setInterval(0);
        if (!m_list.Advance(kSlice))
            m_timer.stop();
    } catch (const Error &error) {
        m_problem = error.Description();
        m_timer.stop();
    }
    const bool isRevised = std::exchange(m_revision, m_list.Revision()) != m_list.Revision();
    const bool hasOthers = isRevised || m_list.Count() != m_count;
    if (hasOthers)
        ShowRows();
    if (hasOthers || IsSettled() != wasSettled || !m_problem.isEmpty())
        emit Advanced();
}

void SentMessagesModel::ShowRows()
{
    const int count = m_list.Count();
    if (m_appends && count > m_count) {
        beginInsertRows({}, m_count, count - 1);
        m_count = count;
        endInsertRows();
    } else if (!m_appends || count != m_count) {
        beginResetModel();
        m_count = count;
        endResetModel();
    }
    m_appends = m_isNewestFirst && m_findText.isEmpty();
}

void SentMessagesModel::Delete(const std::vector<int> &rows)
{
    try {
        m_list.Delete(rows);
    } catch (const Error &) {
        Ask();
        throw;
    }
    Ask();
}

void SentMessagesModel::Clear()
{
    m_list.Clear();
    Ask();
}

SentMessage SentMessagesModel::At(int row) const
{
    try {
        return row >= 0 && row < m_list.Count() ? m_list.At(row) : SentMessage();
    } catch (const Error &error) {
        // A view asks while it paints, when nothing may be raised or changed.
        m_problem = error.Description();
        m_timer.start(0);
        return {};
    }
}

QStringList SentMessagesModel::Fields(int row) const
{
    const SentMessage message = At(row);
    const QDateTime sentAt = QDateTime::fromMSecsSinceEpoch(message.sentAt);
    return {sentAt.toString(u"yyyy-MM-dd HH:mm:ss"_s),
            message.name,
            message.number,
            message.text,
            OutcomeText(message.outcome),
            message.reason};
}

QString SentMessagesModel::OutcomeText(SentOutcome outcome)
{
    switch (outcome) {
    case SentOutcome::OnItsWay:
        return tr("On its way");
    case SentOutcome::Sent:
        return tr("Sent");
    case SentOutcome::Refused:
        return tr("Refused");
    case SentOutcome::NotSent:
        return tr("Not sent");
    case SentOutcome::NotKnown:
        return tr("Not known");
    }
    return {};
}

int SentMessagesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_count;
}

int SentMessagesModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : kColumns;
}

QVariant SentMessagesModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole)
        return {};
    const SentMessage message = At(index.row());
    switch (static_cast<SentColumn>(index.column())) {
    case SentColumn::Date:
        return QLocale().toString(QDateTime::fromMSecsSinceEpoch(message.sentAt), QLocale::ShortFormat);
    case SentColumn::Name:
        return message.name;
    case SentColumn::Number:
        return message.number;
    case SentColumn::Text:
        return message.text.simplified(); // a row has one line
    case SentColumn::Outcome:
        return OutcomeText(message.outcome);
    case SentColumn::Reason:
        return message.reason.simplified();
    }
    return {};
}

QVariant SentMessagesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QStringList captions = {tr("Date"), tr("Name"), tr("Number"), tr("Message"), tr("Outcome"), tr("Reason")};
    return captions.value(section);
}
