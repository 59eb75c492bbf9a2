#include "ForeignText.h"

#include "Error.h"
#include "TextFile.h"

#include <QCoreApplication>
#include <QStringDecoder>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace ForeignText {
namespace {

/// Text in UTF-16 has zeros in one half of its byte pairs alone, and what is text in no other encoding has any.
std::optional<QStringDecoder::Encoding> Utf16Order(const QByteArray &bytes)
{
    constexpr qsizetype kSampleSize = 4096;
    const qsizetype size = std::min(bytes.size() & ~qsizetype(1), kSampleSize);
    std::array<int, 2> zeros{};
    for (qsizetype i = 0; i < size; ++i)
        zeros[static_cast<size_t>(i % 2)] += bytes[i] == '\0' ? 1 : 0;
    // Separators, digits and line ends have them in every script.
    const auto isText = [size](int with, int without) { return without == 0 && with >= size / 16 && with > 0; };
    if (isText(zeros[1], zeros[0]))
        return QStringDecoder::Utf16LE;
    if (isText(zeros[0], zeros[1]))
        return QStringDecoder::Utf16BE;
    return std::nullopt;
}

bool IsText(const QString &text)
{
    const auto isControl = [](QChar c) { return c < u' ' && !c.isSpace() && c != u'\u001A' && c != u'\u001B'; };
    return !text.contains(u'\0') && std::count_if(text.begin(), text.end(), isControl) <= text.size() / 100;
}

} // namespace

QString Decode(const QByteArray &bytes)
{
    QString text;
    if (const auto order = QStringConverter::encodingForData(bytes) ? std::nullopt : Utf16Order(bytes))
        text = QStringDecoder(*order, QStringDecoder::Flag::Stateless).decode(bytes);
    else
        text = TextFile::DecodeForeign(bytes);
    if (!IsText(text))
        Raise(QCoreApplication::translate("ContactFile", "The file holds no text, and so no contacts."));
    if (text.trimmed().isEmpty())
        Raise(QCoreApplication::translate("ContactFile", "The file is empty."));
    return text;
}

void Raise(const QString &description)
{
    throw Error(ErrorNumber::kInvalidArgument, u"Corvane.ContactFile"_s, description);
}

} // namespace ForeignText
