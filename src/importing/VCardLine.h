#pragma once

#include <QByteArray>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

/// The lines that vCards are made of.
namespace VCardLine {

struct Property
{
    /// In capitals.
    QByteArray name;
    /// What stands before the name and a dot, in capitals: properties with the same belong together.
    QByteArray group;
    /// Names in capitals, with their values; the name is empty for a value alone, as 2.1 has them.
    std::vector<std::pair<QByteArray, QString>> parameters;
    /// Decoded, but with its escapes.
    QString value;

    /// The values of TYPE and those alone, in capitals.
    [[nodiscard]] QStringList Types() const;
};

/// Splits a file into properties; those of no interest, such as pictures, are passed over uncopied.
class Reader final
{
public:
    /// `bytes` must outlive the reader.
    explicit Reader(QByteArrayView bytes)
        : m_rest(bytes)
    {
    }

    /// The next property of interest, or none at the end.
    [[nodiscard]] std::optional<Property> Next();

    /// Whether what follows is of version 2.1, where a fold stands for a space and not for nothing.
    void SetFoldsAtSpaces(bool foldsAtSpaces) { m_foldsAtSpaces = foldsAtSpaces; }

private:
    [[nodiscard]] QByteArrayView NextLine();
    void AppendContinuation(QByteArray *line, QByteArrayView first, bool isQuotedPrintable);

    QByteArrayView m_rest;
    bool m_foldsAtSpaces = false;
};

/// The parts of a value between separators that are not escaped, their escapes undone.
[[nodiscard]] QStringList Split(const QString &value, QChar separator);

/// The value with its escapes undone.
[[nodiscard]] QString Unescaped(const QString &value);

} // namespace VCardLine
