#pragma once

#include "SentNotes.h"

#include <QCache>
#include <QString>

#include <chrono>
#include <vector>

class QDeadlineTimer;
class SentLog;

namespace SQLite {
class Database;
class Statement;
} // namespace SQLite

enum class SentColumn { Date, Name, Number, Text, Outcome, Reason };

struct SentMessage
{
    qint64 id = 0;
    /// The number of the click that it came with.
    qint64 click = 0;
    /// Milliseconds since 1970, UTC.
    qint64 sentAt = 0;
    QString name;
    QString number;
    QString text;
    SentOutcome outcome = SentOutcome::NotKnown;
    /// May be empty.
    QString reason;
    /// 0 for none.
    int gatewayNumber = 0;
};

/// The messages of the log that answer to a find text, in the order of a column, a row each: newest first until told
/// otherwise. However many there are, no call takes long: Advance does the work bit by bit, and rows come to be as it
/// goes on. What changes the log but by this list shows after Refresh.
///
/// What reads the file raises number 75, source "Corvane.History", with the reason when that failed.
class SentList final
{
public:
    /// Without rows until Advance. The log must outlive the list.
    explicit SentList(SentLog &log);

    /// Does some of what is to be done, for about so long and at least a bit of it; the rows may be others afterwards.
    /// False when nothing is left to do.
    bool Advance(std::chrono::milliseconds time);

    /// Whether all rows are there, in order. Advance may still have to do what makes finding faster.
    [[nodiscard]] bool IsSettled() const { return m_isShown; }

    /// Messages that answer to a text hold it in name, number or text, case ignored; all do to the empty text.
    void Find(const QString &text);

    /// By a text's column case and marks are ignored, and outcomes are in the order of their values. Messages that are
    /// equal there stay newest first.
    void SortBy(SentColumn column, Qt::SortOrder order);

    /// Takes in what was noted, settled or became too old since. There are no rows then until Advance.
    void Refresh();

    /// Deletes these rows, in any order, from the log too. Where that failed, Advance reads anew what is left.
    void Delete(const std::vector<int> &rows);

    /// Deletes all messages of the log, found or not.
    void Clear();

    /// Changes whenever Advance made the rows others than before.
    [[nodiscard]] int Revision() const { return m_revision; }

    /// How many messages the log has, known after the first Advance.
    [[nodiscard]] qint64 Total() const { return m_total; }

    [[nodiscard]] int Count() const { return static_cast<int>(m_shown.size()); }

    /// The message of a row. Those around it are read with it and kept for a while.
    [[nodiscard]] SentMessage At(int row);

    [[nodiscard]] qint64 IdAt(int row) const { return m_messages[m_shown[static_cast<size_t>(row)]].id; }

    /// The row of a message, or -1.
    [[nodiscard]] int RowOf(qint64 id) const;

private:
    /// What finding and sorting need of a message: the numbers of its texts.
    struct Message
    {
        quint32 id;
        quint32 name;
        quint32 number;
        quint32 text;
        quint32 reason;
        SentOutcome outcome;
    };
    /// A message's place in m_messages.
    using Place = quint32;

    [[nodiscard]] static Message MessageOf(const SQLite::Statement &row);
    void Restart(SQLite::Database &database);
    void LoadSome(SQLite::Database &database, const QDeadlineTimer &end);
    void FindSome(SQLite::Database &database, const QDeadlineTimer &end);
    void Sort(SQLite::Database &database);
    void Show(SQLite::Database &database);
    [[nodiscard]] bool IsFound(const Message &message) const;
    [[nodiscard]] QList<SentMessage> ReadPage(int page) const;

    SentLog &m_log;
    int m_generation = -1;
    qint64 m_total = 0;
    /// Newest first.
    std::vector<Message> m_messages;
    bool m_isLoaded = false;

    QString m_findText;
    /// By the number of a text, whether it holds the find text.
    std::vector<bool> m_holds;
    int64_t m_nextString = 1;
    bool m_isFound = true;

    SentColumn m_column = SentColumn::Date;
    Qt::SortOrder m_order = Qt::DescendingOrder;
    /// In the order of the column.
    std::vector<Place> m_sorted;
    bool m_isSorted = false;

    std::vector<Place> m_shown;
    /// Whether the rows are those that they are to be at last, and whether they answer to another question.
    bool m_isShown = false;
    bool m_isStale = true;
    int m_revision = 0;
    QCache<int, QList<SentMessage>> m_pages;
};
