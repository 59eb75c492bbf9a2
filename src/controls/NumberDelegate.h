#pragma once

#include <QStyledItemDelegate>

/// Shows phone numbers from left to right, in windows from right to left too, where "+353" would else read "353+"; what
/// begins otherwise than a number stays as it is.
class NumberDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] QString displayText(const QVariant &value, const QLocale &) const override
    {
        constexpr QChar kLeftToRightMark(u'\u200E');
        const QString text = value.toString();
        const bool isNumber = text.startsWith(u'+') || text.startsWith(u'(') || (!text.isEmpty() && text[0].isDigit());
        return isNumber ? kLeftToRightMark + text : text;
    }
};
