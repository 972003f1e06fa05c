#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>
#include <optional>

class QSettings;
class QVariant;

namespace corrieval {

// Where the program keeps its per-user settings, as registry-style key paths.
inline constexpr const char* SettingsKeyPath = "Software\\Tormaven Software Ltd\\Corrieval4 Book\\Settings";
inline constexpr const char* MovementsKeyPath = "Software\\Tormaven Software Ltd\\Corrieval4\\GHB Movements";

// One key of the per-user settings store: named string and 32-bit values, and sub-keys, in the
// layout of a registry ("Software\Company\Product\Key\Sub-key"). Each product is one INI file,
// "Product.ini", in $CORRIEVAL_CONFIG_DIR or else ~/.config/Company/; the keys below the product
// are its groups. Key and value names are kept whole whatever they contain: a "/", which QSettings
// would take for a group separator, is escaped, so "Endari/Dre/Edri" stays one movement.
//
// Opening a key never fails and creates it as it is written to. Changes collect in memory until
// Sync, which replaces the file atomically. A file that cannot be parsed is never written: the
// store reads what it can and reports the damage at Sync, so a user's hand-edited file survives.
class SettingsStore {
public:
    explicit SettingsStore(const QString& keyPath);
    SettingsStore(SettingsStore&&) noexcept;
    SettingsStore& operator=(SettingsStore&&) noexcept;
    ~SettingsStore();

    // The INI file that holds this key.
    QString FilePath() const { return m_filePath; }

    // A key below this one, in the same file; created as it is written to.
    SettingsStore Subkey(const QString& name) const;
    // The names of the keys below this one, sorted.
    QStringList SubkeyNames() const;
    bool HasValue(const QString& name) const;

    // Values as stored, without writing anything. A 32-bit value that does not read as a number
    // counts as absent.
    std::optional<QString> StringValue(const QString& name) const;
    std::optional<std::int32_t> IntValue(const QString& name) const;
    // The same, but a value that is missing is written back with `fallback`, so the store fills
    // up with its defaults on first use. A value present in another form is left as it is.
    QString ReadString(const QString& name, const QString& fallback);
    std::int32_t ReadInt(const QString& name, std::int32_t fallback);

    void WriteString(const QString& name, const QString& value);
    void WriteInt(const QString& name, std::int32_t value);

    // Writes what changed in this file, through a temporary file that replaces it. Returns a
    // message for the user naming the file and the problem; empty when all is well.
    QString Sync();

private:
    SettingsStore(std::shared_ptr<QSettings> settings, QString group, QString filePath, bool damaged);
    QString KeyOf(const QString& name) const;
    void Write(const QString& name, const QVariant& value);

    std::shared_ptr<QSettings> m_settings; // shared by the keys opened from one another
    QString m_group;                       // escaped group path inside the file, "" for the product
    QString m_filePath;
    bool m_damaged = false; // the file did not parse: read only
};

} // namespace corrieval
