#pragma once

#include <QTimer>
#include <QTreeView>

#include <optional>

class NameDelegate;

/// A list whose names, the first column, are edited in place: after F2, or after a click on the row that alone was
/// selected. What was typed is told once the editor is gone, so that a command may refill the list.
class NameListView : public QTreeView
{
    Q_OBJECT

public:
    /// Opens the editor on the current row's name, where that can be edited.
    void EditCurrentName();

    /// Takes what was typed in the open editor, closes it and tells the name before it returns. An editor that a click
    /// is about to open stays closed.
    void CommitEditor();

    /// What the list says quietly in the room below its rows; empty for nothing.
    void SetHint(const QString &hint);

    /// Type-ahead looks at the names, whichever column was clicked.
    void keyboardSearch(const QString &search) override;

signals:
    /// `key` is the row's, as RowKeys makes it.
    void NameTyped(const QString &key, const QString &name);

    void GotFocus();

protected:
    /// `maxLength` of a name in UTF-16 units.
    NameListView(int maxLength, QWidget *parent);

    /// Whether a key that comes by here is meant for an editor that is open, or that it has just ended.
    [[nodiscard]] bool IsEditing() const { return state() == EditingState; }

    void initViewItemOption(QStyleOptionViewItem *option) const override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    struct Typed
    {
        QString key;
        QString name;
    };

    void TellName();
    [[nodiscard]] bool IsOnlySelected(const QModelIndex &index) const;

    NameDelegate *m_names;
    QString m_hint;
    /// Runs between a click that may open the editor and its opening, in which a double click has time to come.
    QTimer m_editDelay;
    /// The row that alone was selected when it was pressed; -1 for any other press.
    int m_pressedAgain = -1;
    /// Whether the press that comes next is the one that brought the focus.
    bool m_pressBroughtFocus = false;
    /// What was typed and not told yet.
    std::optional<Typed> m_typed;
};
