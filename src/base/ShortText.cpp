#include "ShortText.h"

#include <algorithm>
#include <type_traits>

QByteArrayView Utf8Of(QAnyStringView text, QByteArray &storage)
{
    return text.visit([&storage](auto view) -> QByteArrayView {
        if constexpr (std::is_same_v<decltype(view), QUtf8StringView>)
            return view;
        storage = view.toString().toUtf8();
        return storage;
    });
}

bool IsPrintableAscii(QByteArrayView text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}
