#pragma once

#include <QClipboard>
#include <QLineEdit>

/// A box of one line that makes plain (PlainText::OneLine) what is pasted or dropped into it, by whatever way.
class OneLineEdit : public QLineEdit
{
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void PastePlain(QClipboard::Mode mode);
};
