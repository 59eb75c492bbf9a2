#pragma once

#include <QList>
#include <QString>
#include <QtPlugin>

#include <optional>

/// What is known of the world's phone numbers. It is heavy to load and lies in a plugin, so that a start without an
/// import does not pay for it. All functions may be called by several threads at once.
class NumberJudge
{
public:
    enum class Type { Unknown, Landline, MayBeMobile, Mobile };

    struct Reading
    {
        /// Unknown where no such number is known to be in use.
        Type type = Type::Unknown;
        /// Whether a mobile of its country has so many digits.
        bool isPossibleMobile = false;
        bool hasExtension = false;
        /// "+", the dialling code and the number within the country.
        QString international;
    };

    struct Region
    {
        /// Two letters, as in ISO 3166.
        QString code;
        int diallingCode = 0;
    };

    struct RegionName
    {
        QString name;
        /// Of the region.
        QString code;
    };

    virtual ~NumberJudge() = default;

    /// The number as dialled in the region; none when it cannot be one.
    [[nodiscard]] virtual std::optional<Reading> Read(const QString &number, const QString &region) const = 0;

    /// Every region that Read knows, by its letters.
    [[nodiscard]] virtual QList<Region> Regions() const = 0;

    /// What regions are called in English, German, French, Spanish and Italian, in full and for short, and by three
    /// letters. Some names are of several regions.
    [[nodiscard]] virtual QList<RegionName> RegionNames() const = 0;

    /// The letters of the (first) region of a dialling code, or empty text.
    [[nodiscard]] virtual QString RegionOf(int diallingCode) const = 0;

    /// Loads the plugin, once, from the folder "plugins" beside the program. Raises number 53, source
    /// "Corvane.NumberJudge", with a description for the user when it is missing or does not fit.
    [[nodiscard]] static const NumberJudge &Load(const QString &programFolder);
};

#define BREVIO_NUMBER_JUDGE_IID "example.corvane.brevio.NumberJudge/2"
Q_DECLARE_INTERFACE(NumberJudge, BREVIO_NUMBER_JUDGE_IID)
