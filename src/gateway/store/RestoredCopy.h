#pragma once

#include <QtGlobal>

class Database;

/// For a database that was restored from a copy, before its service starts. What the copy has as queued or being handed
/// over may have gone out since it was made, and becomes Unsure. The next messages get ids 1,000,000 further on, and
/// reports a new secret, which those who open the database from then on have: late reports of messages that the copy
/// does not know are about no others. Gives how many became unsure. Raises number 5, source "Corvane.Gateway", when the
/// database cannot be written; nothing has changed then.
qint64 DeclareRestored(Database &database);
