#pragma once

#include "PostRunner.h"

/// Runs posts in their progress window, modal for the application.
class WindowPostRunner final : public PostRunner
{
public:
    void Run(CGIPost &post, QObject *owner) override;
};
