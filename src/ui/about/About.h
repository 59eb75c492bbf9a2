#pragma once

#include "WindowServices.h"

#include <QDialog>

#include <memory>

namespace Ui {
class About;
}

/// The program's name, version, links and libraries.
class About final : public QDialog
{
    Q_OBJECT

public:
    About(const WindowServices &services, QWidget *parent);
    ~About() override;

private:
    WindowServices m_services;
    std::unique_ptr<Ui::About> m_ui;
};
