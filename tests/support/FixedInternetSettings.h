#pragma once

#include "InternetSettings.h"

#include <QObject>
#include <QUrl>

/// Answers with what it was given, or, when told so, never.
class FixedInternetSettings final : public InternetSettings
{
public:
    void Query(const QUrl &, QObject *asker, Answer answer) override
    {
        if (!isSilent)
            QMetaObject::invokeMethod(
                asker, [this, answer] { answer(values); }, Qt::QueuedConnection);
    }

    InternetSettingsValues values;
    bool isSilent = false;
};
