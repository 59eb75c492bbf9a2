#pragma once

#include "Icons.h"
#include "LxContact.h"

#include <QAbstractListModel>

#include <optional>
#include <vector>

class LxPhoneBook;

/// Whom a message can go to: every contact, then every group but "Everyone". An item's identity is the
/// contact's, or the group's, negated; no item has 0.
class RecipientModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    struct Item
    {
        int id = 0;
        LxContact::NameText name;

        bool operator==(const Item &) const = default;
    };
    using Items = std::vector<Item>;

    explicit RecipientModel(QObject *parent);

    [[nodiscard]] static Items ItemsOf(const LxPhoneBook &phoneBook);

    [[nodiscard]] const Items &CurrentItems() const { return m_items; }
    void SetItems(Items items);

    /// The row of the first name that equals `name`, case ignored, or -1.
    [[nodiscard]] int FindByName(const QString &name) const;
    /// The row of the first name that begins with `text`, case ignored, or -1.
    [[nodiscard]] int FindByPrefix(const QString &text) const;
    /// The row of the item with this identity, or -1.
    [[nodiscard]] int FindByID(int id) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;

private:
    template <typename Predicate>
    [[nodiscard]] int FindIf(Predicate predicate) const;

    const QIcon m_contactIcon = Icons::Get(QLatin1StringView("contact"));
    const QIcon m_groupIcon = Icons::Get(QLatin1StringView("group"));
    Items m_items;
};
