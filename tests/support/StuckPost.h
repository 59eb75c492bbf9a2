#pragma once

#include "CGIPost.h"
#include "FixedInternetSettings.h"
#include "PostModule.h"
#include "ScriptedPeer.h"

#include <QTest>

/// A post that gets as far as one of its phases and no further.
class StuckPost final
{
public:
    enum class Phase { LookingUp, Connecting, Requesting, Receiving };

    /// A row of a test table for each phase: `phase`, and `status` that the post then shows.
    static void AddRows()
    {
        using namespace Qt::StringLiterals;
        QTest::addColumn<StuckPost::Phase>("phase");
        QTest::addColumn<QString>("status");
        QTest::newRow("looking up the proxy") << Phase::LookingUp << u"Looking up the proxy settings..."_s;
        QTest::newRow("connecting") << Phase::Connecting << u"Connecting to 127.0.0.1..."_s;
        QTest::newRow("requesting") << Phase::Requesting << u"Making request to 127.0.0.1..."_s;
        QTest::newRow("receiving") << Phase::Receiving << u"Receiving result..."_s;
    }

    explicit StuckPost(Phase phase, std::chrono::milliseconds timeOut = std::chrono::seconds(20))
        : module{settings, timeOut}
        , peer({.pieces = {phase == Phase::Receiving ? ScriptedPeer::Ok("half").chopped(2) : QByteArray()},
                .then = ScriptedPeer::Then::StayOpen})
        , post(std::make_unique<CGIPost>(module))
    {
        settings.isSilent = phase == Phase::LookingUp;
        post->SetUrl(phase == Phase::Connecting ? deaf.Address() : peer.Address());
        post->SetParameters("XML=once");
    }

    FixedInternetSettings settings;
    PostModule module;
    ScriptedPeer peer;
    DeafPeer deaf;
    std::unique_ptr<CGIPost> post;
};
