#pragma once

#include <QList>
#include <QString>

#include <optional>

/// What became of a message. The values are kept in the file of sent messages.
enum class SentOutcome {
    /// Noted before its post, which has not ended.
    OnItsWay = 0,
    /// The reply says so.
    Sent = 1,
    /// The reply says so, or the log-on was refused.
    Refused = 2,
    /// Nothing of the request went out.
    NotSent = 3,
    /// The request went out, wholly or partly, and no whole readable reply came.
    NotKnown = 4,
};

/// One message that is about to be posted: a recipient and a part of the text.
struct SentNote
{
    QString number;
    /// As the phone book has it; may be empty.
    QString name;
    QString text;
};

/// What became of one noted message.
struct SentSettlement
{
    SentOutcome outcome = SentOutcome::NotKnown;
    /// Why it was not sent; empty where there is nothing to say.
    QString reason = {};
    /// The gateway's number of the message, or 0.
    int gatewayNumber = 0;
};

/// Keeps what was sent. Never raises and never stands in the way of a send: where something cannot be kept, the user is
/// told by TakeNotice.
class SentNotes
{
public:
    virtual ~SentNotes() = default;

    /// Keeps the messages of one click as on their way, all or none, on the disk when it returns. Gives the click's
    /// number, which is above 0; none where they could not be kept.
    [[nodiscard]] virtual std::optional<qint64> Note(const QList<SentNote> &messages) = 0;

    /// Keeps what became of the messages that Note gave this number, in the same order. What cannot be kept now is kept
    /// as soon as that works again.
    virtual void Settle(qint64 click, const QList<SentSettlement> &settlements) = 0;

    /// What the user is to be told, once; empty when nothing.
    [[nodiscard]] virtual QString TakeNotice() = 0;
};
