#include "RestoredCopy.h"

#include "Database.h"
#include "Query.h"

using namespace Qt::StringLiterals;

qint64 DeclareRestored(Database &database)
{
    qint64 unsure = 0;
    database.Write([&](SQLite::Database &connection) {
        unsure = Query(connection,
                       "UPDATE messages SET state = 7, taken = max(taken, 1), changed = ?1, note = ?2"
                       " WHERE state IN (0, 1)",
                       database.Now(), u"Restored from a copy"_s)
                     .Run();
        Query(connection, "UPDATE sqlite_sequence SET seq = seq + 1000000 WHERE name = 'messages'").Run();
        Query(connection, "UPDATE settings SET value = ?1 WHERE name = 'secret'", Database::MakeSecret()).Run();
    });
    return unsure;
}
