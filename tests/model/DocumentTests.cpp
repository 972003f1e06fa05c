#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/SessionState.h"
#include "model/Stave.h"
#include "model/AbbreviationArea.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/NoteEx.h"
#include "notation/TextArea.h"
#include "fixtures/ScoreFixtures.h"
#include "support/RecordingView.h"

#include <gtest/gtest.h>

namespace corrieval {
namespace {

TEST(Document, NewTuneHasOneEightInchPageWithoutAPrinterOrView)
{
    CCorrievalDoc doc;
    ASSERT_TRUE(doc.OnNewDocument());
    ASSERT_EQ(doc.Pages.size(), 1u);
    EXPECT_EQ(doc.Pages[0]->Bounds(), (RectF{0, 0, 8.0f, 8.0f}));
    EXPECT_FLOAT_EQ(doc.Pages[0]->LeftMargin, 0.4f);
    EXPECT_EQ(doc.Tempo, 74);
    EXPECT_TRUE(doc.IsModified());
    EXPECT_EQ(doc.PrinterSettings, decltype(doc.PrinterSettings){});
}

TEST(Document, PagesStackAndCarryTheirAreas)
{
    CCorrievalDoc doc;
    doc.OnNewDocument();
    CTunePage* first = doc.Pages[0].get();
    CTunePage* second = doc.AddPage(1);
    auto* text = static_cast<CTextArea*>(second->AddChild(std::make_unique<CTextArea>(), true));
    text->SetBounds(1, 8.5f, 2, 1);

    CTunePage* inserted = doc.AddPage(0); // goes behind the first page
    EXPECT_EQ(doc.Pages[1].get(), inserted);
    EXPECT_FLOAT_EQ(second->Bounds().Y, 16.0f);
    EXPECT_FLOAT_EQ(text->Bounds().Y, 16.5f);

    doc.DeletePage(first);
    EXPECT_FLOAT_EQ(second->Bounds().Y, 8.0f);
    EXPECT_FLOAT_EQ(text->Bounds().Y, 8.5f);
    EXPECT_FLOAT_EQ(text->Bounds().X, 1.0f);

    doc.DeletePage(first); // unknown: ignored
    EXPECT_EQ(doc.Pages.size(), 2u);
}

TEST(Document, DeletingTheOnlyPageStillTellsTheView)
{
    testing::RecordingView view;
    Session().ImportFileName = QStringLiteral("import");
    CCorrievalDoc doc;
    doc.OnNewDocument();
    Session().ImportFileName.clear();
    EXPECT_EQ(view.PageSetupPrompts, 0);
    const int before = view.Layouts;
    doc.DeletePage(doc.Pages[0].get());
    EXPECT_TRUE(doc.Pages.empty());
    EXPECT_EQ(view.Layouts, before + 1);
}

TEST(Document, FirstPageAsksForThePageSetUpAndAppliesIt)
{
    testing::RecordingView view;
    view.Answer = PageSetup{11.0f, 8.5f, 0.5f, 0.6f, 0.7f, 0.8f};
    CCorrievalDoc doc;
    doc.OnNewDocument();
    EXPECT_EQ(view.PageSetupPrompts, 1);
    EXPECT_EQ(doc.Pages[0]->Bounds(), (RectF{0, 0, 11.0f, 8.5f}));
    EXPECT_FLOAT_EQ(doc.Pages[0]->RightMargin, 0.6f);
    EXPECT_FLOAT_EQ(doc.Pages[0]->BottomMargin, 0.8f);

    doc.AddPage(1); // not the first position: no prompt
    EXPECT_EQ(view.PageSetupPrompts, 1);
}

TEST(Document, QuickStartOrientationSetsA4WithoutADialog)
{
    testing::RecordingView view;
    Session().TemplateOrientation = 1;
    CCorrievalDoc doc;
    doc.OnNewDocument();
    Session().TemplateOrientation = 0;
    EXPECT_EQ(view.PageSetupPrompts, 0);
    EXPECT_FLOAT_EQ(doc.PageWidth, 11.692f);
    EXPECT_FLOAT_EQ(doc.PageHeight, 8.267f);
}

TEST(Document, TemplatesOpenUntitled)
{
    CCorrievalDoc doc;
    doc.SetPathName(QStringLiteral("/music/Reel.skb"));
    EXPECT_EQ(doc.PathName(), QStringLiteral("/music/Reel.skb"));
    EXPECT_EQ(doc.Title(), QStringLiteral("Reel.skb"));
    doc.SetPathName(QStringLiteral("/templates/4_Parts.SKT"));
    EXPECT_TRUE(doc.PathName().isEmpty());
    EXPECT_EQ(doc.Title(), QStringLiteral("Untitled"));
}

TEST(Document, HasMusicLooksAtTheFirstBarOnly)
{
    fixtures::TuneShape shape;
    auto doc = fixtures::BuildTune(shape);
    EXPECT_FALSE(doc->HasMusic());

    auto* area = static_cast<CStaveArea*>(doc->Pages[0]->ChildAt(1));
    auto* stave = static_cast<CStave*>(static_cast<CStaveGroup*>(area->ChildAt(0))->ChildAt(0));
    auto* second = static_cast<CBarEx*>(stave->ChildAt(1));
    second->AddChild(std::make_unique<CNoteEx>(), true);
    EXPECT_FALSE(doc->HasMusic());

    static_cast<CBarEx*>(stave->ChildAt(0))->AddChild(std::make_unique<CNoteEx>(), true);
    EXPECT_TRUE(doc->HasMusic());
}

TEST(Document, AbbreviationLegendIsNotMusic)
{
    CCorrievalDoc doc;
    doc.OnNewDocument();
    auto* legend = static_cast<CAbbreviationArea*>(doc.Pages[0]->AddChild(std::make_unique<CAbbreviationArea>(), true));
    auto bar = std::make_unique<CBarEx>();
    bar->AddChild(std::make_unique<CNoteEx>(), true);
    legend->WrittenStave->AddChild(std::move(bar), true);
    EXPECT_FALSE(doc.HasMusic());
}

TEST(Document, MarginsApplyToEveryPage)
{
    CCorrievalDoc doc;
    doc.OnNewDocument();
    doc.AddPage(1);
    doc.ApplyPageMargins(0.1f, 0.2f, 0.3f, 0.4f);
    for (const auto& page : doc.Pages)
        EXPECT_EQ(page->ContentBox(), (RectF{0.1f, page->Bounds().Y + 0.3f, 8.0f - 0.3f, 8.0f - 0.7f}));
}

} // namespace
} // namespace corrieval
