#pragma once

#include <QString>
#include <exception>

/// What the model raises: a number, the source that raised it and a description for the user.
/// Windows catch it at the command and word the message box.
class Error final : public std::exception
{
public:
    Error(int number, QString source, QString description)
        : m_number(number)
        , m_source(std::move(source))
        , m_description(std::move(description))
        , m_what(m_description.toUtf8())
    {
    }

    [[nodiscard]] int Number() const noexcept { return m_number; }
    [[nodiscard]] const QString &Source() const noexcept { return m_source; }
    [[nodiscard]] const QString &Description() const noexcept { return m_description; }
    [[nodiscard]] const char *what() const noexcept override { return m_what.constData(); }

private:
    int m_number;
    QString m_source;
    QString m_description;
    QByteArray m_what;
};

/// Numbers that errors of files and arguments carry.
namespace ErrorNumber {
inline constexpr int kInvalidArgument = 5;
inline constexpr int kFileNotFound = 53;
inline constexpr int kFileInUse = 70;
inline constexpr int kFileAccess = 75;
} // namespace ErrorNumber
