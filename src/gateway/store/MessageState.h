#pragma once

#include <QString>

#include <optional>

/// How far an accepted message has come. The values are kept in the database.
enum class MessageState {
    Queued = 0,
    /// Being given to the engine: committed before the engine is called.
    Handing = 1,
    /// The engine has said that it keeps the message.
    HandedOver = 2,
    AtOperator = 3,
    /// The operator waits for the phone.
    Buffered = 4,
    Delivered = 5,
    Failed = 6,
    /// Nobody can know whether the engine took it. Never handed over again by itself.
    Unsure = 7,
};

/// The word for a state in the command line's options and output: "queued", "handing", "handed-over", "at-operator",
/// "buffered", "delivered", "failed", "unsure".
[[nodiscard]] QString WordOf(MessageState state);

/// The state that a word names.
[[nodiscard]] std::optional<MessageState> StateOf(QStringView word);
