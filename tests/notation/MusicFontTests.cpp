// Finding and loading the music font, and what the user is told when that fails.

#include "notation/MusicFont.h"
#include "notation/MusicFontFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QFontInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace corrieval {
namespace {

TEST(MusicFont, BuiltFontLoadsAndIsSelectedByItsFamily)
{
    EXPECT_EQ(LoadMusicFont().toStdString(), "");
    EXPECT_TRUE(QFontInfo(QFont(MusicFontFamily)).exactMatch());
}

TEST(MusicFont, MissingFontNamesTheFileAndWhereItWasLookedFor)
{
    QTemporaryDir empty;
    const QString message = LoadMusicFontFrom({empty.path()});
    EXPECT_TRUE(message.contains(MusicFontFileName)) << message.toStdString();
    EXPECT_TRUE(message.contains(empty.path())) << message.toStdString();
}

TEST(MusicFont, FileThatIsNoFontIsNamedInTheMessage)
{
    QTemporaryDir dir;
    const QString path = QDir(dir.path()).filePath(MusicFontFileName);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not a font");
    file.close();
    const QString message = LoadMusicFontFrom({dir.path()});
    EXPECT_TRUE(message.contains(path)) << message.toStdString();
    EXPECT_TRUE(message.contains("could not be loaded")) << message.toStdString();
}

TEST(MusicFont, FolderFromTheEnvironmentIsTheOnlyOneTried)
{
    const QByteArray saved = qgetenv("CORRIEVAL_FONT_DIR");
    qputenv("CORRIEVAL_FONT_DIR", "/opt/fonts");
    EXPECT_EQ(MusicFontDirs(), QStringList{"/opt/fonts"});
    qunsetenv("CORRIEVAL_FONT_DIR");
    const QStringList dirs = MusicFontDirs();
    ASSERT_EQ(dirs.size(), 2);
    EXPECT_EQ(dirs[0], QDir::cleanPath(QCoreApplication::applicationDirPath() + "/../share/corrieval/fonts"));
    if (!saved.isEmpty())
        qputenv("CORRIEVAL_FONT_DIR", saved);
}

} // namespace
} // namespace corrieval
