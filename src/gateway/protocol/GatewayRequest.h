#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// One message of a send document. `number` is as it stands there and may be no number at all.
struct GatewayMessage
{
    QString number;
    QString name;
    QString text;
};

/// What a client asks for. A request for the balance alone has no messages, no reply address and no version.
struct GatewayRequest
{
    QString user;
    QString password;
    QString replyAddress;
    qint64 clientVersion = 0;
    QList<GatewayMessage> messages;
};

/// Reads a form body whose only field "XML" holds a send or a balance document in Windows-1252.
///
/// Strict: the document must have its layout to the blank, because a client that leaves it has a fault. Raises
/// number 10, source "Corvane.Gateway", with a description that names the place and holds nothing of what was sent.
/// A body that is moved in is decoded where it stands.
[[nodiscard]] GatewayRequest ReadGatewayRequest(QByteArray formBody);
