#pragma once

#include <QStatusBar>

/// The status bar of the compose window. It is never narrower than the words about refused characters need.
class StatusLine final : public QStatusBar
{
    Q_OBJECT

public:
    explicit StatusLine(QWidget *parent = nullptr);

    void ShowStatus(const QString &text);

    /// Tells which characters are not allowed: as many as fit between the words around them, and all in the tool tip
    /// where some do not.
    void ShowRefusal(const QString &characters);

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void MakeRoomForWords();
    void FitRefusal();

    /// Those that are told of now.
    QString m_refused;
};
