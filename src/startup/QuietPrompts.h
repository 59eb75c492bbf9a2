#pragma once

#include "Prompts.h"

/// The prompts of another, as long as there is a user to answer. While they are quiet nothing is shown, and the answer
/// is that of a box or dialog that was closed without a choice.
class QuietPrompts final : public Prompts
{
public:
    explicit QuietPrompts(Prompts &prompts)
        : m_prompts(prompts)
    {
    }

    void SetQuiet(bool isQuiet) { m_isQuiet = isQuiet; }

    PromptAnswer ShowMessageBox(const MessageBoxRequest &request, QObject *owner) override
    {
        if (!m_isQuiet)
            return m_prompts.ShowMessageBox(request, owner);
        return request.buttons == PromptButtons::Ok ? PromptAnswer::Ok : PromptAnswer::No;
    }

    QString AskOpenFile(const FileDialogRequest &request, QObject *owner) override
    {
        return m_isQuiet ? QString() : m_prompts.AskOpenFile(request, owner);
    }

    QString AskSaveFile(const FileDialogRequest &request, QObject *owner) override
    {
        return m_isQuiet ? QString() : m_prompts.AskSaveFile(request, owner);
    }

private:
    Prompts &m_prompts;
    bool m_isQuiet = false;
};
