#include "Accessibility.h"

#include "LinkLabel.h"

#include <QAccessibleWidget>
#include <QStatusBar>

namespace Accessibility {
namespace {

constexpr char kAnnounces[] = "announces";

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
    if (object && object->property(kAnnounces).toBool())
        return new QAccessibleWidget(static_cast<QWidget *>(object), QAccessible::Notification);
    return nullptr;
}

} // namespace

void Install()
{
    QAccessible::installFactory(&MakeInterface);
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
    if (text.isEmpty() || !widget.isVisible())
        return;
    // Readers speak a notification when it shows, though not when its name changes.
    QAccessibleEvent shown(&widget, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}

void AnnounceStatus(QStatusBar &bar)
{
    Announce(bar, bar.currentMessage());
    QObject::connect(&bar, &QStatusBar::messageChanged, &bar, [&bar](const QString &text) { Announce(bar, text); });
}

} // namespace Accessibility
