#pragma once

#include "WindowServices.h"

#include <QString>

class QObject;
struct FileDialogRequest;

/// Asks for a file, proposing the one that was chosen last, which a section of the settings keeps under "File".
class RememberedFile final
{
public:
    RememberedFile(const WindowServices &services, QString section);

    /// The chosen path, which is remembered, or empty text when the user cancelled. As long as no file was chosen, the
    /// dialog proposes that of the request.
    [[nodiscard]] QString AskToOpen(const FileDialogRequest &request, QObject *owner) const;
    [[nodiscard]] QString AskToSave(const FileDialogRequest &request, QObject *owner) const;

private:
    using Ask = QString (Prompts::*)(const FileDialogRequest &request, QObject *owner);
    [[nodiscard]] QString AskBy(Ask ask, FileDialogRequest request, QObject *owner) const;

    WindowServices m_services;
    QString m_section;
};
