#pragma once

class Error;
class QString;

/// What the store raises, with a reason in plain words: number 5, source "Corvane.Gateway".
[[nodiscard]] Error Failure(const QString &reason);
