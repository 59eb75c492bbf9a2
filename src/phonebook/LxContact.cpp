#include "LxContact.h"

#include "Error.h"
#include "LxCountryList.h"
#include "LxGroup.h"
#include "NameMatch.h"
#include "PhoneBookHistory.h"
#include "PhoneNumbers.h"
#include "Utf8.h"
#include "Utils.h"

#include <QCoreApplication>

#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Whether the number begins with the digits, or with `exact` is them.
bool MatchesLocal(const NumberText &number, QStringView digits, bool exact)
{
    if (!number.IsPlain())
        return exact ? number.ToString() == digits : number.ToString().startsWith(digits);
    const QByteArrayView local = number.Utf8();
    return (exact ? local.size() == digits.size() : local.size() >= digits.size()) &&
           std::equal(digits.begin(), digits.end(), local.begin(),
                      [](QChar digit, char kept) { return digit == QLatin1Char(kept); });
}

[[noreturn]] void RaiseContactError(const QString &description)
{
    constexpr int kContactErrorNumber = -2147221503;
    throw Error(kContactErrorNumber, u"Corvane.Contact"_s, description);
}

} // namespace

/// Contacts side by side, as 100,000 objects of their own take longer to make and to go through. They go together, once
/// none of them is held any more; the last block stays for contacts to come.
class LxContact::Block final : public std::enable_shared_from_this<Block>
{
public:
    static constexpr size_t kRoom = 1024;

    explicit Block(const LxCountryList &countries)
        : m_countries(countries)
        , m_contacts(std::allocator<LxContact>().allocate(kRoom))
    {
    }
    ~Block()
    {
        std::destroy_n(m_contacts, m_count);
        std::allocator<LxContact>().deallocate(m_contacts, kRoom);
    }
    Block(const Block &) = delete;
    Block &operator=(const Block &) = delete;

    [[nodiscard]] const LxCountryList &Countries() const { return m_countries; }
    [[nodiscard]] bool IsFull() const { return m_count == kRoom; }
    [[nodiscard]] LxContact &Add() { return *new (m_contacts + m_count++) LxContact(*this); }

private:
    const LxCountryList &m_countries;
    LxContact *m_contacts;
    size_t m_count = 0;
};

LxContactPtr LxContact::Create(const LxCountryList &countries)
{
    static std::shared_ptr<Block> s_block;
    if (!s_block || s_block->IsFull() || &s_block->Countries() != &countries)
        s_block = std::make_shared<Block>(countries);
    return {s_block, &s_block->Add()};
}

LxContactPtr LxContact::Self()
{
    return {m_block.shared_from_this(), this};
}

LxContact::LxContact(Block &block)
    : m_block(block)
{
    static int s_lastID = 0;
    m_id = ++s_lastID;
}

LxContact::Details &LxContact::ToChange()
{
    // In no group it is of no phone book.
    if (const LxGroup *group = m_groups.GetFirstGroup(); group && group->m_history)
        group->m_history->DetailsChange(*this);
    return m_details;
}

void LxContact::SetName(QAnyStringView name)
{
    // UTF-16 never has more units than the other forms.
    if (name.size() <= NameMaxLength) {
        ToChange().name = name;
        return;
    }
    QByteArray storage;
    ToChange().name = Utils::Cut(Utf8::Decoded(Utf8::Of(name, storage)), NameMaxLength);
}

void LxContact::SetCountryCode(int code)
{
    if (!m_block.Countries().CountryExists(code))
        RaiseContactError(QCoreApplication::translate("LxContact", "Invalid country %1").arg(code));
    ToChange().countryCode = static_cast<qint16>(code);
}

void LxContact::SetUserMobile(QAnyStringView mobile)
{
    const std::optional<NumberText> local = PhoneNumbers::LocalDigits(mobile);
    if (!local)
        RaiseContactError(QCoreApplication::translate("LxContact", "User mobile was passed a non-local mobile"));
    Details &details = ToChange();
    details.userMobile = mobile;
    details.localMobile = *local;
}

void LxContact::SetMobile(const QString &mobile)
{
    QString cleaned = PhoneNumbers::CleanPhoneNumber(mobile);
    if (cleaned.startsWith(u'0')) {
        SetUserMobile(mobile);
        return;
    }
    if (!PhoneNumbers::IsInternationalNumber(cleaned))
        cleaned.prepend(u'+');
    const auto split = PhoneNumbers::SplitInternational(m_block.Countries(), cleaned);
    if (!split)
        RaiseContactError(QCoreApplication::translate("LxContact", "Unrecognised country code in mobile"));
    Details &details = ToChange();
    details.countryCode = split->code;
    details.userMobile = split->local;
    details.localMobile = PhoneNumbers::RemoveTrunkZero(PhoneNumbers::CleanPhoneNumber(split->local));
}

QString LxContact::InternationalMobile() const
{
    if (m_details.userMobile.IsEmpty() || m_details.countryCode == 0)
        return {};
    return PhoneNumbers::MakeInternational(m_details.countryCode, LocalMobile());
}

void LxContact::AddToGroup(LxGroup &group)
{
    group.Add(Self());
}

void LxContact::RemoveFromGroups(const LxGroup &groupToKeep)
{
    const LxContactPtr self = Self();
    // A copy, as each group takes itself off the list.
    for (LxGroup *group : std::vector<LxGroup *>(m_groups.begin(), m_groups.end())) {
        if (group != &groupToKeep)
            group->Remove(self);
    }
}

void LxContact::Destroy()
{
    const LxContactPtr self = Self();
    while (LxGroup *group = m_groups.GetFirstGroup())
        group->Remove(self);
}

LxContactPtr LxContact::Clone() const
{
    LxContactPtr clone = Create(m_block.Countries());
    clone->SetName(Name());
    clone->SetCountryCode(m_details.countryCode);
    clone->SetUserMobile(UserMobile());
    return clone;
}

bool LxContact::MatchesInternational(QStringView text, bool exact) const
{
    if (m_details.userMobile.IsEmpty() || m_details.countryCode == 0)
        return false;
    // Compared piece by piece, as joining the pieces would be most of the work of a search.
    const QString prefix = PhoneNumbers::MakeInternational(m_details.countryCode, {});
    if (text.size() < prefix.size())
        return !exact && QStringView(prefix).startsWith(text);
    if (!text.startsWith(prefix))
        return false;
    const QStringView rest = text.sliced(prefix.size());
    return MatchesLocal(m_details.localMobile, rest, exact);
}

bool LxContact::Match(const QString &text, bool exact) const
{
    QStringView t = QStringView(text).trimmed();
    if (t.isEmpty() || t == u"0")
        return !exact;
    const auto matchesLocal = [this, exact](QStringView digits) {
        return MatchesLocal(m_details.localMobile, digits, exact);
    };
    const QChar first = t.front();
    bool numberMatches = false;
    if (first == u'+') {
        numberMatches = MatchesInternational(t, exact);
    } else if (first == u'0') {
        // The trunk zero is dropped for the name below as well. That is meant.
        t = t.sliced(1);
        numberMatches = matchesLocal(t);
    } else if (first >= u'1' && first <= u'9') {
        // The international form begins with "+", so it never matches these.
        numberMatches = matchesLocal(t);
    }
    if (numberMatches)
        return true;
    return exact ? NameMatch::Equals(m_details.name, t) : NameMatch::Contains(m_details.name, t);
}
