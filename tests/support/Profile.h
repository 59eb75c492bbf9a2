#pragma once

#include "FakePrompts.h"
#include "Fakes.h"

#include <QDir>
#include <QTemporaryDir>

/// The machine and the user of one test: a fresh home, no network but loopback, prompts from a queue.
struct Profile
{
    Profile()
    {
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"}) {
            const QString path = home.filePath(QString::fromLatin1(variable));
            QDir().mkpath(path + QStringLiteral("/Corvane/Brevio"));
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            qputenv(variable, QFile::encodeName(path));
        }
    }

    QTemporaryDir home;
    FakePrompts prompts;
    RecordingShell shell;
    FixedClock clock;
    FixedInternetSettings internetSettings;
};
