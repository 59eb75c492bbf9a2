#pragma once

#include <QIcon>
#include <QLabel>

/// A picture that is as high as a number of lines of text, whatever the font, and follows the palette.
class IconLabel final : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;

    void ShowIcon(const QIcon &icon, int lines);

protected:
    void changeEvent(QEvent *event) override;

private:
    void Draw();

    QIcon m_icon;
    int m_lines = 0;
};
