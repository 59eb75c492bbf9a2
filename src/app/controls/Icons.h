#pragma once

#include <QIcon>
#include <QLatin1StringView>
#include <QVariant>

namespace Icons {

/// One of the program's own pictures, by the name of its file without extension.
[[nodiscard]] QIcon Get(QLatin1StringView name);

/// A picture that is loaded when it is first shown: the plugin that draws SVG is no work for the start.
class Lazy final
{
public:
    explicit Lazy(QLatin1StringView name)
        : m_name(name)
    {
    }

    [[nodiscard]] QVariant Get() const
    {
        if (!m_icon.isValid())
            m_icon = Icons::Get(m_name);
        return m_icon;
    }

private:
    QLatin1StringView m_name;
    mutable QVariant m_icon;
};

} // namespace Icons
