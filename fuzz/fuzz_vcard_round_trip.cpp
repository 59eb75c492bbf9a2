#include "Candidates.h"
#include "Clock.h"
#include "ContactFile.h"
#include "InputBytes.h"
#include "LxPhoneBook.h"
#include "Require.h"
#include "SampleCountries.h"
#include "TextFile.h"
#include "VCardFile.h"

#include <QStringList>

namespace {

/// As text stands in a file that is UTF-8 and has a line for each name.
QString Kept(const QString &text)
{
    return TextFile::AsOneLine(QString::fromUtf8(text.toUtf8())).trimmed();
}

QString Named(const LxContact &contact)
{
    return Kept(contact.Name()).isEmpty() ? contact.InternationalMobile() : Kept(contact.Name());
}

} // namespace

/// Names, numbers and groups of all contacts come back from the cards, where any of them is left to see.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size)
{
    using namespace Qt::StringLiterals;
    static const LxCountryList countries = SampleCountries();
    const SystemClock clock;
    LxPhoneBook book(countries, clock);
    const QStringList texts = QString::fromUtf8(InputBytes(data, size)).remove(u'"').remove(QChar(0)).split(u'\x01');
    qint64 number = 7400000000;
    for (qsizetype i = 0; i < texts.size() - 1; i += 2) {
        const LxContactPtr contact = book.CreateContact();
        contact->SetName(texts[i]);
        contact->SetCountryCode(44);
        contact->SetUserMobile(QString::number(number++));
        book.AllContacts().Add(contact);
        for (const QString &name : texts[i + 1].split(u'\x02')) {
            const QString group = Kept(LxGroup::CleanName(name));
            if (!group.isEmpty() && group != book.AllContacts().Name() && !ImportColumns::IsGroupOfAll(group))
                book.Groups().CreateGroup(group).Add(contact);
        }
    }
    const LxGroup &everyone = book.AllContacts();
    if (everyone.Count() == 0)
        return 0;
    const ContactFile::Content content = ContactFile::Read(VCardFile::Content(everyone, everyone));
    const std::vector<Candidate> candidates = Candidates::Of(content.table, content.columns);
    Require(static_cast<int>(candidates.size()) == everyone.Count());
    auto candidate = candidates.begin();
    for (const LxContactPtr &contact : everyone) {
        Require(candidate->name == Named(*contact) && candidate->number == contact->InternationalMobile());
        QStringList groups;
        for (const LxGroup *group : contact->Groups()) {
            if (group != &everyone)
                groups += group->Name();
        }
        Require(candidate->groups == groups);
        ++candidate;
    }
    return 0;
}
