#include "notation/ImageArea.h"
#include "support/RecordingMessages.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

// The data folder, and with it the image library, in a fresh folder while it lives.
class TempDataDir {
public:
    TempDataDir() : m_previous(qgetenv("CORRIEVAL_DATA_DIR"))
    {
        qputenv("CORRIEVAL_DATA_DIR", m_dir.path().toUtf8());
    }
    ~TempDataDir() { qputenv("CORRIEVAL_DATA_DIR", m_previous); }
    QStringList Library() const
    {
        return QDir(CImageArea::LibraryFolder()).entryList(QDir::Files);
    }

private:
    QTemporaryDir m_dir;
    QByteArray m_previous;
};

void Link(CImageArea& area, const QString& path)
{
    area.SetImage(path, nullptr);
    area.LoadImage(false);
}

TEST(ImageArea, APictureIsCopiedIntoTheLibraryAndAnythingElseIsLeftWhereItIs)
{
    TempDataDir data;
    QTemporaryDir elsewhere;
    testing::RecordingMessages messages;

    const QString picture = elsewhere.filePath(QStringLiteral("pipes.png"));
    QImage image(8, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(picture));
    CImageArea linked;
    Link(linked, picture);
    EXPECT_EQ(linked.ImageState, CImageArea::Linked);
    EXPECT_EQ(linked.Path, CImageArea::LibraryFolder() + QStringLiteral("pipes.png"));
    EXPECT_EQ(data.Library(), QStringList{QStringLiteral("pipes.png")});

    // A score or a clipboard block from elsewhere may name any file: a private one must not be
    // copied into the library, however it is named.
    const QString secret = elsewhere.filePath(QStringLiteral("notes.png"));
    QFile file(secret);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not a picture");
    file.close();
    CImageArea named;
    Link(named, secret);
    EXPECT_EQ(named.ImageState, CImageArea::NoImage);
    EXPECT_EQ(messages.Texts, QStringList{QStringLiteral("Error linking to image file: \n") + secret});
    EXPECT_EQ(data.Library(), QStringList{QStringLiteral("pipes.png")});

    // A picture that is not on this machine shows an empty area without a word.
    CImageArea missing;
    Link(missing, elsewhere.filePath(QStringLiteral("gone.png")));
    EXPECT_EQ(missing.ImageState, CImageArea::NoImage);
    EXPECT_EQ(messages.Texts.size(), 1);
}

} // namespace
} // namespace corrieval
