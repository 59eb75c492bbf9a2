#include "ContactKeys.h"

#include "ContactColumns.h"
#include "LxContact.h"
#include "LxPhoneBook.h"
#include "SortKey.h"

#include <QtEndian>

#include <array>
#include <cstring>

ContactKeys::ContactKeys(const LxPhoneBook &phoneBook, int column)
    : m_phoneBook(phoneBook)
    , m_column(column)
{
}

QByteArray ContactKeys::Text(const LxContact &contact)
{
    if (m_column == ContactColumns::Name)
        return contact.KeptName().Utf8().toByteArray();
    const auto text = [&] { return ContactColumns::Text(contact, m_column, m_phoneBook.AllContacts()).toUtf8(); };
    const void *const shared = m_column == ContactColumns::GroupMembership ? contact.Groups().SharedStorage() : nullptr;
    if (!shared)
        return text();
    QByteArray &kept = m_groupTexts[shared];
    if (kept.isNull())
        kept = text();
    return kept;
}

QByteArray ContactKeys::Of(const LxContact &contact)
{
    const QByteArray text = Text(contact);
    QByteArray key;
    AppendSortKey(QUtf8StringView(text), key);
    // The text follows, for the order of texts that differ by case or marks alone.
    return key + '\0' + text;
}

ContactKeys::Head ContactKeys::HeadOf(const LxContact &contact)
{
    std::array<quint64, 3> numbers{};
    constexpr qsizetype kSize = sizeof(numbers);
    m_key.resize(0);
    if (m_column == ContactColumns::Name && contact.KeptName().IsPlain()) {
        // Letter by letter, the key of so many letters is as long.
        const QByteArrayView name = contact.KeptName().Utf8();
        AppendSortKey(QUtf8StringView(name.data(), qMin(name.size(), kSize)), m_key);
    } else {
        AppendSortKey(QUtf8StringView(Text(contact)), m_key);
    }
    // The end of a key counts as zeros.
    std::memcpy(numbers.data(), m_key.constData(), static_cast<size_t>(qMin(m_key.size(), kSize)));
    return {qFromBigEndian(numbers[0]), qFromBigEndian(numbers[1]), qFromBigEndian(numbers[2])};
}
