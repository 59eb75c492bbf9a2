#include "NameValidator.h"

#include "TextFile.h"

namespace {

/// The length limit of a line edit may cut a surrogate pair in two, wherever the text was inserted.
QString WithoutHalfPairs(const QString &text)
{
    QString whole;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isPair)
            whole += text[i++];
        if (isPair || !text[i].isSurrogate())
            whole += text[i];
    }
    return whole;
}

QString AsName(const QString &text)
{
    return WithoutHalfPairs(TextFile::AsOneLine(text)).replace(u'"', u'\'');
}

} // namespace

QValidator::State NameValidator::validate(QString &input, int &position) const
{
    position = static_cast<int>(AsName(input.left(position)).size());
    input = AsName(input);
    return Acceptable;
}
