#include "ApplicationModule.h"
#include "DesktopSeams.h"
#include "Files.h"
#include "LxPhoneBook.h"
#include "Machine.h"
#include "Require.h"
#include "SampleData.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMainWindow>
#include <QProcess>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <cstdio>

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
    const Machine machine;
    Require(WriteBytes(LxPhoneBook::DefaultFileName(), SampleData::PhoneBookFile(10'000, 200)));
    for (auto _ : state) {
        QProcess child;
        QElapsedTimer timer;
        timer.start();
        child.start(QCoreApplication::applicationFilePath(), {u"--child"_s, QString::fromLatin1(what)});
        Require(child.waitForReadyRead());
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
