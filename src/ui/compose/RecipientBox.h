#pragma once

#include "RecipientModel.h"

#include <QComboBox>

#include <optional>

class LxPhoneBook;

/// The "To" box: a typed number or name, or one picked from the phone book. It completes what the user types to the
/// first name that begins so, with the completed tail selected; after Backspace and Delete it does not.
class RecipientBox final : public QComboBox
{
    Q_OBJECT

public:
    explicit RecipientBox(QWidget *parent = nullptr);

    /// Lists the phone book as it is now. Text, caret and selection stay, and a pick that still exists; one that was
    /// renamed shows its new name. The text goes when it named a pick that is gone, as all are after a restore,
    /// and now names another item. Waits while the list is open.
    void Refill(const LxPhoneBook &phoneBook);

    /// The identity of the item that was picked, while the box still shows its text, or of the first item with the
    /// box's text, case ignored; none for any other text.
    [[nodiscard]] std::optional<int> SelectedID() const;

    /// Picks the item of this identity, whose name the box then shows.
    void Pick(int id);

    /// Picks the contact of this international number, where several have it the one of this name; where none has it,
    /// the number stands there as if it had been typed.
    void PickNumber(const LxPhoneBook &phoneBook, const QString &number, const QString &name);

    void hidePopup() override;

signals:
    /// SelectedID or the text may be another one.
    void RecipientChanged();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void SetItems(RecipientModel::Items items);
    void TakeItems(RecipientModel::Items items);
    void SetWaitingItems();
    void Complete(const QString &text);

    RecipientModel *m_recipients;
    /// What came while the list was open.
    std::optional<RecipientModel::Items> m_waitingItems;
    bool m_mayComplete = true;
    bool m_isRefilling = false;
};
