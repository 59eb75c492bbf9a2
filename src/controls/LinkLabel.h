#pragma once

#include <QFocusEvent>
#include <QLabel>
#include <QRegularExpression>
#include <QTextDocumentFragment>

/// A label that holds a link and is one Tab stop. A plain QLabel is two: the label, on which Enter does nothing, and
/// then the link.
class LinkLabel final : public QLabel
{
    Q_OBJECT

public:
    explicit LinkLabel(QWidget *parent)
        : QLabel(parent)
    {
        setTextFormat(Qt::RichText);
        setTextInteractionFlags(Qt::LinksAccessibleByKeyboard | Qt::LinksAccessibleByMouse);
        setFocusPolicy(Qt::StrongFocus);
    }

    /// The words of the link.
    [[nodiscard]] QString PlainText() const { return QTextDocumentFragment::fromHtml(text()).toPlainText(); }

    /// Does what a click on the link does.
    void Press()
    {
        static const QRegularExpression s_address(QStringLiteral("href=\"([^\"]*)\""));
        emit linkActivated(s_address.match(text()).captured(1));
    }

protected:
    void focusInEvent(QFocusEvent *event) override
    {
        QLabel::focusInEvent(event);
        if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
            QLabel::focusNextPrevChild(true);
    }

    /// Leaves the label, whose link has the focus already: QLabel's own would go to the link.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    bool focusNextPrevChild(bool next) override { return QWidget::focusNextPrevChild(next); }
};
