#include "Version.h"

#include "VersionNumbers.h"

using namespace Qt::StringLiterals;

Version ProgramVersion()
{
    return {BREVIO_VERSION_MAJOR, BREVIO_VERSION_MINOR, BREVIO_VERSION_REVISION};
}

int VersionNumber(Version version)
{
    const QString minor = (QString::number(version.minor) + u"000"_s).left(3);
    const QString revision = (u"0000"_s + QString::number(version.revision)).right(4);
    return (QString::number(version.major) + minor + revision).toInt();
}

QString VersionText(Version version)
{
    constexpr QChar kZero = u'0';
    return u"%1.%2.%3"_s.arg(version.major).arg(version.minor, 2, 10, kZero).arg(version.revision, 4, 10, kZero);
}

QString ReleaseText(Version version)
{
    return u"%1.%2.%3"_s.arg(version.major).arg(version.minor).arg(version.revision);
}

QString ApplicationTitle()
{
    return u"Brevio"_s;
}
