#include "Icons.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

using namespace Qt::StringLiterals;

// A static library's resources are linked in only where they are asked for; the macro wants no namespace around it.
static void InitResources()
{
    Q_INIT_RESOURCE(icons);
}

namespace Icons {

QIcon Get(QLatin1StringView name)
{
    InitResources();
    return QIcon(":/icons/"_L1 + name + ".svg"_L1);
}

QIcon GetForList(QLatin1StringView name)
{
    const QIcon picture = Get(name);
    QIcon icon;
    for (const int size : {16, 32, 48}) {
        QPixmap pixmap = picture.pixmap(size);
        icon.addPixmap(pixmap, QIcon::Normal);
        QPainter painter(&pixmap);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(pixmap.rect(), QGuiApplication::palette().highlightedText());
        painter.end();
        icon.addPixmap(pixmap, QIcon::Selected);
    }
    return icon;
}

QVariant Lazy::Get() const
{
    if (!m_icon.isValid())
        m_icon = GetForList(m_name);
    return m_icon;
}

} // namespace Icons
