#pragma once

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <ctime>
#include <unistd.h>

/// Ends this process by force, wherever it is by then.
inline void KillThisProcessIn(int microseconds)
{
    sigevent onTime = {};
    onTime.sigev_notify = SIGEV_SIGNAL;
    onTime.sigev_signo = SIGKILL;
    const itimerspec time = {{}, {0, microseconds * 1000L}};
    timer_t timer = {};
    if (::timer_create(CLOCK_MONOTONIC, &onTime, &timer) != 0 || ::timer_settime(timer, 0, &time, nullptr) != 0)
        ::_exit(1);
}

/// The folder of the small disk on which the test function runs; empty when it does not run on one.
inline QString SmallDisk()
{
    return qEnvironmentVariable("BREVIO_TEST_DISK");
}

/// Runs the test function once more, in a process and a namespace of its own, where a disk of 64 KiB is mounted.
inline void RepeatOnSmallDisk()
{
    using namespace Qt::StringLiterals;
    const QTemporaryDir folder;
    const auto run = [&folder](const QString &script) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(u"unshare"_s, {u"--map-root-user"_s, u"--mount"_s, u"sh"_s, u"-c"_s, script,
                                     QCoreApplication::applicationFilePath(), folder.path(),
                                     QString::fromUtf8(QTest::currentTestFunction())});
        const bool succeeded = process.waitForFinished() && process.exitCode() == 0;
        return std::pair(succeeded, process.readAll());
    };
    const auto mount = u"mount -t tmpfs -o size=64k tmpfs \"$1\""_s;
    if (const auto [canMount, output] = run(mount); !canMount)
        QSKIP(("No disk can be mounted here: " + output).constData());
    const auto [passed, output] = run(mount + u" && BREVIO_TEST_DISK=\"$1\" exec \"$0\" \"$2\""_s);
    QVERIFY2(passed, output.constData());
}
