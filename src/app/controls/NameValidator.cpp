#include "NameValidator.h"

#include "TextFile.h"

QValidator::State NameValidator::validate(QString &input, int &position) const
{
    QString name = TextFile::AsOneLine(input).replace(u'"', u'\'');
    // The length limit of a line edit may have cut a pair in two.
    if (!name.isEmpty() && name.back().isHighSurrogate())
        name.chop(1);
    input = name;
    position = qMin(position, static_cast<int>(name.size()));
    return Acceptable;
}
