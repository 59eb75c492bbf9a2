#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace SQLite {
class Database;
}

struct WriteJob;

/// The one file that accounts, credits and messages are kept in. May be used from several threads at once, and by
/// several processes: the command line's beside the service's.
class Database final
{
public:
    /// Milliseconds since the epoch, UTC.
    using Clock = std::function<qint64()>;
    using Work = std::function<void(SQLite::Database &)>;

    enum class Opening {
        /// The file must be there.
        Existing,
        /// It is created for its owner alone when it is not there; its folder must be.
        Create,
    };

    /// Opens the file. Raises number 5, source "Corvane.Gateway", and leaves the file as it is when that is no
    /// database, another program's or of a newer version, when it cannot be opened, or, for Existing, is missing or
    /// empty. Damage is found where it is met, and told so by what meets it; Check looks for it.
    explicit Database(const QString &path, Clock clock = SystemClock, Opening opening = Opening::Create);
    Database(const QString &path, Opening opening)
        : Database(path, SystemClock, opening)
    {
    }
    ~Database();
    Q_DISABLE_COPY_MOVE(Database)

    /// Keeps the file from other services for as long as this lives, and checks it when there is a write-ahead log, as
    /// a crash leaves one. Raises number 5, source "Corvane.Gateway", when another service has it, or it is damaged.
    void HoldForService();

    /// Reads the whole file. Raises number 5, source "Corvane.Gateway", when it is damaged.
    void Check();

    [[nodiscard]] qint64 Now() const { return m_clock(); }

    /// 32 random bytes, made with the file and kept in it, to key what must not be forged.
    [[nodiscard]] const QByteArray &Secret() const { return m_secret; }
    [[nodiscard]] static QByteArray MakeSecret();

    /// Runs `work`, in this or another thread that writes at the same time, in a transaction that is on the disk when
    /// this returns. When it raises, nothing of it has changed, nor comes back after a crash. Raises what `work` does
    /// and, when the file cannot be written or stays locked for 4 seconds, number 5, source "Corvane.Gateway", with a
    /// reason in plain words.
    void Write(const Work &work);

    /// Runs `work`, which only reads, on one state of the file; it does not wait for who writes. Raises as Write does,
    /// after 1 second.
    void Read(const Work &work);

private:
    struct Connections;

    [[nodiscard]] static qint64 SystemClock();
    void WriteAll(const std::vector<WriteJob *> &jobs);
    void Displace();

    const QString m_path;
    const Clock m_clock;
    const std::unique_ptr<Connections> m_connections;
    QByteArray m_secret;
};
