#include "CommandOptions.h"

#include "Database.h"
#include "ServiceCommand.h"

#include <QCommandLineParser>
#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace CommandOptions {
namespace {

QString DatabasePath(const QCommandLineParser &options)
{
    QString path = options.value(u"database"_s);
    if (path.isEmpty())
        ServiceCommands::Refuse(QCoreApplication::translate("CommandOptions", "Which database? --database FILE."));
    return path;
}

} // namespace

QCommandLineOption Database()
{
    return {u"database"_s, QCoreApplication::translate("CommandOptions", "The database of the service."), u"FILE"_s};
}

::Database OpenDatabase(const QCommandLineParser &options)
{
    return ::Database(DatabasePath(options), ::Database::Opening::Existing);
}

::Database OpenOrCreateDatabase(const QCommandLineParser &options)
{
    return ::Database(DatabasePath(options), ::Database::Opening::Create);
}

} // namespace CommandOptions
