#pragma once

#include <QDialog>
#include <memory>

class CGIPost;
namespace Ui {
class CGIPost;
}

/// Shows how a post goes on and sends it cancel. It starts the post when it is first shown and closes by itself when
/// the post has finished; its button, Escape and the frame's close button cancel the post instead of closing. What is
/// typed on when it opens does nothing: the status has the focus, and the button presses only once the user went there.
class CGIPostWindow final : public QDialog
{
    Q_OBJECT

public:
    /// `post` was set up, not started, and outlives the window.
    explicit CGIPostWindow(CGIPost &post, QWidget *parent = nullptr);
    ~CGIPostWindow() override;

    /// Escape and the frame's close button come here.
    void reject() override;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void ShowState();
    void FitToText();

    CGIPost &m_post;
    std::unique_ptr<Ui::CGIPost> m_ui;
};
