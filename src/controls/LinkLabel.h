#pragma once

#include "Contrast.h"

#include <QFocusEvent>
#include <QGuiApplication>
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
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::Show || event->type() == QEvent::PaletteChange)
            ColourLink();
        return QLabel::event(event);
    }

    void focusInEvent(QFocusEvent *event) override
    {
        QLabel::focusInEvent(event);
        if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason)
            QLabel::focusNextPrevChild(true);
    }

    /// Leaves the label, whose link has the focus already: QLabel's own would go to the link.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    bool focusNextPrevChild(bool next) override { return QWidget::focusNextPrevChild(next); }

private:
    /// Many a dark palette keeps the blue of light ones. The text has to say the colour, as QLabel knows no other than
    /// the program's.
    void ColourLink()
    {
        constexpr double kWanted = 4.5;
        const QList grounds{palette().color(QPalette::Window), palette().color(QPalette::Button),
                            Contrast::TabPage(palette())};
        const QColor colour = Contrast::StandingOut(QGuiApplication::palette().color(QPalette::Link), grounds, kWanted);
        static const QRegularExpression s_start(QStringLiteral("<a [^>]*href"));
        setText(text().replace(s_start, QStringLiteral("<a style=\"color:%1\" href").arg(colour.name())));
    }
};
