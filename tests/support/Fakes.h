#pragma once

#include "CGIPost.h"
#include "Clock.h"
#include "InternetSettings.h"
#include "PostRunner.h"
#include "Shell.h"

#include <QEventLoop>
#include <QUrl>

/// Notes what was handed to the desktop, which opens it or not.
class RecordingShell final : public Shell
{
public:
    bool OpenWithShell(const QString &target) override
    {
        opened += target;
        return opens;
    }

    QStringList opened;
    bool opens = true;
};

/// 15 November 2004, half past ten, until it is set.
class FixedClock final : public Clock
{
public:
    [[nodiscard]] QDateTime Now() const override { return now; }

    QDateTime now{QDate(2004, 11, 15), QTime(10, 30)};
};

/// Answers with what it was given, or, when told so, never.
class FixedInternetSettings final : public InternetSettings
{
public:
    void Query(const QUrl &url, QObject *asker, Answer answer) override
    {
        asked = url;
        if (!isSilent)
            QTimer::singleShot(0, asker, [this, answer] { answer(values); });
    }

    QUrl asked;
    InternetSettingsValues values;
    bool isSilent = false;
};

/// Runs posts without a window.
class DirectPostRunner final : public PostRunner
{
public:
    void Run(CGIPost &post, QObject *) override
    {
        QEventLoop loop;
        QObject::connect(&post, &CGIPost::Finished, &loop, &QEventLoop::quit);
        post.Start();
        loop.exec();
    }
};
