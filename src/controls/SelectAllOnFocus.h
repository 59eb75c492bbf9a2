#pragma once

#include <QObject>

class QWidget;

/// Selects the whole text of a text box when the user goes there by Tab, click or access key, so that typing replaces
/// it. Not when its window merely becomes active again: one key would erase what was written.
class SelectAllOnFocus final : public QObject
{
    Q_OBJECT

public:
    /// `textBox` is a line edit or a plain text edit, and owns the new object.
    explicit SelectAllOnFocus(QWidget *textBox);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_textBox;
    bool m_clickBroughtFocus = false;
};
