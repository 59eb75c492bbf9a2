#include "WidgetPrompts.h"

#include "FileFilters.h"
#include "ScreenFit.h"
#include "Version.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QMessageBox>
#include <QScreen>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

QWidget *ParentOf(QObject *owner)
{
    auto *widget = qobject_cast<QWidget *>(owner);
    return widget && widget->isVisible() ? widget : QApplication::activeWindow();
}

QMessageBox::Icon IconOf(PromptIcon icon)
{
    switch (icon) {
    case PromptIcon::None:
        break;
    case PromptIcon::Information:
        return QMessageBox::Information;
    case PromptIcon::Question:
        return QMessageBox::Question;
    case PromptIcon::Exclamation:
        return QMessageBox::Warning;
    case PromptIcon::Critical:
        return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

/// A box by itself is as wide as half the screen at most, and with a large font higher than the screen.
void MakeRoom(QMessageBox &box)
{
    constexpr int kUsualCharacters = 60;
    const int widest = box.screen()->availableGeometry().width() * 9 / 10;
    const int width = qMin(kUsualCharacters * box.fontMetrics().averageCharWidth(), widest);
    // The box sets its own size when it is shown, by what its grid needs.
    auto &grid = static_cast<QGridLayout &>(*box.layout());
    grid.addItem(new QSpacerItem(width, 0), grid.rowCount(), 0, 1, grid.columnCount());
}

QString Run(QFileDialog &dialog, const FileDialogRequest &request)
{
    dialog.setWindowModality(Qt::ApplicationModal);
    if (!request.offeredFolder.isEmpty())
        dialog.setSidebarUrls(dialog.sidebarUrls() << QUrl::fromLocalFile(request.offeredFolder));
    const QFileInfo initial(request.initialPath);
    dialog.setDirectory(initial.path());
    if (!initial.fileName().isEmpty())
        dialog.selectFile(initial.fileName());
    ScreenFit::Apply(dialog);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

} // namespace

PromptAnswer WidgetPrompts::ShowMessageBox(const MessageBoxRequest &request, QObject *owner)
{
    const bool asksYesNo = request.buttons == PromptButtons::YesNo;
    const auto lines = [](QString text) { return text.replace("\r\n"_L1, "\n"_L1); };
    QMessageBox box(IconOf(request.icon), request.caption.isEmpty() ? ApplicationTitle() : request.caption,
                    lines(request.text), asksYesNo ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok,
                    ParentOf(owner));
    box.setTextFormat(Qt::PlainText);
    box.setDetailedText(lines(request.details));
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    box.setWindowModality(Qt::ApplicationModal);
    MakeRoom(box);
    if (asksYesNo) {
        box.setDefaultButton(request.defaultAnswer == PromptAnswer::No ? QMessageBox::No : QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::No);
    }
    const int answer = box.exec();
    if (!asksYesNo)
        return PromptAnswer::Ok;
    return answer == QMessageBox::Yes ? PromptAnswer::Yes : PromptAnswer::No;
}

QString WidgetPrompts::AskOpenFile(const FileDialogRequest &request, QObject *owner)
{
    QFileDialog dialog(ParentOf(owner), request.title);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setNameFilters(FileFilters::ForQt(request.filters));
    return Run(dialog, request);
}

QString WidgetPrompts::AskSaveFile(const FileDialogRequest &request, QObject *owner)
{
    QFileDialog dialog(ParentOf(owner), request.title);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    const QStringList filters = FileFilters::ForQt(request.filters);
    // The dialog adds the extension before it looks whether the file exists.
    const auto useExtensionOf = [&](qsizetype filter) {
        dialog.setDefaultSuffix(FileFilters::DefaultExtension(request.filters.sliced(qMax(filter, 0))));
    };
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog,
                     [&](const QString &filter) { useExtensionOf(filters.indexOf(filter)); });
    useExtensionOf(0);
    dialog.setNameFilters(filters);
    // The name that is proposed may be another filter's.
    const QString proposed = u"*."_s + QFileInfo(request.initialPath).suffix();
    for (qsizetype i = 0; i < filters.size(); ++i) {
        if (!request.filters[i].patterns.contains(proposed))
            continue;
        dialog.selectNameFilter(filters[i]);
        useExtensionOf(i);
        break;
    }
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !request.confirmOverwrite);
    return Run(dialog, request);
}
