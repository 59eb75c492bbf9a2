#include "VCardReader.h"

#include "ForeignText.h"
#include "LxGroup.h"
#include "VCardLine.h"

#include <QCoreApplication>
#include <QHash>
#include <QStringConverter>
#include <QUrl>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;
using VCardLine::Property;

namespace VCardReader {
namespace {

struct Number
{
    QString text;
    NumberLabel label;
    /// Of the label that stands in a property of its own.
    QByteArray group;
};

struct Card
{
    QString fullName;
    QString nameParts;
    QString organisation;
    QString address;
    std::vector<Number> numbers;
    QHash<QByteArray, QString> labels;
    QStringList groups;
    QString identity;
    bool isGroup = false;
    QStringList members;
};

/// The same identity stands with and without its scheme.
QString Identity(const QString &value)
{
    const QString identity = value.toLower();
    return identity.startsWith("urn:uuid:"_L1) ? identity.sliced(9) : identity;
}

/// The number of a text or of a "tel:" address, whose parts other than an extension say how to dial at home.
QString NumberText(const QString &value)
{
    if (!value.startsWith("tel:"_L1, Qt::CaseInsensitive))
        return value;
    const QStringList parts = QUrl::fromPercentEncoding(value.sliced(4).toUtf8()).split(u';');
    QString number = parts.front();
    for (const QString &part : parts.mid(1)) {
        if (part.startsWith("phone-context=+"_L1, Qt::CaseInsensitive))
            number.prepend(part.sliced(14));
        else if (part.startsWith("ext="_L1, Qt::CaseInsensitive))
            number += u" ext. "_s + part.sliced(4);
    }
    return number;
}

/// None for what is not dialled to talk to a person.
std::optional<NumberLabel> LabelOf(const Property &tel)
{
    const QStringList types = tel.Types();
    const auto hasAny = [&types](std::initializer_list<QLatin1String> names) {
        return std::any_of(names.begin(), names.end(), [&types](QLatin1String name) { return types.contains(name); });
    };
    if (hasAny({"CELL"_L1, "MOBILE"_L1, "IPHONE"_L1, "TEXT"_L1}))
        return NumberLabel::Mobile;
    if (hasAny({"FAX"_L1, "PAGER"_L1, "MODEM"_L1, "BBS"_L1, "ISDN"_L1, "TEXTPHONE"_L1}))
        return std::nullopt;
    // Programs make up types of their own.
    return ImportColumns::LabelOf(types.join(u' '));
}

void AddNumber(Card &card, const Property &tel)
{
    const QString text = NumberText(VCardLine::Unescaped(tel.value)).trimmed();
    if (const auto label = LabelOf(tel); label && !text.isEmpty())
        card.numbers.push_back({text, *label, tel.group});
}

void Add(Card &card, const Property &property)
{
    const QByteArray &name = property.name;
    const QString &value = property.value;
    // The first that says something, for what a card has once.
    const auto fill = [](QString &text, const QString &found) {
        if (text.trimmed().isEmpty())
            text = found;
    };
    if (name == "FN")
        fill(card.fullName, VCardLine::Unescaped(value));
    else if (name == "N")
        fill(card.nameParts, value);
    else if (name == "ORG")
        fill(card.organisation, VCardLine::Split(value, u';').front());
    else if (name == "EMAIL")
        fill(card.address, VCardLine::Unescaped(value));
    else if (name == "TEL")
        AddNumber(card, property);
    else if (name == "X-ABLABEL")
        card.labels.insert(property.group, value);
    else if (name == "CATEGORIES")
        card.groups += VCardLine::Split(value, u',');
    else if (name == "UID")
        card.identity = Identity(value);
    else if (name == "KIND" || name == "X-ADDRESSBOOKSERVER-KIND")
        card.isGroup = value.compare("group"_L1, Qt::CaseInsensitive) == 0;
    else if (name == "MEMBER" || name == "X-ADDRESSBOOKSERVER-MEMBER")
        card.members += Identity(value);
}

QString NameOf(const Card &card)
{
    QString name = card.fullName.trimmed();
    if (name.isEmpty()) {
        const QStringList parts = VCardLine::Split(card.nameParts, u';');
        name = (parts.value(1) + u' ' + parts.front()).simplified();
    }
    for (const QString &other : {card.organisation, card.address}) {
        if (name.isEmpty())
            name = other.simplified();
    }
    return name;
}

/// Reads the cards of a file one after the other.
class CardReader final
{
public:
    explicit CardReader(QByteArrayView bytes)
        : m_lines(bytes)
    {
    }

    [[nodiscard]] std::vector<Card> ReadAll()
    {
        while (const auto property = m_lines.Next())
            Take(*property);
        if (m_isOpen) {
            const QString cut = QCoreApplication::translate(
                "ContactFile", "The file is cut off: it ends within a card. Whole cards before that: %1.");
            ForeignText::Raise(cut.arg(m_cards.size()));
        }
        return std::move(m_cards);
    }

private:
    void Take(const Property &property)
    {
        const bool isCard = property.value.compare("VCARD"_L1, Qt::CaseInsensitive) == 0;
        const bool isBegin = isCard && property.name == "BEGIN";
        const bool isEnd = isCard && property.name == "END";
        // An agent's card stands between the lines of the card that names it.
        const bool isAgent = std::exchange(m_isAgentNext, false);
        if (m_depth > 0 || (isBegin && isAgent)) {
            m_depth += isBegin ? 1 : isEnd ? -1 : 0;
        } else if (isBegin) {
            End();
            m_isOpen = true;
        } else if (isEnd) {
            End();
        } else if (m_isOpen && property.name == "VERSION") {
            m_lines.SetFoldsAtSpaces(property.value == "2.1"_L1);
        } else if (m_isOpen && property.name == "AGENT") {
            m_isAgentNext = property.value.isEmpty();
            m_depth = property.value.compare("BEGIN:VCARD"_L1, Qt::CaseInsensitive) == 0 ? 1 : 0;
        } else if (m_isOpen) {
            Add(m_card, property);
        }
    }

    void End()
    {
        if (m_isOpen)
            m_cards.push_back(std::exchange(m_card, {}));
        m_isOpen = false;
        m_lines.SetFoldsAtSpaces(false);
    }

    VCardLine::Reader m_lines;
    std::vector<Card> m_cards;
    Card m_card;
    bool m_isOpen = false;
    bool m_isAgentNext = false;
    int m_depth = 0;
};

struct Column
{
    const char *heading;
    ImportColumn column;
};
constexpr std::array<Column, 6> kColumns{{
    {QT_TRANSLATE_NOOP("VCardReader", "Name"), {ColumnRole::Name}},
    {QT_TRANSLATE_NOOP("VCardReader", "Mobile"), {ColumnRole::Mobile, NumberLabel::Mobile}},
    {QT_TRANSLATE_NOOP("VCardReader", "Phone"), {ColumnRole::Mobile, NumberLabel::None}},
    {QT_TRANSLATE_NOOP("VCardReader", "Home or work"), {ColumnRole::Mobile, NumberLabel::Landline}},
    {QT_TRANSLATE_NOOP("VCardReader", "Other"), {ColumnRole::Mobile, NumberLabel::Other}},
    {QT_TRANSLATE_NOOP("VCardReader", "Groups"), {ColumnRole::Groups}},
}};
using Row = std::array<QString, kColumns.size()>;

Row RowOf(const Card &card, const QStringList &moreGroups)
{
    Row row;
    row.front() = NameOf(card);
    for (const Number &number : card.numbers) {
        const QString own = number.group.isEmpty() ? QString() : card.labels.value(number.group);
        const NumberLabel label = own.isEmpty() ? number.label : ImportColumns::LabelOf(own);
        const auto isFor = [label](const Column &other) {
            return other.column.role == ColumnRole::Mobile && other.column.label == label;
        };
        QString &cell =
            row[static_cast<size_t>(std::find_if(kColumns.begin(), kColumns.end(), isFor) - kColumns.begin())];
        cell += (cell.isEmpty() ? QString() : u" ::: "_s) + number.text;
    }
    QStringList groups;
    for (const QString &group : card.groups + moreGroups) {
        const QString cleaned = LxGroup::CleanName(group.trimmed());
        if (!cleaned.isEmpty() && !ImportColumns::IsGroupOfAll(cleaned))
            groups += cleaned;
    }
    row.back() = groups.join(u';');
    return row;
}

std::vector<Row> RowsOf(const std::vector<Card> &cards)
{
    QHash<QString, QStringList> groupsOf;
    for (const Card &card : cards) {
        for (const QString &member : card.isGroup ? card.members : QStringList())
            groupsOf[member] += NameOf(card);
    }
    std::vector<Row> rows;
    rows.reserve(cards.size());
    for (const Card &card : cards) {
        if (!card.isGroup)
            rows.push_back(RowOf(card, card.identity.isEmpty() ? QStringList() : groupsOf.value(card.identity)));
    }
    return rows;
}

} // namespace

bool IsVCard(const QByteArray &bytes)
{
    // A card's first line is plain ASCII in every encoding: what else stands there are marks and zeros.
    QByteArray start = bytes.first(std::min(bytes.size(), qsizetype(256)));
    start.removeIf([](char c) { return c <= ' ' || c > '~'; });
    return start.toUpper().startsWith("BEGIN:VCARD");
}

ContactFile::Content Read(const QByteArray &bytes)
{
    const bool isMarked = QStringConverter::encodingForData(bytes).has_value();
    const QByteArray text = isMarked || bytes.first(std::min(bytes.size(), qsizetype(64))).contains('\0')
                                ? ForeignText::Decode(bytes).toUtf8()
                                : bytes;
    const std::vector<Row> rows = RowsOf(CardReader(text).ReadAll());

    ContactFile::Content content;
    content.isVCards = true;
    content.table.SetHasHeading(true);
    content.table.SetGroupSeparator(u";"_s);
    std::array<bool, kColumns.size()> isUsed{};
    for (size_t i = 0; i < kColumns.size(); ++i) {
        isUsed[i] = std::any_of(rows.begin(), rows.end(), [i](const Row &row) { return !row[i].isEmpty(); });
        if (!isUsed[i])
            continue;
        content.table.AppendCell(QCoreApplication::translate("VCardReader", kColumns[i].heading));
        content.columns.push_back(kColumns[i].column);
    }
    content.table.EndRow();
    for (const Row &row : rows) {
        for (size_t i = 0; i < kColumns.size(); ++i) {
            if (isUsed[i])
                content.table.AppendCell(row[i]);
        }
        content.table.EndRow();
    }
    return content;
}

} // namespace VCardReader
