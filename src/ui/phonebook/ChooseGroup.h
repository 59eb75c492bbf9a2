#pragma once

#include "WindowServices.h"

#include <QDialog>

#include <memory>

class LxGroupList;
namespace Ui {
class ChooseGroup;
}

/// Lets the user pick one group. Set the title, populate, exec, and test Canceled before ChosenGroupID, which a
/// cancelled dialog sets too.
class ChooseGroup final : public QDialog
{
    Q_OBJECT

public:
    ChooseGroup(const WindowServices &services, QWidget *parent);
    ~ChooseGroup() override;

    /// Sets the caption.
    void SetActionTitle(const QString &title) { setWindowTitle(title); }

    /// Lists the groups in their order and selects the first.
    void Populate(const LxGroupList &groups);

    /// Selects the group of this identity where it is listed.
    void SetChosenGroupID(int groupID);

    /// The identity of the group that was selected when a button closed the dialog; 0 for none.
    [[nodiscard]] int ChosenGroupID() const { return m_chosenGroupID; }

    /// Whether the dialog was left in another way than by OK.
    [[nodiscard]] bool Canceled() const { return m_canceled; }

    void done(int result) override;

private:
    WindowServices m_services;
    std::unique_ptr<Ui::ChooseGroup> m_ui;
    int m_chosenGroupID = 0;
    bool m_canceled = true;
};
