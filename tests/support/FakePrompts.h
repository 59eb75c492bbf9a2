#pragma once

#include "Prompts.h"

#include <QList>
#include <QTest>

/// Answers prompts from a queue. A prompt that was not expected, one with another text, and one that never came fail
/// the test that runs.
class FakePrompts final : public Prompts
{
public:
    ~FakePrompts() override { VerifyAllCame(); }

    /// The next box must have this text; it is answered with `answer`.
    void ExpectBox(const QString &text, PromptIcon icon, PromptAnswer answer = PromptAnswer::Ok,
                   const QString &caption = {}, const QString &details = {})
    {
        const auto buttons = answer == PromptAnswer::Ok ? PromptButtons::Ok : PromptButtons::YesNo;
        m_expected.append(
            {Print({.text = text, .icon = icon, .buttons = buttons, .caption = caption, .details = details}), answer});
    }

    /// The next box must ask this, and Enter would answer No; it is answered with `answer`.
    void ExpectCarefulQuestion(const QString &text, PromptIcon icon, PromptAnswer answer, const QString &caption)
    {
        ExpectBox(text, icon, answer, caption);
        m_expected.last().prompt += kCareful;
    }

    /// The next box may have any text that begins so.
    void ExpectBoxBeginning(const QString &text, PromptIcon icon, const QString &caption = {})
    {
        ExpectBox(text, icon, PromptAnswer::Ok, caption);
        m_expected.last().isBeginning = true;
    }

    /// The next file dialog must be this one; it is answered with `path`, empty for a cancel.
    void ExpectFileDialog(const FileDialogRequest &request, const QString &path)
    {
        m_expected.append({Print(request), PromptAnswer::Ok, path});
    }

    /// The next prompt may be any file dialog; it is answered with `path`.
    void ExpectAnyFileDialog(const QString &path) { m_expected.append({{}, PromptAnswer::Ok, path, true}); }

    /// Fails the test for prompts that never came, and forgets them.
    void VerifyAllCame()
    {
        for (const Expected &expected : std::exchange(m_expected, {}))
            QTest::qFail(qPrintable(QStringLiteral("This prompt never came: ") + expected.prompt), __FILE__, __LINE__);
    }

    PromptAnswer ShowMessageBox(const MessageBoxRequest &box, QObject *) override { return Take(Print(box)).answer; }
    QString AskOpenFile(const FileDialogRequest &request, QObject *) override { return Take(Print(request)).path; }
    QString AskSaveFile(const FileDialogRequest &request, QObject *) override { return Take(Print(request)).path; }

private:
    inline static const QString kCareful = QStringLiteral(" (Enter says No)");

    struct Expected
    {
        QString prompt;
        PromptAnswer answer = PromptAnswer::No;
        QString path = {};
        bool isBeginning = false;
    };

    static QString Print(const MessageBoxRequest &box)
    {
        const auto style = QStringLiteral("icon %1, buttons %2, %3|%4").arg(int(box.icon)).arg(int(box.buttons));
        return style.arg(box.caption, box.text) + (box.details.isEmpty() ? box.details : u'|' + box.details) +
               (box.defaultAnswer == PromptAnswer::No ? kCareful : QString());
    }
    static QString Print(const FileDialogRequest &file)
    {
        QStringList filters;
        for (const FileFilter &filter : file.filters)
            filters += filter.name + u':' + filter.patterns.join(u' ');
        return QStringList{file.title, filters.join(u'|'), file.initialPath, QString::number(file.confirmOverwrite),
                           file.offeredFolder}
            .join(u'|');
    }

    Expected Take(const QString &prompt)
    {
        const Expected expected = m_expected.isEmpty() ? Expected() : m_expected.takeFirst();
        const QString known = expected.isBeginning ? prompt.left(expected.prompt.size()) : prompt;
        QTest::qCompare(known, expected.prompt, "prompt", "expected", __FILE__, __LINE__);
        return expected;
    }

    QList<Expected> m_expected;
};
