#include "VCardFile.h"

#include "LxContact.h"
#include "LxGroup.h"
#include "TextFile.h"
#include "Utils.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace VCardFile {
namespace {

QString Escaped(QString text)
{
    text = TextFile::AsOneLine(std::move(text));
    return text.replace(u'\\', "\\\\"_L1).replace(u',', "\\,"_L1).replace(u';', "\\;"_L1);
}

/// A line may be folded between any two characters.
void AppendFolded(QByteArray line, QByteArray &file)
{
    constexpr qsizetype kMaxLength = 75;
    const auto isWithinCharacter = [&line](qsizetype at) {
        return (static_cast<unsigned char>(line[at]) & 0xC0U) == 0x80U;
    };
    qsizetype begin = 0;
    for (qsizetype length = kMaxLength; line.size() - begin > length; length = kMaxLength - 1) {
        qsizetype end = begin + length;
        while (isWithinCharacter(end))
            --end;
        file += QByteArrayView(line).sliced(begin, end - begin);
        file += "\r\n ";
        begin = end;
    }
    file += QByteArrayView(line).sliced(begin);
    file += "\r\n";
}

} // namespace

QByteArray Content(const LxGroup &group, const LxGroup &everyone)
{
    QByteArray file;
    for (const LxContactPtr &contact : group) {
        const QString number = contact->InternationalMobile();
        file += "BEGIN:VCARD\r\nVERSION:4.0\r\n";
        AppendFolded("FN:" + Escaped(Utils::IfEmpty(contact->Name().trimmed(), number)).toUtf8(), file);
        if (!number.isEmpty())
            AppendFolded("TEL;TYPE=cell:" + number.toUtf8(), file);
        QStringList groups;
        for (const LxGroup *other : contact->Groups()) {
            if (other != &everyone)
                groups += Escaped(other->Name());
        }
        if (!groups.isEmpty())
            AppendFolded("CATEGORIES:" + groups.join(u',').toUtf8(), file);
        file += "END:VCARD\r\n";
    }
    return file;
}

} // namespace VCardFile
