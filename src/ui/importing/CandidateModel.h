#pragma once

#include "Candidates.h"

#include <QAbstractTableModel>
#include <QHash>

#include <array>
#include <optional>
#include <span>
#include <utility>
#include <vector>

/// Who of a file may come in, a row for each number, with a tick for who does. While numbers are being judged there
/// are no ticks.
class CandidateModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Name, Number, What, Where, Groups, ColumnCount };

    /// What a candidate is: one of these.
    enum class Kind {
        Mobile,
        MayBeMobile,
        Landline,
        UnknownCountry,
        NotServed,
        NotANumber,
        NoNumber,
        InPhoneBook,
        TwiceInFile
    };
    static constexpr size_t kKindCount = 9;

    using QAbstractTableModel::QAbstractTableModel;

    /// Takes candidates that are to be judged, and shows all of them.
    void SetCandidates(std::vector<Candidate> candidates);
    /// All of them, to be judged.
    [[nodiscard]] std::span<Candidate> All() { return m_candidates; }
    /// So many from this one on were judged.
    void ShowJudged(int first, int count);
    /// Once all are judged. Ticks that the user set before hold where the number of the row is still the same, and what
    /// was unticked stays so.
    void Settle(const LxPhoneBook &phoneBook);

    /// Shows those of the kind, or all.
    void ShowOnly(std::optional<Kind> kind);
    /// Ticks or unticks all that are shown and can come in.
    void TickShown(bool isTicked);
    /// Those of these rows.
    void TickRows(int first, int last, bool isTicked);

    /// Forgets the user's ticks, for candidates of other rows.
    void ForgetTicks() { m_ownTicks.clear(); }

    [[nodiscard]] int TickedCount() const { return m_tickedCount; }
    [[nodiscard]] int CountOf(Kind kind) const { return m_counts[static_cast<size_t>(kind)]; }
    /// As the user reads it.
    [[nodiscard]] static QString NameOf(Kind kind);

    /// Hands the candidates over; the model is empty then.
    [[nodiscard]] std::vector<Candidate> TakeCandidates();

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    void TicksChanged();

private:
    [[nodiscard]] static Kind KindOf(NumberKind kind);
    [[nodiscard]] static Kind KindOf(const Candidate &candidate);
    /// The name of the first who has the number of a candidate that is not.
    [[nodiscard]] QString FirstWithNumberOf(const Candidate &candidate) const;
    [[nodiscard]] size_t PlaceOf(int row) const;
    [[nodiscard]] QString Text(size_t place, int column) const;
    [[nodiscard]] bool CanBeTicked(const Candidate &candidate) const;

    std::vector<Candidate> m_candidates;
    /// Which were judged, until all are settled.
    std::vector<bool> m_isJudged;
    bool m_isSettled = false;
    /// The places of those that are shown, where not all are.
    std::optional<std::vector<int>> m_shown;
    std::array<int, kKindCount> m_counts{};
    int m_tickedCount = 0;
    /// What the user ticked, by row and number as the file has them: the number that it was then, empty for unticked.
    QHash<std::pair<int, QString>, QString> m_ownTicks;
};
