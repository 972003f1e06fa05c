#include "fixtures/ScoreFixtures.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"
#include "model/TunePage.h"
#include "platform/PageExport.h"

#include <QDir>
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

class PageExport : public ::testing::Test {
protected:
    QString Path(const QString& name) const { return m_dir.filePath(name); }
    QStringList Files() const { return QDir(m_dir.path()).entryList(QDir::Files | QDir::NoDotAndDotDot); }
    static QString Text(const QString& path) { return QString::fromUtf8(ReadFileBytes(path)); }

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

    const QString pdf = Text(Path("tune.pdf"));
    EXPECT_TRUE(pdf.startsWith("%PDF-"));
    EXPECT_EQ(pdf.count(QRegularExpression(R"(/Type\s*/Page\b(?!s))")), 3);
    const auto box = QRegularExpression(R"(/MediaBox\s*\[\s*0\s+0\s+([\d.]+)\s+([\d.]+)\s*\])").match(pdf);
    ASSERT_TRUE(box.hasMatch());
    EXPECT_NEAR(box.captured(1).toDouble(), kA4Height * 72, 1);
    EXPECT_NEAR(box.captured(2).toDouble(), kA4Width * 72, 1);
}

TEST_F(PageExport, PngAndSvgPagesAreNumberedSizedAndEachDrawnFromItsOwnTop)
{
    const auto doc = BlankTune(2);
    InkBlock& block = AddBlock(*doc->Pages[1]);

    const QStringList pngs = ExportPages(*doc, Path("tune.png"), PageFormat::Png, {OutputMode::Printer, 50});
    EXPECT_EQ(pngs, (QStringList{Path("tune-1.png"), Path("tune-2.png")}));
    EXPECT_EQ(block.Modes, std::vector<OutputMode>{OutputMode::Printer});
    for (const QString& file : pngs) {
        const QImage image(file);
        EXPECT_EQ(image.size(), QSize(413, 585)) << "8.267 x 11.692 inches at 50 dpi";
        EXPECT_NEAR(image.dotsPerMeterX() * 0.0254, 50, 0.5);
    }
    // The block is an inch into page 2; page 1 has nothing there, not even the paper's shadow.
    EXPECT_EQ(QImage(pngs[1]).pixel(75, 75), 0xFF000000);
    EXPECT_EQ(QImage(pngs[1]).pixel(45, 75), 0xFFFFFFFF);
    EXPECT_EQ(QImage(pngs[0]).pixel(75, 75), 0xFFFFFFFF);

    // SVG cannot tile the hatch; it gets the hatch's average tone instead.
    block.Fill = Brush::Hatch(0xFF000000, 0xFFFFFFFF);
    const QStringList svgs = ExportPages(*doc, Path("tune.SVG"), PageFormat::Svg);
    ASSERT_EQ(svgs, (QStringList{Path("tune-1.SVG"), Path("tune-2.SVG")}));
    EXPECT_TRUE(Text(svgs[1]).contains(R"(fill="#cccccc")"));
    const auto width = QRegularExpression(R"(<svg[^>]*\swidth="([\d.]+)mm")").match(Text(svgs[0]));
    ASSERT_TRUE(width.hasMatch());
    EXPECT_NEAR(width.captured(1).toDouble(), kA4Width * 25.4, 0.5);

    // A single page takes the name given.
    EXPECT_EQ(ExportPages(*BlankTune(1), Path("single.png"), PageFormat::Png),
              QStringList{Path("single.png")});
    EXPECT_EQ(Files().size(), 5);
}

TEST_F(PageExport, WhatCannotBeWrittenOrDrawnIsRefusedAndLeavesNoFile)
{
    const auto doc = BlankTune(2);
    for (const QString& name : {QStringLiteral("missing/tune.pdf"), QStringLiteral("missing/tune.png")}) {
        try {
            ExportPages(*doc, Path(name), *PageFormatOfFile(name));
            ADD_FAILURE() << "no error for " << name.toStdString();
        } catch (const FileError& e) {
            EXPECT_TRUE(e.FileName().startsWith(Path("missing/tune"))) << e.FileName().toStdString();
            EXPECT_FALSE(e.Reason().isEmpty());
        }
    }
    EXPECT_FALSE(QDir(Path("missing")).exists());

    const auto expectRefused = [this](CCorrievalDoc& tune, PageFormat format, int dpi = 150) {
        EXPECT_THROW(ExportPages(tune, Path("refused.out"), format, {OutputMode::Screen, dpi}), FileError);
    };
    expectRefused(*BlankTune(0), PageFormat::Pdf);
    for (const float size : {0.0f, -8.0f, std::numeric_limits<float>::quiet_NaN(),
                             std::numeric_limits<float>::infinity(), 1e9f}) {
        for (const PageFormat format : {PageFormat::Pdf, PageFormat::Svg, PageFormat::Png})
            expectRefused(*BlankTune(1, size, kA4Height), format);
    }
    // 150 inches is paper enough, but not an image at 1200 dpi.
    expectRefused(*BlankTune(1, 150, 150), PageFormat::Png, 1200);
    expectRefused(*BlankTune(1), PageFormat::Png, 0);
    EXPECT_TRUE(Files().isEmpty());
}

} // namespace
} // namespace corrieval::platform
