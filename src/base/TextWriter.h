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
    explicit TextWriter(qsizetype size = 0) { MakeRoom(size); }
    TextWriter(const TextWriter &) = delete;
    TextWriter &operator=(const TextWriter &) = delete;

    void Append(QStringView text);

    /// Appends the text as TextFile::AsOneLine makes it.
    void AppendAsOneLine(QStringView text);
    /// The same for UTF-8, which must be valid.
    void AppendAsOneLine(QUtf8StringView text);
    template <size_t Room>
    void AppendAsOneLine(const ShortText<Room> &text)
    {
        if (text.IsPlain())
            m_end = text.CopyTo(RoomFor(text.RoomToCopy()));
        else
            AppendAsOneLine(QUtf8StringView(text.Utf8()));
    }

    /// Appends a literal of ASCII characters.
    template <size_t Size>
    void AppendAscii(const char (&literal)[Size])
    {
        std::memcpy(RoomFor(Size - 1), literal, Size - 1);
        m_end += Size - 1;
    }
    void AppendNumber(int number);

    /// The bytes, which TextFile::Decode reads back as the same text.
    [[nodiscard]] QByteArray Take();

private:
    /// Where the next `size` bytes go.
    [[nodiscard]] char *RoomFor(qsizetype size)
    {
        if (m_roomEnd - m_end < size)
            MakeRoom(2 * Size() + size);
        return m_end;
    }
    [[nodiscard]] qsizetype Size() const { return m_end - m_bytes.constData(); }
    void MakeRoom(qsizetype size);
    void AppendBytes(QByteArrayView bytes)
    {
        char *const room = RoomFor(bytes.size());
        m_end = std::copy(bytes.begin(), bytes.end(), room);
    }
    void SwitchToUtf8();

    /// Longer than what is written, so that writing a phone book does not stop at each piece to resize.
    QByteArray m_bytes;
    char *m_end = m_bytes.data();
    char *m_roomEnd = m_end;
    bool m_isUtf8 = false;
};
