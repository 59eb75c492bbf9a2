#include "SentList.h"

#include "Error.h"
#include "SentIndex.h"
#include "SentLog.h"

#include <QDeadlineTimer>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>

#include <algorithm>
#include <sqlite3.h>

namespace {

constexpr int kPageSize = 64;

QString TextOf(const SQLite::Column &column)
{
    return QString::fromUtf8(column.getText(), column.getBytes());
}

constexpr char kReadMessages[] = "SELECT id, name, number, text, reason, outcome FROM message WHERE ";

qint64 CountMessages(SQLite::Database &database)
{
    return database.execAndGet("SELECT count(*) FROM message").getInt64();
}

} // namespace

SentList::SentList(SentLog &log)
    : m_log(log)
{
    m_log.RetrySettling();
}

bool SentList::Advance(std::chrono::milliseconds time)
{
    const QDeadlineTimer end(time);
    bool isMoreLeft = false;
    m_log.File().Run([&](SQLite::Database &database) {
        if (m_generation != m_log.File().Generation())
            Restart(database);
        FindSome(database, end);
        LoadSome(database, end);
        // What is there at first is shown, and then all, as making the rows of many takes a while.
        if (!m_isShown && (m_isStale || (m_isLoaded && m_isFound)))
            Show(database);
        isMoreLeft = !IsSettled();
        try {
            while (!isMoreLeft && SentIndex::Work(database))
                isMoreLeft = end.hasExpired();
        } catch (const SQLite::Exception &error) {
            // On a full disk what was sent can still be looked up, only slower.
            if (error.getErrorCode() == SQLITE_CORRUPT)
                throw;
        }
    });
    return isMoreLeft;
}

void SentList::Restart(SQLite::Database &database)
{
    m_generation = m_log.File().Generation();
    m_total = CountMessages(database);
    m_messages.clear();
    m_messages.reserve(static_cast<size_t>(m_total));
    m_isLoaded = false;
    m_sorted.clear();
    m_shown.clear();
    Find(m_findText);
}

SentList::Message SentList::MessageOf(const SQLite::Statement &row)
{
    return {row.getColumn(0).getUInt(), row.getColumn(1).getUInt(),
            row.getColumn(2).getUInt(), row.getColumn(3).getUInt(),
            row.getColumn(4).getUInt(), static_cast<SentOutcome>(row.getColumn(5).getInt())};
}

void SentList::LoadSome(SQLite::Database &database, const QDeadlineTimer &end)
{
    if (m_isLoaded)
        return;
    SQLite::Statement read(database, kReadMessages + std::string("id < ? ORDER BY id DESC"));
    read.bind(1, m_messages.empty() ? INT64_MAX : int64_t{m_messages.back().id});
    constexpr int kAtOnce = 1'000;
    do {
        for (int i = 0; i < kAtOnce && !m_isLoaded; ++i) {
            m_isLoaded = !read.executeStep();
            if (!m_isLoaded)
                m_messages.push_back(MessageOf(read));
        }
    } while (!m_isLoaded && !end.hasExpired());
    m_isSorted = false;
    m_isShown = false;
}

void SentList::Find(const QString &text)
{
    m_findText = text;
    m_holds.clear();
    m_nextString = 1;
    m_isFound = text.isEmpty();
    m_isShown = false;
    m_isStale = true;
}

void SentList::FindSome(SQLite::Database &database, const QDeadlineTimer &end)
{
    if (m_isFound)
        return;
    const int64_t last = SentIndex::LastString(database);
    m_holds.resize(static_cast<size_t>(last) + 1);
    do {
        m_nextString = SentIndex::FindSome(database, m_findText, m_nextString, [this](int64_t id) {
            if (const auto string = static_cast<size_t>(id); string < m_holds.size())
                m_holds[string] = true;
        });
        m_isFound = m_nextString > last;
    } while (!m_isFound && !end.hasExpired());
    m_isShown = false;
}

bool SentList::IsFound(const Message &message) const
{
    const auto holds = [this](quint32 string) { return string < m_holds.size() && m_holds[string]; };
    return holds(message.text) || holds(message.name) || holds(message.number);
}

void SentList::SortBy(SentColumn column, Qt::SortOrder order)
{
    m_column = column;
    m_order = order;
    m_isSorted = false;
    m_isShown = false;
    m_isStale = true;
}

void SentList::Sort(SQLite::Database &database)
{
    if (m_isSorted)
        return;
    m_isSorted = true;
    const auto count = static_cast<Place>(m_messages.size());
    m_sorted.resize(count);
    if (m_column == SentColumn::Date) {
        for (Place i = 0; i < count; ++i)
            m_sorted[i] = m_order == Qt::DescendingOrder ? i : count - 1 - i;
        return;
    }
    // By the number of a text, its place among all texts.
    std::vector<quint32> ranks;
    if (m_column != SentColumn::Outcome) {
        ranks.resize(static_cast<size_t>(SentIndex::LastString(database)) + 1);
        SQLite::Statement read(database, "SELECT id FROM string ORDER BY ifnull(sort_key, value) COLLATE NOCASE");
        for (quint32 rank = 1; read.executeStep(); ++rank)
            ranks[read.getColumn(0).getUInt()] = rank;
    }
    const auto rankOf = [&ranks](quint32 string) { return string < ranks.size() ? ranks[string] : 0; };
    const auto keyOf = [this, rankOf](const Message &message) -> size_t {
        switch (m_column) {
        case SentColumn::Name:
            return rankOf(message.name);
        case SentColumn::Number:
            return rankOf(message.number);
        case SentColumn::Text:
            return rankOf(message.text);
        case SentColumn::Reason:
            return rankOf(message.reason);
        default:
            return static_cast<size_t>(message.outcome);
        }
    };
    constexpr size_t kOutcomes = 5;
    const size_t keys = std::max(ranks.size(), kOutcomes) + 1;
    const auto slotOf = [&](const Message &message) {
        const size_t key = std::min(keyOf(message), keys - 1);
        return m_order == Qt::AscendingOrder ? key : keys - 1 - key;
    };
    // There are no more keys than texts, so that counting them is faster than comparing.
    std::vector<Place> next(keys + 1);
    for (const Message &message : m_messages)
        ++next[slotOf(message) + 1];
    for (size_t key = 1; key <= keys; ++key)
        next[key] += next[key - 1];
    for (Place i = 0; i < count; ++i)
        m_sorted[next[slotOf(m_messages[i])]++] = i;
}

void SentList::Show(SQLite::Database &database)
{
    Sort(database);
    m_pages.clear();
    m_shown.clear();
    if (m_findText.isEmpty())
        m_shown = m_sorted;
    else
        std::copy_if(m_sorted.begin(), m_sorted.end(), std::back_inserter(m_shown),
                     [this](Place place) { return IsFound(m_messages[place]); });
    m_isShown = m_isLoaded && m_isFound;
    m_isStale = false;
    ++m_revision;
}

void SentList::Refresh()
{
    m_log.RetrySettling();
    // All from the oldest on that was on its way is read again.
    const auto unsettled = std::find_if(m_messages.rbegin(), m_messages.rend(), [](const Message &message) {
        return message.outcome == SentOutcome::OnItsWay;
    });
    m_messages.erase(m_messages.begin(), unsettled.base());
    m_sorted.clear();
    m_shown.clear();
    m_isSorted = false;
    Find(m_findText);
    m_log.File().Run([this](SQLite::Database &database) {
        const auto oldest = database.execAndGet("SELECT ifnull(min(id), 0) FROM message").getInt64();
        while (!m_messages.empty() && m_isLoaded && m_messages.back().id < oldest)
            m_messages.pop_back();
        if (m_messages.empty()) {
            Restart(database);
            return;
        }
        SQLite::Statement read(database, kReadMessages + std::string("id > ? ORDER BY id DESC"));
        read.bind(1, int64_t{m_messages.front().id});
        std::vector<Message> newer;
        while (read.executeStep())
            newer.push_back(MessageOf(read));
        m_messages.insert(m_messages.begin(), newer.begin(), newer.end());
        m_total = CountMessages(database);
    });
}

void SentList::Delete(const std::vector<int> &rows)
{
    std::vector<bool> isGone(m_messages.size());
    QList<qint64> ids;
    for (const int row : rows) {
        isGone[m_shown[static_cast<size_t>(row)]] = true;
        ids += IdAt(row);
    }
    try {
        m_log.Delete(ids);
    } catch (const Error &) {
        m_generation = -1; // what is left is read again: they may be gone, though not from the journal
        throw;
    }
    std::vector<Place> newPlaces(m_messages.size());
    Place next = 0;
    for (Place place = 0; place < m_messages.size(); ++place) {
        newPlaces[place] = next;
        if (!isGone[place])
            m_messages[next++] = m_messages[place];
    }
    m_total -= static_cast<qint64>(m_messages.size() - next);
    m_messages.resize(next);
    for (std::vector<Place> *places : {&m_sorted, &m_shown}) {
        std::erase_if(*places, [&isGone](Place place) { return isGone[place]; });
        for (Place &place : *places)
            place = newPlaces[place];
    }
    m_pages.clear();
}

void SentList::Clear()
{
    m_log.Clear();
    m_total = 0;
    m_messages.clear();
    m_sorted.clear();
    m_shown.clear();
    m_pages.clear();
}

SentMessage SentList::At(int row)
{
    const int page = row / kPageSize;
    if (!m_pages.contains(page))
        m_pages.insert(page, new QList<SentMessage>(ReadPage(page)));
    return m_pages[page]->value(row % kPageSize);
}

QList<SentMessage> SentList::ReadPage(int page) const
{
    QList<SentMessage> messages;
    m_log.File().Run([&](SQLite::Database &database) {
        messages.clear();
        SQLite::Statement read(database, "SELECT click, sent_at, outcome, gateway_number, n.value, u.value, t.value, "
                                         "r.value FROM message m LEFT JOIN string n ON n.id = name "
                                         "LEFT JOIN string u ON u.id = number LEFT JOIN string t ON t.id = text "
                                         "LEFT JOIN string r ON r.id = reason WHERE m.id = ?");
        for (int row = page * kPageSize; row < std::min(Count(), (page + 1) * kPageSize); ++row) {
            SentMessage message;
            message.id = IdAt(row);
            read.bind(1, static_cast<int64_t>(message.id));
            // One that is gone, which a file that was damaged can cause, shows as an empty row until Advance.
            if (read.executeStep()) {
                message.click = read.getColumn(0).getInt64();
                message.sentAt = read.getColumn(1).getInt64();
                message.outcome = static_cast<SentOutcome>(read.getColumn(2).getInt());
                message.gatewayNumber = read.getColumn(3).getInt();
                message.name = TextOf(read.getColumn(4));
                message.number = TextOf(read.getColumn(5));
                message.text = TextOf(read.getColumn(6));
                message.reason = TextOf(read.getColumn(7));
            }
            read.reset();
            messages += message;
        }
    });
    return messages;
}

int SentList::RowOf(qint64 id) const
{
    const auto message =
        std::lower_bound(m_messages.begin(), m_messages.end(), id, [](const Message &a, qint64 b) { return a.id > b; });
    if (message == m_messages.end() || message->id != id)
        return -1;
    const auto place = static_cast<Place>(message - m_messages.begin());
    const auto row = std::find(m_shown.begin(), m_shown.end(), place);
    return row == m_shown.end() ? -1 : static_cast<int>(row - m_shown.begin());
}
