#include "ChooseGroup.h"

#include "Controls.h"
#include "LxGroup.h"
#include "LxGroupList.h"
#include "ui_ChooseGroup.h"

ChooseGroup::ChooseGroup(const WindowServices &services, QWidget *parent)
    : QDialog(parent)
    , m_services(services)
    , m_ui(std::make_unique<Ui::ChooseGroup>())
{
    m_ui->setupUi(this);
    setWindowModality(Qt::ApplicationModal);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &ChooseGroup::accept);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &ChooseGroup::reject);
    Controls::RestoreWindowPosition(m_services.settings, *this);
}

ChooseGroup::~ChooseGroup() = default;

void ChooseGroup::Populate(const LxGroupList &groups)
{
    m_ui->cboGroup->clear();
    for (const LxGroup *group : groups)
        m_ui->cboGroup->addItem(group->Name(), group->GroupID());
}

void ChooseGroup::SetChosenGroupID(int groupID)
{
    const int index = m_ui->cboGroup->findData(groupID);
    if (index >= 0)
        m_ui->cboGroup->setCurrentIndex(index);
}

void ChooseGroup::done(int result)
{
    m_chosenGroupID = m_ui->cboGroup->currentData().toInt();
    m_canceled = result != Accepted;
    Controls::SaveWindowPosition(m_services.settings, *this);
    QDialog::done(result);
}
