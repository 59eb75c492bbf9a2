#pragma once

#include "SentFile.h"
#include "SentNotes.h"

#include <QStringList>

class Clock;

/// The messages that left this program, or were about to, with what became of them: one SQLite file. It is opened when
/// it is first needed; what was on its way when an earlier run of the program ended then becomes not known.
class SentLog final : public SentNotes
{
public:
    /// The clock must outlive the log.
    SentLog(QString path, const Clock &clock);
    ~SentLog() override;

    /// `<application data>/Corvane/Brevio/<user>.sent`.
    [[nodiscard]] static QString DefaultFileName();

    [[nodiscard]] std::optional<qint64> Note(const QList<SentNote> &messages) override;
    void Settle(qint64 click, const QList<SentSettlement> &settlements) override;
    [[nodiscard]] QString TakeNotice() override;

    /// Deletes the messages that are older than so many days, the oldest first and at most so many. Costs next to
    /// nothing when there are none. What goes wrong is for TakeNotice.
    void DeleteOlderThan(int days, int most);

    /// The texts that went to the message's number with the same click, in order; a text in several parts is several.
    /// Raises what SentFile::Run raises.
    [[nodiscard]] QStringList TextsBeside(qint64 id);

    /// Deletes messages, and their texts where no other message has them, so that they are no longer in the file.
    /// Raises what SentFile::Run raises.
    void Delete(const QList<qint64> &ids);

    /// Deletes all messages with the file. Raises what SentFile::Remove raises.
    void Clear();

    /// Settles what could not be settled before. What goes wrong is for TakeNotice.
    void RetrySettling();

    [[nodiscard]] SentFile &File() { return m_file; }

private:
    /// What was noted, kept until it is settled in the same file.
    struct Click
    {
        qint64 number;
        int generation;
        qint64 sentAt;
        QList<SentNote> messages;
        QList<SentSettlement> settlements;
    };

    /// Runs `work`; false when that failed, which is told once until it works again.
    bool Try(const SentFile::Work &work);
    void SettleNow(SQLite::Database &database, const Click &click) const;

    SentFile m_file;
    const Clock &m_clock;
    /// In the order in which they were noted; those without settlements are on their way.
    QList<Click> m_clicks;
    bool m_failureTold = false;
    QString m_notice;
};
