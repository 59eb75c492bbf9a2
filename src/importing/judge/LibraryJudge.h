#pragma once

#include "NumberJudge.h"

#include <QObject>

/// The judge that asks libphonenumber.
class LibraryJudge final : public QObject, public NumberJudge
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID BREVIO_NUMBER_JUDGE_IID)
    Q_INTERFACES(NumberJudge)

public:
    [[nodiscard]] std::optional<Reading> Read(const QString &number, const QString &region) const override;
    [[nodiscard]] QList<Region> Regions() const override;
    [[nodiscard]] QList<RegionName> RegionNames() const override;
    [[nodiscard]] QString RegionOf(int diallingCode) const override;
};
