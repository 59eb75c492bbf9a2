#pragma once

#include <QTreeView>

#include <optional>

class NameDelegate;

/// A list whose names, the first column, are edited in place. What was typed is told once the editor is gone, so that
/// a command may refill the list.
class NameListView : public QTreeView
{
    Q_OBJECT

public:
    /// Opens the editor on the current row's name, where that can be edited.
    void EditCurrentName();

    /// Takes what was typed in the open editor, closes it and tells the name before it returns.
    void CommitEditor();

signals:
    /// `key` is the row's, as RowKeys makes it.
    void NameTyped(const QString &key, const QString &name);

    void GotFocus();

protected:
    /// `maxLength` of a name in UTF-16 units.
    NameListView(int maxLength, QWidget *parent);

    /// Whether a key that comes by here is meant for an editor that is open, or that it has just ended.
    [[nodiscard]] bool IsEditing() const { return state() == EditingState; }

    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void closeEditor(QWidget *editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    struct Typed
    {
        QString key;
        QString name;
    };

    void TellName();

    NameDelegate *m_names;
    /// What was typed and not told yet.
    std::optional<Typed> m_typed;
};
