#include "MessageState.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView kWords[] = {"queued"_L1,   "handing"_L1,   "handed-over"_L1, "at-operator"_L1,
                                        "buffered"_L1, "delivered"_L1, "failed"_L1,      "unsure"_L1};

} // namespace

QString WordOf(MessageState state)
{
    return kWords[static_cast<std::size_t>(state)];
}

std::optional<MessageState> StateOf(QStringView word)
{
    const auto *const found = std::find(std::begin(kWords), std::end(kWords), word);
    if (found == std::end(kWords))
        return std::nullopt;
    return static_cast<MessageState>(found - std::begin(kWords));
}
