#pragma once

#include <QIcon>
#include <QLatin1StringView>
#include <QVariant>

namespace Icons {

/// One of the program's own pictures, by the name of its file without extension.
[[nodiscard]] QIcon Get(QLatin1StringView name);

/// The picture for the rows of a list: on a selected row it has the colour of the row's text.
[[nodiscard]] QIcon GetForList(QLatin1StringView name);

/// GetForList when it is first shown: loading the plugin that draws SVG is no work for the start.
class Lazy final
{
public:
    explicit Lazy(QLatin1StringView name)
        : m_name(name)
    {
    }

    [[nodiscard]] QVariant Get() const;

private:
    QLatin1StringView m_name;
    mutable QVariant m_icon;
};

} // namespace Icons
