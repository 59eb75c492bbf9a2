#pragma once

#include "Fakes.h"
#include "PostModule.h"
#include "Rows.h"
#include "ScriptedPeer.h"

/// A post that gets as far as one of its phases and no further.
class StuckPost final
{
public:
    enum class Phase { LookingUp, Connecting, Requesting, Receiving };

    /// Rows of each phase and the status that the post then shows.
    static void AddPhases()
    {
        AddRows<Phase, QString>({{"lookup", Phase::LookingUp, QStringLiteral("Looking up the proxy settings...")},
                                 {"connect", Phase::Connecting, QStringLiteral("Connecting to 127.0.0.1...")},
                                 {"request", Phase::Requesting, QStringLiteral("Making request to 127.0.0.1...")},
                                 {"receive", Phase::Receiving, QStringLiteral("Receiving result...")}});
    }

    explicit StuckPost(Phase phase)
        : peer({.pieces = {phase == Phase::Receiving ? ScriptedPeer::Ok("half").chopped(2) : QByteArray()},
                .then = ScriptedPeer::Then::StayOpen})
    {
        settings.isSilent = phase == Phase::LookingUp;
        if (phase == Phase::Connecting) {
            // Neither accepts nor refuses: its queue of connections is full.
            peer.close();
            peer.setListenBacklogSize(1);
            peer.listen(QHostAddress::LocalHost);
            peer.pauseAccepting();
            for (QTcpSocket &socket : queued)
                socket.connectToHost(QHostAddress(QHostAddress::LocalHost), peer.serverPort());
        }
        post.SetUrl(peer.Address());
    }

    FixedInternetSettings settings;
    PostModule module{settings};
    ScriptedPeer peer;
    QTcpSocket queued[3];
    CGIPost post{module};
};
