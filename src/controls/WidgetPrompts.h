#pragma once

#include "Prompts.h"

/// Prompts as message boxes and file dialogs, modal for the whole program. All text is shown as plain text.
class WidgetPrompts final : public Prompts
{
public:
    PromptAnswer ShowMessageBox(const MessageBoxRequest &request, QObject *owner) override;
    QString AskOpenFile(const FileDialogRequest &request, QObject *owner) override;
    QString AskSaveFile(const FileDialogRequest &request, QObject *owner) override;
};
