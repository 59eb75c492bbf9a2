#pragma once

#include "SentNotes.h"

#include <QString>

#include <optional>
#include <vector>

/// The gateway's verdict on one message.
struct LxMessageResponse
{
    qint16 MessageID = 0;
    bool IsOK = false;
    QString Info;
};

/// One part of a message to one recipient.
struct LxMessageRequest
{
    QString InternationalMobile;
    QString Name;
    QString Message;
    /// None until the reply was read, or when the gateway said nothing of this message.
    std::optional<LxMessageResponse> Response = {};
    /// What became of it, as far as anyone can know.
    SentSettlement Outcome = {};
};

using LxMessageRequests = std::vector<LxMessageRequest>;
