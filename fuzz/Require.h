#pragma once

#include <QByteArray>

#include <cstdlib>

/// Ends the run when a property of the reader does not hold.
inline void Require(bool holds)
{
    if (!holds)
        std::abort();
}

/// The fuzzer's input, uncopied.
inline QByteArray InputBytes(const unsigned char *data, size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
}
