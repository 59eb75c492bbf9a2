#pragma once

#include "ShortText.h"

#include <QByteArray>
#include <QStringView>

#include <cstring>

/// Collects the bytes of a text file piece by piece: in Windows-1252 as long as that can hold the text, and from the
/// first character that it cannot on all in UTF-8 with a byte order mark.
class TextWriter final
{
public:
    /// Makes room for about so many characters.
    explicit TextWriter(qsizetype size = 0)
        : m_bytes(size, Qt::Uninitialized)
    {
    }

    void Append(QStringView text);

    /// Appends the text as TextFile::AsOneLine makes it.
    void AppendAsOneLine(QStringView text);

    template <size_t Room>
    void AppendAsOneLine(const ShortText<Room> &text)
    {
        if (text.IsPlain())
            AppendBytes(text.Utf8());
        else
            AppendAsOneLine(text.ToString());
    }

    /// Appends a literal of ASCII characters.
    template <size_t Size>
    void AppendAscii(const char (&literal)[Size])
    {
        std::memcpy(RoomFor(Size - 1), literal, Size - 1);
        m_size += Size - 1;
    }
    void AppendNumber(int number);

    /// The bytes, which TextFile::Decode reads back as the same text.
    [[nodiscard]] QByteArray Take();

private:
    /// Where the next `size` bytes go.
    [[nodiscard]] char *RoomFor(qsizetype size)
    {
        if (m_bytes.size() - m_size < size)
            m_bytes.resize(2 * m_size + size);
        return m_bytes.data() + m_size;
    }
    void AppendBytes(QByteArrayView bytes)
    {
        std::memcpy(RoomFor(bytes.size()), bytes.data(), static_cast<size_t>(bytes.size()));
        m_size += bytes.size();
    }
    void SwitchToUtf8();

    /// Longer than what is written, so that writing a phone book does not stop at each piece to resize.
    QByteArray m_bytes;
    qsizetype m_size = 0;
    bool m_isUtf8 = false;
};
