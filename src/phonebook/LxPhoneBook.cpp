#include "LxPhoneBook.h"

#include "Clock.h"
#include "Error.h"
#include "LxCountryList.h"
#include "PhoneBookFile.h"
#include "PhoneNumbers.h"
#include "SaveFile.h"
#include "TextFile.h"
#include "TextWriter.h"
#include "Utils.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <optional>
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

LxContactPtr LxPhoneBook::CreateHomeContact() const
{
    LxContactPtr contact = CreateContact();
    if (m_countries.CountryExists(PhoneNumbers::kDefaultCountryCode))
        contact->SetCountryCode(PhoneNumbers::kDefaultCountryCode);
    return contact;
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
        const QString text = ReadText(m_fileName);
        ClearAll();
        // Bytes that are no UTF-8 in a file that says it is were read as replacement characters.
        const bool decodedAll = !text.contains(QChar::ReplacementCharacter);
        m_mustKeepOldFile = !AddContacts(text) || !decodedAll;
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
    if (!text.isEmpty() && !HasContact(text)) {
        throw Error(ErrorNumber::kInvalidArgument, u"Corvane.PhoneBook"_s,
                    Utils::FileNameOfPath(name) + QCoreApplication::translate("LxPhoneBook", " is not a phone book"));
    }
    // Put aside, not cleared: the file does not record groups without members, so loading it would not bring them back.
    LxGroupList oldGroups = std::exchange(m_groups, {});
    LxGroup *const oldContacts = m_allContacts;
    ClearAll();
    AddContacts(text);
    try {
        return SavePhoneBook();
    } catch (const Error &) {
        m_groups = std::move(oldGroups);
        m_allContacts = oldContacts;
        throw;
    }
}

LxContactPtr LxPhoneBook::ContactOf(QStringView line, QString &groups) const
{
    std::optional<PhoneBookFile::Record> record = PhoneBookFile::ParseLine(line);
    if (!record)
        return nullptr;
    const LxContactPtr contact = CreateContact();
    try {
        contact->SetName(record->name);
        contact->SetCountryCode(record->countryCode);
        contact->SetUserMobile(record->mobile);
    } catch (const Error &) {
        return nullptr;
    }
    groups = std::move(record->groups);
    return contact;
}

bool LxPhoneBook::HasContact(const QString &text) const
{
    bool found = false;
    TextFile::ForEachLine(text, [this, &found](QStringView line) {
        QString groups;
        found = found || ContactOf(line, groups);
    });
    return found;
}

bool LxPhoneBook::AddContacts(const QString &text)
{
    bool readAll = true;
    // Many contacts share the same groups, whose names are then looked up once.
    QHash<QString, std::vector<LxGroup *>> groupsOf;
    QString names;
    TextFile::ForEachLine(text, [&](QStringView line) {
        const LxContactPtr contact = ContactOf(line, names);
        if (!contact) {
            readAll = readAll && line.trimmed().isEmpty();
            return;
        }
        m_allContacts->Add(contact);
        if (names.isEmpty())
            return;
        std::vector<LxGroup *> &groups = groupsOf[names];
        if (groups.empty())
            groups = GroupsNamed(names);
        for (LxGroup *group : groups)
            group->Add(contact);
    });
    return readAll;
}

std::vector<LxGroup *> LxPhoneBook::GroupsNamed(const QString &names)
{
    std::vector<LxGroup *> groups;
    for (const QString &name : names.split(u';'))
        groups.push_back(&m_groups.CreateGroup(name));
    return groups;
}

QByteArray LxPhoneBook::Content() const
{
    constexpr qsizetype kUsualLineLength = 64;
    TextWriter writer(kUsualLineLength * m_allContacts->Count());
    for (const LxContactPtr &contact : *m_allContacts)
        PhoneBookFile::AppendLine(*contact, *m_allContacts, writer);
    return writer.Take();
}
