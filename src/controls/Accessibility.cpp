#include "Accessibility.h"

#include "KeyHeader.h"
#include "KeySplitter.h"
#include "LinkLabel.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QStatusBar>
#include <QTimer>

namespace Accessibility {
namespace {

constexpr char kAnnounces[] = "announces";
constexpr char kIsDue[] = "announcementIsDue";

class LinkInterface final : public QAccessibleWidget
{
public:
    explicit LinkInterface(LinkLabel *label)
        : QAccessibleWidget(label, QAccessible::Link, label->PlainText())
    {
    }

    [[nodiscard]] QStringList actionNames() const override
    {
        return QStringList(pressAction()) + QAccessibleWidget::actionNames();
    }

    void doAction(const QString &action) override
    {
        if (action == pressAction())
            static_cast<LinkLabel *>(widget())->Press();
        else
            QAccessibleWidget::doAction(action);
    }
};

QAccessibleInterface *MakeInterface(const QString &, QObject *object)
{
    if (auto *link = qobject_cast<LinkLabel *>(object))
        return new LinkInterface(link);
    if (auto *divider = qobject_cast<KeySplitterHandle *>(object))
        return new QAccessibleWidget(divider, QAccessible::Separator);
    if (auto *header = qobject_cast<KeyHeader *>(object))
        return new QAccessibleWidget(header, QAccessible::ColumnHeader);
    if (object && object->property(kAnnounces).toBool())
        return new QAccessibleWidget(static_cast<QWidget *>(object), QAccessible::Notification);
    return nullptr;
}

/// Readers speak a notification when it shows, though not when its name changes.
void Speak(QWidget &widget)
{
    widget.setProperty(kIsDue, false);
    if (widget.accessibleName().isEmpty() || !widget.isVisible())
        return;
    QAccessibleEvent shown(&widget, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}

/// Who was told before this program took part.
QAccessible::UpdateHandler g_next = nullptr;

/// A list of Qt 6.4 tells that its current row has the focus also where another control has it, such as the find box
/// at each key.
void PassOn(QAccessibleEvent *event)
{
    const auto *list = qobject_cast<const QAbstractItemView *>(event->object());
    if (event->type() == QAccessible::Focus && list && !list->hasFocus() && list->window()->windowType() != Qt::Popup)
        return;
    if (g_next) {
        g_next(event);
        return;
    }
    // Without a handler Qt tells the desktop.
    QAccessible::installUpdateHandler(nullptr);
    QAccessible::updateAccessibility(event);
    QAccessible::installUpdateHandler(&PassOn);
}

} // namespace

void Install()
{
    QAccessible::installFactory(&MakeInterface);
    g_next = QAccessible::installUpdateHandler(&PassOn);
}

void Announce(QWidget &widget, const QString &text)
{
    if (!widget.property(kAnnounces).toBool()) {
        widget.setProperty(kAnnounces, true);
        // One that was made before has the role of the widget itself.
        if (QAccessibleInterface *old = QAccessible::queryAccessibleInterface(&widget))
            QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(old));
    }
    if (widget.accessibleName() == text)
        return;
    widget.setAccessibleName(text);
    if (widget.property(kIsDue).toBool())
        return;
    widget.setProperty(kIsDue, true);
    QTimer::singleShot(0, &widget, [&widget] { Speak(widget); });
}

void AnnounceStatus(QStatusBar &bar)
{
    Announce(bar, bar.currentMessage());
    QObject::connect(&bar, &QStatusBar::messageChanged, &bar, [&bar](const QString &text) { Announce(bar, text); });
}

} // namespace Accessibility
