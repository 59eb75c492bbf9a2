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
    return !cleaned.trimmed().isEmpty() && RemovePlus(cleaned) != RemovePlus(contact.InternationalMobile()) &&
           RemoveTrunkZero(cleaned) != contact.LocalMobile();
}

/// Finds contacts that exactly match one of many texts without trying every text on each.
class ExactMatcher final
{
public:
    void Add(const QString &text)
    {
        // A leading zero counts neither for a number nor for a name.
        QStringList &same = m_textsOf[FoldedCase(text.startsWith(u'0') ? text.sliced(1) : text)];
        if (!same.contains(text))
            same += text;
        m_hasInternational = m_hasInternational || text.startsWith(u'+');
    }

    [[nodiscard]] bool Matches(const LxContact &contact) const
    {
        return MatchesTextsOf(FoldedCase(contact.Name()), contact) || MatchesTextsOf(contact.LocalMobile(), contact) ||
               (m_hasInternational && MatchesTextsOf(contact.InternationalMobile(), contact));
    }

private:
    /// The same for texts that differ in case only, and for a few others, between which LxContact::Match decides.
    [[nodiscard]] static QString FoldedCase(const QString &text) { return text.toCaseFolded(); }

    [[nodiscard]] bool MatchesTextsOf(const QString &key, const LxContact &contact) const
    {
        const auto texts = m_textsOf.constFind(key);
        return texts != m_textsOf.constEnd() &&
               std::any_of(texts->begin(), texts->end(),
                           [&contact](const QString &text) { return contact.Match(text, true); });
    }

    QHash<QString, QStringList> m_textsOf;
    bool m_hasInternational = false;
};

} // namespace

void MergeDuplicates(LxPhoneBook &phoneBook)
{
    // A copy, as going through the group itself would not bear that contacts leave it.
    const LxContactList contacts = phoneBook.AllContacts().ContactList();
    QHash<QString, LxContact *> keptOf;
    keptOf.reserve(contacts.Count());
    for (const LxContactPtr &contact : contacts) {
        const QString number = contact->InternationalMobile();
        if (number.isEmpty())
            continue;
        LxContact *&kept = keptOf[number];
        if (!kept) {
            kept = contact.get();
            continue;
        }
        for (LxGroup *group : contact->Groups())
            kept->AddToGroup(*group);
        if (HasRealName(*contact))
            kept->SetName(contact->Name());
        contact->Destroy();
    }
}

int DeleteByList(LxPhoneBook &phoneBook, const QString &lines)
{
    ExactMatcher matcher;
    TextFile::ForEachLine(lines, [&matcher](QStringView line) { matcher.Add(line.trimmed().toString()); });
    int count = 0;
    const LxContactList contacts = phoneBook.AllContacts().ContactList();
    for (const LxContactPtr &contact : contacts) {
        if (!matcher.Matches(*contact))
            continue;
        contact->Destroy();
        ++count;
    }
    return count;
}

} // namespace Maintenance
