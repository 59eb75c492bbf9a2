#pragma once

#include "ContactFile.h"

#include <QAbstractTableModel>

/// A file's table as it was read, under headings that tell what each column is for.
class ContactTableModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    ContactTableModel(ContactFile::Content content, QObject *parent);

    [[nodiscard]] const ContactFile::Content &Content() const { return m_content; }
    [[nodiscard]] bool HasColumn(ColumnRole role) const;

    void SetRole(int column, ColumnRole role);
    /// Whether the first row is the heading. The columns keep their roles where `keepsRoles`, else get those that are
    /// proposed then.
    void SetHasHeading(bool hasHeading, bool keepsRoles);

    /// What a column may be for, as the user reads it.
    [[nodiscard]] static QString NameOf(ColumnRole role);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    ContactFile::Content m_content;
};
