#pragma once

#include <QString>
#include <chrono>

class InternetSettings;

/// What all posts of the program share.
struct PostModule
{
    InternetSettings &internetSettings;
    /// How long a post may go without any progress, whatever it is waiting for.
    std::chrono::milliseconds timeOut = std::chrono::seconds(20);
    /// The host of the last valid address that had one; it serves addresses without.
    QString lastHost = {};
};
