#include "PasswordHash.h"

#include "Error.h"
#include "Failure.h"

#include <crypt.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace PasswordHash {
namespace {

// Empty when the setting is no good. The library would stop at a NUL and take what follows for the same password.
QByteArray Crypt(const QString &password, const QByteArray &setting)
{
    const auto room = std::make_unique<crypt_data>();
    const char *hash = crypt_r(password.toUtf8().replace('\0', "\xFF").constData(), setting.constData(), room.get());
    return hash && *hash != '*' ? QByteArray(hash) : QByteArray();
}

} // namespace

QByteArray Make(const QString &password)
{
    char setting[CRYPT_GENSALT_OUTPUT_SIZE];
    const bool hasSetting = crypt_gensalt_rn("$y$", 0, nullptr, 0, setting, sizeof setting);
    QByteArray hash = hasSetting ? Crypt(password, setting) : QByteArray();
    if (hash.isEmpty())
        throw Failure(u"The password cannot be hashed"_s);
    return hash;
}

bool Matches(const QString &password, const QByteArray &hash)
{
    const QByteArray other = Crypt(password, hash);
    // Compared to the end, so that the time tells nothing of how far it is right.
    auto difference = static_cast<unsigned>(other.isEmpty() || other.size() != hash.size());
    for (qsizetype at = 0; at < std::min(other.size(), hash.size()); ++at)
        difference |= static_cast<unsigned char>(other[at] ^ hash[at]);
    return difference == 0;
}

} // namespace PasswordHash
