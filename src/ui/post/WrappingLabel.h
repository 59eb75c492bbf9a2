#pragma once

#include <QLabel>

class QTextLayout;

/// A label of plain text that breaks lines between words and, where a word is too long, inside it, so that nothing
/// is clipped however narrow it is.
class WrappingLabel final : public QLabel
{
    Q_OBJECT

public:
    explicit WrappingLabel(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// Breaks the text to the width and returns its height.
    qreal LayOut(QTextLayout &layout, int width) const;
};
