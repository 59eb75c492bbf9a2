#include "Utf8.h"

#include "TextFile.h"

#include <QStringDecoder>

#include <algorithm>
#include <type_traits>

namespace Utf8 {

QByteArrayView Of(QAnyStringView text, QByteArray &storage)
{
    return text.visit([&storage](auto view) -> QByteArrayView {
        if constexpr (std::is_same_v<decltype(view), QUtf8StringView>)
            return view;
        storage = view.toString().toUtf8();
        return storage;
    });
}

QString Decoded(QByteArrayView utf8)
{
    if (!utf8.startsWith(TextFile::kUtf8Mark))
        return QString::fromUtf8(utf8);
    using Flag = QStringDecoder::Flag;
    return QStringDecoder(QStringDecoder::Utf8, Flag::Stateless | Flag::ConvertInitialBom).decode(utf8);
}

bool IsPrintableAscii(QByteArrayView text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

} // namespace Utf8
