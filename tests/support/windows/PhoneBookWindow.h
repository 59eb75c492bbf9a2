#pragma once

#include "Dialogs.h"
#include "ForeignContacts.h"
#include "Machine.h"
#include "PhoneBook.h"
#include "SampleCountries.h"
#include "Settings.h"

#include <QAction>
#include <QLineEdit>
#include <QTreeView>

/// The phone book window of a machine and its user. Its controls are there once it was shown.
struct PhoneBookWindow
{
    PhoneBookWindow(Machine &machine, Prompts &prompts)
        : settings(Settings::DefaultFileName(), prompts)
        , services{settings, prompts, machine.shell, std::chrono::milliseconds(0)}
        , newBook(std::make_unique<LxPhoneBook>(countries, machine.clock))
        , book(*newBook)
        , phoneBook({countries, machine.clock, services,
                     [this](const LxPhoneBook &from, QWidget *owner) {
                         return ForeignContacts::Ask({countries, programFolder, services}, from, owner);
                     }},
                    std::move(newBook))
    {
    }

    [[nodiscard]] LxPhoneBook &Book() { return book; }
    [[nodiscard]] QTreeView &Groups() const { return Control<QTreeView>(phoneBook, "lvwGroups"); }
    [[nodiscard]] QTreeView &Contacts() const { return Control<QTreeView>(phoneBook, "lvwContacts"); }
    [[nodiscard]] QLineEdit &Find() const { return Control<QLineEdit>(phoneBook, "txtFind"); }
    void Trigger(const QString &action) const { Control<QAction>(phoneBook, action.toLatin1()).trigger(); }

    /// The editor that is open in a list, or null.
    [[nodiscard]] static QLineEdit *Editor(const QTreeView &list) { return list.viewport()->findChild<QLineEdit *>(); }

    /// The first column of a list, the selected rows marked by "*", the current one by "<".
    [[nodiscard]] static QString Rows(const QTreeView &list)
    {
        QStringList rows;
        for (int row = 0; row < list.model()->rowCount(); ++row) {
            const QModelIndex index = list.model()->index(row, 0);
            const QString selected = list.selectionModel()->isRowSelected(row) ? QStringLiteral("*") : QString();
            const QString current = list.currentIndex().row() == row ? QStringLiteral("<") : QString();
            rows += index.data().toString() + selected + current;
        }
        return rows.join(u' ');
    }

    LxCountryList countries = SampleCountries();
    /// Where NumberJudge lies.
    QString programFolder;
    Settings settings;
    /// What is started may be started again at once.
    const WindowServices services;
    /// Until the window takes it.
    std::unique_ptr<LxPhoneBook> newBook;
    LxPhoneBook &book;
    PhoneBook phoneBook;
};
