#include "DeleteMany.h"

#include "Controls.h"
#include "ui_DeleteMany.h"

DeleteMany::DeleteMany(const WindowServices &services, QWidget *parent)
    : QDialog(parent)
    , m_services(services)
    , m_ui(std::make_unique<Ui::DeleteMany>())
{
    m_ui->setupUi(this);
    setWindowModality(Qt::ApplicationModal);
    connect(m_ui->cmdOK, &QPushButton::clicked, this, &DeleteMany::accept);
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &DeleteMany::reject);
    // Here, and not whenever the user comes back from another program with a name: the next key would erase the list.
    m_ui->txtExclude->selectAll();
    m_ui->txtExclude->setFocus();
    Controls::FitToContents(*this);
    Controls::RestoreWindowPosition(m_services.settings, *this);
}

DeleteMany::~DeleteMany() = default;

QString DeleteMany::ExclusionList() const
{
    // Not toPlainText, which would turn a no-break space into a space, and so one name into another.
    QString text = m_ui->txtExclude->document()->toRawText();
    return text.replace(QChar::ParagraphSeparator, u'\n').replace(QChar::LineSeparator, u'\n');
}

void DeleteMany::done(int result)
{
    Controls::SaveWindowPosition(m_services.settings, *this);
    QDialog::done(result);
}
