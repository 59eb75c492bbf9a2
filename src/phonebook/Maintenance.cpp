#include "Maintenance.h"

#include "LxContactList.h"
#include "LxPhoneBook.h"
#include "PhoneNumbers.h"
#include "TextFile.h"

#include <QHash>
#include <QStringList>

#include <algorithm>

namespace Maintenance {
namespace {

/// Whether the name tells more than the number, in whichever form: an import without names makes names of numbers.
bool HasRealName(const LxContact &contact)
{
    using namespace PhoneNumbers;
    const QString cleaned = CleanPhoneNumber(contact.Name());
    return !cleaned.trimmed().isEmpty() && contact.Name() != contact.UserMobile() &&
           RemovePlus(cleaned) != RemovePlus(contact.InternationalMobile()) &&
           RemoveTrunkZero(cleaned) != contact.LocalMobile();
}

/// Finds contacts that exactly match one of many texts without trying every text on each.
class ExactMatcher final
{
public:
    void Add(const QString &text)
    {
        // A leading zero counts neither for a number nor for a name.
        QStringList &same = m_textsOf[Key(text.startsWith(u'0') ? text.sliced(1) : text)];
        if (!same.contains(text))
            same += text;
    }

    [[nodiscard]] bool Matches(const LxContact &contact) const
    {
        return MatchesOneOf(contact.Name(), contact) || MatchesOneOf(contact.LocalMobile(), contact) ||
               MatchesOneOf(contact.InternationalMobile(), contact);
    }

private:
    /// The same for texts that differ in case only, and for a few others, between which LxContact::Match decides.
    [[nodiscard]] static QString Key(const QString &text) { return text.toCaseFolded(); }

    [[nodiscard]] bool MatchesOneOf(const QString &own, const LxContact &contact) const
    {
        const QStringList texts = m_textsOf.value(Key(own));
        return std::any_of(texts.begin(), texts.end(),
                           [&contact](const QString &text) { return contact.Match(text, true); });
    }

    QHash<QString, QStringList> m_textsOf;
};

} // namespace

void MergeDuplicates(LxPhoneBook &phoneBook)
{
    // A copy, as merging takes contacts out of the group.
    const LxContactList contacts = phoneBook.AllContacts().ContactList();
    QHash<QString, LxContactPtr> keptOf;
    keptOf.reserve(contacts.Count());
    for (const LxContactPtr &contact : contacts) {
        const QString number = contact->InternationalMobile();
        if (number.isEmpty())
            continue;
        LxContactPtr &kept = keptOf[number];
        if (!kept) {
            kept = contact;
            continue;
        }
        for (LxGroup *group : contact->Groups())
            kept->AddToGroup(*group);
        if (HasRealName(*contact))
            kept->SetName(contact->Name());
        contact->Destroy();
    }
}

int DeleteMany(LxPhoneBook &phoneBook, const QString &lines)
{
    ExactMatcher matcher;
    TextFile::ForEachLine(lines, [&matcher](QStringView line) { matcher.Add(line.trimmed().toString()); });
    LxContactList matching;
    for (const LxContactPtr &contact : phoneBook.AllContacts()) {
        if (matcher.Matches(*contact))
            matching.Add(contact);
    }
    for (const LxContactPtr &contact : matching)
        contact->Destroy();
    return matching.Count();
}

} // namespace Maintenance
