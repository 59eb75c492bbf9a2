#pragma once

#include "Error.h"

/// What `call` raises, as "number source: description"; empty when nothing.
template <typename Call>
QString Raised(Call call)
{
    try {
        call();
    } catch (const Error &error) {
        return QStringLiteral("%1 %2: %3").arg(error.Number()).arg(error.Source(), error.Description());
    }
    return {};
}
