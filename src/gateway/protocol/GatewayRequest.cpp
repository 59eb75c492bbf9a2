#include "GatewayRequest.h"

#include "Error.h"
#include "GatewayReply.h"
#include "TextFile.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView kLineEnd = "\r\n";

/// Entities and their bytes in the code page.
constexpr std::pair<QByteArrayView, char> kEntities[] = {
    {"&amp;", '&'}, {"&quot;", '"'}, {"&apos;", '\''}, {"&lt;", '<'}, {"&gt;", '>'}, {"&#163;", '\xA3'},
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

/// Turns a form body into the value of its field, in place: a second copy of a large one would be felt.
void DecodeFormField(QByteArray &formBody)
{
    constexpr QByteArrayView kField = "XML=";
    if (!formBody.startsWith(kField))
        Refuse(u"The request has no XML field"_s);
    char *const bytes = formBody.data();
    const qsizetype size = formBody.size();
    char *end = bytes;
    for (qsizetype i = kField.size(); i < size; ++i) {
        const char c = bytes[i];
        if (c == '%') {
            const int high = i + 2 < size ? HexDigit(bytes[i + 1]) : -1;
            const int low = i + 2 < size ? HexDigit(bytes[i + 2]) : -1;
            if (high < 0 || low < 0)
                Refuse(u"Byte %1 of the request: incomplete percent escape"_s.arg(i + 1));
            *end++ = static_cast<char>(high * 16 + low);
            i += 2;
        } else if (c == '+') {
            *end++ = ' ';
        } else if (IsPlainFormCharacter(c)) {
            *end++ = c;
        } else {
            Refuse(u"Byte %1 of the request: character that must be escaped"_s.arg(i + 1));
        }
    }
    formBody.truncate(end - bytes);
}

/// Walks through a document from its first line to its last and refuses it at the first that does not fit.
class DocumentReader final
{
public:
    explicit DocumentReader(QByteArrayView document)
        : m_document(document)
        , m_rest(document)
    {
    }

    [[nodiscard]] bool IsAt(QByteArrayView text) const { return m_rest.startsWith(text); }

    bool SkipLine(QByteArrayView line)
    {
        if (!IsAt(line) || !m_rest.sliced(line.size()).startsWith(kLineEnd))
            return false;
        m_rest = m_rest.sliced(line.size() + kLineEnd.size());
        return true;
    }

    void ExpectLine(QByteArrayView line)
    {
        if (!SkipLine(line))
            RefuseHere(line);
    }

    void ExpectEnd() const
    {
        if (!m_rest.isEmpty())
            RefuseHere("its end");
    }

    /// The text of an element that has a line to itself. It is not escaped, so the line's end closes it.
    QString TakeLine(QByteArrayView open, QByteArrayView close)
    {
        const qsizetype end = m_rest.indexOf(kLineEnd);
        const QByteArrayView line = m_rest.first(end < 0 ? 0 : end);
        if (!line.startsWith(open) || !line.sliced(open.size()).endsWith(close))
            RefuseHere(open);
        m_rest = m_rest.sliced(end + kLineEnd.size());
        return TextOf(line.sliced(open.size()).chopped(close.size()));
    }

    /// The text of an escaped element, which may hold line ends: the next "<" closes it.
    QString TakeEscaped(QByteArrayView open, QByteArrayView close)
    {
        if (!IsAt(open))
            RefuseHere(open);
        m_rest = m_rest.sliced(open.size());
        const qsizetype end = m_rest.indexOf('<');
        QString text = Unescape(m_rest.first(end < 0 ? 0 : end));
        m_rest = m_rest.sliced(end < 0 ? 0 : end);
        ExpectLine(close);
        return text;
    }

    qint64 TakeNumber(QByteArrayView open, QByteArrayView close)
    {
        const QByteArrayView lineStart = m_rest;
        bool isNumber = false;
        const qint64 number = TakeLine(open, close).toLongLong(&isNumber);
        if (!isNumber || number < 0) {
            m_rest = lineStart;
            RefuseHere("a number");
        }
        return number;
    }

private:
    /// The bytes, uncopied, as text.
    [[nodiscard]] static QString TextOf(QByteArrayView bytes)
    {
        return TextFile::DecodeCodePage(QByteArray::fromRawData(bytes.data(), bytes.size()));
    }

    [[nodiscard]] QString Unescape(QByteArrayView escaped) const
    {
        QByteArray text;
        while (!escaped.isEmpty()) {
            const qsizetype start = escaped.indexOf('&');
            text.append(escaped.first(start < 0 ? escaped.size() : start));
            escaped = escaped.sliced(start < 0 ? escaped.size() : start);
            if (escaped.isEmpty())
                break;
            const auto *entity = std::begin(kEntities);
            while (entity != std::end(kEntities) && !escaped.startsWith(entity->first))
                ++entity;
            if (entity == std::end(kEntities))
                RefuseHere("an entity after every ampersand");
            text += entity->second;
            escaped = escaped.sliced(entity->first.size());
        }
        return TextOf(text);
    }

    /// The tag is named without its brackets: clients look for tags in the reply wherever they stand.
    [[noreturn]] void RefuseHere(QByteArrayView expected) const
    {
        const QString opened = QString::fromLatin1(expected).mid(expected.indexOf(u'<') + 1);
        const QString name = opened.left(opened.indexOf(u'>'));
        const qsizetype line = m_document.chopped(m_rest.size()).count('\n') + 1;
        Refuse(u"Line %1 of the document: expected %2"_s.arg(line).arg(name));
    }

    QByteArrayView m_document;
    QByteArrayView m_rest;
};

GatewayMessage ReadMessage(DocumentReader &reader)
{
    GatewayMessage message;
    reader.ExpectLine("           <OP>1</OP>");
    message.text = reader.TakeEscaped("           <TEXT>", "</TEXT>");
    message.number = reader.TakeLine("           <RCV>", "</RCV>");
    message.name = reader.TakeEscaped("           <NAME>", "</NAME>");
    reader.ExpectLine("       </MSG>");
    return message;
}

GatewayRequest ReadDocument(QByteArrayView document)
{
    DocumentReader reader(document);
    GatewayRequest request;
    reader.ExpectLine("<?xml version=\"1.0\"?>");
    reader.ExpectLine("<SESSION>");
    // The blank after this element and after each opening MSG belongs to the layout.
    request.user = reader.TakeLine("   <CLIENT>", "</CLIENT> ");
    request.password = reader.TakeLine("   <PW>", "</PW>");
    if (!reader.SkipLine("</SESSION>")) {
        if (reader.IsAt("   <REPLY>"))
            request.replyAddress = reader.TakeLine("   <REPLY>", "</REPLY>");
        request.clientVersion = reader.TakeNumber("   <VERSION>", "</VERSION>");
        reader.ExpectLine("   <MSGLST>");
        while (reader.SkipLine("       <MSG> "))
            request.messages.append(ReadMessage(reader));
        reader.ExpectLine("   </MSGLST>");
        reader.ExpectLine("</SESSION>");
    }
    reader.ExpectEnd();
    return request;
}

} // namespace

GatewayRequest ReadGatewayRequest(QByteArray formBody)
{
    DecodeFormField(formBody);
    return ReadDocument(formBody);
}
