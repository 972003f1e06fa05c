#include "platform/MovementDefinitions.h"

#include "platform/SettingsStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace corrieval {

namespace {

const QString kChars = QStringLiteral("Chars");
const QString kPositions = QStringLiteral("RelativeNotePositions");
const QString kFixedStavePosition = QStringLiteral("FixedStavePosition");
const QString kDrawStave = QStringLiteral("DrawStave");
const QString kToolbarIndex = QStringLiteral("ToolbarIndex");
const QString kName = QStringLiteral("name");

// One value of the shipped file on its way into the store.
struct Value {
    QString Name;
    QJsonValue Data;
};

// One key of the shipped file and the values it must end up with.
struct KeyValues {
    QStringList Path; // palette, or palette and entry
    std::vector<Value> Values;
};

bool IsWholeNumber(const QJsonValue& v)
{
    if (!v.isDouble())
        return false;
    const double d = v.toDouble();
    return std::floor(d) == d && d >= std::numeric_limits<std::int32_t>::min() &&
           d <= std::numeric_limits<std::int32_t>::max();
}

// The values of an object other than the members named in `skip`; nullopt when one is neither text
// nor a whole number.
std::optional<std::vector<Value>> ValuesOf(const QJsonObject& object, const QStringList& skip)
{
    std::vector<Value> values;
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (skip.contains(it.key()))
            continue;
        if (!it.value().isString() && !IsWholeNumber(it.value()))
            return std::nullopt;
        values.push_back({it.key(), it.value()});
    }
    return values;
}

// Turns the shipped file into the keys to fill, or says what is wrong with it.
std::pair<std::vector<KeyValues>, QString> ParseDefinitions(const QByteArray& bytes)
{
    QJsonParseError parseError;
    const QJsonDocument doc = QJsonDocument::fromJson(bytes, &parseError);
    if (doc.isNull())
        return {{}, parseError.errorString() + QStringLiteral(" at byte %1").arg(parseError.offset)};
    if (doc.object().value(QStringLiteral("format")).toInt() != 1)
        return {{}, QStringLiteral("it is not of format 1")};

    std::vector<KeyValues> keys;
    const QJsonArray palettes = doc.object().value(QStringLiteral("palettes")).toArray();
    for (const QJsonValue& paletteValue : palettes) {
        const QJsonObject palette = paletteValue.toObject();
        const QString paletteName = palette.value(kName).toString();
        if (paletteName.isEmpty())
            return {{}, QStringLiteral("a palette has no name")};
        const auto paletteValues =
            ValuesOf(palette, {kName, QStringLiteral("entries"), QStringLiteral("entryValues")});
        const auto shared = ValuesOf(palette.value(QStringLiteral("entryValues")).toObject(), {});
        if (!paletteValues || !shared)
            return {{},
                    QStringLiteral("palette \"%1\" has a value that is neither text nor a whole number")
                        .arg(paletteName)};
        keys.push_back({{paletteName}, *paletteValues});

        const QJsonArray entries = palette.value(QStringLiteral("entries")).toArray();
        for (qsizetype index = 0; index < entries.size(); ++index) {
            const QJsonObject entry = entries[index].toObject();
            const QString entryName = entry.value(kName).toString();
            auto values = ValuesOf(entry, {kName});
            if (entryName.isEmpty() || !values)
                return {{},
                        QStringLiteral("entry %1 of palette \"%2\" has no name, or a value that is neither "
                                       "text nor a whole number")
                            .arg(index)
                            .arg(paletteName)};
            // An entry's own values win over those the palette gives every entry.
            auto has = [&values](const QString& name) {
                return std::any_of(values->begin(), values->end(),
                                   [&](const Value& v) { return v.Name == name; });
            };
            for (const Value& v : *shared) {
                if (!has(v.Name))
                    values->push_back(v);
            }
            if (!has(kToolbarIndex))
                values->push_back({kToolbarIndex, QJsonValue(static_cast<double>(index))});
            keys.push_back({{paletteName, entryName}, std::move(*values)});
        }
    }
    return {std::move(keys), {}};
}

} // namespace

MovementDefinition ReadMovementDefinition(const QString& category, const QString& name)
{
    SettingsStore key = SettingsStore(QString::fromLatin1(MovementsKeyPath)).Subkey(category).Subkey(name);
    MovementDefinition definition;
    definition.Chars = key.ReadString(kChars, {});
    definition.RelativeNotePositions = key.ReadString(kPositions, {});
    definition.FixedStavePosition = key.ReadInt(kFixedStavePosition, -1);
    return definition;
}

const MovementDefinition& MovementDefinitionCache::Read(const QString& category, const QString& name)
{
    auto key = std::make_pair(category, name);
    auto found = m_read.find(key);
    if (found == m_read.end())
        found = m_read.emplace(std::move(key), ReadMovementDefinition(category, name)).first;
    return found->second;
}

std::vector<PaletteEntry> ReadPalette(const QString& palette)
{
    const SettingsStore paletteKey = SettingsStore(QString::fromLatin1(MovementsKeyPath)).Subkey(palette);
    std::vector<PaletteEntry> entries;
    for (const QString& name : paletteKey.SubkeyNames()) {
        const SettingsStore key = paletteKey.Subkey(name);
        PaletteEntry& entry = entries.emplace_back();
        entry.Name = name;
        entry.Chars = key.StringValue(kChars).value_or(QString());
        entry.RelativeNotePositions = key.StringValue(kPositions).value_or(QString());
        entry.DrawStave = key.IntValue(kDrawStave).value_or(0);
        entry.ToolbarIndex = key.IntValue(kToolbarIndex).value_or(-1);
    }
    std::stable_sort(entries.begin(), entries.end(), [](const PaletteEntry& a, const PaletteEntry& b) {
        // Unsigned, so that entries without an index (-1) go last.
        return static_cast<std::uint32_t>(a.ToolbarIndex) < static_cast<std::uint32_t>(b.ToolbarIndex);
    });
    return entries;
}

QStringList MovementDataDirs()
{
    const QString chosen = qEnvironmentVariable("CORRIEVAL_MOVEMENTS_DIR");
    if (!chosen.isEmpty())
        return {chosen};
    QStringList dirs;
    if (QCoreApplication::instance() != nullptr)
        dirs << QDir::cleanPath(QCoreApplication::applicationDirPath() + "/../share/corrieval/movements");
    dirs << QStringLiteral(CORRIEVAL_MOVEMENTS_INSTALL_DIR);
    return dirs;
}

QString InstallMovementDefinitions()
{
    const QString fileName = QString::fromLatin1(MovementDataFileName);
    const QStringList dirs = MovementDataDirs();
    for (const QString& dir : dirs) {
        const QString path = QDir(dir).filePath(fileName);
        if (QFileInfo::exists(path))
            return InstallMovementDefinitions(path);
    }
    return QStringLiteral(
               "The movement definitions %1 were not found in %2, so the movement galleries may be "
               "empty. Reinstall Corrieval, or set CORRIEVAL_MOVEMENTS_DIR to the folder that holds them.")
        .arg(fileName, dirs.join(QStringLiteral(", ")));
}

QString InstallMovementDefinitions(const QString& file)
{
    QFile input(file);
    if (!input.open(QIODevice::ReadOnly))
        return QStringLiteral("The movement definitions %1 could not be read: %2.")
            .arg(file, input.errorString());
    const auto [keys, problem] = ParseDefinitions(input.readAll());
    if (!problem.isEmpty())
        return QStringLiteral("The movement definitions %1 could not be read: %2.").arg(file, problem);

    SettingsStore root(QString::fromLatin1(MovementsKeyPath));
    for (const KeyValues& k : keys) {
        SettingsStore key = root.Subkey(k.Path.front());
        if (k.Path.size() > 1)
            key = key.Subkey(k.Path.back());
        for (const Value& v : k.Values) {
            if (key.HasValue(v.Name))
                continue;
            if (v.Data.isString())
                key.WriteString(v.Name, v.Data.toString());
            else
                key.WriteInt(v.Name, v.Data.toInt());
        }
    }
    return root.Sync();
}

} // namespace corrieval
