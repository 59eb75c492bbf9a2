#pragma once

/// How much of a request left the program, towards the gateway or towards a proxy, which may have passed it on.
enum class RequestLeft {
    /// Surely nothing that the gateway could act on.
    Nothing,
    /// Some of it, or perhaps some of it.
    Partly,
    /// All of it, or as much as the peer wanted before it replied: it may have acted on the request, whatever came
    /// after.
    Whole,
};
