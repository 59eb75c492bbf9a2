#pragma once

#include "Fakes.h"

#include <QDir>
#include <QTemporaryDir>

/// The machine of one run: a fresh home, and no network but loopback.
struct Machine
{
    Machine()
    {
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"}) {
            const QString path = home.filePath(QString::fromLatin1(variable));
            QDir().mkpath(path + QStringLiteral("/Corvane/Brevio"));
            QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            qputenv(variable, QFile::encodeName(path));
        }
    }

    QTemporaryDir home;
    RecordingShell shell;
    FixedClock clock;
    FixedInternetSettings internetSettings;
};
