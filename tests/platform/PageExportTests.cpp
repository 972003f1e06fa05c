#include "fixtures/ScoreFixtures.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"
#include "model/TunePage.h"
#include "platform/PageExport.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

namespace corrieval::platform {
namespace {

constexpr float kA4Width = 8.267f;
constexpr float kA4Height = 11.692f;

// Fills its rectangle, black unless told otherwise, and remembers the modes it was drawn in.
class InkBlock : public CScoObj {
public:
    void Draw(Painter& painter, OutputMode mode) override
    {
        Modes.push_back(mode);
        painter.FillRect(Bounds(), Fill);
    }
    Brush Fill = Brush::Solid(0xFF000000);
    std::vector<OutputMode> Modes;
};

std::unique_ptr<CCorrievalDoc> BlankTune(int pages, float width = kA4Width, float height = kA4Height)
{
    auto doc = std::make_unique<CCorrievalDoc>();
    doc->PageWidth = width;
    doc->PageHeight = height;
    for (int i = 0; i < pages; ++i)
        doc->AddPage(doc->Pages.size());
    return doc;
}

// A one-inch block an inch in from the top left corner of the page.
InkBlock& AddBlock(CTunePage& page)
{
    auto block = std::make_unique<InkBlock>();
    block->SetBounds(page.Bounds().X + 1, page.Bounds().Y + 1, 1, 1);
    return static_cast<InkBlock&>(*page.AddChild(std::move(block), true));
}

QByteArray ReadAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class PageExport : public ::testing::Test {
protected:
    QString Path(const QString& name) const { return m_dir.filePath(name); }
    QStringList Files() const { return QDir(m_dir.path()).entryList(QDir::Files | QDir::NoDotAndDotDot); }

private:
    QTemporaryDir m_dir;
};

TEST_F(PageExport, PdfHoldsOnePageOfThePaperSizeForEachTunePage)
{
    const auto doc = fixtures::BuildTune({.Pages = 3, .NotesPerBar = 4, .Repeats = true});
    // Landscape paper: the page must not be turned or snapped to A4.
    doc->PageWidth = kA4Height;
    doc->PageHeight = kA4Width;
    doc->LayoutPages();
    InkBlock& block = AddBlock(*doc->Pages[2]);

    EXPECT_EQ(ExportPages(*doc, Path("tune.pdf"), PageFormat::Pdf), QStringList{Path("tune.pdf")});
    EXPECT_EQ(Files(), QStringList{"tune.pdf"});
    EXPECT_EQ(block.Modes, std::vector<OutputMode>{OutputMode::Screen});

    const QString pdf = QString::fromLatin1(ReadAll(Path("tune.pdf")));
    EXPECT_TRUE(pdf.startsWith("%PDF-"));
    EXPECT_EQ(pdf.count(QRegularExpression(R"(/Type\s*/Page\b(?!s))")), 3);
    const QRegularExpression mediaBox(R"(/MediaBox\s*\[\s*0\s+0\s+([\d.]+)\s+([\d.]+)\s*\])");
    int boxes = 0;
    for (const auto& match : mediaBox.globalMatch(pdf)) {
        ++boxes;
        EXPECT_NEAR(match.captured(1).toDouble(), kA4Height * 72, 1);
        EXPECT_NEAR(match.captured(2).toDouble(), kA4Width * 72, 1);
    }
    EXPECT_GE(boxes, 1);
}

TEST_F(PageExport, PngPagesAreNumberedSizedByTheDpiAndEachDrawnFromItsOwnTop)
{
    const auto doc = BlankTune(2);
    InkBlock& block = AddBlock(*doc->Pages[1]);
    const PageExportOptions print{OutputMode::Printer, 50};

    const QStringList written = ExportPages(*doc, Path("tune.png"), PageFormat::Png, print);
    EXPECT_EQ(written, (QStringList{Path("tune-1.png"), Path("tune-2.png")}));
    EXPECT_EQ(Files(), (QStringList{"tune-1.png", "tune-2.png"}));
    EXPECT_EQ(block.Modes, std::vector<OutputMode>{OutputMode::Printer});

    for (const QString& file : written) {
        const QImage image(file);
        ASSERT_FALSE(image.isNull()) << file.toStdString();
        EXPECT_EQ(image.size(), QSize(413, 585)) << "8.267 x 11.692 inches at 50 dpi";
        EXPECT_NEAR(image.dotsPerMeterX() * 0.0254, 50, 0.5);
    }
    // The block is an inch into page 2; page 1 has nothing there, not even the paper's shadow.
    EXPECT_EQ(QImage(written[1]).pixel(75, 75), 0xFF000000);
    EXPECT_EQ(QImage(written[1]).pixel(45, 75), 0xFFFFFFFF);
    EXPECT_EQ(QImage(written[0]).pixel(75, 75), 0xFFFFFFFF);
}

TEST_F(PageExport, SvgPagesTakeAFileEachAndASinglePageTheNameGiven)
{
    const auto two = BlankTune(2);
    // SVG cannot tile the hatch; it gets the hatch's average tone instead.
    AddBlock(*two->Pages[0]).Fill = Brush::Hatch(0xFF000000, 0xFFFFFFFF);
    const QStringList written = ExportPages(*two, Path("tune.svg"), PageFormat::Svg);
    EXPECT_TRUE(ReadAll(written[0]).contains(R"(fill="#cccccc")"));
    ASSERT_EQ(written, (QStringList{Path("tune-1.svg"), Path("tune-2.svg")}));
    for (const QString& file : written) {
        const QString svg = QString::fromUtf8(ReadAll(file));
        const auto width = QRegularExpression(R"(<svg[^>]*\swidth="([\d.]+)mm")").match(svg);
        ASSERT_TRUE(width.hasMatch()) << file.toStdString();
        EXPECT_NEAR(width.captured(1).toDouble(), kA4Width * 25.4, 0.5);
    }

    const auto one = BlankTune(1);
    EXPECT_EQ(ExportPages(*one, Path("single.svg"), PageFormat::Svg), QStringList{Path("single.svg")});
    EXPECT_EQ(ExportPages(*one, Path("single.png"), PageFormat::Png), QStringList{Path("single.png")});
    EXPECT_EQ(Files(), (QStringList{"single.png", "single.svg", "tune-1.svg", "tune-2.svg"}));
}

TEST_F(PageExport, AFileThatCannotBeWrittenIsNamedAndNothingIsLeftBehind)
{
    const auto doc = BlankTune(2);
    for (const QString& name : {QStringLiteral("missing/tune.pdf"), QStringLiteral("missing/tune.png")}) {
        const QString path = Path(name);
        try {
            ExportPages(*doc, path, *PageFormatOfFile(path));
            ADD_FAILURE() << "no error for " << name.toStdString();
        } catch (const FileError& e) {
            EXPECT_TRUE(e.FileName().startsWith(Path("missing/tune"))) << e.FileName().toStdString();
            EXPECT_FALSE(e.Reason().isEmpty());
        }
    }
    EXPECT_TRUE(Files().isEmpty());
    EXPECT_FALSE(QDir(Path("missing")).exists());
}

TEST_F(PageExport, TunesThatCannotBeDrawnAreRefusedWithoutAFile)
{
    const auto expectRefused = [this](CCorrievalDoc& doc, PageFormat format, int dpi = 150) {
        const QString path = Path("refused.out");
        EXPECT_THROW(ExportPages(doc, path, format, {OutputMode::Screen, dpi}), FileError);
        EXPECT_TRUE(Files().isEmpty());
    };
    expectRefused(*BlankTune(0), PageFormat::Pdf);
    for (const float size : {0.0f, -8.0f, std::numeric_limits<float>::quiet_NaN(),
                             std::numeric_limits<float>::infinity(), 1e9f}) {
        const auto doc = BlankTune(1, size, kA4Height);
        expectRefused(*doc, PageFormat::Pdf);
        expectRefused(*doc, PageFormat::Svg);
        expectRefused(*doc, PageFormat::Png);
    }
    // 150 inches is paper enough, but not an image at 1200 dpi.
    expectRefused(*BlankTune(1, 150, 150), PageFormat::Png, 1200);
    expectRefused(*BlankTune(1), PageFormat::Png, 0);
}

TEST(PageFileNames, NumberPagesBeforeTheExtensionExceptForOneFile)
{
    EXPECT_EQ(PageFileNames("a/b.c/tune.png", PageFormat::Png, 2),
              (QStringList{"a/b.c/tune-1.png", "a/b.c/tune-2.png"}));
    EXPECT_EQ(PageFileNames("tune.SVG", PageFormat::Svg, 1), QStringList{"tune.SVG"});
    EXPECT_EQ(PageFileNames("tune.pdf", PageFormat::Pdf, 5), QStringList{"tune.pdf"});
    EXPECT_EQ(PageFormatOfFile("Tune.PNG"), PageFormat::Png);
    EXPECT_EQ(PageFormatOfFile("tune.skb"), std::nullopt);
}

} // namespace
} // namespace corrieval::platform
