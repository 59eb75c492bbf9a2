#include "Utils.h"

#include "Error.h"

#include <QAbstractItemModel>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <pwd.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace Utils {
namespace {

[[noreturn]] void RaiseUnreadable(const QString &description)
{
    throw Error(ErrorNumber::kFileAccess, u"ReadTextFile"_s, description);
}

} // namespace

QString GetSpecialFolder(SpecialFolder folder)
{
    const auto location =
        folder == SpecialFolder::AppData ? QStandardPaths::GenericDataLocation : QStandardPaths::DocumentsLocation;
    return QDir::cleanPath(QStandardPaths::writableLocation(location));
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

QString FileNameOfPath(const QString &path)
{
    return path.sliced(qMax(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\')) + 1);
}

bool EnsureFolderExists(const QString &path)
{
    const qsizetype end = path.lastIndexOf(u'/');
    return end <= 0 || QDir().mkpath(path.first(end));
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
