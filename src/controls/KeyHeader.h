#pragma once

#include <QHeaderView>

/// The header of a list that sorts by a click, for the keyboard too: Tab goes to it, the arrows choose a column, Space
/// and Enter do what a click on it does.
class KeyHeader final : public QHeaderView
{
    Q_OBJECT

public:
    explicit KeyHeader(QWidget *parent);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void paintSection(QPainter *painter, const QRect &rect, int section) const override;

private:
    void NameChosen();

    int m_chosen = 0;
};
