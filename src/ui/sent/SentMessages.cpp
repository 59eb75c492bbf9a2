#include "SentMessages.h"

#include "Accessibility.h"
#include "Controls.h"
#include "Error.h"
#include "Prompts.h"
#include "RememberedFile.h"
#include "SaveFile.h"
#include "SelectAllOnFocus.h"
#include "SentLog.h"
#include "SentMessagesModel.h"
#include "Settings.h"
#include "TextFile.h"
#include "Utils.h"
#include "WaitCursor.h"
#include "ui_SentMessages.h"

#include <QClipboard>
#include <QProgressDialog>
#include <QShortcut>

#include <numeric>

using namespace Qt::StringLiterals;

namespace {

const QString kColumnsSection = u"Sent Message Columns"_s;
const QString kSortBy = u"SortBy"_s;
const QString kReverseSort = u"ReverseSort"_s;

QString CountText(qint64 count)
{
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    return count == 1 ? SentMessages::tr("1 message") : SentMessages::tr("%1 messages").arg(english.toString(count));
}

QString CsvLine(const QStringList &fields)
{
    QStringList quoted;
    for (const QString &field : fields)
        quoted += Utils::QuoteCsvField(field);
    return quoted.join(u',') + "\r\n"_L1;
}

/// A row of a list is a line.
QString PlainLine(const QStringList &fields)
{
    QStringList plain;
    for (const QString &field : fields)
        plain += field.simplified();
    return plain.join(u'\t') + u'\n';
}

} // namespace

SentMessages::SentMessages(const WindowServices &services, SentLog &log, SendAgain sendAgain, QWidget *parent)
    : QDialog(parent)
    , m_services(services)
    , m_keeping(log, services.settings)
    , m_sendAgain(std::move(sendAgain))
    , m_ui(std::make_unique<Ui::SentMessages>())
{
    m_ui->setupUi(this);
    setWindowModality(Qt::ApplicationModal);
    m_keeping.DeleteOld();
    m_ui->chkKeep->setChecked(m_keeping.IsOn());
    new SelectAllOnFocus(m_ui->txtFind);
    m_rows = new SentMessagesModel(log, this);
    m_ui->lvwSentMessages->SetUp(m_rows);
    RestoreOrder();
    ConnectControls();
    Controls::RestoreColumnWidths(m_services.settings, *m_ui->lvwSentMessages->horizontalHeader());
    Controls::SetFirstSize(*this, 148, 34);
    Controls::RestoreWindowPosition(m_services.settings, *this);
    const auto list = Controls::StoredControlSize(m_services.settings, *m_ui->lvwSentMessages);
    const auto message = Controls::StoredControlSize(m_services.settings, *m_ui->txtSentMessage);
    // Of itself the box asks for more, which on a low screen the list would lack.
    constexpr int kFewestLines = 4;
    m_ui->txtSentMessage->setMinimumHeight(kFewestLines * fontMetrics().lineSpacing());
    m_ui->Splitter1->setSizes(list && message ? QList{list->height(), message->height()} : QList{300, 100});
    // Both give way on a low screen, for which the window is made smaller only when it is shown.
    m_ui->Splitter1->setStretchFactor(0, 3);
    m_ui->Splitter1->setStretchFactor(1, 1);
    SelectAgain();
    ShowState();
    m_ui->txtFind->setFocus();
}

SentMessages::~SentMessages() = default;

void SentMessages::ConnectControls()
{
    SentListView &list = *m_ui->lvwSentMessages;
    connect(m_ui->txtFind, &QLineEdit::textChanged, m_rows, &SentMessagesModel::Find);
    const auto goToList = [&list] {
        list.setFocus();
        if (list.SelectedRows().empty() && list.model()->rowCount() > 0)
            list.SelectOnly(0);
    };
    connect(m_ui->txtFind, &FindBox::EnterPressed, this, goToList);
    connect(m_ui->txtFind, &FindBox::DownPressed, this, goToList);
    connect(list.horizontalHeader(), &QHeaderView::sectionClicked, this, &SentMessages::SortByClick);
    connect(list.selectionModel(), &QItemSelectionModel::currentChanged, this, &SentMessages::ShowDetails);
    connect(&list, &SentListView::SelectionChanged, this, &SentMessages::ShowState);
    connect(&list, &SentListView::CopyAsked, m_ui->cmdCopy, &QPushButton::click);
    connect(&list, &SentListView::DeleteAsked, m_ui->cmdDelete, &QPushButton::click);
    connect(m_rows, &QAbstractItemModel::modelReset, this, &SentMessages::SelectAgain);
    connect(m_rows, &SentMessagesModel::Advanced, this, &SentMessages::ShowState);
    connect(m_ui->chkKeep, &QCheckBox::toggled, this, [this](bool isOn) {
        m_keeping.SetOn(isOn);
        ShowState();
    });
    connect(m_ui->cmdSendAgain, &QPushButton::clicked, this, &SentMessages::SendCurrentAgain);
    connect(m_ui->cmdCopy, &QPushButton::clicked, this, &SentMessages::Copy);
    connect(m_ui->cmdExport, &QPushButton::clicked, this, &SentMessages::Export);
    connect(m_ui->cmdDelete, &QPushButton::clicked, this, &SentMessages::Delete);
    connect(m_ui->cmdClear, &QPushButton::clicked, this, &SentMessages::Clear);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &SentMessages::accept);
    new QShortcut(QKeySequence(u"Ctrl+W"_s), this, this, &SentMessages::accept);
}

void SentMessages::RestoreOrder()
{
    const Settings &settings = m_services.settings;
    m_sortBy = settings.Get(kColumnsSection, kSortBy, u"1"_s).toInt();
    m_reverseSort = settings.Get(kColumnsSection, kReverseSort, u"True"_s).compare("True"_L1, Qt::CaseInsensitive) == 0;
    if (m_sortBy < 1 || m_sortBy > SentMessagesModel::kColumns)
        m_sortBy = 1;
    ApplyOrder();
}

void SentMessages::SortByClick(int column)
{
    // The first click on a column sorts by it; clicking it again turns the order.
    m_reverseSort = column + 1 == m_sortBy && !m_reverseSort;
    m_sortBy = column + 1;
    const WaitCursor hourglass;
    ApplyOrder();
}

void SentMessages::ApplyOrder()
{
    const Qt::SortOrder order = m_reverseSort ? Qt::DescendingOrder : Qt::AscendingOrder;
    m_rows->SortBy(static_cast<SentColumn>(m_sortBy - 1), order);
    m_ui->lvwSentMessages->horizontalHeader()->setSortIndicator(m_sortBy - 1, order);
}

void SentMessages::SelectAgain()
{
    if (m_rows->rowCount() > 0)
        m_ui->lvwSentMessages->SelectOnly(qMax(0, m_rows->RowOf(m_current)));
    ShowDetails();
}

void SentMessages::ShowState()
{
    if (const QString notice = m_keeping.TakeNotice(); !notice.isEmpty())
        m_notice = notice;
    const bool isSettled = m_rows->IsSettled();
    const SentListView &list = *m_ui->lvwSentMessages;
    const bool hasSelected = list.selectionModel()->hasSelection();
    m_ui->cmdSendAgain->setEnabled(isSettled && list.IsOneSelected());
    m_ui->cmdCopy->setEnabled(isSettled && hasSelected);
    m_ui->cmdDelete->setEnabled(isSettled && hasSelected);
    m_ui->cmdExport->setEnabled(isSettled && m_rows->rowCount() > 0);
    m_ui->cmdClear->setEnabled(isSettled && m_rows->Total() > 0);
    m_ui->lvwSentMessages->SetHint(Hint());
    const QString status = StatusText();
    m_ui->lblStatus->setText(status);
    Accessibility::Announce(*m_ui->lblStatus, status);
}

QString SentMessages::StatusText() const
{
    if (!m_rows->Problem().isEmpty())
        return tr("The sent messages could not be read: %1").arg(m_rows->Problem());
    QString status = CountText(m_rows->Total());
    if (!m_ui->txtFind->text().isEmpty())
        status = m_rows->IsSettled() ? tr("%1 found").arg(CountText(m_rows->rowCount())) : tr("Searching...");
    return m_notice.isEmpty() ? status : status + "; "_L1 + m_notice;
}

QString SentMessages::Hint() const
{
    if (m_rows->rowCount() > 0 || !m_rows->IsSettled())
        return {};
    if (m_rows->Total() > 0)
        return tr("No message matches the search.");
    return m_keeping.IsOn() ? tr("No messages yet.\nWhat you send is listed here.")
                            : tr("No messages.\nWhat you send is listed here once sent messages are kept.");
}

void SentMessages::ShowDetails()
{
    const int row = m_ui->lvwSentMessages->currentIndex().row();
    if (row < 0) {
        m_ui->txtSentMessage->clear();
        return;
    }
    const SentMessage message = m_rows->At(row);
    m_current = message.id;
    QString details = message.text + u"\n\n"_s + SentMessagesModel::OutcomeText(message.outcome);
    if (!message.reason.isEmpty())
        details += u": "_s + message.reason;
    if (message.gatewayNumber != 0)
        details += u'\n' + tr("Number at the gateway: %1").arg(message.gatewayNumber);
    m_ui->txtSentMessage->setPlainText(details);
}

void SentMessages::SendCurrentAgain()
{
    const std::vector<int> rows = m_ui->lvwSentMessages->SelectedRows();
    if (m_sendAgain(m_rows->At(rows.front()), this))
        accept();
}

std::optional<QString> SentMessages::Printed(const std::vector<int> &rows, QString (*line)(const QStringList &))
{
    constexpr int kAtOnce = 1'000;
    QProgressDialog progress(tr("Reading the messages..."), tr("Cancel"), 0, static_cast<int>(rows.size()), this);
    progress.setWindowTitle(windowTitle());
    progress.setWindowModality(Qt::ApplicationModal);
    QString text;
    int done = 0;
    for (const int row : rows) {
        text += line(m_rows->Fields(row));
        if (++done % kAtOnce == 0)
            progress.setValue(done);
        if (progress.wasCanceled())
            return std::nullopt;
    }
    return text;
}

void SentMessages::Copy()
{
    const auto text = Printed(m_ui->lvwSentMessages->SelectedRows(), &PlainLine);
    // What could not be read would be blank lines; the status tells why.
    if (text && m_rows->Problem().isEmpty())
        QApplication::clipboard()->setText(*text);
}

void SentMessages::Export()
{
    const RememberedFile file(m_services, u"Sent Messages"_s);
    const QString path = file.AskToSave({.title = tr("Export Sent Messages"),
                                         .filters = {{tr("CSV (Comma delimited)"), {u"*.csv"_s}}},
                                         .initialPath = Utils::MyDocumentsFolder() + u"/Sent Messages"_s,
                                         .confirmOverwrite = true},
                                        this);
    if (path.isEmpty())
        return;
    std::vector<int> rows(static_cast<size_t>(m_rows->rowCount()));
    std::iota(rows.begin(), rows.end(), 0);
    const auto text = Printed(rows, &CsvLine);
    if (!text)
        return;
    QStringList captions;
    for (int column = 0; column < SentMessagesModel::kColumns; ++column)
        captions += m_rows->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    try {
        if (!m_rows->Problem().isEmpty())
            throw Error(ErrorNumber::kFileAccess, u"Corvane.History"_s, m_rows->Problem());
        SaveFile(path, TextFile::Encode(CsvLine(captions) + *text));
    } catch (const Error &error) {
        TellProblem(tr("The sent messages could not be exported: %1").arg(error.Description()), tr("Export Failed"));
    }
}

void SentMessages::Delete()
{
    const std::vector<int> rows = m_ui->lvwSentMessages->SelectedRows();
    const QString question =
        rows.size() == 1 ? tr("Are you sure you want to permanently delete the message to '%1' from the sent messages?")
                               .arg(m_rows->Fields(rows.front()).value(static_cast<int>(SentColumn::Name)))
                         : tr("Are you sure you want to permanently delete the %1 selected messages?").arg(rows.size());
    if (!Confirms(question, tr("Delete Messages?")))
        return;
    try {
        const WaitCursor hourglass;
        m_rows->Delete(rows);
    } catch (const Error &error) {
        TellProblem(tr("The messages could not be deleted: %1").arg(error.Description()), tr("Delete Failed"));
        return;
    }
    // Nothing is selected then, so that a key too many deletes nothing.
    const QModelIndex next = m_rows->index(qMin(rows.front(), m_rows->rowCount() - 1), 0);
    m_ui->lvwSentMessages->clearSelection();
    m_ui->lvwSentMessages->selectionModel()->setCurrentIndex(next, QItemSelectionModel::NoUpdate);
}

void SentMessages::Clear()
{
    if (!Confirms(
            tr("Are you sure you want to permanently delete all sent messages (%1)?").arg(CountText(m_rows->Total())),
            tr("Clear All?")))
        return;
    try {
        m_rows->Clear();
    } catch (const Error &error) {
        TellProblem(tr("The messages could not be deleted: %1").arg(error.Description()), tr("Delete Failed"));
    }
}

bool SentMessages::Confirms(const QString &question, const QString &caption)
{
    const MessageBoxRequest box{.text = question,
                                .icon = PromptIcon::Question,
                                .buttons = PromptButtons::YesNo,
                                .caption = caption,
                                .defaultAnswer = PromptAnswer::No};
    return m_services.prompts.ShowMessageBox(box, this) == PromptAnswer::Yes;
}

void SentMessages::TellProblem(const QString &text, const QString &caption)
{
    m_services.prompts.ShowMessageBox({.text = text, .icon = PromptIcon::Exclamation, .caption = caption}, this);
}

void SentMessages::done(int result)
{
    Settings &settings = m_services.settings;
    Controls::SaveWindowPosition(settings, *this);
    Controls::SaveColumnWidths(settings, *m_ui->lvwSentMessages->horizontalHeader());
    Controls::SaveControlSize(settings, *m_ui->lvwSentMessages);
    Controls::SaveControlSize(settings, *m_ui->txtSentMessage);
    settings.Save(kColumnsSection, kSortBy, QString::number(m_sortBy));
    settings.Save(kColumnsSection, kReverseSort, m_reverseSort ? u"True"_s : u"False"_s);
    QDialog::done(result);
}
