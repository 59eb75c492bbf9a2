#pragma once

#include <QMap>
#include <QObject>
#include <QString>

class Prompts;

/// The settings store: (section, key) to text, kept in one JSON file
/// ({"Account": {"Username": "ann"}}) that only its owner may read, as it holds a password.
///
/// What is set is read back at once and saved by the end of the event-loop turn, so a burst of writes costs one
/// save. A save that fails is told once, and then not again until one has succeeded. A file that cannot be parsed is
/// kept beside as ".bad"; one that cannot be read is left alone.
class Settings final : public QObject
{
    Q_OBJECT

public:
    Settings(QString path, Prompts &prompts);
    ~Settings() override;

    /// `$XDG_CONFIG_HOME/Corvane/Brevio.json`.
    [[nodiscard]] static QString DefaultFileName();

    [[nodiscard]] QString Get(const QString &section, const QString &key, const QString &defaultValue = {}) const;
    [[nodiscard]] bool IsSectionEmpty(const QString &section) const;
    void Save(const QString &section, const QString &key, const QString &value);

    /// Deleting a section that is not there does nothing.
    void DeleteSection(const QString &section);

    /// Writes what is not saved yet. False when that failed, which was told.
    bool Flush();

private:
    void Load();
    void KeepBadFile();
    void ScheduleFlush();

    QString m_path;
    Prompts &m_prompts;
    QMap<QString, QMap<QString, QString>> m_sections;
    /// A file that could not be read may hold more than this object knows, so it is never written over.
    QString m_whyUnwritable;
    bool m_changed = false;
    bool m_flushScheduled = false;
    bool m_failureTold = false;
};
