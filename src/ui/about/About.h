#pragma once

#include <QDialog>

#include <memory>

class Prompts;
class Settings;
class Shell;
namespace Ui {
class About;
}

/// The program's name, version, links and libraries.
class About final : public QDialog
{
    Q_OBJECT

public:
    About(const Settings &settings, Shell &shell, Prompts &prompts, QWidget *parent);
    ~About() override;

private:
    std::unique_ptr<Ui::About> m_ui;
};
