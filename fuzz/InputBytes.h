#pragma once

#include <QByteArray>

/// The fuzzer's input, uncopied.
inline QByteArray InputBytes(const unsigned char *data, size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
}
