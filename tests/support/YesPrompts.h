#pragma once

#include "Machine.h"
#include "Prompts.h"

/// Says Yes to whatever is asked, and names `file` where a file is asked for.
class YesPrompts final : public Prompts
{
public:
    PromptAnswer ShowMessageBox(const MessageBoxRequest &, QObject *) override { return PromptAnswer::Yes; }
    QString AskOpenFile(const FileDialogRequest &, QObject *) override { return file; }
    QString AskSaveFile(const FileDialogRequest &, QObject *) override { return file; }

    QString file;
};

/// A machine and a user who says Yes.
struct YesProfile : Machine
{
    YesPrompts prompts;
};
