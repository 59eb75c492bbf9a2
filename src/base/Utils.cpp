#include "Utils.h"

#include "Error.h"

#include <QAbstractItemModel>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cerrno>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace Utils {
namespace {

[[noreturn]] void RaiseUnreadable(const QString &description)
{
    throw Error(ErrorNumber::kFileAccess, u"ReadTextFile"_s, description);
}

/// The folder that the variable names; empty text for a path that is not absolute, as programs are to pass it over.
QString Environment(const char *variable)
{
    const QString path = qEnvironmentVariable(variable);
    return QDir::isAbsolutePath(path) ? QDir::cleanPath(path) : QString();
}

} // namespace

QString GetSpecialFolder(SpecialFolder folder)
{
    // Without a home Qt would take the root of all files for it.
    const QString home = Environment("HOME");
    const auto below = [&home](const QString &path) {
        return home.isEmpty() ? QString() : QDir::cleanPath(home + path);
    };
    switch (folder) {
    case SpecialFolder::AppData:
        return IfEmpty(Environment("XDG_DATA_HOME"), below(u"/.local/share"_s));
    case SpecialFolder::AppConfig:
        return IfEmpty(Environment("XDG_CONFIG_HOME"), below(u"/.config"_s));
    case SpecialFolder::MyDocuments:
        break;
    }
    return home.isEmpty() ? QString()
                          : QDir::cleanPath(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
}

QString AppDataFolder()
{
    return GetSpecialFolder(SpecialFolder::AppData);
}

QString MyDocumentsFolder()
{
    return GetSpecialFolder(SpecialFolder::MyDocuments);
}

QString GetUserName()
{
    const passwd *entry = ::getpwuid(::getuid());
    return entry ? QFile::decodeName(entry->pw_name) : QString();
}

QString Cut(const QString &text, qsizetype length)
{
    if (text.size() <= length)
        return text;
    if (length > 0 && text[length - 1].isHighSurrogate())
        --length;
    return text.first(length);
}

bool FileExists(const QString &path)
{
    return QFile::exists(path);
}

QByteArray ReadTextFile(const QString &path)
{
    if (!FileExists(path)) {
        throw Error(ErrorNumber::kFileNotFound, u"ReadTextFile"_s,
                    QCoreApplication::translate("Utils", "File not found"));
    }
    // A pipe or a device may never come to an end.
    if (!QFileInfo(path).isFile())
        RaiseUnreadable(QCoreApplication::translate("Utils", "It is not a file"));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        RaiseUnreadable(file.errorString());
    constexpr qint64 kLargest = 256LL << 20;
    if (file.size() > kLargest)
        RaiseUnreadable(QCoreApplication::translate("Utils", "The file is too large"));
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        RaiseUnreadable(file.errorString());
    return bytes;
}

bool SetAside(const QString &path, QString &kept)
{
    kept = path + u".bad"_s;
    for (int n = 2; FileExists(kept); ++n)
        kept = u"%1.%2.bad"_s.arg(path, QString::number(n));
    return QFile::rename(path, kept);
}

QString FileNameOfPath(const QString &path)
{
    return path.sliced(qMax(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\')) + 1);
}

bool EnsureFolderExists(const QString &path, QString *reason)
{
    constexpr mode_t kOwnerOnly = 0700;
    for (qsizetype end = path.indexOf(u'/', 1); end >= 0; end = path.indexOf(u'/', end + 1)) {
        const QString folder = path.first(end);
        if (QFileInfo(folder).isDir() || ::mkdir(QFile::encodeName(folder).constData(), kOwnerOnly) == 0)
            continue;
        const int code = errno == EEXIST ? ENOTDIR : errno;
        // Another program may have made it just now.
        if (QFileInfo(folder).isDir())
            continue;
        if (reason)
            *reason = qt_error_string(code);
        return false;
    }
    return true;
}

QString QuoteCsvField(const QString &text)
{
    return u'"' + QString(text).replace(u'"', "\"\""_L1) + u'"';
}

QString WriteListAsCsv(const QAbstractItemModel &list, bool headersHidden)
{
    const int columns = list.columnCount();
    const auto line = [columns](auto fieldAt) {
        QStringList fields;
        for (int column = 0; column < columns; ++column)
            fields += QuoteCsvField(fieldAt(column));
        return fields.join(u',') + "\r\n"_L1;
    };
    QString text;
    if (!headersHidden)
        text += line([&list](int column) { return list.headerData(column, Qt::Horizontal).toString(); });
    for (int row = 0; row < list.rowCount(); ++row)
        text += line([&list, row](int column) { return list.index(row, column).data().toString(); });
    return text;
}

} // namespace Utils
