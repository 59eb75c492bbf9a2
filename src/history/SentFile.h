#pragma once

#include <QCoreApplication>
#include <QString>

#include <functional>
#include <memory>

namespace SQLite {
class Database;
}

/// The file of sent messages, one SQLite database that this program alone uses while it is open. It is opened when it
/// is first needed.
class SentFile final
{
    Q_DECLARE_TR_FUNCTIONS(SentFile)

public:
    explicit SentFile(QString path);
    ~SentFile();
    Q_DISABLE_COPY_MOVE(SentFile)

    using Work = std::function<void(SQLite::Database &)>;

    /// Runs `work` on the open database. What it does in a transaction is done wholly or not at all. A damaged file is
    /// kept beside as ".bad", which is noted for TakeNotice, and the work is done again on a new one. Raises number 75,
    /// source "Corvane.History", with the reason when the file can't be opened, read or written.
    void Run(const Work &work);

    /// Removes the file with all that is in it. Raises number 75, source "Corvane.History", when that failed.
    void Remove();

    /// Changes whenever the file is another one than before.
    [[nodiscard]] int Generation() const { return m_generation; }

    [[nodiscard]] QString TakeNotice() { return std::exchange(m_notice, {}); }

private:
    void Open();
    void SetAside();

    QString m_path;
    std::unique_ptr<SQLite::Database> m_database;
    int m_generation = 0;
    QString m_notice;
};
