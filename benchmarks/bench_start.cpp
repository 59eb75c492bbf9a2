#include "ApplicationModule.h"
#include "DesktopSeams.h"
#include "Files.h"
#include "LxPhoneBook.h"
#include "Machine.h"
#include "Require.h"
#include "SampleData.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMainWindow>
#include <QProcess>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>

#include <benchmark/benchmark.h>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

const QString kRareName = u"Zoe Quill"_s;

/// Tells the parent, and ends the program.
void TellAndQuit()
{
    std::puts("painted");
    std::fflush(stdout);
    QCoreApplication::quit();
}

/// Says when a window was painted.
class QuitAtPaint final : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && qobject_cast<QMainWindow *>(watched))
            QTimer::singleShot(0, watched, TellAndQuit);
        return QObject::eventFilter(watched, event);
    }
};

/// Once the compose window is painted, opens the phone book window; once that is, finds a name; says when its row was
/// painted.
class FindAtPaint final : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            QTimer::singleShot(0, watched, [this, watched] { Painted(*watched); });
        return QObject::eventFilter(watched, event);
    }

private:
    void Painted(const QObject &painted)
    {
        if (m_window == nullptr && painted.objectName() == "Compose"_L1) {
            painted.findChild<QPushButton *>(u"cmdPhoneBook"_s)->click();
            for (const QWidget *window : QApplication::topLevelWidgets())
                m_window = window->objectName() == "PhoneBook"_L1 ? window : m_window;
            m_list = m_window->findChild<QTreeView *>(u"lvwContacts"_s);
            return;
        }
        if (m_list == nullptr || &painted != m_list->viewport())
            return;
        auto &find = *m_window->findChild<QLineEdit *>(u"txtFind"_s);
        if (find.text().isEmpty())
            find.setText(kRareName);
        else if (m_list->model()->rowCount() == 1)
            TellAndQuit();
    }

    const QWidget *m_window = nullptr;
    const QTreeView *m_list = nullptr;
};

/// What a child process runs: an empty window, or the program, with a search or without.
int RunChild(int argc, char *argv[], QByteArrayView what)
{
    // A platform without a screen else waits a while before it paints again, which is no work.
    if (what == "find")
        qputenv("QT_QPA_UPDATE_IDLE_TIME", "0");
    QApplication application(argc, argv);
    QuitAtPaint quitAtPaint;
    FindAtPaint findAtPaint;
    application.installEventFilter(what == "find" ? static_cast<QObject *>(&findAtPaint) : &quitAtPaint);
    if (what == "empty") {
        QMainWindow window;
        window.show();
        return QApplication::exec();
    }
    DesktopSeams seams;
    ApplicationModule module(seams.All(), QApplication::applicationDirPath(), {});
    return module.Main() ? QApplication::exec() : 1;
}

void Start(benchmark::State &state, const char *what, int contacts)
{
    const Machine machine;
    Require(WriteBytes(LxPhoneBook::DefaultFileName(), SampleData::PhoneBookFile(contacts, 200) + '"' +
                                                           kRareName.toLatin1() + "\",44,\"7600000000\"\r\n"));
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
BENCHMARK_CAPTURE(Start, EmptyWindow, "empty", 0)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(3);
BENCHMARK_CAPTURE(Start, Brevio, "brevio", 10'000)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(3);
/// What the difference of the two is, a start and a search of 100,000 contacts cost more than of 1,000.
BENCHMARK_CAPTURE(Start, Find1000, "find", 1'000)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(3);
BENCHMARK_CAPTURE(Start, Find100000, "find", 100'000)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(3);

} // namespace

int main(int argc, char *argv[])
{
    if (argc == 3 && QByteArrayView(argv[1]) == "--child")
        return RunChild(argc, argv, argv[2]);
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
