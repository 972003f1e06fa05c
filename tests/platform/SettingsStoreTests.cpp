#include "platform/MovementDefinitions.h"
#include "platform/SettingsStore.h"
#include "support/TempConfigDir.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace corrieval {
namespace {

QByteArray FileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void WriteFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

SettingsStore Movements()
{
    return SettingsStore(QString::fromLatin1(MovementsKeyPath));
}

TEST(SettingsStore, MissingValuesAreWrittenBackWithTheirDefaultsAndStoredOnesWin)
{
    const testing::TempConfigDir config;
    SettingsStore settings(QString::fromLatin1(SettingsKeyPath));
    EXPECT_EQ(settings.FilePath(), config.Path() + "/Corrieval4 Book.ini");
    EXPECT_EQ(settings.ReadString("UserSKB", "/tunes/"), "/tunes/");
    EXPECT_EQ(settings.ReadInt("Margins", 0), 0);
    ASSERT_EQ(settings.Sync(), "");

    EXPECT_TRUE(FileBytes(settings.FilePath()).contains("UserSKB"));
    SettingsStore again(QString::fromLatin1(SettingsKeyPath));
    EXPECT_EQ(again.StringValue("UserSKB"), "/tunes/");
    EXPECT_EQ(again.IntValue("Margins"), 0);
    EXPECT_EQ(again.ReadString("UserSKB", "/elsewhere/"), "/tunes/");
    // The movements live in a file of their own product.
    EXPECT_EQ(Movements().FilePath(), config.Path() + "/Corrieval4.ini");
}

TEST(SettingsStore, NamesWithSlashesAndEscapeCharactersStayWhole)
{
    const testing::TempConfigDir config;
    const QStringList names{"100%", "Endari/Dre/Edri", "a%2Fb", "back\\slash"};
    {
        SettingsStore piobaireachd = Movements().Subkey("Piobaireachd");
        for (const QString& name : names) {
            SettingsStore key = piobaireachd.Subkey(name);
            key.WriteString("Chars", name);
            key.WriteString("Value/with/slashes", "kept");
        }
        ASSERT_EQ(piobaireachd.Sync(), "");
    }
    const SettingsStore piobaireachd = Movements().Subkey("Piobaireachd");
    EXPECT_EQ(piobaireachd.SubkeyNames(), names);
    for (const QString& name : names) {
        EXPECT_EQ(piobaireachd.Subkey(name).StringValue("Chars"), name);
        EXPECT_EQ(piobaireachd.Subkey(name).StringValue("Value/with/slashes"), "kept");
    }
    // "Endari" was never made a key of its own.
    EXPECT_FALSE(Movements().Subkey("Piobaireachd").Subkey("Endari").HasValue("Chars"));
}

TEST(SettingsStore, NumbersReadBackAsThirtyTwoBitValues)
{
    const testing::TempConfigDir config;
    SettingsStore key = Movements().Subkey("Doublings").Subkey("Low G");
    key.WriteInt("FixedStavePosition", -1);
    key.WriteString("Unsigned", "4294967295");
    key.WriteString("DrawStave", "yes");
    EXPECT_EQ(key.IntValue("FixedStavePosition"), -1);
    EXPECT_EQ(key.IntValue("Unsigned"), -1);
    EXPECT_EQ(key.IntValue("DrawStave"), std::nullopt);
    // A value that is there but not a number is not missing: the default is not written over it.
    EXPECT_EQ(key.ReadInt("DrawStave", 0), 0);
    EXPECT_EQ(key.StringValue("DrawStave"), "yes");
}

TEST(SettingsStore, AFileThatDoesNotParseIsNeverWrittenOver)
{
    const testing::TempConfigDir config;
    const QString path = config.Path() + "/Corrieval4 Book.ini";
    const QByteArray damaged = "[Settings\nUserSKB=/tunes/\n\x01 broken = \"unterminated\n";
    WriteFile(path, damaged);
    {
        SettingsStore settings(QString::fromLatin1(SettingsKeyPath));
        settings.ReadString("UserIMP", "/imports/");
        settings.WriteInt("Margins", 1);
        const QString problem = settings.Sync();
        EXPECT_TRUE(problem.contains(path)) << problem.toStdString();
    }
    EXPECT_EQ(FileBytes(path), damaged);
}

TEST(SettingsStore, AFolderThatCannotBeMadeIsReported)
{
    QTemporaryDir dir;
    WriteFile(dir.path() + "/file", "not a folder");
    qputenv("CORRIEVAL_CONFIG_DIR", (dir.path() + "/file/settings").toUtf8());
    SettingsStore settings(QString::fromLatin1(SettingsKeyPath));
    settings.WriteInt("Margins", 1);
    EXPECT_NE(settings.Sync(), "");
    qunsetenv("CORRIEVAL_CONFIG_DIR");
}

TEST(MovementDefinitions, InstallingFillsWhatIsMissingAndKeepsAUsersEdits)
{
    const testing::TempConfigDir config;
    {
        // A piper moved the doubling on Low G onto other notes and left the rest to the program.
        SettingsStore lowG = Movements().Subkey("Doublings").Subkey("Low G");
        lowG.WriteString("RelativeNotePositions", "185");
        ASSERT_EQ(lowG.Sync(), "");
    }
    ASSERT_EQ(InstallMovementDefinitions(), "");
    ASSERT_EQ(InstallMovementDefinitions(), "");

    const SettingsStore lowG = Movements().Subkey("Doublings").Subkey("Low G");
    EXPECT_EQ(lowG.StringValue("RelativeNotePositions"), "185");
    EXPECT_EQ(lowG.StringValue("Chars"), "KKK");
    EXPECT_EQ(lowG.IntValue("FixedStavePosition"), 0);
    EXPECT_EQ(lowG.IntValue("ToolbarIndex"), 0);
    EXPECT_EQ(lowG.IntValue("DrawStave"), 1);
    EXPECT_EQ(Movements().Subkey("Piobaireachd").IntValue("ToolbarIndex"), 3);
    EXPECT_TRUE(Movements().Subkey("Piobaireachd").HasValue("MenuButtonIndex"));
}

TEST(MovementDefinitions, PalettesListInGalleryOrder)
{
    const testing::TempConfigDir config;
    ASSERT_EQ(InstallMovementDefinitions(), "");
    const std::vector<PaletteEntry> notes = ReadPalette("Notes");
    ASSERT_EQ(notes.size(), 7u);
    EXPECT_EQ(notes.front().Name, "Semibreve");
    EXPECT_EQ(notes.back().Name, "Single gracenote");
    EXPECT_EQ(notes.back().Chars, "+");
    EXPECT_EQ(notes.back().RelativeNotePositions, "");
    const std::vector<PaletteEntry> embellishments = ReadPalette("Embellishments");
    ASSERT_EQ(embellishments.size(), 40u);
    EXPECT_EQ(embellishments.front().Name, "Throw On D"); // not "Birl", the first by its name
    for (std::size_t i = 0; i < embellishments.size(); ++i)
        EXPECT_EQ(embellishments[i].ToolbarIndex, static_cast<int>(i));
}

TEST(MovementDefinitions, AskingForAnUnknownDefinitionCreatesAnUnusableOne)
{
    const testing::TempConfigDir config;
    EXPECT_FALSE(ReadMovementDefinition("Embellishments", "unknown").Usable());
    const SettingsStore unknown = Movements().Subkey("Embellishments").Subkey("unknown");
    EXPECT_EQ(unknown.StringValue("Chars"), "");
    EXPECT_EQ(unknown.StringValue("RelativeNotePositions"), "");
    EXPECT_EQ(unknown.IntValue("FixedStavePosition"), -1);
}

TEST(MovementDefinitions, ADamagedDefinitionsFileIsReportedAndWritesNothing)
{
    const testing::TempConfigDir config;
    QTemporaryDir dir;
    const QString path = dir.path() + "/ghb-movements.json";
    for (
        const QByteArray& bytes :
        {QByteArray("{\"format\": 1, \"palettes\": ["), QByteArray("{\"format\": 2, \"palettes\": []}"),
         QByteArray(
             R"({"format": 1, "palettes": [{"name": "Notes", "entries": [{"name": "A", "Chars": ["$"]}]}]})"),
         QByteArray(R"({"format": 1, "palettes": [{"name": "Notes", "entries": [{"Chars": "$"}]}]})"),
         QByteArray(R"({"format": 1, "palettes": [{"name": "Notes", "ToolbarIndex": 0.5}]})")}) {
        WriteFile(path, bytes);
        const QString problem = InstallMovementDefinitions(path);
        EXPECT_TRUE(problem.contains(path)) << bytes.toStdString();
    }
    EXPECT_TRUE(Movements().SubkeyNames().isEmpty());
    EXPECT_FALSE(QFile::exists(Movements().FilePath()));
    EXPECT_TRUE(InstallMovementDefinitions(dir.path() + "/missing.json").contains("missing.json"));
}

} // namespace
} // namespace corrieval
