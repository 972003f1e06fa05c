#include "fixtures/ScoreFixtures.h"
#include "formats/archive/Archive.h"
#include "formats/score/OlderRecords.h"
#include "formats/score/ScoreFile.h"
#include "model/AbbreviationArea.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/TunePage.h"
#include "notation/ImageArea.h"
#include "notation/NoteEx.h"
#include "notation/Text.h"
#include "notation/TextArea.h"
#include "support/RecordingMessages.h"
#include "support/RecordingPainter.h"
#include "support/RecordingView.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <tuple>
#include <vector>

namespace corrieval {
namespace {

using testing::PaintCall;
using testing::RecordingPainter;

void ExpectRect(const RectF& actual, const RectF& expected)
{
    EXPECT_NEAR(actual.X, expected.X, 1e-5);
    EXPECT_NEAR(actual.Y, expected.Y, 1e-5);
    EXPECT_NEAR(actual.Width, expected.Width, 1e-5);
    EXPECT_NEAR(actual.Height, expected.Height, 1e-5);
}

// Each test gets a data folder of its own, so that the image library starts empty.
class Areas : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(data.isValid() && files.isValid());
        previousData = qgetenv("CORRIEVAL_DATA_DIR");
        qputenv("CORRIEVAL_DATA_DIR", data.path().toUtf8());
    }
    void TearDown() override
    {
        if (previousData.isEmpty())
            qunsetenv("CORRIEVAL_DATA_DIR");
        else
            qputenv("CORRIEVAL_DATA_DIR", previousData);
    }

    // A picture of one colour, written as PNG into the folder `sub` of the test's own files.
    QString WritePicture(const QString& sub, const QString& name, QColor colour, QSize size = {3, 2}) const
    {
        const QString folder = files.filePath(sub);
        QDir().mkpath(folder);
        QImage picture(size, QImage::Format_ARGB32);
        picture.fill(colour);
        const QString path = folder + QLatin1Char('/') + name;
        EXPECT_TRUE(picture.save(path, "PNG"));
        return path;
    }
    static QString Library() { return CImageArea::LibraryFolder(); }

    static std::unique_ptr<CImageArea> LinkedArea(const QString& path, RectF bounds = {1, 1, 4, 2})
    {
        auto area = std::make_unique<CImageArea>();
        area->SetBounds(bounds);
        area->SetImage(path, nullptr);
        return area;
    }

    QTemporaryDir data;
    QTemporaryDir files;
    QByteArray previousData;
    testing::RecordingMessages messages;
};

// The stored height is the height on the page: at zoom 2 on the screen as on paper.
TEST_F(Areas, TextIsDrawnAtItsStoredHeightWithItsStyleColourAndAlignment)
{
    testing::RecordingView view;
    view.ViewZoom = 2.0f;
    CTextArea area;
    area.SetBounds(1, 2, 3, 1);
    area.Text = QStringLiteral("Lament\r\nfor the Children");
    area.Font.SetHeight(-40);
    area.Font.SetWeight(700);
    area.Font.SetItalic(true);
    area.Colour = 0x00112233; // blue 0x11, green 0x22, red 0x33

    const std::pair<std::int32_t, TextAlign> alignments[] = {{CTextArea::Left, TextAlign::Near},
                                                             {CTextArea::Centre, TextAlign::Centre},
                                                             {CTextArea::Right, TextAlign::Far},
                                                             {7, TextAlign::Near}};
    for (OutputMode mode : {OutputMode::Screen, OutputMode::Printer}) {
        for (const auto& [alignment, expected] : alignments) {
            area.Alignment = alignment;
            RecordingPainter painter;
            painter.ViewZoom = 2.0f;
            area.Draw(painter, mode);
            const auto texts = painter.Of(PaintCall::Kind::Text);
            ASSERT_EQ(texts.size(), 1u);
            const PaintCall& text = texts[0];
            EXPECT_EQ(text.Text, QStringLiteral("Lament\nfor the Children"));
            ExpectRect(text.Rect, {1.03f, 2.03f, 2.94f, 0.94f});
            EXPECT_EQ(text.Horizontal, expected) << alignment;
            EXPECT_EQ(text.Font.Family, QStringLiteral("DejaVu Sans"));
            EXPECT_FLOAT_EQ(text.Font.Height, 0.4f);
            EXPECT_EQ(text.Font.Weight, 700);
            EXPECT_TRUE(text.Font.Italic && !text.Font.Underline && !text.Font.StrikeOut);
            EXPECT_EQ(text.TextArgb, 0xFF332211u);
        }
    }
}

TEST_F(Areas, ASquarePictureIsCentredAcrossAWideAreaAndDownATallOne)
{
    const QString path =
        WritePicture(QStringLiteral("pictures"), QStringLiteral("square.png"), Qt::red, {8, 8});
    struct Case {
        RectF Bounds;
        RectF Expected;
    };
    // Content boxes 4 by 1 and 1 by 4, inside margins of 0.03.
    const Case cases[] = {{{0.97f, 0.97f, 4.06f, 1.06f}, {2.5f, 1, 1, 1}},
                          {{0.97f, 0.97f, 1.06f, 4.06f}, {1, 2.5f, 1, 1}}};
    for (const Case& c : cases) {
        auto area = LinkedArea(path, c.Bounds);
        RecordingPainter painter;
        area->Draw(painter, OutputMode::Screen);
        const auto images = painter.Of(PaintCall::Kind::Image);
        ASSERT_EQ(images.size(), 1u);
        ExpectRect(images[0].Rect, c.Expected);
        EXPECT_EQ(images[0].Picture.size(), QSize(8, 8));
    }
}

TEST_F(Areas, APictureAlreadyInTheLibraryStaysWhereItIs)
{
    WritePicture(QStringLiteral("Image Library"), QStringLiteral("pipes.png"), Qt::blue);
    qputenv("CORRIEVAL_DATA_DIR", files.path().toUtf8());
    // Reached through a link, it is still the library's own file: copying it onto itself would lose it.
    ASSERT_TRUE(QFile::link(files.filePath(QStringLiteral("Image Library")),
                            files.filePath(QStringLiteral("shelf"))));
    const QString roundabout = files.filePath(QStringLiteral("shelf/pipes.png"));
    auto area = LinkedArea(roundabout);
    area->LoadImage(false);

    EXPECT_EQ(area->Path, roundabout);
    EXPECT_EQ(area->ImageState, CImageArea::Linked);
    EXPECT_EQ(area->Image().pixelColor(0, 0), QColor(Qt::blue));
    EXPECT_EQ(QDir(files.filePath(QStringLiteral("Image Library"))).entryList(QDir::Files),
              QStringList{QStringLiteral("pipes.png")});
}

TEST_F(Areas, PicturesFromElsewhereAreCopiedIntoTheLibraryTheLaterOfOneNameWinning)
{
    const QString red = WritePicture(QStringLiteral("one"), QStringLiteral("logo.png"), Qt::red);
    auto first = LinkedArea(red);
    auto second = LinkedArea(WritePicture(QStringLiteral("two"), QStringLiteral("logo.png"), Qt::blue));
    first->LoadImage(false);
    const QString copy = Library() + QStringLiteral("logo.png");
    EXPECT_EQ(first->GetDescription(), copy + QStringLiteral("\nWidth: 3, Height: 2, Depth: 32-bit"));
    second->LoadImage(false);

    EXPECT_EQ(second->Path, copy);
    EXPECT_TRUE(QFile::exists(red)); // copied, not moved
    EXPECT_EQ(QImage(copy).pixelColor(0, 0), QColor(Qt::blue));
    EXPECT_EQ(first->Image().pixelColor(0, 0), QColor(Qt::red)); // decoded before it was replaced

    // A copy of an area reads its picture at its first paint.
    const auto clone = first->Clone();
    RecordingPainter painter;
    clone->Draw(painter, OutputMode::Screen);
    ASSERT_EQ(painter.Count(PaintCall::Kind::Image), 1u);
    EXPECT_EQ(painter.Of(PaintCall::Kind::Image)[0].Picture.pixelColor(0, 0), QColor(Qt::blue));
    EXPECT_TRUE(messages.Texts.isEmpty());
}

// A missing file unlinks silently; one that cannot be decoded is reported by its library path.
TEST_F(Areas, PicturesThatCannotBeShownLeaveAnEmptyArea)
{
    const QString garbage = files.filePath(QStringLiteral("notes.png"));
    QFile file(garbage);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("not a picture") > 0);
    file.close();

    for (const QString& path : {files.filePath(QStringLiteral("gone.png")), garbage}) {
        auto area = LinkedArea(path);
        RecordingPainter painter;
        area->Draw(painter, OutputMode::Screen);
        EXPECT_EQ(area->ImageState, CImageArea::NoImage);
        EXPECT_TRUE(area->Path.isEmpty());
        EXPECT_TRUE(area->GetDescription().isEmpty());
        EXPECT_EQ(painter.Count(PaintCall::Kind::Image), 0u);
        EXPECT_EQ(painter.Count(PaintCall::Kind::FillRect), 1u); // the white of the page area
    }
    EXPECT_EQ(messages.Texts, QStringList{QStringLiteral("Error linking to image file: \n") + Library() +
                                          QStringLiteral("notes.png")});
}

TEST_F(Areas, TextAndPictureAreasSurviveASaveAndLoadWithThePicturePrepared)
{
    fixtures::TuneShape shape;
    shape.Groups = 1;
    auto doc = fixtures::BuildTune(shape);
    CTunePage& page = *doc->Pages[0];
    auto& title = static_cast<CTextArea&>(*page.ChildAt(0));
    title.Text = QStringLiteral("The Desperate Battle\nof the Birds");
    title.Font.SetHeight(-35);
    title.Colour = 0x00336699;
    title.Alignment = CTextArea::Left;
    page.AddChild(LinkedArea(WritePicture(QStringLiteral("pictures"), QStringLiteral("birds.png"), Qt::cyan)),
                  true);

    auto loaded = ReadScore(StoreScore(*doc, QStringLiteral("birds.skb")), QStringLiteral("birds.skb"));
    const auto& text = dynamic_cast<const CTextArea&>(*loaded->Pages.at(0)->ChildAt(0));
    EXPECT_EQ(std::tie(text.Text, text.Font.Raw, text.Colour, text.Alignment),
              std::tie(title.Text, title.Font.Raw, title.Colour, title.Alignment));
    // Read back, the picture is linked from the library and decoded before any paint.
    const auto& image = dynamic_cast<const CImageArea&>(*loaded->Pages[0]->ChildAt(2));
    EXPECT_EQ(image.Path, Library() + QStringLiteral("birds.png"));
    EXPECT_EQ(image.Image().pixelColor(0, 0), QColor(Qt::cyan));
    EXPECT_TRUE(messages.Texts.isEmpty());
}

// The older heading text: a record of version 1 lacks the third layout word and the style.
TEST_F(Areas, AnOlderHeadingTextOfRecordVersionOneReadsAndUpgrades)
{
    static const ArchiveClassTable noClasses;
    CArchive out(noClasses, {}, nullptr);
    float x = 1, y = 2, width = 3, height = 0.5f;
    double points = 12;
    std::int32_t first = 11, second = 22, version = 1, fourth = 44;
    for (float* f : {&x, &y, &width, &height})
        out.Sync(*f);
    out.Sync(points);
    out.Sync(first);
    out.Sync(second);
    out.WriteString(QStringLiteral("Times"));
    out.WriteString(QStringLiteral("Lament"));
    out.Sync(version);
    out.Sync(fourth);

    CArchive in(out.Bytes(), noClasses, {}, nullptr);
    CText text;
    SerializeText(in, text);
    EXPECT_TRUE(in.AtEnd());
    EXPECT_EQ(text.Text, QStringLiteral("Lament"));
    EXPECT_EQ(text.Face, QStringLiteral("Times"));
    EXPECT_EQ(text.LayoutWords, (std::array<std::int32_t, 4>{11, 22, 0, 44}));
    EXPECT_EQ(text.Style, 0);
    EXPECT_EQ(text.RecordVersion, 3);
    EXPECT_EQ(text.Font.Weight(), 400);
    EXPECT_EQ(text.Font.Height(), -1200);
}

// Legends share one table of marks for the whole process; each test starts with all marks free.
class Legends : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (AbbreviationType code : CAbbreviationArea::Marks)
            CAbbreviationArea::ReleaseAbbreviation(code);
    }

    static CStaveGroup& Group(CAbbreviationArea& area) { return static_cast<CStaveGroup&>(*area.ChildAt(0)); }
    // The mark in each bar of the "Written" row.
    static std::vector<std::uint32_t> WrittenMarks(const CAbbreviationArea& area)
    {
        std::vector<std::uint32_t> marks;
        for (const auto& bar : area.WrittenStave->Children())
            marks.push_back(
                static_cast<const CNoteEx&>(*static_cast<const CBarEx&>(*bar).ChildAt(0)).AbbreviationCode);
        return marks;
    }
};

TEST_F(Legends, ANewLegendGetsAColumnPerOneAndTwoThirdInchesAfterItsLabels)
{
    CAbbreviationArea area;
    area.SetBounds(0, 0, 4, 1);
    EXPECT_FLOAT_EQ(area.ContentBox().Width, 3.6f);
    area.FillDefaultColumns();

    EXPECT_EQ(Group(area).BarConfigs.size(), 2u);
    EXPECT_EQ(area.PlayedStave->ChildCount(), 2u);
    EXPECT_EQ(WrittenMarks(area), (std::vector<std::uint32_t>{0x178, 0xA0}));
    EXPECT_FLOAT_EQ(Group(area).Bounds().X, 0.4f); // right of the labels

    CAbbreviationArea narrow;
    narrow.SetBounds(0, 0, 1, 1);
    narrow.FillDefaultColumns();
    EXPECT_EQ(WrittenMarks(narrow), (std::vector<std::uint32_t>{0xA1}));
}

TEST_F(Legends, AFourteenthColumnGetsABarOnlyInThePlayedRow)
{
    CAbbreviationArea area;
    area.SetBounds(0, 0, 30, 1);
    for (int i = 0; i < 14; ++i)
        Group(area).InsertBarColumn(Group(area).BarConfigs.size());

    EXPECT_EQ(area.WrittenStave->ChildCount(), 13u);
    EXPECT_EQ(area.PlayedStave->ChildCount(), 14u);
    const auto marks = WrittenMarks(area);
    EXPECT_TRUE(std::equal(marks.begin(), marks.end(), std::begin(CAbbreviationArea::Marks)));
    EXPECT_FALSE(CAbbreviationArea::FreeAbbreviation().has_value());
}

TEST_F(Legends, RemovingAColumnFreesItsMarkForTheNextNewColumn)
{
    CAbbreviationArea area;
    area.SetBounds(0, 0, 8, 1);
    for (int i = 0; i < 3; ++i)
        Group(area).InsertBarColumn(Group(area).BarConfigs.size());
    Group(area).RemoveBarColumn(1, true);
    EXPECT_FALSE(CAbbreviationArea::LookupAbbreviation(0xA0));
    EXPECT_EQ(WrittenMarks(area), (std::vector<std::uint32_t>{0x178, 0xA1}));

    Group(area).InsertBarColumn(Group(area).BarConfigs.size());
    EXPECT_EQ(WrittenMarks(area), (std::vector<std::uint32_t>{0x178, 0xA1, 0xA0}));

    // The "Played" row holds no marks and frees none.
    static_cast<CBarEx&>(*area.PlayedStave->ChildAt(0)).AddChild(CNoteEx::ForAbbreviation(0x178), true);
    area.PlayedStave->RemoveBar(0, true);
    EXPECT_TRUE(CAbbreviationArea::LookupAbbreviation(0x178));
}

} // namespace
} // namespace corrieval
