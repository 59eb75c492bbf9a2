#pragma once

#include "Prompts.h"

#include <QList>
#include <QString>

/// Answers prompts from a queue. A prompt that was not expected, one with another text, and one that never came fail
/// the test that runs.
class FakePrompts final : public Prompts
{
public:
    ~FakePrompts() override;

    /// The next box must have this text; it is answered with `answer`.
    void ExpectBox(const QString &text, PromptIcon icon, PromptAnswer answer = PromptAnswer::Ok,
                   const QString &caption = {});

    /// The next box may have any text that begins so.
    void ExpectBoxBeginning(const QString &text, PromptIcon icon, PromptAnswer answer = PromptAnswer::Ok);

    /// The next file dialog must have this title; it is answered with `path`, empty for a cancel.
    void ExpectFileDialog(const QString &title, const QString &path);

    /// Fails the test for prompts that never came, and forgets them.
    void VerifyAllCame();

    [[nodiscard]] const FileDialogRequest &LastFileDialog() const { return m_lastFileDialog; }

    PromptAnswer ShowMessageBox(const MessageBoxRequest &request, QObject *owner) override;
    QString AskOpenFile(const FileDialogRequest &request, QObject *owner) override;
    QString AskSaveFile(const FileDialogRequest &request, QObject *owner) override;

private:
    struct Expected
    {
        enum class Kind { Box, BoxBeginning, FileDialog } kind;
        QString text;
        QString caption;
        PromptIcon icon;
        PromptAnswer answer;
        QString path;
    };

    QString AskFile(const FileDialogRequest &request);

    QList<Expected> m_expected;
    FileDialogRequest m_lastFileDialog;
};
