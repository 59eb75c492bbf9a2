#include "ContactKeys.h"

#include "ContactColumns.h"
#include "LxContact.h"
#include "LxPhoneBook.h"
#include "SortKey.h"

#include <QtEndian>

#include <array>
#include <cstring>

namespace {

/// The end of a text counts as zeros.
ContactKeys::Head HeadOfFolded(const QByteArray &folded)
{
    std::array<quint64, 3> numbers{};
    std::memcpy(numbers.data(), folded.constData(), qMin(sizeof(numbers), static_cast<size_t>(folded.size())));
    return {qFromBigEndian(numbers[0]), qFromBigEndian(numbers[1]), qFromBigEndian(numbers[2])};
}

} // namespace

std::strong_ordering ContactKeys::Key::operator<=>(const Key &other) const
{
    // Those of the same groups share their storage.
    if (text.constData() == other.text.constData())
        return std::strong_ordering::equal;
    const int order = folded.compare(other.folded);
    return (order != 0 ? order : text.compare(other.text)) <=> 0;
}

ContactKeys::ContactKeys(const LxPhoneBook &phoneBook, int column)
    : m_phoneBook(phoneBook)
    , m_column(column)
{
}

QByteArray ContactKeys::Text(const LxContact &contact) const
{
    return m_column == ContactColumns::Name
               ? contact.KeptName().Utf8().toByteArray()
               : ContactColumns::Text(contact, m_column, m_phoneBook.AllContacts()).toUtf8();
}

ContactKeys::Key ContactKeys::Made(const LxContact &contact) const
{
    Key key{.folded = {}, .text = Text(contact)};
    AppendSortKey(QUtf8StringView(key.text), key.folded);
    return key;
}

ContactKeys::Key ContactKeys::Of(const LxContact &contact)
{
    const void *const shared = m_column == ContactColumns::GroupMembership ? contact.Groups().SharedStorage() : nullptr;
    if (!shared)
        return Made(contact);
    const auto kept = m_groupKeys.constFind(shared);
    return kept != m_groupKeys.constEnd() ? *kept : *m_groupKeys.insert(shared, Made(contact));
}

ContactKeys::Head ContactKeys::HeadOf(const LxContact &contact)
{
    if (m_column == ContactColumns::GroupMembership)
        return HeadOfFolded(Of(contact).folded);
    m_folded.resize(0);
    if (m_column == ContactColumns::Name && contact.KeptName().IsPlain()) {
        // A plain name has a byte for each letter, also when it is folded, so that its first letters give the head.
        const QByteArrayView name = contact.KeptName().Utf8();
        AppendSortKey(QUtf8StringView(name.data(), qMin(name.size(), qsizetype(sizeof(Head)))), m_folded);
    } else {
        AppendSortKey(QUtf8StringView(Text(contact)), m_folded);
    }
    return HeadOfFolded(m_folded);
}
