#include "ApplicationModule.h"
#include "DesktopSeams.h"
#include "LxPhoneBook.h"
#include "SampleData.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMainWindow>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

/// Says when a window was painted, and ends the program.
class QuitAtPaint final : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && qobject_cast<QMainWindow *>(watched))
            QTimer::singleShot(0, watched, [] {
                std::puts("painted");
                std::fflush(stdout);
                QCoreApplication::quit();
            });
        return QObject::eventFilter(watched, event);
    }
};

/// What a child process runs: an empty window, or the program.
int RunChild(int argc, char *argv[], bool isEmpty)
{
    QApplication application(argc, argv);
    QuitAtPaint quitAtPaint;
    application.installEventFilter(&quitAtPaint);
    if (isEmpty) {
        QMainWindow window;
        window.show();
        return QApplication::exec();
    }
    DesktopSeams seams;
    ApplicationModule module(seams.All(), QApplication::applicationDirPath(), {});
    return module.Main() ? QApplication::exec() : 1;
}

void Start(benchmark::State &state, const char *what)
{
    const QTemporaryDir profile;
    qputenv("XDG_DATA_HOME", QFile::encodeName(profile.filePath(u"data"_s)));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(profile.filePath(u"config"_s)));
    const QString path = LxPhoneBook::DefaultFileName();
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        std::abort();
    file.write(SampleData::PhoneBookFile(10'000, 200));
    file.close();
    for (auto _ : state) {
        QProcess child;
        QElapsedTimer timer;
        timer.start();
        child.start(QCoreApplication::applicationFilePath(), {u"--child"_s, QString::fromLatin1(what)});
        if (!child.waitForReadyRead())
            std::abort();
        // Tidying up is no part of the start.
        state.SetIterationTime(static_cast<double>(timer.nsecsElapsed()) / 1e9);
        child.waitForFinished();
    }
}
BENCHMARK_CAPTURE(Start, EmptyWindow, "empty")->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(3);
BENCHMARK_CAPTURE(Start, Brevio, "brevio")->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(3);

} // namespace

int main(int argc, char *argv[])
{
    if (argc == 3 && QByteArrayView(argv[1]) == "--child")
        return RunChild(argc, argv, QByteArrayView(argv[2]) == "empty");
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
