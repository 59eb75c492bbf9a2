#include "ForeignContacts.h"

#include "Attempt.h"
#include "ContactFile.h"
#include "ImportAssistant.h"
#include "NumberJudge.h"
#include "Prompts.h"
#include "RememberedFile.h"
#include "Utils.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace ForeignContacts {
namespace {

QString AskFile(const WindowServices &services, QWidget *owner)
{
    const QStringList tables{u"*.csv"_s, u"*.tsv"_s, u"*.tab"_s, u"*.txt"_s};
    const FileDialogRequest request{
        .title = QCoreApplication::translate("ForeignContacts", "Select File to Import from"),
        .filters = {{QCoreApplication::translate("ForeignContacts", "All contact files"),
                     QStringList{u"*.vcf"_s, u"*.vcard"_s} + tables},
                    {QCoreApplication::translate("ForeignContacts", "vCard"), {u"*.vcf"_s, u"*.vcard"_s}},
                    {QCoreApplication::translate("ForeignContacts", "Tables"), tables},
                    {QCoreApplication::translate("ForeignContacts", "All files"), {u"*.*"_s}}},
        .initialPath = Utils::MyDocumentsFolder() + u'/'};
    return RememberedFile(services, u"Import from Other Programs"_s).AskToOpen(request, owner);
}

} // namespace

std::optional<ImportChoice> Ask(const Services &services, const LxPhoneBook &phoneBook, QWidget *owner)
{
    const QString path = AskFile(services.window, owner);
    if (path.isEmpty())
        return std::nullopt;
    ContactFile::Content content;
    const NumberJudge *judge = nullptr;
    const QString failure = Attempt([&] {
        content = ContactFile::Read(Utils::ReadTextFile(path));
        judge = &NumberJudge::Load(services.programFolder);
    });
    if (!failure.isEmpty()) {
        const QString text =
            QCoreApplication::translate("ForeignContacts", "The contacts could not be imported: %1").arg(failure);
        const QString caption = QCoreApplication::translate("ForeignContacts", "Import Failed");
        services.window.prompts.ShowMessageBox({.text = text, .caption = caption}, owner);
        return std::nullopt;
    }
    ImportAssistant dialog({services.countries, *judge, services.window}, phoneBook, Utils::FileNameOfPath(path),
                           std::move(content), owner);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.TakeChoice();
}

} // namespace ForeignContacts
