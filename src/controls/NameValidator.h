#pragma once

#include <QValidator>

/// Keeps a typed or pasted name fit for the phone-book file, which has one line a contact and cannot hold a double
/// quote: a line break becomes a space and `"` becomes `'`. Half a surrogate pair goes.
class NameValidator final : public QValidator
{
    Q_OBJECT

public:
    using QValidator::QValidator;

    State validate(QString &input, int &position) const override;
};
