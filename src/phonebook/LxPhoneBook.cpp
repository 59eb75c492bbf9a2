#include "LxPhoneBook.h"

#include "Clock.h"
#include "Error.h"
#include "LxCountryList.h"
#include "SaveFile.h"
#include "TextFile.h"
#include "Utils.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool IsSameFile(const QString &a, const QString &b)
{
    const QString canonical = QFileInfo(a).canonicalFilePath();
    return !canonical.isEmpty() && canonical == QFileInfo(b).canonicalFilePath();
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
    return Utils::AppDataFolder() + u"/Corvane/Brevio/"_s + Utils::IfEmpty(Utils::GetUserName(), u"corvane"_s)
        + u".kpb"_s;
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

void LxPhoneBook::OpenPhoneBook(const QString &name)
{
    ClosePhoneBook();
    m_fileName = name;
    // Until it has been read, whatever the file holds is not in memory.
    m_mustKeepOldFile = true;
    try {
        if (!Utils::FileExists(name)) {
            Utils::EnsureFolderExists(name);
            SavePhoneBook();
            return;
        }
        m_lock.Acquire(name);
        const FileContent content = ReadContent(name);
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
    OpenPhoneBook(QString(m_fileName));
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
    SaveFile(m_fileName, Content(), FilePrivacy::AsUsual, &m_lock);
    m_mustKeepOldFile = false;
    return keptFile;
}

QString LxPhoneBook::KeepOldFile() const
{
    const QString stem = m_fileName + u'.' + m_clock.Now().toString(u"yyyyMMdd-HHmmss"_s);
    QString name = stem + u".bak"_s;
    for (int n = 2; Utils::FileExists(name); ++n)
        name = u"%1-%2.bak"_s.arg(stem).arg(n);
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
    const FileContent content = ReadContent(name);
    const auto isReadable = [this](const PhoneBookFile::Record &record) { return ContactOf(record) != nullptr; };
    if (!content.isEmpty && std::none_of(content.records.begin(), content.records.end(), isReadable)) {
        throw Error(ErrorNumber::kInvalidArgument, u"Corvane.PhoneBook"_s,
                    Utils::FileNameOfPath(name)
                        + QCoreApplication::translate("LxPhoneBook", " is not a phone book"));
    }
    ClearAll();
    AddRecords(content.records);
    return SavePhoneBook();
}

LxPhoneBook::FileContent LxPhoneBook::ReadContent(const QString &name) const
{
    const QString text = TextFile::Decode(Utils::ReadTextFile(name));
    FileContent content;
    content.isEmpty = text.isEmpty();
    TextFile::ForEachLine(text, [&content](QStringView line) {
        if (std::optional<PhoneBookFile::Record> record = PhoneBookFile::ParseLine(line))
            content.records.push_back(std::move(*record));
        else if (!line.trimmed().isEmpty())
            content.skippedLines = true;
    });
    return content;
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
