#include "Tour.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>

using namespace Qt::StringLiterals;

namespace {

QWidget *Window(const QString &name)
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->objectName() == name && window->isVisible())
            return window;
    }
    return nullptr;
}

template <typename T>
T *Find(const QString &name)
{
    return Window(u"Compose"_s)->findChild<T *>(name);
}

/// Clicks from the event loop, as a window that opens modally returns only when it closes.
void ClickLater(QPushButton *button)
{
    QTimer::singleShot(0, button, &QPushButton::click);
}

} // namespace

Tour::Tour(const QDir &pictures)
    : m_pictures(pictures)
{
    PlanSteps();
    constexpr int kPaceMs = 100;
    m_timer.setInterval(kPaceMs);
    connect(&m_timer, &QTimer::timeout, this, &Tour::NextStep);
}

void Tour::Start()
{
    m_timer.start();
}

void Tour::NextStep()
{
    constexpr int kMaxTries = 300;
    if (m_steps[m_step]()) {
        ++m_step;
        m_tries = 0;
    } else if (++m_tries == kMaxTries) {
        QApplication::exit(1);
        m_timer.stop();
    }
    if (m_step == m_steps.size())
        m_timer.stop();
}

void Tour::PlanSteps()
{
    m_steps.push_back([] { return Window(u"Compose"_s) != nullptr; });
    m_steps.push_back([this] {
        auto *to = Find<QComboBox>(u"cboTo"_s);
        to->setCurrentIndex(to->findText(u"Friends"_s));
        Find<QPlainTextEdit>(u"txtTextMessage"_s)->setPlainText(u"Lunch at one? The usual place."_s);
        Save(*Window(u"Compose"_s), u"compose"_s);
        return true;
    });
    PlanDialog(u"mnuAccount"_s, u"AccountDetails"_s);
    PlanDialog(u"mnuAbout"_s, u"About"_s);
    m_steps.push_back([] {
        Find<QPushButton>(u"cmdPhoneBook"_s)->click();
        return true;
    });
    m_steps.push_back([this] {
        Save(*Window(u"PhoneBook"_s), u"PhoneBook"_s);
        return Window(u"PhoneBook"_s)->close();
    });
    // A number that nobody has yet: the dialog opens, and leaving it sends nothing.
    m_steps.push_back([] {
        Find<QComboBox>(u"cboTo"_s)->setEditText(u"07700 900555"_s);
        ClickLater(Find<QPushButton>(u"cmdSend"_s));
        return true;
    });
    PlanPicture(u"ContactProperties"_s);
    m_steps.push_back([] {
        Find<QComboBox>(u"cboTo"_s)->setEditText(u"Friends"_s);
        ClickLater(Find<QPushButton>(u"cmdSend"_s));
        return true;
    });
    m_steps.push_back([this] {
        if (QWidget *progress = Window(u"CGIPost"_s))
            Save(*progress, u"CGIPost"_s);
        m_outcome = Find<QStatusBar>(u"StatusBar"_s)->currentMessage();
        return m_outcome.startsWith("Message "_L1);
    });
    PlanDialog(u"mnuSentMessages"_s, u"SentMessages"_s);
    m_steps.push_back([this] {
        Save(*Window(u"Compose"_s), u"compose-sent"_s);
        return Window(u"Compose"_s)->close();
    });
}

void Tour::PlanDialog(const QString &action, const QString &window)
{
    m_steps.push_back([action] {
        QTimer::singleShot(0, Find<QAction>(action), &QAction::trigger);
        return true;
    });
    PlanPicture(window);
}

void Tour::PlanPicture(const QString &window)
{
    m_steps.push_back([this, window] {
        auto *dialog = qobject_cast<QDialog *>(Window(window));
        if (!dialog)
            return false;
        Save(*dialog, window);
        dialog->reject();
        return true;
    });
}

void Tour::Save(QWidget &window, const QString &name)
{
    window.grab().save(m_pictures.filePath(name + ".png"_L1));
}
