#include "About.h"

#include "Controls.h"
#include "Icons.h"
#include "VendorPages.h"
#include "Version.h"
#include "ui_About.h"

#include <QShortcut>

using namespace Qt::StringLiterals;

About::About(const WindowServices &services, QWidget *parent)
    : QDialog(parent)
    , m_services(services)
    , m_ui(std::make_unique<Ui::About>())
{
    m_ui->setupUi(this);
    setWindowModality(Qt::ApplicationModal);
    m_ui->imgProgram->ShowIcon(Icons::Program(), 4);
    m_ui->lblVersion->setText(tr("Version %1").arg(VersionText(ProgramVersion())));
    QFont large = m_ui->lblName->font();
    large.setBold(true);
    large.setPointSizeF(large.pointSizeF() * 1.6);
    m_ui->lblName->setFont(large);
    connect(m_ui->lblWebSite, &QLabel::linkActivated, this, [this] { VendorPages::Open(u"/"_s, m_services, this); });
    connect(m_ui->lblSupport, &QLabel::linkActivated, this,
            [this](const QString &address) { VendorPages::OpenAddress(address, m_services, this); });
    new QShortcut(QKeySequence(u"Ctrl+W"_s), this, this, &About::accept);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &About::accept);
    Controls::FitToContents(*this);
}

About::~About() = default;
