#pragma once

#include <QStatusBar>

class QLabel;

/// The status bar of the compose window: a status, and at the right end what a send will cost, where there is room for
/// both. It is never narrower than the words about refused characters need.
class StatusLine final : public QStatusBar
{
    Q_OBJECT

public:
    explicit StatusLine(QWidget *parent = nullptr);

    /// A text that does not fit ends in dots, and the tool tip has all of it.
    void ShowStatus(const QString &text);

    /// Tells which characters are not allowed: as many as fit between the words around them, and all in the tool tip
    /// where some do not.
    void ShowRefusal(const QString &characters);

    /// Shows how many people a message of so many parts goes to, such as "200 people, 400 messages".
    void ShowCost(qsizetype people, qsizetype parts);
    void HideCost();

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void MakeRoomForWords();
    void FitRefusal();
    void FitStatus();
    void FitCost();
    void Announce();

    /// Those that are told of now.
    QString m_refused;
    QLabel *m_cost;
};
