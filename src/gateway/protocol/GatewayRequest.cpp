#include "GatewayRequest.h"

#include "Error.h"
#include "GatewayReply.h"
#include "TextFile.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kLineEnd = "\r\n"_L1;

constexpr std::pair<QLatin1StringView, char16_t> kEntities[] = {
    {"&amp;"_L1, u'&'}, {"&quot;"_L1, u'"'}, {"&apos;"_L1, u'\''},
    {"&lt;"_L1, u'<'},  {"&gt;"_L1, u'>'},   {"&#163;"_L1, u'£'},
};

[[noreturn]] void Refuse(const QString &reason)
{
    throw Error(GatewayError::kUnreadable, u"Corvane.Gateway"_s, reason);
}

int HexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

bool IsPlainFormCharacter(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' || c == '.' ||
           c == '_' || c == '*';
}

QByteArray DecodeFormField(const QByteArray &formBody)
{
    constexpr QByteArrayView kField = "XML=";
    if (!formBody.startsWith(kField))
        Refuse(u"The request has no XML field"_s);
    QByteArray value;
    value.reserve(formBody.size());
    for (qsizetype i = kField.size(); i < formBody.size(); ++i) {
        const char c = formBody[i];
        if (c == '%') {
            const int high = i + 2 < formBody.size() ? HexDigit(formBody[i + 1]) : -1;
            const int low = i + 2 < formBody.size() ? HexDigit(formBody[i + 2]) : -1;
            if (high < 0 || low < 0)
                Refuse(u"Byte %1 of the request: incomplete percent escape"_s.arg(i + 1));
            value += static_cast<char>(high * 16 + low);
            i += 2;
        } else if (c == '+') {
            value += ' ';
        } else if (IsPlainFormCharacter(c)) {
            value += c;
        } else {
            Refuse(u"Byte %1 of the request: character that must be escaped"_s.arg(i + 1));
        }
    }
    return value;
}

/// Walks through a document from its first line to its last and refuses it at the first that does not fit.
class DocumentReader final
{
public:
    explicit DocumentReader(QStringView document)
        : m_document(document)
        , m_rest(document)
    {
    }

    [[nodiscard]] bool IsAt(QLatin1StringView text) const { return m_rest.startsWith(text); }

    bool SkipLine(QLatin1StringView line)
    {
        if (!IsAt(line) || !m_rest.sliced(line.size()).startsWith(kLineEnd))
            return false;
        m_rest = m_rest.sliced(line.size() + kLineEnd.size());
        return true;
    }

    void ExpectLine(QLatin1StringView line)
    {
        if (!SkipLine(line))
            RefuseHere(line);
    }

    void ExpectEnd() const
    {
        if (!m_rest.isEmpty())
            RefuseHere("its end"_L1);
    }

    /// The text of an element that has a line to itself. It is not escaped, so the line's end closes it.
    QString TakeLine(QLatin1StringView open, QLatin1StringView close)
    {
        const qsizetype end = m_rest.indexOf(kLineEnd);
        const QStringView line = m_rest.first(end < 0 ? 0 : end);
        if (!line.startsWith(open) || !line.sliced(open.size()).endsWith(close))
            RefuseHere(open);
        m_rest = m_rest.sliced(end + kLineEnd.size());
        return line.sliced(open.size()).chopped(close.size()).toString();
    }

    /// The text of an escaped element, which may hold line ends: the next "<" closes it.
    QString TakeEscaped(QLatin1StringView open, QLatin1StringView close)
    {
        if (!IsAt(open))
            RefuseHere(open);
        m_rest = m_rest.sliced(open.size());
        const qsizetype end = m_rest.indexOf(u'<');
        QString text = Unescape(m_rest.first(end < 0 ? 0 : end));
        m_rest = m_rest.sliced(end < 0 ? 0 : end);
        ExpectLine(close);
        return text;
    }

    qint64 TakeNumber(QLatin1StringView open, QLatin1StringView close)
    {
        const QStringView lineStart = m_rest;
        bool isNumber = false;
        const qint64 number = TakeLine(open, close).toLongLong(&isNumber);
        if (!isNumber || number < 0) {
            m_rest = lineStart;
            RefuseHere("a number"_L1);
        }
        return number;
    }

private:
    [[nodiscard]] QString Unescape(QStringView escaped) const
    {
        QString text;
        while (!escaped.isEmpty()) {
            const qsizetype start = escaped.indexOf(u'&');
            text += escaped.first(start < 0 ? escaped.size() : start);
            escaped = escaped.sliced(start < 0 ? escaped.size() : start);
            if (escaped.isEmpty())
                break;
            const auto *entity = std::begin(kEntities);
            while (entity != std::end(kEntities) && !escaped.startsWith(entity->first))
                ++entity;
            if (entity == std::end(kEntities))
                RefuseHere("an entity after every ampersand"_L1);
            text += entity->second;
            escaped = escaped.sliced(entity->first.size());
        }
        return text;
    }

    /// The tag is named without its brackets: clients look for tags in the reply wherever they stand.
    [[noreturn]] void RefuseHere(QLatin1StringView expected) const
    {
        const QString opened = QString(expected).mid(expected.indexOf(u'<') + 1);
        const QString name = opened.left(opened.indexOf(u'>'));
        const qsizetype line = m_document.chopped(m_rest.size()).count(u'\n') + 1;
        Refuse(u"Line %1 of the document: expected %2"_s.arg(line).arg(name));
    }

    QStringView m_document;
    QStringView m_rest;
};

GatewayMessage ReadMessage(DocumentReader &reader)
{
    GatewayMessage message;
    reader.ExpectLine("           <OP>1</OP>"_L1);
    message.text = reader.TakeEscaped("           <TEXT>"_L1, "</TEXT>"_L1);
    message.number = reader.TakeLine("           <RCV>"_L1, "</RCV>"_L1);
    message.name = reader.TakeEscaped("           <NAME>"_L1, "</NAME>"_L1);
    reader.ExpectLine("       </MSG>"_L1);
    return message;
}

GatewayRequest ReadDocument(QStringView document)
{
    DocumentReader reader(document);
    GatewayRequest request;
    reader.ExpectLine("<?xml version=\"1.0\"?>"_L1);
    reader.ExpectLine("<SESSION>"_L1);
    // The blank after this element and after each opening MSG belongs to the layout.
    request.user = reader.TakeLine("   <CLIENT>"_L1, "</CLIENT> "_L1);
    request.password = reader.TakeLine("   <PW>"_L1, "</PW>"_L1);
    if (!reader.SkipLine("</SESSION>"_L1)) {
        if (reader.IsAt("   <REPLY>"_L1))
            request.replyAddress = reader.TakeLine("   <REPLY>"_L1, "</REPLY>"_L1);
        request.clientVersion = reader.TakeNumber("   <VERSION>"_L1, "</VERSION>"_L1);
        reader.ExpectLine("   <MSGLST>"_L1);
        while (reader.SkipLine("       <MSG> "_L1))
            request.messages.append(ReadMessage(reader));
        reader.ExpectLine("   </MSGLST>"_L1);
        reader.ExpectLine("</SESSION>"_L1);
    }
    reader.ExpectEnd();
    return request;
}

} // namespace

GatewayRequest ReadGatewayRequest(const QByteArray &formBody)
{
    return ReadDocument(TextFile::DecodeCodePage(DecodeFormField(formBody)));
}
