#include "platform/SettingsStore.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>
#include <QVariant>

#include <cassert>
#include <limits>
#include <utility>

namespace corrieval {

namespace {

// QSettings splits names at "/" (and treats "\" as a separator of its own), so both are escaped in
// every key and value name, and "%" too so that the escape can be undone.
QString Escape(const QString& name)
{
    QString escaped;
    escaped.reserve(name.size());
    for (const QChar c : name) {
        if (c == QLatin1Char('%'))
            escaped += QLatin1String("%25");
        else if (c == QLatin1Char('/'))
            escaped += QLatin1String("%2F");
        else if (c == QLatin1Char('\\'))
            escaped += QLatin1String("%5C");
        else
            escaped += c;
    }
    return escaped;
}

QString Unescape(const QString& escaped)
{
    QString name;
    name.reserve(escaped.size());
    for (qsizetype i = 0; i < escaped.size(); ++i) {
        const QStringView code = QStringView(escaped).mid(i + 1, 2);
        if (escaped[i] == QLatin1Char('%') && code.size() == 2) {
            bool ok = false;
            const int value = code.toInt(&ok, 16);
            if (ok) {
                name += QChar(value);
                i += 2;
                continue;
            }
        }
        name += escaped[i];
    }
    return name;
}

QString ConfigFolder(const QString& company)
{
    const QString chosen = qEnvironmentVariable("CORRIEVAL_CONFIG_DIR");
    if (!chosen.isEmpty())
        return QDir::cleanPath(chosen);
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QLatin1Char('/') +
           company;
}

} // namespace

SettingsStore::SettingsStore(const QString& keyPath)
{
    // "Software\Company\Product\Key..." : the product names the file, the rest are its groups.
    const QStringList parts = keyPath.split(QLatin1Char('\\'), Qt::SkipEmptyParts);
    assert(parts.size() >= 3 && "a key path runs Software\\Company\\Product\\...");
    m_filePath = ConfigFolder(parts.value(1)) + QLatin1Char('/') + parts.value(2) + QStringLiteral(".ini");
    QStringList groups;
    for (qsizetype i = 3; i < parts.size(); ++i)
        groups << Escape(parts[i]);
    m_group = groups.join(QLatin1Char('/'));
    m_settings = std::make_shared<QSettings>(m_filePath, QSettings::IniFormat);
    m_damaged = m_settings->status() == QSettings::FormatError;
}

SettingsStore::SettingsStore(std::shared_ptr<QSettings> settings, QString group, QString filePath,
                             bool damaged)
    : m_settings(std::move(settings)), m_group(std::move(group)), m_filePath(std::move(filePath)),
      m_damaged(damaged)
{
}

SettingsStore::SettingsStore(SettingsStore&&) noexcept = default;
SettingsStore& SettingsStore::operator=(SettingsStore&&) noexcept = default;
SettingsStore::~SettingsStore() = default;

QString SettingsStore::KeyOf(const QString& name) const
{
    return m_group.isEmpty() ? Escape(name) : m_group + QLatin1Char('/') + Escape(name);
}

SettingsStore SettingsStore::Subkey(const QString& name) const
{
    return SettingsStore(m_settings, KeyOf(name), m_filePath, m_damaged);
}

QStringList SettingsStore::SubkeyNames() const
{
    m_settings->beginGroup(m_group);
    const QStringList escaped = m_settings->childGroups();
    m_settings->endGroup();
    QStringList names;
    for (const QString& e : escaped)
        names << Unescape(e);
    names.sort();
    return names;
}

bool SettingsStore::HasValue(const QString& name) const
{
    return m_settings->contains(KeyOf(name));
}

std::optional<QString> SettingsStore::StringValue(const QString& name) const
{
    const QVariant value = m_settings->value(KeyOf(name));
    if (!value.isValid())
        return std::nullopt;
    // An INI line edited by hand with an unquoted comma reads back as a list.
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList().join(QStringLiteral(", "));
    return value.toString();
}

std::optional<std::int32_t> SettingsStore::IntValue(const QString& name) const
{
    const std::optional<QString> text = StringValue(name);
    if (!text)
        return std::nullopt;
    // A 32-bit value may have been written unsigned, as a registry does.
    bool ok = false;
    const qlonglong value = text->trimmed().toLongLong(&ok);
    if (!ok || value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

QString SettingsStore::ReadString(const QString& name, const QString& fallback)
{
    if (std::optional<QString> value = StringValue(name))
        return *value;
    if (!HasValue(name))
        WriteString(name, fallback);
    return fallback;
}

std::int32_t SettingsStore::ReadInt(const QString& name, std::int32_t fallback)
{
    if (const std::optional<std::int32_t> value = IntValue(name))
        return *value;
    if (!HasValue(name))
        WriteInt(name, fallback);
    return fallback;
}

void SettingsStore::WriteString(const QString& name, const QString& value)
{
    Write(name, value);
}

void SettingsStore::WriteInt(const QString& name, std::int32_t value)
{
    Write(name, value);
}

void SettingsStore::Write(const QString& name, const QVariant& value)
{
    // QSettings would write what it could parse of a damaged file back over it.
    if (!m_damaged)
        m_settings->setValue(KeyOf(name), value);
}

QString SettingsStore::Sync()
{
    if (m_damaged)
        return QStringLiteral(
                   "The settings file %1 could not be read, so it was left as it is and changes to "
                   "the settings were not saved. Correct or remove the file.")
            .arg(QDir::toNativeSeparators(m_filePath));
    m_settings->sync();
    switch (m_settings->status()) {
    case QSettings::NoError:
        return {};
    case QSettings::FormatError:
        m_damaged = true;
        return QStringLiteral("The settings file %1 was changed and can no longer be read; changes to the "
                              "settings were not saved.")
            .arg(QDir::toNativeSeparators(m_filePath));
    case QSettings::AccessError:
        break;
    }
    return QStringLiteral(
               "The settings file %1 could not be written; changes to the settings were not saved.")
        .arg(QDir::toNativeSeparators(m_filePath));
}

} // namespace corrieval
