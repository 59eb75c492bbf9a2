#include "Icons.h"

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

} // namespace Icons
