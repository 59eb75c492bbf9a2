#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class QObject;

enum class PromptIcon { None, Information, Question, Exclamation, Critical };
enum class PromptButtons { Ok, YesNo };
enum class PromptAnswer { Ok, Yes, No };

/// A message box. `text` is plain text with CR LF or LF line breaks, never markup.
struct MessageBoxRequest
{
    QString text;
    PromptIcon icon = PromptIcon::Information;
    PromptButtons buttons = PromptButtons::Ok;
    /// An empty caption stands for the application title.
    QString caption = {};
    /// What Enter answers to a question.
    PromptAnswer defaultAnswer = PromptAnswer::Yes;
    /// Shown when the user asks for it; plain text too.
    QString details = {};
};

/// A choice of files, such as "Text" for "*.txt". The pattern "*.*" stands for every file.
struct FileFilter
{
    /// Without the patterns, which the dialog adds for the eye.
    QString name;
    QStringList patterns;
};

/// A file dialog. The first filter is the one that it starts with, for saving that of the proposed name where it has
/// one.
struct FileDialogRequest
{
    QString title;
    QList<FileFilter> filters;
    /// The full path that the dialog proposes.
    QString initialPath;
    bool confirmOverwrite = false;
    /// A folder that the dialog offers beside the user's own; empty for none.
    QString offeredFolder = {};
};

/// Every question to the user, so that windows run without one in tests.
/// `owner` is the window that asks; none stands for the window that is active.
class Prompts
{
public:
    virtual ~Prompts() = default;

    /// Shows the box modally. A box closed without a choice answers Ok or No.
    virtual PromptAnswer ShowMessageBox(const MessageBoxRequest &request, QObject *owner = nullptr) = 0;

    /// The chosen path, or empty text when the user cancelled.
    [[nodiscard]] virtual QString AskOpenFile(const FileDialogRequest &request, QObject *owner = nullptr) = 0;

    /// The chosen path, or empty text when the user cancelled. A name without an extension gets that of the
    /// filter that is chosen then.
    [[nodiscard]] virtual QString AskSaveFile(const FileDialogRequest &request, QObject *owner = nullptr) = 0;
};
