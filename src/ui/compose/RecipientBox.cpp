#include "RecipientBox.h"

#include "Controls.h"
#include "LxGroup.h"
#include "LxPhoneBook.h"
#include "OneLineEdit.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QScopedValueRollback>
#include <QWheelEvent>

RecipientBox::RecipientBox(QWidget *parent)
    : QComboBox(parent)
    , m_recipients(new RecipientModel(this))
{
    setLineEdit(new OneLineEdit(this));
    lineEdit()->setPlaceholderText(tr("Number, contact or group"));
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr);
    // Measuring 100,000 names would cost more than all the rest of a refill.
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    auto *list = new QListView(this);
    list->setUniformItemSizes(true);
    setView(list);
    const int icon = Controls::IconSide(*this);
    setIconSize(QSize(icon, icon));
    setModel(m_recipients);
    connect(lineEdit(), &QLineEdit::textEdited, this, &RecipientBox::Complete);
    const auto tell = [this] {
        if (!m_isRefilling)
            emit RecipientChanged();
    };
    connect(this, &QComboBox::editTextChanged, this, tell);
    connect(this, &QComboBox::currentIndexChanged, this, tell);
}

void RecipientBox::Refill(const LxPhoneBook &phoneBook)
{
    RecipientModel::Items items = RecipientModel::ItemsOf(phoneBook);
    if (view()->isVisible())
        m_waitingItems = std::move(items);
    else
        SetItems(std::move(items));
}

void RecipientBox::SetItems(RecipientModel::Items items)
{
    if (items == m_recipients->CurrentItems())
        return;
    {
        const QScopedValueRollback refilling(m_isRefilling, true);
        TakeItems(std::move(items));
    }
    emit RecipientChanged();
}

void RecipientBox::TakeItems(RecipientModel::Items items)
{
    const int picked = currentIndex() >= 0 ? currentData().toInt() : 0;
    const QString text = currentText();
    const bool showsPick = picked != 0 && itemText(currentIndex()) == text;
    const int caret = lineEdit()->cursorPosition();
    const int selectionStart = lineEdit()->selectionStart();
    const int selectionLength = lineEdit()->selectionLength();
    m_recipients->SetItems(std::move(items));
    setCurrentIndex(m_recipients->FindByID(picked));
    // A pick that was renamed meanwhile is still the pick, and shows its new name. Where one is gone, its name must not
    // become somebody else's, to whom the message would go.
    const bool namesAnother = showsPick && currentIndex() < 0 && m_recipients->FindByName(text) >= 0;
    if (!showsPick || currentIndex() < 0)
        setEditText(namesAnother ? QString() : text);
    if (currentText() != text)
        return;
    lineEdit()->setCursorPosition(caret);
    if (selectionLength > 0)
        lineEdit()->setSelection(selectionStart, selectionLength);
}

std::optional<int> RecipientBox::SelectedID() const
{
    const RecipientModel::Items &items = m_recipients->CurrentItems();
    int row = currentIndex();
    if (row < 0 || items[static_cast<size_t>(row)].name.ToString() != currentText())
        row = m_recipients->FindByName(currentText());
    return row < 0 ? std::nullopt : std::optional(items[static_cast<size_t>(row)].id);
}

void RecipientBox::Pick(int id)
{
    setCurrentIndex(m_recipients->FindByID(id));
}

void RecipientBox::PickNumber(const LxPhoneBook &phoneBook, const QString &number, const QString &name)
{
    LxContactPtr found;
    for (const LxContactPtr &contact : phoneBook.AllContacts().ContactList()) {
        const bool isBetter = !found || (contact->Name() == name && found->Name() != name);
        if (isBetter && contact->InternationalMobile() == number)
            found = contact;
    }
    Refill(phoneBook);
    if (found)
        Pick(found->ContactID());
    else
        setEditText(number);
}

void RecipientBox::hidePopup()
{
    QComboBox::hidePopup();
    // Later, as the box reads the chosen row from the list only after it has closed it.
    QMetaObject::invokeMethod(this, &RecipientBox::SetWaitingItems, Qt::QueuedConnection);
}

void RecipientBox::SetWaitingItems()
{
    if (m_waitingItems && !view()->isVisible())
        SetItems(*std::exchange(m_waitingItems, std::nullopt));
}

void RecipientBox::Complete(const QString &text)
{
    const bool isAtEnd = lineEdit()->cursorPosition() == text.size();
    if (!m_mayComplete || text.isEmpty() || !isAtEnd)
        return;
    const int row = m_recipients->FindByPrefix(text);
    if (row < 0)
        return;
    const QString name = m_recipients->CurrentItems()[static_cast<size_t>(row)].name.ToString();
    lineEdit()->setText(text + name.sliced(text.size()));
    lineEdit()->setSelection(static_cast<int>(text.size()), static_cast<int>(name.size() - text.size()));
}

void RecipientBox::keyPressEvent(QKeyEvent *event)
{
    m_mayComplete = event->key() != Qt::Key_Backspace && event->key() != Qt::Key_Delete;
    QComboBox::keyPressEvent(event);
}

void RecipientBox::wheelEvent(QWheelEvent *event)
{
    // Scrolling past the box must not change whom a message goes to.
    event->ignore();
}
