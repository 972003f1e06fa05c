// The document and its pages: the paper a new tune gets and how pages stack.

#include "model/CorrievalDoc.h"
#include "model/SessionState.h"
#include "model/TunePage.h"
#include "notation/TextArea.h"
#include "support/RecordingView.h"

#include <gtest/gtest.h>

namespace corrieval {
namespace {

TEST(Document, WithoutAViewANewTuneHasOneEightInchPage)
{
    CCorrievalDoc doc;
    ASSERT_TRUE(doc.OnNewDocument());
    ASSERT_EQ(doc.Pages.size(), 1u);
    EXPECT_EQ(doc.Pages[0]->Bounds(), (RectF{0, 0, 8.0f, 8.0f}));
    EXPECT_FLOAT_EQ(doc.Pages[0]->LeftMargin, 0.4f);
    EXPECT_EQ(doc.Tempo, 74);
    EXPECT_TRUE(doc.IsModified());
}

TEST(Document, TheFirstPageTakesThePageSetUpFromTheViewOrTheQuickStartOrientation)
{
    {
        testing::RecordingView view;
        view.Answer = PageSetup{11.0f, 8.5f, 0.5f, 0.6f, 0.7f, 0.8f};
        CCorrievalDoc doc;
        doc.OnNewDocument();
        EXPECT_EQ(doc.Pages[0]->Bounds(), (RectF{0, 0, 11.0f, 8.5f}));
        EXPECT_EQ(doc.Pages[0]->ContentBox(), (RectF{0.5f, 0.7f, 11.0f - 1.1f, 8.5f - 1.5f}));
        doc.AddPage(1); // not the first position: no prompt
        EXPECT_EQ(view.PageSetupPrompts, 1);
    }
    // A4 landscape chosen on the quick start page: no dialog.
    testing::RecordingView view;
    Session().TemplateOrientation = 1;
    CCorrievalDoc doc;
    doc.OnNewDocument();
    Session().TemplateOrientation = 0;
    EXPECT_EQ(view.PageSetupPrompts, 0);
    EXPECT_FLOAT_EQ(doc.PageWidth, 11.692f);
    EXPECT_FLOAT_EQ(doc.PageHeight, 8.267f);
}

TEST(Document, PagesStackAndCarryTheirAreasAndShareTheirMargins)
{
    CCorrievalDoc doc;
    doc.OnNewDocument();
    CTunePage* first = doc.Pages[0].get();
    CTunePage* second = doc.AddPage(1);
    auto* text = static_cast<CTextArea*>(second->AddChild(std::make_unique<CTextArea>(), true));
    text->SetBounds(1, 8.5f, 2, 1);

    CTunePage* inserted = doc.AddPage(0);
    EXPECT_EQ(doc.Pages[1].get(), inserted); // behind the first page
    EXPECT_FLOAT_EQ(second->Bounds().Y, 16.0f);
    EXPECT_FLOAT_EQ(text->Bounds().Y, 16.5f);
    doc.DeletePage(first);
    EXPECT_FLOAT_EQ(second->Bounds().Y, 8.0f);
    EXPECT_EQ(text->Bounds(), (RectF{1, 8.5f, 2, 1}));
    doc.DeletePage(first); // unknown: ignored
    EXPECT_EQ(doc.Pages.size(), 2u);

    doc.ApplyPageMargins(0.1f, 0.2f, 0.3f, 0.4f);
    for (const auto& page : doc.Pages)
        EXPECT_EQ(page->ContentBox(), (RectF{0.1f, page->Bounds().Y + 0.3f, 8.0f - 0.3f, 8.0f - 0.7f}));
}

} // namespace
} // namespace corrieval
