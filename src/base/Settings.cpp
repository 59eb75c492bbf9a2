#include "Settings.h"

#include "Error.h"
#include "Prompts.h"
#include "SaveFile.h"
#include "Utils.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVariant>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Numbers and booleans that somebody wrote into the file by hand read as their text.
QString TextOf(const QJsonValue &value)
{
    if (value.isBool())
        return value.toBool() ? u"True"_s : u"False"_s;
    return value.toVariant().toString();
}

bool HasText(const QJsonValue &value)
{
    return value.isString() || value.isBool() || value.isDouble();
}

} // namespace

Settings::Settings(QString path, Prompts &prompts)
    : m_path(std::move(path))
    , m_prompts(prompts)
{
    Load();
}

Settings::~Settings()
{
    Flush();
}

QString Settings::DefaultFileName()
{
    return Utils::GetSpecialFolder(Utils::SpecialFolder::AppConfig) + u"/Corvane/Brevio.json"_s;
}

void Settings::Load()
{
    QFile file(m_path);
    if (!file.exists())
        return;
    if (!file.open(QIODevice::ReadOnly)) {
        m_whyUnwritable = file.errorString();
        return;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        m_whyUnwritable = file.errorString();
        return;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) {
        KeepBadFile();
        return;
    }
    const QJsonObject sections = document.object();
    for (auto section = sections.begin(); section != sections.end(); ++section) {
        const QJsonObject keys = section->toObject();
        for (auto key = keys.begin(); key != keys.end(); ++key) {
            if (HasText(*key))
                m_sections[section.key()].insert(key.key(), TextOf(*key));
        }
    }
}

void Settings::KeepBadFile()
{
    QString kept;
    if (!Utils::SetAside(m_path, kept))
        m_whyUnwritable = tr("It cannot be read, and could not be renamed to %1.").arg(kept);
}

QString Settings::Get(const QString &section, const QString &key, const QString &defaultValue) const
{
    const auto keys = m_sections.constFind(section);
    return keys == m_sections.constEnd() ? defaultValue : keys->value(key, defaultValue);
}

bool Settings::IsSectionEmpty(const QString &section) const
{
    return m_sections.value(section).isEmpty();
}

void Settings::Save(const QString &section, const QString &key, const QString &value)
{
    auto &keys = m_sections[section];
    const auto old = keys.constFind(key);
    if (old != keys.constEnd() && *old == value)
        return;
    keys.insert(key, value);
    ScheduleFlush();
}

void Settings::DeleteSection(const QString &section)
{
    if (m_sections.remove(section) > 0)
        ScheduleFlush();
}

void Settings::ScheduleFlush()
{
    m_changed = true;
    if (m_flushScheduled)
        return;
    m_flushScheduled = true;
    QMetaObject::invokeMethod(this, &Settings::Flush, Qt::QueuedConnection);
}

bool Settings::Flush()
{
    m_flushScheduled = false;
    if (!m_changed)
        return true;
    QJsonObject sections;
    for (auto section = m_sections.constBegin(); section != m_sections.constEnd(); ++section) {
        QJsonObject keys;
        for (auto key = section->constBegin(); key != section->constEnd(); ++key)
            keys.insert(key.key(), key.value());
        sections.insert(section.key(), keys);
    }
    try {
        QString why = m_whyUnwritable;
        if (!why.isEmpty() || !Utils::EnsureFolderExists(m_path, &why))
            throw Error(ErrorNumber::kFileAccess, u"Settings"_s, why);
        SaveFile(m_path, QJsonDocument(sections).toJson(), FilePrivacy::OwnerOnly);
    } catch (const Error &error) {
        // Told once: every later write would bring the same box again.
        if (!std::exchange(m_failureTold, true)) {
            m_prompts.ShowMessageBox({tr("Your settings could not be saved: %1").arg(error.Description()) +
                                          u"\r\n\r\n"_s + tr("The settings file is: \r\n\r\n%1").arg(m_path),
                                      PromptIcon::Exclamation});
        }
        return false;
    }
    m_changed = false;
    m_failureTold = false;
    return true;
}
