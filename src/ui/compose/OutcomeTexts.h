#pragma once

#include "Prompts.h"
#include "SendingSMS.h"

#include <optional>

/// What the user is told of a send.
namespace OutcomeTexts {

/// Why nothing, or perhaps nothing, was sent; none where no box tells it.
[[nodiscard]] std::optional<MessageBoxRequest> FailureBox(const SendingSMS::SendOutcome &outcome);

/// For the status bar.
[[nodiscard]] QString Status(const SendingSMS::SendOutcome &outcome);

} // namespace OutcomeTexts
