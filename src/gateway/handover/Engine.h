#pragma once

#include "MessageQueue.h"

/// What delivers messages. May be asked from several threads at once.
class Engine
{
public:
    struct Answer
    {
        HandOverResult result = HandOverResult::Unknown;
        /// Why, in plain words for the one who runs the gateway; empty when it is accepted. Never holds the text.
        QString note;
    };

    virtual ~Engine() = default;

    /// Gives one message to the engine, at most once, and waits for its answer. Raises nothing.
    [[nodiscard]] virtual Answer HandOver(const OutgoingMessage &message) = 0;

    /// For the end of the program: calls under way, and all later ones, end at once. A message whose request has gone
    /// out by then is Unknown.
    virtual void GiveUp() = 0;

protected:
    Engine() = default;
    Engine(const Engine &) = default;
    Engine &operator=(const Engine &) = default;
};
