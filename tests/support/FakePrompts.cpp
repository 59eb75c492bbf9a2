#include "FakePrompts.h"

#include <QTest>

using namespace Qt::StringLiterals;

FakePrompts::~FakePrompts()
{
    VerifyAllCame();
}

void FakePrompts::ExpectBox(const QString &text, PromptIcon icon, PromptAnswer answer, const QString &caption)
{
    m_expected.append({Expected::Kind::Box, text, caption, icon, answer, {}});
}

void FakePrompts::ExpectBoxBeginning(const QString &text, PromptIcon icon, PromptAnswer answer)
{
    m_expected.append({Expected::Kind::BoxBeginning, text, {}, icon, answer, {}});
}

void FakePrompts::ExpectFileDialog(const QString &title, const QString &path)
{
    m_expected.append({Expected::Kind::FileDialog, title, {}, PromptIcon::None, PromptAnswer::Ok, path});
}

void FakePrompts::VerifyAllCame()
{
    for (const Expected &expected : std::exchange(m_expected, {}))
        QTest::qFail(qPrintable(u"This prompt never came: "_s + expected.text), __FILE__, __LINE__);
}

PromptAnswer FakePrompts::ShowMessageBox(const MessageBoxRequest &request, QObject *)
{
    if (m_expected.isEmpty() || m_expected.constFirst().kind == Expected::Kind::FileDialog) {
        QTest::qFail(qPrintable(u"Unexpected box: "_s + request.text), __FILE__, __LINE__);
        return request.buttons == PromptButtons::YesNo ? PromptAnswer::No : PromptAnswer::Ok;
    }
    const Expected expected = m_expected.takeFirst();
    if (expected.kind == Expected::Kind::Box) {
        QTest::qCompare(request.text, expected.text, "text of the box", "expected", __FILE__, __LINE__);
        QTest::qCompare(request.caption, expected.caption, "caption of the box", "expected", __FILE__, __LINE__);
    } else if (!request.text.startsWith(expected.text)) {
        QTest::qFail(qPrintable(u"Another box: "_s + request.text), __FILE__, __LINE__);
    }
    QTest::qCompare(static_cast<int>(request.icon), static_cast<int>(expected.icon), "icon of the box", "expected",
                    __FILE__, __LINE__);
    const bool asksYesNo = expected.answer != PromptAnswer::Ok;
    QTest::qCompare(request.buttons == PromptButtons::YesNo, asksYesNo, "the box asks Yes or No", "expected", __FILE__,
                    __LINE__);
    return expected.answer;
}

QString FakePrompts::AskOpenFile(const FileDialogRequest &request, QObject *)
{
    return AskFile(request);
}

QString FakePrompts::AskSaveFile(const FileDialogRequest &request, QObject *)
{
    return AskFile(request);
}

QString FakePrompts::AskFile(const FileDialogRequest &request)
{
    m_lastFileDialog = request;
    if (m_expected.isEmpty() || m_expected.constFirst().kind != Expected::Kind::FileDialog) {
        QTest::qFail(qPrintable(u"Unexpected file dialog: "_s + request.title), __FILE__, __LINE__);
        return {};
    }
    const Expected expected = m_expected.takeFirst();
    QTest::qCompare(request.title, expected.text, "title of the file dialog", "expected", __FILE__, __LINE__);
    return expected.path;
}
