#pragma once

#include "CandidateModel.h"
#include "ContactFile.h"
#include "JudgedNumber.h"
#include "NumberJudging.h"
#include "WindowServices.h"

#include <QDialog>
#include <QString>

#include <memory>
#include <optional>

class ContactTableModel;
class LxCountryList;
class LxPhoneBook;
class NumberJudge;
class QMenu;
namespace Ui {
class ImportAssistant;
}

/// Shows another program's file as it was read and lets the user say what its columns are for and, once their numbers
/// are judged, who comes into the phone book, which it leaves as it is. The country is remembered, after Cancel too.
class ImportAssistant final : public QDialog
{
    Q_OBJECT

public:
    /// All must outlive the dialog.
    struct Services
    {
        const LxCountryList &countries;
        const NumberJudge &judge;
        WindowServices window;
    };

    ImportAssistant(const Services &services, const LxPhoneBook &phoneBook, const QString &fileName,
                    ContactFile::Content content, QWidget *parent);
    ~ImportAssistant() override;

    /// Hands over what was chosen, after OK.
    [[nodiscard]] ImportChoice TakeChoice();

    void done(int result) override;

protected:
    bool event(QEvent *event) override;

private:
    void SetUpLists();
    void SetUpCountries();
    void ConnectControls();
    void AskRole(int column);
    void ChooseRole(int column, ColumnRole role);
    void ChooseHeading(bool hasHeading);
    /// Begins anew to judge, by the roles of the columns and the country as they are now.
    void Judge();
    void NoteJudged(int first, int count);
    void Settle();
    void FillKinds();
    void Narrow();
    void TurnSelected();
    void ShowState();
    void FitColumns();

    Services m_services;
    const LxPhoneBook &m_phoneBook;
    std::unique_ptr<Ui::ImportAssistant> m_ui;
    ContactTableModel *m_table;
    QMenu *m_roles;
    /// Whether the user said what a column is for.
    bool m_hasOwnRoles = false;
    CandidateModel m_candidates;
    std::optional<NumberRules> m_rules;
    int m_judgedCount = 0;
    bool m_isSettled = false;
    /// Ends its threads before what they work on goes.
    NumberJudging m_judging;
};
