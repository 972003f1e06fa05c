#include "platform/MovementDefinitions.h"
#include "platform/SettingsStore.h"
#include "support/TempConfigDir.h"

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

// Every test starts from an empty settings folder of its own.
class Settings : public ::testing::Test {
protected:
    static SettingsStore Book() { return SettingsStore(QString::fromLatin1(SettingsKeyPath)); }
    static SettingsStore Movements() { return SettingsStore(QString::fromLatin1(MovementsKeyPath)); }

    const testing::TempConfigDir config;
};

TEST_F(Settings, MissingValuesAreWrittenBackWithTheirDefaultsAndStoredOnesWin)
{
    SettingsStore settings = Book();
    EXPECT_EQ(settings.FilePath(), config.Path() + "/Corrieval4 Book.ini");
    EXPECT_EQ(settings.ReadString("UserSKB", "/tunes/"), "/tunes/");
    EXPECT_EQ(settings.ReadInt("Margins", 0), 0);
    ASSERT_EQ(settings.Sync(), "");

    EXPECT_EQ(Book().IntValue("Margins"), 0);
    EXPECT_EQ(Book().ReadString("UserSKB", "/elsewhere/"), "/tunes/");
    // The movements live in a file of their own product.
    EXPECT_EQ(Movements().FilePath(), config.Path() + "/Corrieval4.ini");
}

TEST_F(Settings, NamesWithSlashesAndEscapeCharactersStayWhole)
{
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
    EXPECT_FALSE(piobaireachd.Subkey("Endari").HasValue("Chars"));
}

TEST_F(Settings, AFileThatDoesNotParseIsNeverWrittenOverAndAFolderThatCannotBeMadeIsReported)
{
    const QString path = config.Path() + "/Corrieval4 Book.ini";
    const QByteArray damaged = "[Settings\nUserSKB=/tunes/\n\x01 broken = \"unterminated\n";
    WriteFile(path, damaged);
    {
        SettingsStore settings = Book();
        settings.ReadString("UserIMP", "/imports/");
        settings.WriteInt("Margins", 1);
        EXPECT_TRUE(settings.Sync().contains(path));
    }
    EXPECT_EQ(FileBytes(path), damaged);

    qputenv("CORRIEVAL_CONFIG_DIR", (path + "/settings").toUtf8());
    SettingsStore settings = Book();
    settings.WriteInt("Margins", 1);
    EXPECT_NE(settings.Sync(), "");
}

TEST_F(Settings, InstallingMovementsFillsWhatIsMissingKeepsAUsersEditsAndListsPalettesInOrder)
{
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

    EXPECT_EQ(ReadPalette("Notes").size(), 7u);
    const std::vector<PaletteEntry> embellishments = ReadPalette("Embellishments");
    ASSERT_EQ(embellishments.size(), 40u);
    EXPECT_EQ(embellishments.front().Name, "Throw On D"); // not "Birl", the first by its name
    for (std::size_t i = 0; i < embellishments.size(); ++i)
        EXPECT_EQ(embellishments[i].ToolbarIndex, static_cast<int>(i));

    // Asking for an unknown definition makes an unusable one.
    EXPECT_FALSE(ReadMovementDefinition("Embellishments", "unknown").Usable());
    EXPECT_EQ(Movements().Subkey("Embellishments").Subkey("unknown").IntValue("FixedStavePosition"), -1);
}

} // namespace
} // namespace corrieval
