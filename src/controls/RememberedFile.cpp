#include "RememberedFile.h"

#include "Prompts.h"
#include "Settings.h"

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString kFile = u"File"_s;

} // namespace

RememberedFile::RememberedFile(const WindowServices &services, QString section)
    : m_services(services)
    , m_section(std::move(section))
{
}

QString RememberedFile::AskToOpen(const FileDialogRequest &request, QObject *owner) const
{
    return AskBy(&Prompts::AskOpenFile, request, owner);
}

QString RememberedFile::AskToSave(const FileDialogRequest &request, QObject *owner) const
{
    return AskBy(&Prompts::AskSaveFile, request, owner);
}

QString RememberedFile::AskBy(Ask ask, FileDialogRequest request, QObject *owner) const
{
    request.initialPath = m_services.settings.Get(m_section, kFile, request.initialPath);
    QString path = std::invoke(ask, m_services.prompts, request, owner);
    if (!path.isEmpty())
        m_services.settings.Save(m_section, kFile, path);
    return path;
}
