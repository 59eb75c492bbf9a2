#pragma once

#include <QString>

class Settings;

/// What is to be told of files that were kept, until some window has told it: this run's or, by the settings, the next
/// one's.
class Notices final
{
public:
    /// Begins with what nobody was there to be told of at the last end. The settings must outlive it.
    explicit Notices(Settings &settings);

    /// An empty notice does not count.
    void Add(const QString &notice);

    /// All of them as one text, or empty text. It is the caller's to tell then.
    [[nodiscard]] QString Take();

private:
    void Set(const QString &text);

    Settings &m_settings;
    QString m_text;
};
