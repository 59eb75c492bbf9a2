#pragma once

#include "MessageQueue.h"

#include <QByteArray>

#include <optional>

/// The call with which the engine reports on a message, as it stands in the request line:
/// "/report?id=…&try=…&tag=…&type=…".
struct ReportCall
{
    qint64 id = 0;
    /// Which of the message's hand-overs it was.
    qint64 attempt = 0;
    /// Not yet compared with that of the hand-over.
    QByteArray tag;
    /// A number of the engine's.
    int type = 0;
};

/// Reads the target of a request. Strict, as only addresses that MakeReportAddress made come back: the very path, and
/// id, try, tag and type once each in this order; else there is none.
[[nodiscard]] std::optional<ReportCall> ReadReport(QByteArrayView target);

/// The address that the engine calls to report on a hand-over of a message, whose tag this is. The engine replaces the
/// "%d" at its end by the type. `base` is like "http://127.0.0.1:8081".
[[nodiscard]] QByteArray MakeReportAddress(const QByteArray &base, qint64 id, qint64 attempt, const QByteArray &tag);

/// What a type says: 8 at the operator, 4 buffered, 1 delivered, 2 not delivered, 16 refused by the operator. None for
/// those that say nothing of a message's way.
[[nodiscard]] std::optional<DeliveryReport> ReportOfType(int type);
