#include "VCardLine.h"

#include "TextFile.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace VCardLine {
namespace {

constexpr std::array<QByteArrayView, 16> kNamesOfInterest{"BEGIN",
                                                          "END",
                                                          "VERSION",
                                                          "FN",
                                                          "N",
                                                          "TEL",
                                                          "EMAIL",
                                                          "ORG",
                                                          "AGENT",
                                                          "CATEGORIES",
                                                          "UID",
                                                          "KIND",
                                                          "MEMBER",
                                                          "X-ABLABEL",
                                                          "X-ADDRESSBOOKSERVER-KIND",
                                                          "X-ADDRESSBOOKSERVER-MEMBER"};

/// What of the line stands before its value, and the value.
struct Line
{
    QByteArrayView name;
    QByteArrayView group;
    QByteArrayView parameters;
    qsizetype valueStart;
};

std::optional<Line> Parse(QByteArrayView line)
{
    bool isQuoted = false;
    qsizetype nameEnd = -1;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '"' && nameEnd >= 0) {
            isQuoted = !isQuoted;
        } else if (!isQuoted && c == ';' && nameEnd < 0) {
            nameEnd = i;
        } else if (!isQuoted && c == ':') {
            const QByteArrayView whole = line.first(nameEnd < 0 ? i : nameEnd).trimmed();
            const qsizetype dot = whole.lastIndexOf('.');
            return Line{whole.sliced(dot + 1), whole.first(std::max(dot, qsizetype(0))),
                        nameEnd < 0 ? QByteArrayView() : line.sliced(nameEnd + 1, i - nameEnd - 1), i + 1};
        }
    }
    return std::nullopt;
}

bool IsOfInterest(const QByteArray &name)
{
    return std::find(kNamesOfInterest.begin(), kNamesOfInterest.end(), name) != kNamesOfInterest.end();
}

/// In no character set that files are written in do these bytes need more than their own, except a parameter's text. A
/// set that is not theirs is passed over.
QString DecodeText(const QByteArray &bytes, const QString &charset = {})
{
    if (!charset.isEmpty()) {
        QStringDecoder decoder(charset.toLatin1().constData(), QStringDecoder::Flag::Stateless);
        QString text = decoder.isValid() ? decoder.decode(bytes) : QString();
        if (decoder.isValid() && !decoder.hasError())
            return text;
    }
    return bytes.isValidUtf8() ? QString::fromUtf8(bytes) : TextFile::DecodeCodePage(bytes);
}

std::vector<std::pair<QByteArray, QString>> ParseParameters(QByteArrayView text)
{
    std::vector<std::pair<QByteArray, QString>> parameters;
    QByteArray name;
    QByteArray value;
    bool isQuoted = false;
    const auto end = [&] {
        if (!name.isEmpty() || !value.isEmpty())
            parameters.emplace_back(name.trimmed().toUpper(), DecodeText(value).trimmed());
        name.clear();
        value.clear();
    };
    for (const char c : text) {
        if (c == '"')
            isQuoted = !isQuoted;
        else if (c == ';' && !isQuoted)
            end();
        else if (c == '=' && !isQuoted && name.isEmpty())
            name = std::exchange(value, {});
        else
            value += c;
    }
    end();
    return parameters;
}

QByteArray DecodeQuotedPrintable(const QByteArray &bytes)
{
    const auto isHex = [&bytes](qsizetype at) {
        return at < bytes.size() && std::isxdigit(static_cast<unsigned char>(bytes[at])) != 0;
    };
    QByteArray decoded;
    decoded.reserve(bytes.size());
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '=' && isHex(i + 1) && isHex(i + 2)) {
            decoded += QByteArray::fromHex(bytes.sliced(i + 1, 2));
            i += 2;
        } else {
            decoded += bytes[i];
        }
    }
    return decoded;
}

QString DecodeValue(const QByteArray &bytes, const Property &property)
{
    QByteArray value = bytes;
    QString charset;
    for (const auto &[name, text] : property.parameters) {
        const QString encoding = name == "ENCODING" || name.isEmpty() ? text.toUpper() : QString();
        if (encoding == "QUOTED-PRINTABLE"_L1)
            value = DecodeQuotedPrintable(value);
        else if (encoding == "BASE64"_L1 || encoding == "B"_L1)
            value = QByteArray::fromBase64(value);
        else if (name == "CHARSET")
            charset = text;
    }
    return DecodeText(value, charset);
}

} // namespace

QStringList Property::Types() const
{
    QStringList types;
    for (const auto &[kind, text] : parameters) {
        if (kind.isEmpty() || kind == "TYPE")
            types += text.toUpper().split(u',');
    }
    return types;
}

QByteArrayView Reader::NextLine()
{
    const auto isEnd = [](char c) { return c == '\n' || c == '\r'; };
    const auto end = std::find_if(m_rest.begin(), m_rest.end(), isEnd);
    const QByteArrayView line = m_rest.first(end - m_rest.begin());
    m_rest = m_rest.sliced(line.size());
    m_rest = m_rest.sliced(m_rest.startsWith("\r\n") ? 2 : std::min(m_rest.size(), qsizetype(1)));
    return line;
}

/// Reads on while the line goes on. Without a `line` it is passed over.
void Reader::AppendContinuation(QByteArray *line, QByteArrayView first, bool isQuotedPrintable)
{
    QByteArrayView last = first;
    while (!m_rest.isEmpty()) {
        if (isQuotedPrintable && last.endsWith('=')) {
            if (line)
                line->chop(1);
            last = NextLine();
        } else if (m_rest.front() == ' ' || m_rest.front() == '\t') {
            last = NextLine();
            if (!m_foldsAtSpaces || isQuotedPrintable)
                last = last.sliced(1);
        } else {
            return;
        }
        if (line)
            line->append(last);
    }
}

std::optional<Property> Reader::Next()
{
    while (!m_rest.isEmpty()) {
        const QByteArrayView first = NextLine();
        // Parameters may be folded too.
        QByteArray line;
        std::optional<Line> parsed = Parse(first);
        if (!parsed) {
            if (first.trimmed().isEmpty())
                continue;
            line = first.toByteArray();
            AppendContinuation(&line, first, false);
            parsed = Parse(line);
            if (!parsed)
                continue;
        }
        Property property;
        property.name = parsed->name.toByteArray().toUpper();
        const bool isQuotedPrintable =
            !parsed->parameters.isEmpty() && parsed->parameters.toByteArray().toUpper().contains("QUOTED-PRINTABLE");
        const bool isOfInterest = IsOfInterest(property.name);
        if (line.isEmpty()) {
            if (isOfInterest)
                line = first.toByteArray();
            AppendContinuation(isOfInterest ? &line : nullptr, first, isQuotedPrintable);
        }
        if (!isOfInterest)
            continue;
        property.group = parsed->group.toByteArray().toUpper();
        property.parameters = ParseParameters(parsed->parameters);
        property.value = DecodeValue(line.sliced(parsed->valueStart), property).trimmed();
        return property;
    }
    return std::nullopt;
}

QStringList Split(const QString &value, QChar separator)
{
    if (!value.contains(u'\\'))
        return separator.isNull() ? QStringList(value) : value.split(separator);
    QStringList parts(1);
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value[i];
        const QChar next = c == u'\\' && i + 1 < value.size() ? value[i + 1] : QChar();
        if (next == u'n' || next == u'N') {
            parts.back() += u'\n';
            ++i;
        } else if (next == u',' || next == u';' || next == u':' || next == u'\\') {
            parts.back() += next;
            ++i;
        } else if (c == separator && !separator.isNull()) {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts;
}

QString Unescaped(const QString &value)
{
    return Split(value, QChar()).front();
}

} // namespace VCardLine
