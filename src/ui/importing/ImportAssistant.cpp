#include "ImportAssistant.h"

#include "Accessibility.h"
#include "ContactTableModel.h"
#include "Controls.h"
#include "KeyHeader.h"
#include "NumberDelegate.h"
#include "NumberJudge.h"
#include "Settings.h"
#include "TickDelegate.h"
#include "WaitCursor.h"
#include "ui_ImportAssistant.h"

#include <QActionGroup>
#include <QCollator>
#include <QLayout>
#include <QLocale>
#include <QMenu>
#include <QScreen>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString kSection = u"Import from Other Programs"_s;
const QString kCountry = u"Country"_s;

QString Number(qlonglong number)
{
    return QLocale().toString(number);
}

} // namespace

ImportAssistant::ImportAssistant(const Services &services, const LxPhoneBook &phoneBook, const QString &fileName,
                                 ContactFile::Content content, QWidget *parent)
    : QDialog(parent)
    , m_services(services)
    , m_phoneBook(phoneBook)
    , m_ui(std::make_unique<Ui::ImportAssistant>())
    , m_table(new ContactTableModel(std::move(content), this))
    , m_roles(new QMenu(this))
{
    m_ui->setupUi(this);
    setWindowModality(Qt::ApplicationModal);
    const int rows = m_table->Content().table.RowCount();
    m_ui->lblFile->setText(rows == 1 ? tr("%1: 1 row").arg(fileName) : tr("%1: %2 rows").arg(fileName, Number(rows)));
    // A card has no first row.
    m_ui->chkHeading->setVisible(!m_table->Content().isVCards);
    m_ui->chkHeading->setChecked(m_table->Content().table.HasHeading());
    SetUpLists();
    SetUpCountries();
    ConnectControls();
    Controls::FitToContents(*this);
    constexpr int kCharacters = 124;
    resize(qMax(width(), kCharacters * fontMetrics().averageCharWidth()), height());
    Controls::RestoreWindowPosition(m_services.window.settings, *this);
    m_ui->lvwCandidates->setFocus();
    Judge();
}

ImportAssistant::~ImportAssistant() = default;

void ImportAssistant::SetUpLists()
{
    QTreeView &file = *m_ui->lvwFile;
    Controls::SetUpReport(file);
    Controls::KeepReadable(file);
    auto *header = new KeyHeader(&file);
    header->setSectionsClickable(true);
    header->setSortIndicator(-1, Qt::AscendingOrder);
    file.setHeader(header);
    file.setModel(m_table);
    file.setItemDelegate(new NumberDelegate(this));
    m_roles->setObjectName(u"mnuRoles"_s);

    TickList &list = *m_ui->lvwCandidates;
    Controls::SetUpReport(list);
    Controls::KeepReadable(list);
    list.setModel(&m_candidates);
    list.setItemDelegateForColumn(CandidateModel::Name, new TickDelegate(this));
    list.setItemDelegateForColumn(CandidateModel::Number, new NumberDelegate(this));

    constexpr int kFileLines = 6;
    constexpr int kListLines = 8;
    const int line = fontMetrics().lineSpacing();
    // Some looks make room for one line alone.
    header->setMinimumHeight(2 * line + line / 2);
    file.setMinimumHeight(kFileLines * line);
    list.setMinimumHeight(kListLines * line);
    FitColumns();
}

/// The country that was chosen last, at first the system's; where that has none, the home country of new contacts.
void ImportAssistant::SetUpCountries()
{
    QComboBox &countries = *m_ui->cboCountry;
    std::vector<std::pair<QString, QString>> items;
    for (const NumberJudge::Region &region : m_services.judge.Regions()) {
        const QString name = QLocale::territoryToString(QLocale::codeToTerritory(region.code));
        items.emplace_back(tr("%1 (+%2)").arg(name, QString::number(region.diallingCode)), region.code);
    }
    const QCollator order;
    std::sort(items.begin(), items.end(),
              [&order](const auto &one, const auto &other) { return order.compare(one.first, other.first) < 0; });
    for (const auto &[text, code] : items)
        countries.addItem(text, code);
    const QString region = QLocale::territoryToCode(QLocale::system().territory());
    for (const QString &code : {m_services.window.settings.Get(kSection, kCountry), region, u"GB"_s}) {
        countries.setCurrentIndex(countries.findData(code));
        if (countries.currentIndex() >= 0)
            break;
    }
}

void ImportAssistant::ConnectControls()
{
    connect(m_ui->lvwFile->header(), &QHeaderView::sectionClicked, this, &ImportAssistant::AskRole);
    connect(m_ui->chkHeading, &QCheckBox::toggled, this, &ImportAssistant::ChooseHeading);
    connect(m_ui->cboCountry, &QComboBox::currentIndexChanged, this, &ImportAssistant::Judge);
    connect(m_ui->cboShow, &QComboBox::currentIndexChanged, this, &ImportAssistant::Narrow);
    connect(m_ui->cmdTick, &QPushButton::clicked, this, [this] { m_candidates.TickShown(true); });
    connect(m_ui->cmdUntick, &QPushButton::clicked, this, [this] { m_candidates.TickShown(false); });
    connect(m_ui->lvwCandidates, &TickList::TurnAsked, this, &ImportAssistant::TurnSelected);
    connect(&m_candidates, &CandidateModel::TicksChanged, this, &ImportAssistant::ShowState);
    connect(&m_judging, &NumberJudging::Judged, this, &ImportAssistant::NoteJudged);
    connect(&m_judging, &NumberJudging::Finished, this, &ImportAssistant::Settle);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &ImportAssistant::accept);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &ImportAssistant::reject);
}

void ImportAssistant::AskRole(int column)
{
    m_roles->clear();
    const ColumnRole now = m_table->Content().columns[static_cast<size_t>(column)].role;
    for (const ColumnRole role : {ColumnRole::Name, ColumnRole::FirstName, ColumnRole::LastName, ColumnRole::Mobile,
                                  ColumnRole::CountryCode, ColumnRole::Groups, ColumnRole::Nothing}) {
        QAction *action = m_roles->addAction(ContactTableModel::NameOf(role));
        action->setCheckable(true);
        action->setChecked(role == now);
        connect(action, &QAction::triggered, this, [this, column, role] { ChooseRole(column, role); });
        if (role == now)
            m_roles->setActiveAction(action);
    }
    const QHeaderView &header = *m_ui->lvwFile->header();
    m_roles->popup(header.viewport()->mapToGlobal(QPoint(header.sectionViewportPosition(column), header.height())));
}

void ImportAssistant::ChooseRole(int column, ColumnRole role)
{
    m_hasOwnRoles = true;
    m_table->SetRole(column, role);
    Judge();
}

void ImportAssistant::ChooseHeading(bool hasHeading)
{
    m_table->SetHasHeading(hasHeading, m_hasOwnRoles);
    m_candidates.ForgetTicks();
    Judge();
}

void ImportAssistant::Judge()
{
    const WaitCursor hourglass;
    m_judging.Stop();
    m_isSettled = false;
    m_judgedCount = 0;
    m_candidates.SetCandidates(Candidates::Of(m_table->Content().table, m_table->Content().columns));
    m_rules.emplace(m_services.judge, m_services.countries, m_ui->cboCountry->currentData().toString());
    FillKinds();
    ShowState();
    m_judging.Start(m_candidates.All(), *m_rules);
}

void ImportAssistant::NoteJudged(int first, int count)
{
    if (count == 0)
        return;
    m_judgedCount += count;
    m_candidates.ShowJudged(first, count);
    ShowState();
}

void ImportAssistant::Settle()
{
    const WaitCursor hourglass;
    m_candidates.Settle(m_phoneBook);
    m_isSettled = true;
    m_ui->lvwCandidates->setCurrentIndex(m_candidates.index(0, 0));
    FillKinds();
    ShowState();
}

/// The kinds that there are, each with its number of rows; all of them at first.
void ImportAssistant::FillKinds()
{
    const QSignalBlocker quiet(m_ui->cboShow);
    m_ui->cboShow->clear();
    m_ui->cboShow->addItem(tr("all (%1)").arg(Number(m_candidates.rowCount())), -1);
    for (size_t kind = 0; kind < CandidateModel::kKindCount; ++kind) {
        const auto value = static_cast<CandidateModel::Kind>(kind);
        if (const int count = m_candidates.CountOf(value); count > 0)
            m_ui->cboShow->addItem(tr("%1 (%2)").arg(CandidateModel::NameOf(value), Number(count)),
                                   static_cast<int>(kind));
    }
}

void ImportAssistant::Narrow()
{
    const int kind = m_ui->cboShow->currentData().toInt();
    m_candidates.ShowOnly(kind < 0 ? std::nullopt : std::optional(static_cast<CandidateModel::Kind>(kind)));
    m_ui->lvwCandidates->setCurrentIndex(m_candidates.index(0, 0));
}

/// The ticks of all selected rows become the other of what the current row has.
void ImportAssistant::TurnSelected()
{
    const TickList &list = *m_ui->lvwCandidates;
    const QModelIndex current = list.currentIndex();
    if (!current.isValid())
        return;
    const QVariant tick = current.siblingAtColumn(CandidateModel::Name).data(Qt::CheckStateRole);
    const bool isTicked = tick.value<Qt::CheckState>() != Qt::Checked;
    for (const QItemSelectionRange &range : list.selectionModel()->selection())
        m_candidates.TickRows(range.top(), range.bottom(), isTicked);
}

void ImportAssistant::ShowState()
{
    const int all = static_cast<int>(m_candidates.All().size());
    const int ticked = m_candidates.TickedCount();
    m_ui->prgJudging->setVisible(!m_isSettled);
    m_ui->prgJudging->setRange(0, qMax(all, 1));
    m_ui->prgJudging->setValue(m_judgedCount);
    for (QWidget *control : {static_cast<QWidget *>(m_ui->cboShow), static_cast<QWidget *>(m_ui->cmdTick),
                             static_cast<QWidget *>(m_ui->cmdUntick)})
        control->setEnabled(m_isSettled);
    m_ui->chkGroups->setEnabled(m_table->HasColumn(ColumnRole::Groups));
    m_ui->cmdOK->setEnabled(m_isSettled && ticked > 0);
    if (!m_isSettled) {
        m_ui->lblStatus->setText(tr("Judging the numbers..."));
        Accessibility::Announce(*m_ui->lblStatus, m_ui->lblStatus->text());
        return;
    }
    QString text = tr("%1 of %2 ticked").arg(Number(ticked), Number(all));
    if (!m_table->HasColumn(ColumnRole::Mobile))
        text = tr("Please choose the column of the mobile numbers, by a click on its heading.");
    m_ui->lblStatus->setText(text);
    Accessibility::Announce(*m_ui->lblStatus, text);
}

bool ImportAssistant::event(QEvent *event)
{
    const bool isDone = QDialog::event(event);
    if ((event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest) && layout()->hasHeightForWidth()) {
        // Qt keeps no room for lines that texts break into only where a window is made narrow.
        const int lowest = layout()->totalMinimumHeightForWidth(width());
        setMinimumHeight(qMin(lowest, screen()->availableGeometry().height()));
    }
    return isDone;
}

void ImportAssistant::FitColumns()
{
    const int character = fontMetrics().averageCharWidth();
    constexpr int kFileCharacters = 20;
    for (int column = 0; column < m_table->columnCount(); ++column)
        m_ui->lvwFile->setColumnWidth(column, kFileCharacters * character);
    constexpr std::array kCharacters{24, 20, 26, 28, 16};
    for (size_t column = 0; column < kCharacters.size(); ++column)
        m_ui->lvwCandidates->setColumnWidth(static_cast<int>(column), kCharacters[column] * character);
}

ImportChoice ImportAssistant::TakeChoice()
{
    const bool withGroups = m_ui->chkGroups->isEnabled() && m_ui->chkGroups->isChecked();
    return {m_candidates.TakeCandidates(), withGroups};
}

void ImportAssistant::done(int result)
{
    m_judging.Stop();
    Settings &settings = m_services.window.settings;
    Controls::SaveWindowPosition(settings, *this);
    settings.Save(kSection, kCountry, m_ui->cboCountry->currentData().toString());
    QDialog::done(result);
}
