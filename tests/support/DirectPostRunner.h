#pragma once

#include "CGIPost.h"
#include "PostRunner.h"

#include <QEventLoop>

/// Runs posts without a window.
class DirectPostRunner final : public PostRunner
{
public:
    void Run(CGIPost &post, QObject *) override
    {
        ++runs;
        QEventLoop loop;
        QObject::connect(&post, &CGIPost::Finished, &loop, &QEventLoop::quit);
        post.Start();
        loop.exec();
    }

    int runs = 0;
};
