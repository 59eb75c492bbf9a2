#include "ApplicationModule.h"

#include "Compose.h"
#include "EndSignals.h"
#include "Error.h"
#include "ForeignContacts.h"
#include "LxCountryList.h"
#include "LxPhoneBook.h"
#include "PhoneBook.h"
#include "PostModule.h"
#include "SentKeeping.h"
#include "SentLog.h"
#include "Settings.h"
#include "SingleInstance.h"
#include "UpgradeSettings.h"
#include "Utils.h"
#include "Version.h"
#include "WindowServices.h"

#include <QApplication>
#include <QDialog>

#include <fontconfig/fontconfig.h>
#include <future>
#include <malloc.h>
#include <optional>

namespace {

/// Memory that was used once is kept for the next use: what goes back to the system is cleared page by page before it
/// comes again, which was a tenth of what a large phone book costs at the start.
void KeepFreedMemory()
{
    constexpr int kMebibyte = 1 << 20;
    ::mallopt(M_MMAP_THRESHOLD, 32 * kMebibyte);
    ::mallopt(M_TRIM_THRESHOLD, 64 * kMebibyte);
    ::mallopt(M_TOP_PAD, kMebibyte);
}

} // namespace

/// Everything that lives as long as the program, each after what it needs.
struct ApplicationModule::Program
{
    Program(Prompts &prompts, const Clock &clock, InternetSettings &internetSettings)
        : settings(Settings::DefaultFileName(), prompts)
        , posts{internetSettings}
        , sentLog(SentLog::DefaultFileName(), clock)
        , sentKeeping(sentLog, settings)
    {
    }

    LxCountryList countries;
    Settings settings;
    PostModule posts;
    SentLog sentLog;
    SentKeeping sentKeeping;
    std::optional<PhoneBook> phoneBook;
    std::optional<Compose> compose;
};

ApplicationModule::ApplicationModule(const Seams &seams, QString programFolder, QStringList arguments)
    : m_seams(seams)
    , m_quietPrompts(seams.prompts)
    , m_programFolder(std::move(programFolder))
    , m_arguments(std::move(arguments))
    , m_instance(std::make_unique<SingleInstance>())
{
}

ApplicationModule::~ApplicationModule() = default;

bool ApplicationModule::Main()
{
    KeepFreedMemory();
    // Finding the system's fonts, without which no window is made, takes as long as reading 10,000 contacts.
    // Where no thread can be made, that is done once it is waited for.
    const auto fonts = std::async([] { return ::FcInit(); });
    m_endSignals = std::make_unique<EndSignals>();
    connect(m_endSignals.get(), &EndSignals::Received, this, &ApplicationModule::End);
    if (!m_instance->TryToBecome()) {
        m_prompts.ShowMessageBox({tr("%1 is already running.\r\n\r\nPlease select %1 from the task bar to continue.")
                                      .arg(ApplicationTitle()),
                                  PromptIcon::Information});
        return false;
    }
    // Nothing could be kept, and what the user enters would be gone at the end.
    if (Utils::AppDataFolder().isEmpty() || Utils::GetSpecialFolder(Utils::SpecialFolder::AppConfig).isEmpty()) {
        m_prompts.ShowMessageBox(
            {tr("%1 cannot start, as there is no folder for your phone book and your settings.\r\n\r\nPlease set the "
                "environment variable HOME to your home folder.")
                 .arg(ApplicationTitle()),
             PromptIcon::Critical});
        return false;
    }
    m_program = std::make_unique<Program>(m_prompts, m_seams.clock, m_seams.internetSettings);
    m_program->countries.LoadCountries(m_programFolder, m_arguments, m_prompts);
    UpgradeSettings(m_program->settings);
    WindowServices services{m_program->settings, m_prompts, m_seams.shell};
    services.quietTime = m_seams.quietTime.value_or(services.quietTime);
    const auto askForeignContacts = [this, services](const LxPhoneBook &phoneBook, QWidget *owner) {
        return ForeignContacts::Ask({m_program->countries, m_programFolder, services}, phoneBook, owner);
    };
    m_program->phoneBook.emplace(PhoneBook::Services{m_program->countries, m_seams.clock, services, askForeignContacts},
                                 std::make_unique<LxPhoneBook>(m_program->countries, m_seams.clock));
    OpenPhoneBook();
    fonts.wait();
    m_program->compose.emplace(
        Compose::Services{services,
                          {m_program->settings, m_program->posts, m_seams.postRunner, m_program->sentKeeping},
                          m_program->sentLog,
                          *m_program->phoneBook});
    connect(qApp, &QGuiApplication::commitDataRequest, this, &ApplicationModule::Store);
    m_program->compose->show();
    return !m_isEnding;
}

void ApplicationModule::OpenPhoneBook()
{
    try {
        m_program->phoneBook->LoadData();
    } catch (const Error &error) {
        // No reason not to start: what is in memory serves, and the file is kept beside the next save.
        m_prompts.ShowMessageBox({tr("Problem reading from the phone book: %1\r\n\r\nThe phonebook file is: \r\n\r\n%2")
                                      .arg(error.Description(), LxPhoneBook::DefaultFileName()),
                                  PromptIcon::Exclamation});
    }
}

void ApplicationModule::Store()
{
    // The session may not wait for an answer.
    m_quietPrompts.SetQuiet(true);
    // The draft comes first: whatever else fails, the text is kept.
    if (m_program && m_program->compose)
        m_program->compose->Store();
    if (m_program && m_program->phoneBook)
        m_program->phoneBook->Store();
    if (m_program)
        m_program->settings.Flush();
    m_quietPrompts.SetQuiet(m_isEnding);
}

void ApplicationModule::End()
{
    m_isEnding = true;
    Store();
    // Each does what it does when it is cancelled: the progress window gives up its post.
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (auto *dialog = qobject_cast<QDialog *>(window); dialog && dialog->isVisible())
            dialog->reject();
    }
    QApplication::exit();
}
