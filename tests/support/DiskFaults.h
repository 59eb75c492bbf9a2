#pragma once

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <thread>
#include <unistd.h>

/// Ends this process by force, wherever it is by then.
inline void KillThisProcessIn(int microseconds)
{
    std::thread([microseconds] {
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
        ::kill(::getpid(), SIGKILL);
    }).detach();
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
    QProcess process;
    process.start(u"unshare"_s, {u"--map-root-user"_s, u"--mount"_s, u"sh"_s, u"-c"_s,
                                 u"mount -t tmpfs -o size=64k tmpfs \"$1\" && echo mounted && "
                                 u"BREVIO_TEST_DISK=\"$1\" exec \"$0\" \"$2\""_s,
                                 QCoreApplication::applicationFilePath(), folder.path(),
                                 QString::fromUtf8(QTest::currentTestFunction())});
    const bool hasEnded = process.waitForFinished();
    const QByteArray output = process.readAll();
    if (!output.startsWith("mounted"))
        QSKIP("No disk can be mounted here");
    QVERIFY2(hasEnded && process.exitCode() == 0, output.constData());
}
