#include "CommandOptions.h"

#include "ServiceCommand.h"

#include <QCommandLineParser>
#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace CommandOptions {

QCommandLineOption Database()
{
    return {u"database"_s, QCoreApplication::translate("CommandOptions", "The database of the service."), u"FILE"_s};
}

::Database OpenDatabase(const QCommandLineParser &options, ::Database::Opening opening)
{
    const QString path = options.value(u"database"_s);
    if (path.isEmpty())
        ServiceCommands::Refuse(QCoreApplication::translate("CommandOptions", "Which database? --database FILE."));
    return ::Database(path, opening);
}

} // namespace CommandOptions
