#include "CGIPostWindow.h"

#include "Accessibility.h"
#include "CGIPost.h"
#include "Icons.h"
#include "ui_CGIPost.h"

#include <QKeyEvent>
#include <QScreen>

using namespace Qt::StringLiterals;

CGIPostWindow::CGIPostWindow(CGIPost &post, QWidget *parent)
    : QDialog(parent)
    , m_post(post)
    , m_ui(std::make_unique<Ui::CGIPost>())
{
    m_ui->setupUi(this);
    if (!post.Caption().isEmpty())
        setWindowTitle(post.Caption());
    m_ui->imgLetter->ShowIcon(Icons::Get("letter"_L1), 2);
    m_ui->lblDescription->setText(post.Description());
    connect(m_ui->cmdCancel, &QPushButton::clicked, this, &CGIPostWindow::reject);
    connect(&post, &CGIPost::StateChanged, this, &CGIPostWindow::ShowState);
    connect(&post, &CGIPost::Finished, this, &CGIPostWindow::accept);
    m_ui->lblStatus->setFocus();
    FitToText(); // before it is shown, so that it is placed by its real size
}

CGIPostWindow::~CGIPostWindow() = default;

void CGIPostWindow::reject()
{
    m_post.Cancel();
}

void CGIPostWindow::keyPressEvent(QKeyEvent *event)
{
    // The button is no default button, which would take every Enter, so it leaves its own to the window.
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && m_ui->cmdCancel->hasFocus())
        m_ui->cmdCancel->click();
    else
        QDialog::keyPressEvent(event);
}

void CGIPostWindow::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    m_post.Start();
    FitToText();
}

void CGIPostWindow::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (isVisible() && (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange))
        FitToText();
}

void CGIPostWindow::ShowState()
{
    m_ui->lblStatus->setText(m_post.Status());
    m_ui->cmdCancel->setEnabled(m_post.CanCancel());
    if (isVisible())
        FitToText();
    Accessibility::Announce(*m_ui->lblStatus, m_post.Status());
}

/// Makes the window as wide as the font asks for and as high as the texts need; it never shrinks while it is shown.
void CGIPostWindow::FitToText()
{
    constexpr int kCharacters = 60;
    const int line = fontMetrics().lineSpacing();
    m_ui->lblStatus->setMinimumHeight(2 * line); // so that a longer status rarely moves the button
    const int widest = screen()->availableGeometry().width() * 9 / 10;
    const int width = qMin(fontMetrics().averageCharWidth() * kCharacters, widest);
    const int needed = layout()->totalHeightForWidth(width);
    setFixedSize(width, width == this->width() ? qMax(needed, height()) : needed);
}
