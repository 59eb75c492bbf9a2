#pragma once

#include "Fakes.h"
#include "PostModule.h"
#include "ScriptedPeer.h"

/// A post that gets as far as one of its phases and no further.
class StuckPost final
{
public:
    enum Phase { LookingUp, Connecting, ShakingHands, Sending, Requesting, Receiving };

    /// What the post then shows.
    [[nodiscard]] QString Status() const
    {
        const int shown = phase == LookingUp ? 0 : phase < Sending ? 1 : phase < Receiving ? 2 : 3;
        return QStringList{
            QStringLiteral("Looking up the proxy settings..."), QStringLiteral("Connecting to 127.0.0.1..."),
            QStringLiteral("Making request to 127.0.0.1..."), QStringLiteral("Receiving result...")}[shown];
    }

    explicit StuckPost(Phase stuckIn)
        : phase(stuckIn)
        , peer({.pieces = {phase == Receiving ? ScriptedPeer::Ok("half").chopped(2) : QByteArray()},
                .then = ScriptedPeer::Then::StayOpen})
    {
        settings.isSilent = phase == LookingUp;
        if (phase == Connecting) {
            // Neither accepts nor refuses: its queue of connections is full.
            peer.close();
            peer.setListenBacklogSize(1);
            peer.listen(QHostAddress::LocalHost);
            peer.pauseAccepting();
            for (QTcpSocket &socket : queued)
                socket.connectToHost(QHostAddress(QHostAddress::LocalHost), peer.serverPort());
        }
        if (phase == Sending)
            peer.pauseAccepting(); // what the system takes in by itself is less than the body
        if (phase == ShakingHands)
            post.SetTls({}); // of which the peer knows nothing
        post.SetUrl(peer.Address());
        post.SetParameters(QByteArray(phase == Sending ? 32 << 20 : 10, 'x'));
    }

    const Phase phase;
    FixedInternetSettings settings;
    PostModule module{settings};
    ScriptedPeer peer;
    QTcpSocket queued[3];
    CGIPost post{module};
};
