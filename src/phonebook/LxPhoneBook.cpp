#include "LxPhoneBook.h"

#include "Clock.h"
#include "Error.h"
#include "LxCountryList.h"
#include "SaveFile.h"
#include "TextFile.h"
#include "Utils.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

bool IsSameFile(const QString &a, const QString &b)
{
    const QString canonical = QFileInfo(a).canonicalFilePath();
    return !canonical.isEmpty() && canonical == QFileInfo(b).canonicalFilePath();
}

QString ReadText(const QString &name)
{
    return TextFile::Decode(Utils::ReadTextFile(name));
}

} // namespace

LxPhoneBook::LxPhoneBook(const LxCountryList &countries, const Clock &clock)
    : m_countries(countries)
    , m_clock(clock)
{
    ClearAll();
}

QString LxPhoneBook::DefaultFileName()
{
    return Utils::AppDataFolder() + u"/Corvane/Brevio/"_s + Utils::IfEmpty(Utils::GetUserName(), u"corvane"_s) +
           u".kpb"_s;
}

LxGroupList LxPhoneBook::GroupsExcludingAllContacts() const
{
    LxGroupList groups;
    for (LxGroup *group : m_groups) {
        if (group != m_allContacts)
            groups.Add(*group);
    }
    return groups;
}

LxContactPtr LxPhoneBook::CreateContact() const
{
    return LxContact::Create(m_countries);
}

void LxPhoneBook::ClearAll()
{
    m_groups = LxGroupList();
    m_allContacts = &m_groups.CreateGroup(u"Everyone"_s);
}

void LxPhoneBook::OpenPhoneBook(QString name)
{
    ClosePhoneBook();
    m_fileName = std::move(name);
    // Until it has been read, whatever the file holds is not in memory.
    m_mustKeepOldFile = true;
    try {
        if (!Utils::FileExists(m_fileName)) {
            Utils::EnsureFolderExists(m_fileName);
            SavePhoneBook();
            return;
        }
        m_lock.Acquire(m_fileName);
        const PhoneBookFile::Content content = PhoneBookFile::Parse(ReadText(m_fileName));
        ClearAll();
        const bool acceptedAll = AddRecords(content.records);
        m_mustKeepOldFile = content.skippedLines || !acceptedAll;
    } catch (const Error &) {
        m_lock.Release();
        throw;
    }
}

void LxPhoneBook::RevertToSaved()
{
    OpenPhoneBook(m_fileName);
}

void LxPhoneBook::ClosePhoneBook()
{
    m_lock.Release();
    m_fileName.clear();
}

QString LxPhoneBook::SavePhoneBook()
{
    if (m_fileName.isEmpty()) {
        throw Error(ErrorNumber::kInvalidArgument, u"Corvane.PhoneBook"_s,
                    QCoreApplication::translate("LxPhoneBook", "No phone book file is open"));
    }
    // After an open that failed the file is not held, and may be another program's.
    const bool exists = Utils::FileExists(m_fileName);
    if (exists && !m_lock.IsHeld())
        m_lock.Acquire(m_fileName);
    const QString keptFile = exists && m_mustKeepOldFile ? KeepOldFile() : QString();
    try {
        SaveFile(m_fileName, Content(), FilePrivacy::AsUsual, &m_lock);
    } catch (const Error &) {
        // The next attempt makes the copy anew; on a full disk it would be one too many.
        if (!keptFile.isEmpty())
            QFile::remove(keptFile);
        throw;
    }
    m_mustKeepOldFile = false;
    return keptFile;
}

QString LxPhoneBook::KeepOldFile() const
{
    const QString stem = m_fileName + u'.' + m_clock.Now().toString(u"yyyyMMdd-HHmmss"_s);
    QString name = stem + u".bak"_s;
    for (int n = 2; Utils::FileExists(name); ++n)
        name = stem + u'-' + QString::number(n) + u".bak"_s;
    SaveFile(name, Utils::ReadTextFile(m_fileName), FilePrivacy::OwnerOnly);
    return name;
}

void LxPhoneBook::Backup(const QString &name)
{
    // Onto its own file it is a save, which keeps the lock.
    if (IsSameFile(name, m_fileName))
        SavePhoneBook();
    else
        SaveFile(name, Content());
}

QString LxPhoneBook::Restore(const QString &name)
{
    const QString text = ReadText(name);
    const std::vector<PhoneBookFile::Record> records = PhoneBookFile::Parse(text).records;
    const auto isReadable = [this](const PhoneBookFile::Record &record) { return ContactOf(record) != nullptr; };
    if (!text.isEmpty() && std::none_of(records.begin(), records.end(), isReadable)) {
        throw Error(ErrorNumber::kInvalidArgument, u"Corvane.PhoneBook"_s,
                    Utils::FileNameOfPath(name) + QCoreApplication::translate("LxPhoneBook", " is not a phone book"));
    }
    // Put aside, not cleared: the file does not record groups without members, so loading it would not bring them back.
    LxGroupList oldGroups = std::exchange(m_groups, {});
    LxGroup *const oldContacts = m_allContacts;
    ClearAll();
    AddRecords(records);
    try {
        return SavePhoneBook();
    } catch (const Error &) {
        m_groups = std::move(oldGroups);
        m_allContacts = oldContacts;
        throw;
    }
}

LxContactPtr LxPhoneBook::ContactOf(const PhoneBookFile::Record &record) const
{
    const LxContactPtr contact = CreateContact();
    try {
        contact->SetName(record.name);
        contact->SetCountryCode(record.countryCode);
        contact->SetUserMobile(record.mobile);
    } catch (const Error &) {
        return nullptr;
    }
    return contact;
}

bool LxPhoneBook::AddRecords(const std::vector<PhoneBookFile::Record> &records)
{
    bool acceptedAll = true;
    // Looked up by name once for each name, not once for each contact.
    QHash<QString, LxGroup *> groupOf;
    for (const PhoneBookFile::Record &record : records) {
        const LxContactPtr contact = ContactOf(record);
        if (!contact) {
            acceptedAll = false;
            continue;
        }
        m_allContacts->Add(contact);
        for (const QString &name : record.groups) {
            LxGroup *&group = groupOf[name];
            if (!group)
                group = &m_groups.CreateGroup(name);
            group->Add(contact);
        }
    }
    return acceptedAll;
}

QByteArray LxPhoneBook::Content() const
{
    QString text;
    for (const LxContactPtr &contact : *m_allContacts)
        text += PhoneBookFile::FormatLine(*contact, *m_allContacts);
    return TextFile::Encode(text);
}
