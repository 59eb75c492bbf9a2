#pragma once

class CGIPost;
class QObject;

/// Runs posts while the user watches, or unseen in a test.
class PostRunner
{
public:
    virtual ~PostRunner() = default;

    /// Starts `post`, which was set up and not started, and returns once it has finished. `owner` is the window that
    /// the post belongs to; none stands for the window that is active.
    virtual void Run(CGIPost &post, QObject *owner) = 0;
};
