#include "CommandOptions.h"

#include "ServiceCommand.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace CommandOptions {

QCommandLineOption Database()
{
    return {u"database"_s, QCoreApplication::translate("CommandOptions", "The database of the service."), u"FILE"_s};
}

QString NewDatabasePath(const QCommandLineParser &options)
{
    const QString path = options.value(u"database"_s);
    if (path.isEmpty())
        ServiceCommands::Refuse(QCoreApplication::translate("CommandOptions", "Which database? --database FILE."));
    return path;
}

QString DatabasePath(const QCommandLineParser &options)
{
    const QString path = NewDatabasePath(options);
    if (!QFileInfo::exists(path))
        ServiceCommands::Refuse(QCoreApplication::translate("CommandOptions", "There is no database %1.").arg(path));
    return path;
}

} // namespace CommandOptions
