#pragma once

#include <QString>
#include <QStringView>

#include <string>

/// A number as text, of which a phone book holds many. Nearly all are short and ASCII, and need no storage of their
/// own.
class NumberText final
{
public:
    NumberText() = default;
    explicit NumberText(QStringView text);
    explicit NumberText(QLatin1String ascii)
        : m_utf8(ascii.data(), static_cast<size_t>(ascii.size()))
    {
    }

    [[nodiscard]] bool operator==(const NumberText &other) const = default;
    [[nodiscard]] bool operator==(QStringView text) const;
    [[nodiscard]] bool StartsWith(QStringView text) const;

    [[nodiscard]] bool IsEmpty() const { return m_utf8.empty(); }
    [[nodiscard]] QString ToString() const { return QString::fromUtf8(Utf8()); }
    [[nodiscard]] QByteArrayView Utf8() const { return m_utf8; }

private:
    [[nodiscard]] bool IsAscii() const;

    std::string m_utf8;
};
