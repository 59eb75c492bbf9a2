#pragma once

#include <QStyledItemDelegate>

/// Shows phone numbers from left to right, in windows from right to left too, where "+353" would else read "353+".
class NumberDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QString displayText(const QVariant &value, const QLocale &) const override
    {
        constexpr QChar kLeftToRightMark(u'\u200E');
        return kLeftToRightMark + value.toString();
    }
};
