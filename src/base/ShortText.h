#pragma once

#include "Utf8.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

/// A text of which a phone book holds many, kept in UTF-8. One of up to `Room` bytes, as nearly all are, lies within
/// the object, so that going through all contacts goes through memory from one end to the other. A UTF-8 text that it
/// is made from must be valid.
template <size_t Room>
class ShortText final
{
public:
    ShortText() = default;
    explicit ShortText(QAnyStringView text) { Take(text); }
    ShortText(const ShortText &other) { Take(other); }
    ShortText(ShortText &&other) noexcept
        : m_bytes(other.m_bytes)
        , m_size(std::exchange(other.m_size, quint8(0)))
        , m_isPlain(std::exchange(other.m_isPlain, true))
    {
    }
    /// The text may be a part of this one.
    ShortText &operator=(QAnyStringView text)
    {
        const QByteArray *const old = IsApart() ? Apart() : nullptr;
        Take(text);
        delete old;
        return *this;
    }
    ShortText &operator=(const ShortText &other) { return *this = ShortText(other); }
    ShortText &operator=(ShortText &&other) noexcept
    {
        std::swap(m_size, other.m_size);
        std::swap(m_isPlain, other.m_isPlain);
        const std::array<char, Room> bytes = m_bytes;
        m_bytes = other.m_bytes;
        other.m_bytes = bytes;
        return *this;
    }
    ~ShortText()
    {
        if (IsApart())
            delete Apart();
    }

    [[nodiscard]] bool operator==(const ShortText &other) const { return Utf8() == other.Utf8(); }

    [[nodiscard]] bool IsEmpty() const { return m_size == 0; }
    /// Whether all of it is printable ASCII.
    [[nodiscard]] bool IsPlain() const { return m_isPlain; }
    [[nodiscard]] QByteArrayView Utf8() const
    {
        return IsApart() ? QByteArrayView(*Apart()) : QByteArrayView(m_bytes.data(), m_size);
    }
    /// Copies the text to where that many bytes have room; quickly, as it copies all that it has room for. Returns its
    /// end.
    char *CopyTo(char *room) const
    {
        if (IsApart())
            return std::copy(Apart()->begin(), Apart()->end(), room);
        std::memcpy(room, m_bytes.data(), Room);
        return room + m_size;
    }
    [[nodiscard]] qsizetype RoomToCopy() const { return IsApart() ? Apart()->size() : static_cast<qsizetype>(Room); }
    [[nodiscard]] QString ToString() const { return ::Utf8::Decoded(Utf8()); }

private:
    static constexpr quint8 kApart = 0xFF;
    static_assert(Room < kApart && Room >= sizeof(void *));

    [[nodiscard]] bool IsApart() const { return m_size == kApart; }
    /// The text that has no room here, to which m_bytes then point.
    [[nodiscard]] QByteArray *Apart() const
    {
        QByteArray *apart = nullptr;
        std::memcpy(&apart, m_bytes.data(), sizeof(void *));
        return apart;
    }
    void SetApart(QByteArray *apart)
    {
        m_size = kApart;
        std::memcpy(m_bytes.data(), &apart, sizeof(void *));
    }
    /// Both forget what was held.
    void Take(QAnyStringView text)
    {
        QByteArray storage;
        const QByteArrayView utf8 = ::Utf8::Of(text, storage);
        m_isPlain = ::Utf8::IsPrintableAscii(utf8);
        if (utf8.size() > static_cast<qsizetype>(Room)) {
            SetApart(new QByteArray(utf8.toByteArray()));
            return;
        }
        m_size = static_cast<quint8>(utf8.size());
        std::copy(utf8.begin(), utf8.end(), m_bytes.begin());
    }
    void Take(const ShortText &other)
    {
        m_size = other.m_size;
        m_isPlain = other.m_isPlain;
        if (other.IsApart())
            SetApart(new QByteArray(*other.Apart()));
        else
            m_bytes = other.m_bytes;
    }

    std::array<char, Room> m_bytes{};
    quint8 m_size = 0;
    bool m_isPlain = true;
};
