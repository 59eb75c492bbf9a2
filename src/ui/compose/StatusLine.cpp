#include "StatusLine.h"

#include "Accessibility.h"

#include <QEvent>

using namespace Qt::StringLiterals;

namespace {

/// What a status bar leaves blank beside its message.
constexpr int kMargins = 18;

QString RefusalOf(const QString &characters)
{
    return StatusLine::tr("Character %1 not allowed in text messages!").arg(characters);
}

} // namespace

StatusLine::StatusLine(QWidget *parent)
    : QStatusBar(parent)
{
    MakeRoomForWords();
    Accessibility::AnnounceStatus(*this);
}

void StatusLine::ShowStatus(const QString &text)
{
    m_refused.clear();
    setToolTip({});
    showMessage(text);
}

void StatusLine::ShowRefusal(const QString &characters)
{
    m_refused = characters;
    FitRefusal();
}

void StatusLine::FitRefusal()
{
    const int room = width() - kMargins - fontMetrics().horizontalAdvance(RefusalOf({}));
    // No more are measured than can fit: there may be thousands.
    const QString shown = fontMetrics().elidedText(m_refused.left(qMax(1, room)), Qt::ElideRight, room);
    showMessage(RefusalOf(shown));
    // In a tag, so that the tool tip breaks its lines.
    const QString whole = "<span>"_L1 + RefusalOf(m_refused).toHtmlEscaped() + "</span>"_L1;
    setToolTip(shown == m_refused ? QString() : whole);
    Accessibility::Announce(*this, RefusalOf(m_refused));
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
}
