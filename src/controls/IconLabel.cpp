#include "IconLabel.h"

#include <QEvent>

void IconLabel::ShowIcon(const QIcon &icon, int lines)
{
    m_icon = icon;
    m_lines = lines;
    Draw();
}

void IconLabel::Draw()
{
    const int side = m_lines * fontMetrics().lineSpacing();
    setPixmap(m_icon.pixmap(QSize(side, side), devicePixelRatioF()));
}

void IconLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    const bool changesLook = event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange ||
                             event->type() == QEvent::StyleChange;
    if (changesLook && !m_icon.isNull())
        Draw();
}
