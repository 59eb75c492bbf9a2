#pragma once

#include "WindowServices.h"

#include <QDialog>

#include <memory>

namespace Ui {
class DeleteMany;
}

/// Asks for the names and numbers of the contacts to delete, one a line.
class DeleteMany final : public QDialog
{
    Q_OBJECT

public:
    DeleteMany(const WindowServices &services, QWidget *parent);
    ~DeleteMany() override;

    /// What was typed, its lines ended by LF.
    [[nodiscard]] QString ExclusionList() const;

    void done(int result) override;

private:
    WindowServices m_services;
    std::unique_ptr<Ui::DeleteMany> m_ui;
};
