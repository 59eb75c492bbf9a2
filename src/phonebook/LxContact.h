#pragma once

#include "LxGroupList.h"
#include "NumberText.h"
#include "ShortText.h"

#include <QAnyStringView>
#include <QString>

#include <memory>

class LxContact;
class LxCountryList;

/// Contacts belong to the groups and lists that hold them; one that nothing holds any more is gone.
using LxContactPtr = std::shared_ptr<LxContact>;

/// One person: a name, a mobile number in the local form that the user typed, the country whose dialling code makes
/// it international, and the groups that hold the contact.
///
/// The texts that it takes are valid where they are UTF-8. The setters raise number -2147221503, source
/// "Corvane.Contact", and then change nothing.
class LxContact final
{
    class Block;

public:
    static constexpr int NameMaxLength = 50;
    /// A name, nearly all of which are this short.
    using NameText = ShortText<30>;

    /// A contact without name, number, country and groups. `countries` must outlive it.
    [[nodiscard]] static LxContactPtr Create(const LxCountryList &countries);
    LxContact(const LxContact &) = delete;
    LxContact &operator=(const LxContact &) = delete;

    /// The contact as those hold it that keep it.
    [[nodiscard]] LxContactPtr Self();

    /// Unique among all contacts of the process, never stored.
    [[nodiscard]] int ContactID() const { return m_id; }

    [[nodiscard]] QString Name() const { return m_details.name.ToString(); }
    [[nodiscard]] const NameText &KeptName() const { return m_details.name; }
    /// Keeps the first NameMaxLength characters.
    void SetName(QAnyStringView name);

    /// The dialling code; 0 when none is set.
    [[nodiscard]] qint16 CountryCode() const { return m_details.countryCode; }
    /// Raises "Invalid country " and the code when the country list does not know it.
    void SetCountryCode(int code);

    /// The number as typed, in local form.
    [[nodiscard]] QString UserMobile() const { return m_details.userMobile.ToString(); }
    [[nodiscard]] const NumberText &KeptUserMobile() const { return m_details.userMobile; }
    /// Keeps a number in local form as it stands. Raises "User mobile was passed a non-local mobile" for any other.
    void SetUserMobile(QAnyStringView mobile);

    /// Takes a number in any form. One that begins with "0" is local, in the contact's country; any other is
    /// international, with or without "+", and sets the country too. Raises "Unrecognised country code in mobile".
    void SetMobile(const QString &mobile);

    /// The digits within the country, without the trunk zero.
    [[nodiscard]] QString LocalMobile() const { return m_details.localMobile.ToString(); }

    /// "+", the country code and the local digits; empty without a number or a country.
    [[nodiscard]] QString InternationalMobile() const;

    /// In the order in which the contact joined them. Only LxGroup changes them.
    [[nodiscard]] const LxGroupList &Groups() const { return m_groups; }
    void AddToGroup(LxGroup &group);
    void RemoveFromGroups(const LxGroup &groupToKeep);

    /// Leaves every group, and so the phone book.
    void Destroy();

    /// A new contact of the same name, country and number, in no group. Raises what the setters raise.
    [[nodiscard]] LxContactPtr Clone() const;

    /// Whether the contact answers to what the user typed: a number, compared by its form with what it begins with,
    /// or a name, ignoring case. `exact` wants the whole; else a number must begin with the text and a name hold it
    /// anywhere. A blank text, or "0", matches exactly when `exact` is false.
    [[nodiscard]] bool Match(const QString &text, bool exact) const;

private:
    friend class LxGroup;
    friend class RecordedCommand;

    /// What the setters set.
    struct Details
    {
        [[nodiscard]] bool operator==(const Details &other) const = default;

        NameText name;
        NumberText userMobile;
        /// Kept beside the typed form, so that searching 100,000 contacts does not clean each number again.
        NumberText localMobile;
        qint16 countryCode = 0;
    };

    explicit LxContact(Block &block);

    /// The details, for a change that the history of the phone book is to know.
    [[nodiscard]] Details &ToChange();
    [[nodiscard]] bool MatchesInternational(QStringView text, bool exact) const;

    Block &m_block;
    LxGroupList m_groups;
    Details m_details;
    int m_id;
};
