#include "StatusLine.h"

#include "Accessibility.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

using namespace Qt::StringLiterals;

namespace {

/// What a status bar leaves blank beside its message.
constexpr int kMargins = 18;

QString RefusalOf(const QString &characters)
{
    return StatusLine::tr("Character %1 not allowed in text messages!").arg(characters);
}

/// In a tag, so that the tool tip breaks its lines.
QString Wrapping(const QString &text)
{
    return "<span>"_L1 + text.toHtmlEscaped() + "</span>"_L1;
}

} // namespace

StatusLine::StatusLine(QWidget *parent)
    : QStatusBar(parent)
    , m_cost(new QLabel(this))
{
    m_cost->setObjectName(u"lblCost"_s);
    addPermanentWidget(m_cost);
    connect(this, &QStatusBar::messageChanged, this, &StatusLine::FitCost);
    connect(this, &QStatusBar::messageChanged, this, &StatusLine::Announce);
    MakeRoomForWords();
    Announce();
}

void StatusLine::ShowStatus(const QString &text)
{
    m_refused.clear();
    showMessage(text);
    FitStatus();
}

void StatusLine::ShowRefusal(const QString &characters)
{
    m_refused = characters;
    FitRefusal();
}

void StatusLine::ShowCost(qsizetype people, qsizetype parts)
{
    const qsizetype messages = people * parts;
    m_cost->setText(tr("%1, %2").arg(people == 1 ? tr("1 person") : tr("%1 people").arg(people),
                                     messages == 1 ? tr("1 message") : tr("%1 messages").arg(messages)));
    FitCost();
}

void StatusLine::HideCost()
{
    m_cost->clear();
    FitCost();
}

void StatusLine::FitCost()
{
    const int needed = fontMetrics().horizontalAdvance(currentMessage()) + m_cost->sizeHint().width() + 2 * kMargins;
    m_cost->setVisible(!m_cost->text().isEmpty() && needed <= width());
}

void StatusLine::FitRefusal()
{
    const int room = width() - kMargins - fontMetrics().horizontalAdvance(RefusalOf({}));
    // No more are measured than can fit: there may be thousands.
    const QString shown = fontMetrics().elidedText(m_refused.left(qMax(1, room)), Qt::ElideRight, room);
    showMessage(RefusalOf(shown));
    setToolTip(shown == m_refused ? QString() : Wrapping(RefusalOf(m_refused)));
    Announce(); // what is shown may be the same, and the whole another
}

/// What does not fit ends in dots, and its tool tip has all of it.
void StatusLine::FitStatus()
{
    if (m_refused.isEmpty()) {
        const bool fits = fontMetrics().horizontalAdvance(currentMessage()) + kMargins <= width();
        setToolTip(fits ? QString() : Wrapping(currentMessage()));
    }
}

/// Of a refusal all is told, however much of it fits.
void StatusLine::Announce()
{
    Accessibility::Announce(*this, m_refused.isEmpty() ? currentMessage() : RefusalOf(m_refused));
}

void StatusLine::MakeRoomForWords()
{
    const auto fewest = u"MMM…"_s;
    setMinimumWidth(fontMetrics().horizontalAdvance(RefusalOf(fewest)) + kMargins);
}

void StatusLine::changeEvent(QEvent *event)
{
    QStatusBar::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        MakeRoomForWords();
}

void StatusLine::resizeEvent(QResizeEvent *event)
{
    QStatusBar::resizeEvent(event);
    if (!m_refused.isEmpty())
        FitRefusal();
    FitStatus();
    FitCost();
}

void StatusLine::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QStyleOption look;
    look.initFrom(this);
    style()->drawPrimitive(QStyle::PE_PanelStatusBar, &look, &painter, this);
    QRect room = rect().adjusted(kMargins / 3, 0, -kMargins / 3, 0);
    if (m_cost->isVisible())
        (isRightToLeft() ? room.setLeft(m_cost->geometry().right()) : room.setRight(m_cost->x()));
    style()->drawItemText(&painter, room, Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine, palette(), true,
                          fontMetrics().elidedText(currentMessage(), Qt::ElideRight, room.width()),
                          QPalette::WindowText);
}
