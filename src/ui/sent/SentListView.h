#pragma once

#include <QTableView>

/// The list of sent messages: looks and answers keys like the other lists, but is a table inside, as a tree keeps 40
/// bytes a row and makes them all anew at each change, which with a million rows is felt.
class SentListView final : public QTableView
{
    Q_OBJECT

public:
    explicit SentListView(QWidget *parent = nullptr);

    /// Takes the model; the columns get widths by the font.
    void SetUp(QAbstractItemModel *rows);

    /// In ascending order, without looking at each of them where they are in a row.
    [[nodiscard]] std::vector<int> SelectedRows() const;
    [[nodiscard]] bool IsOneSelected() const;

    /// Selects this row alone and makes it current.
    void SelectOnly(int row);

    /// What the list says quietly while it has no rows; empty for nothing.
    void SetHint(const QString &hint);

    /// Nothing: looking for a name row by row would read all of them, and the find box does better.
    void keyboardSearch(const QString &) override {}

signals:
    void CopyAsked();
    void DeleteAsked();
    void SelectionChanged();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void FitRows();

    QString m_hint;
};
