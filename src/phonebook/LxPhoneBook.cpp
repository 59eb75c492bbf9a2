#include "LxPhoneBook.h"

#include "Clock.h"
#include "Error.h"
#include "ExportFile.h"
#include "GroupFinder.h"
#include "ImportLine.h"
#include "KeptCopies.h"
#include "LxCountryList.h"
#include "PhoneBookFile.h"
#include "PhoneNumbers.h"
#include "SaveFile.h"
#include "TextFile.h"
#include "Utf8.h"
#include "Utils.h"
#include "VCardFile.h"
#include "VectorState.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

bool IsSameFile(const QString &a, const QString &b)
{
    const QString canonical = QFileInfo(a).canonicalFilePath();
    return !canonical.isEmpty() && canonical == QFileInfo(b).canonicalFilePath();
}

} // namespace

/// The lists of groups that lines name.
class LxPhoneBook::NamedGroups final
{
public:
    explicit NamedGroups(LxGroupList &groups)
        : m_everyone(*groups.GetFirstGroup())
        , m_finder(groups)
    {
    }

    /// "Everyone" and the groups of these names, joined by ";"; "Everyone" alone for empty text.
    const LxGroupList &Of(QUtf8StringView names)
    {
        // Most lines name the same groups as one before.
        const auto found = m_byNames.constFind({{names.data(), static_cast<size_t>(names.size())}});
        if (found != m_byNames.constEnd())
            return **found;
        const int madeBefore = m_finder.NewCount();
        LxGroupList groups;
        groups.AddNew(m_everyone);
        if (!names.isEmpty()) {
            for (const QString &name : Utf8::Decoded(names).split(u';'))
                groups.Add(m_finder.Find(name));
        }
        // Where each line names a group of its own, nobody asks for its list again.
        ReleaseVectorState();
        if (m_finder.NewCount() > madeBefore)
            return m_newGroups = std::move(groups);
        const std::string &kept = m_names.emplace_back(names.data(), names.size());
        return **m_byNames.insert({kept}, &m_lists.emplace_back(std::move(groups)));
    }

private:
    LxGroup &m_everyone;
    GroupFinder m_finder;
    /// The list of the last names that made a group.
    LxGroupList m_newGroups;
    struct Names
    {
        [[nodiscard]] bool operator==(const Names &other) const = default;
        /// Qt's own hash of texts is slower, and slows down what follows, see ReleaseVectorState.
        [[nodiscard]] friend size_t qHash(const Names &names, size_t seed) noexcept
        {
            return std::hash<std::string_view>()(names.text) ^ seed;
        }

        std::string_view text;
    };
    /// What the keys lie in.
    std::deque<std::string> m_names;
    std::deque<LxGroupList> m_lists;
    QHash<Names, const LxGroupList *> m_byNames;
};

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
        if (group != &AllContacts())
            groups.AddNew(*group);
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

LxGroupList LxPhoneBook::NewGroups()
{
    LxGroupList groups;
    groups.CreateGroup(QCoreApplication::translate("LxPhoneBook", "Everyone"));
    return groups;
}

void LxPhoneBook::ClearAll()
{
    m_history.Clear();
    m_groups = NewGroups();
    m_groups.ReportTo(m_history);
}

void LxPhoneBook::OpenPhoneBook(QString name)
{
    ClosePhoneBook();
    m_fileName = std::move(name);
    // Until it has been read, whatever the file holds is not in memory.
    m_mustKeepOldFile = true;
    try {
        if (!Utils::FileExists(m_fileName)) {
            if (QString why; !Utils::EnsureFolderExists(m_fileName, &why))
                throw Error(ErrorNumber::kFileAccess, u"Corvane.PhoneBook"_s, why);
            SavePhoneBook();
            return;
        }
        m_lock.Acquire(m_fileName);
        const QByteArray bytes = Utils::ReadTextFile(m_fileName);
        ClearAll();
        m_mustKeepOldFile = !AddContacts(bytes);
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

QString LxPhoneBook::SavePhoneBook(const QString &sparedCopy)
{
    if (m_fileName.isEmpty()) {
        throw Error(ErrorNumber::kInvalidArgument, u"Corvane.PhoneBook"_s,
                    QCoreApplication::translate("LxPhoneBook", "No phone book file is open"));
    }
    // After an open that failed the file is not held, and may be another program's.
    if (!m_lock.IsHeld() && Utils::FileExists(m_fileName))
        m_lock.Acquire(m_fileName);
    const bool isWorthKeeping = QFileInfo(m_fileName).size() > 0;
    QString toldCopy;
    QString dayCopy;
    try {
        if (isWorthKeeping && m_mustKeepOldFile)
            toldCopy = KeptCopies::Keep(m_fileName, m_clock.Now());
        if (isWorthKeeping)
            dayCopy = KeptCopies::KeepForDay(m_fileName, m_clock.Now().date());
        SaveFile(m_fileName, PhoneBookFile::Content(AllContacts()), FilePrivacy::OwnerOnlyIfNew, &m_lock);
    } catch (const Error &) {
        // The next attempt makes the copies anew; on a full disk they would be too many.
        for (const QString &copy : {toldCopy, dayCopy}) {
            if (!copy.isEmpty())
                QFile::remove(copy);
        }
        throw;
    }
    m_mustKeepOldFile = false;
    if (!dayCopy.isEmpty())
        KeptCopies::RemoveOldDays(m_fileName, {dayCopy, sparedCopy});
    return toldCopy;
}

QString LxPhoneBook::Backup(const QString &name)
{
    // A save keeps the lock.
    if (IsSameFile(name, m_fileName))
        return SavePhoneBook();
    SaveFile(name, PhoneBookFile::Content(AllContacts()));
    return {};
}

QString LxPhoneBook::Restore(const QString &name)
{
    const QByteArray bytes = Utils::ReadTextFile(name);
    // Put aside, not cleared: the file does not record groups without members, so loading it would not bring them back.
    LxGroupList oldGroups = std::exchange(m_groups, NewGroups());
    const bool oldMustKeep = m_mustKeepOldFile;
    AddContacts(bytes);
    try {
        if (!bytes.isEmpty() && AllContacts().Count() == 0) {
            throw Error(
                ErrorNumber::kInvalidArgument, u"Corvane.PhoneBook"_s,
                QCoreApplication::translate("LxPhoneBook", "%1 is not a phone book").arg(Utils::FileNameOfPath(name)));
        }
        // Whatever was restored, by mistake too, must not be all that is left.
        m_mustKeepOldFile = true;
        QString kept = SavePhoneBook(name);
        m_groups.ReportTo(m_history);
        m_history.AllWent(std::move(oldGroups));
        return kept;
    } catch (const Error &) {
        m_mustKeepOldFile = oldMustKeep;
        m_groups = std::move(oldGroups);
        throw;
    }
}

bool LxPhoneBook::AddContactOf(QUtf8StringView line, NamedGroups &groups) const
{
    const std::optional<PhoneBookFile::Record> record = PhoneBookFile::ParseLine(line);
    if (!record)
        return false;
    LxContactPtr contact = CreateContact();
    try {
        contact->SetName(record->name);
        contact->SetCountryCode(record->countryCode);
        contact->SetUserMobile(record->mobile);
    } catch (const Error &) {
        return false;
    }
    LxGroup::AddNew(std::move(contact), groups.Of(record->groups));
    return true;
}

bool LxPhoneBook::AddContacts(const QByteArray &bytes)
{
    bool readAll = TextFile::DecodesWhole(bytes);
    NamedGroups groups(m_groups);
    ReleaseVectorState();
    TextFile::ForEachUtf8Line(bytes, [&](QUtf8StringView line) {
        if (!AddContactOf(line, groups))
            readAll = readAll && Utf8::Decoded(line).trimmed().isEmpty();
    });
    for (LxGroup *group : m_groups)
        group->Squeeze();
    return readAll;
}

LxContactPtr LxPhoneBook::ImportedContactOf(QStringView line, QString &groups) const
{
    try {
        ImportLine::Fields fields = ImportLine::Parse(line, m_countries);
        LxContactPtr contact = CreateContact();
        contact->SetName(fields.name);
        if (fields.countryCode != 0)
            contact->SetCountryCode(fields.countryCode);
        contact->SetMobile(fields.mobile);
        // What is left behind the country code may be no number, on which the import of all others would stop.
        contact->SetUserMobile(contact->UserMobile());
        groups = std::move(fields.groups);
        return contact;
    } catch (const Error &) {
        return nullptr;
    }
}

LxPhoneBook::ParsedLines LxPhoneBook::ParseContacts(const QString &text)
{
    ParsedLines parsed;
    NamedGroups groups(m_groups);
    QString names;
    int number = 0;
    TextFile::ForEachForeignLine(text, [&](QStringView line) {
        ++number;
        const bool isCut = line.endsWith(QChar::ReplacementCharacter) && line.end() == QStringView(text).end();
        line = ImportLine::WithoutComment(line);
        if (line.isEmpty())
            return;
        // A heading, or a line of something else, costs its own contact only.
        if (const LxContactPtr contact = isCut ? nullptr : ImportedContactOf(line, names)) {
            LxGroup::AddNew(contact, groups.Of(names.toUtf8()));
            parsed.lineOf.push_back(number);
            return;
        }
        // Of a comment a quote may be left.
        const bool hasText = std::any_of(line.begin(), line.end(), [](QChar c) { return c.isLetterOrNumber(); });
        parsed.passedOver += isCut || hasText ? 1 : 0;
    });
    return parsed;
}

void LxPhoneBook::Import(const LxContactList &contacts, LxGroup *group)
{
    for (const LxContactPtr &contact : contacts) {
        const LxContactPtr clone = contact->Clone();
        AllContacts().Add(clone);
        if (group)
            group->Add(clone);
    }
}

void LxPhoneBook::Export(const QString &name, const LxGroup &group, ExportKind kind) const
{
    if (IsSameFile(name, m_fileName)) {
        throw Error(ErrorNumber::kInvalidArgument, u"Corvane.PhoneBook"_s,
                    QCoreApplication::translate("LxPhoneBook", "This file is the phone book itself"));
    }
    SaveFile(name, kind == ExportKind::VCards ? VCardFile::Content(group, AllContacts())
                                              : ExportFile::Content(group, m_clock.Now().date()));
}
