#include "model/BarEx.h"
#include "model/PageArea.h"
#include "model/Stave.h"
#include "model/AbbreviationArea.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/FixedNoteGroup.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/TextArea.h"
#include "notation/TimeSig.h"
#include "support/RecordingView.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace corrieval {
namespace {

// Every hook call, in order, across all probes of a test.
std::vector<std::string>* g_log = nullptr;

class ProbeContainer : public CGraphObjContainer {
    CORRIEVAL_DECLARE_CLASS()

public:
    explicit ProbeContainer(std::string name = {}) : Name(std::move(name)) {}
    void OnChildAdded(CScoObj*, bool flag) override { Log("added to " + Name + (flag ? " true" : " false")); }
    void OnChildRemoved(CScoObj*) override { Log("removed from " + Name); }
    void BeforeBoundsChange(const RectF& r) override { Log("before " + std::to_string(r.X)); }
    void AfterBoundsChange(const RectF& r) override { Log("after " + std::to_string(r.X)); }
    void OnSelectionChanged(bool on) override { Log(std::string("selection ") + (on ? "on" : "off")); }
    void Log(const std::string& s) const
    {
        if (g_log != nullptr)
            g_log->push_back(s);
    }
    std::string Name;
};
CORRIEVAL_IMPLEMENT_CLASS(ProbeContainer, CGraphObjContainer);

class ObjectTree : public ::testing::Test {
protected:
    void SetUp() override { g_log = &log; }
    void TearDown() override { g_log = nullptr; }

    template <class T = ProbeContainer> T* Add(CGraphObjContainer& parent, RectF r = {}, std::string name = {})
    {
        std::unique_ptr<T> child;
        if constexpr (std::is_same_v<T, ProbeContainer>)
            child = std::make_unique<T>(std::move(name));
        else
            child = std::make_unique<T>();
        child->RestoreStoredBounds(r);
        return static_cast<T*>(parent.AddChild(std::move(child), false));
    }

    std::vector<std::string> log;
};

TEST_F(ObjectTree, IndexOfChildIsDirectOnlyWhileContainsDeepSearchesDown)
{
    ProbeContainer root("root");
    auto* child = Add(root);
    auto* grandchild = Add(*child);
    EXPECT_EQ(root.IndexOfChild(nullptr), -1);
    EXPECT_EQ(root.IndexOfChild(child), 0);
    EXPECT_EQ(root.IndexOfChild(grandchild), -1);
    EXPECT_TRUE(root.ContainsDeep(grandchild));
    EXPECT_FALSE(child->ContainsDeep(&root));
    EXPECT_EQ(grandchild->Parent(), child);
}

TEST_F(ObjectTree, InsertChildAfterPutsTheObjectBehindTheIndexedChild)
{
    ProbeContainer empty;
    auto* only = empty.InsertChildAfter(0, std::make_unique<ProbeContainer>(), true);
    EXPECT_EQ(empty.IndexOfChild(only), 0);

    ProbeContainer two;
    Add(two);
    Add(two);
    auto* x = two.InsertChildAfter(0, std::make_unique<ProbeContainer>(), true);
    EXPECT_EQ(two.IndexOfChild(x), 1);
    auto* atEnd = two.InsertChildAfter(3, std::make_unique<ProbeContainer>(), true);
    EXPECT_EQ(two.IndexOfChild(atEnd), 3);
    EXPECT_THROW(two.InsertChildAfter(5, std::make_unique<ProbeContainer>(), true), std::invalid_argument);
    EXPECT_EQ(two.ChildCount(), 4u);
    EXPECT_EQ(two.AddChild(nullptr, true), nullptr);
}

TEST_F(ObjectTree, HooksRunInTheDesignedOrder)
{
    ProbeContainer a("a");
    ProbeContainer b("b");
    auto* child = Add(a);
    child->SetBounds(1, 2, 3, 4);
    child->SetParent(&a); // the present parent: nothing happens
    child->SetParent(&b); // moves with its ownership
    EXPECT_EQ(b.IndexOfChild(child), 0);
    EXPECT_EQ(a.ChildCount(), 0u);
    const std::vector<std::string> expected{"added to a false", "before 1.000000", "after 0.000000", "removed from a",
                                            "added to b true"};
    EXPECT_EQ(log, expected);
}

TEST_F(ObjectTree, SelectionTalksToTheViewOnlyWhenTheStateChanges)
{
    ProbeContainer obj;
    obj.SetSelected(false); // no view: still the hook
    testing::RecordingView view;
    obj.SetSelected(false);
    EXPECT_TRUE(view.Selection.empty());
    EXPECT_EQ(view.Invalidated.size(), 1u);
    obj.SetSelected(true);
    EXPECT_EQ(view.Selection, std::vector<CScoObj*>{&obj});
    EXPECT_TRUE(obj.Selected());
    const std::vector<std::string> expected{"selection off", "selection off", "selection on"};
    EXPECT_EQ(log, expected);
}

TEST_F(ObjectTree, HitTestTakesTheTopmostAndHonoursHalfOpenEdges)
{
    CTunePage page;
    auto* lower = Add<CTextArea>(page, {1, 1, 2, 2});
    auto* upper = Add<CTextArea>(page, {2, 2, 2, 2});
    EXPECT_EQ(page.HitTest(2.5f, 2.5f), upper);
    page.SendToBack(upper);
    EXPECT_EQ(page.HitTest(2.5f, 2.5f), lower);
    page.BringToFront(upper);
    EXPECT_EQ(page.HitTest(2.5f, 2.5f), upper);

    EXPECT_EQ(page.HitTest(1, 1), lower);     // left and top edges hit
    EXPECT_EQ(page.HitTest(3, 1.5f), nullptr); // right edge of the lower area does not
    EXPECT_EQ(page.HitTest(4, 3), nullptr);
}

TEST_F(ObjectTree, HitTestDescendsIntoContainersAndAsksNotesForTheirShape)
{
    CTunePage page;
    auto* area = Add<CStaveArea>(page, {0, 0, 5, 5});
    auto* group = Add<CStaveGroup>(*area, {0, 0, 5, 1});
    EXPECT_EQ(page.HitTest(1, 0.5f), group);
    EXPECT_EQ(page.HitTest(1, 3), area);

    auto* stave = Add<CStave>(*group, {0, 0, 5, 1});
    auto* bar = Add<CBarEx>(*stave, {0, 0, 2, 1});
    auto* note = Add<CNoteEx>(*bar, {0, 0, 2, 1});
    EXPECT_EQ(page.HitTest(1, 0.5f), bar); // a note with no drawn head is not hit
    note->HeadPath.addEllipse(0.9, 0.4, 0.2, 0.2);
    EXPECT_EQ(page.HitTest(1, 0.5f), note);
}

TEST_F(ObjectTree, RubberBandSelectsNotesButNeverGroups)
{
    CTunePage page;
    auto* area = Add<CStaveArea>(page, {0, 0, 5, 5});
    auto* group = Add<CStaveGroup>(*area, {0, 0, 5, 5});
    auto* stave = Add<CStave>(*group, {0, 0, 5, 5});
    auto* bar = Add<CBarEx>(*stave, {0, 0, 5, 5});
    auto* inside = Add<CNoteEx>(*bar, {});
    inside->HeadRect = {1, 1, 0.2f, 0.2f};
    auto* outside = Add<CNoteEx>(*bar, {});
    outside->HeadRect = {3, 3, 0.2f, 0.2f};
    auto* beamed = Add<CNoteGroupEx>(*bar, {0, 0, 2, 2});
    auto* inGroup = Add<CNoteEx>(*beamed, {0, 0, 2, 2});
    inGroup->HeadRect = {0.5f, 0.5f, 0.2f, 0.2f};

    std::vector<CScoObj*> picked;
    page.SelectInRect({0.5f, 0.5f, 1.2f, 1.2f}, [&](CScoObj& o) { picked.push_back(&o); });
    EXPECT_EQ(picked, (std::vector<CScoObj*>{inside, inGroup}));
}

TEST_F(ObjectTree, RemoveChildHandsOverOrDestroys)
{
    testing::RecordingView view;
    ProbeContainer root("root");
    auto* keep = Add(root);
    auto* drop = Add(root);
    drop->SetSelected(true);
    std::unique_ptr<CScoObj> kept = root.RemoveChild(keep, false);
    EXPECT_EQ(kept.get(), keep);
    EXPECT_EQ(keep->Parent(), nullptr);
    EXPECT_EQ(root.RemoveChild(drop, true), nullptr);
    EXPECT_TRUE(view.Selection.empty());
    EXPECT_EQ(root.RemoveChild(keep, true), nullptr); // no longer a child: nothing happens
    EXPECT_EQ(std::count(log.begin(), log.end(), "removed from root"), 2);
}

TEST_F(ObjectTree, TearingDownASubtreeFiresNoRemovalHook)
{
    {
        ProbeContainer root("root");
        auto* area = Add(root, {}, "area");
        for (int i = 0; i < 3; ++i)
            Add(*Add(*area, {}, "group"), {}, "stave");
        log.clear();
    }
    EXPECT_TRUE(log.empty());
}

TEST_F(ObjectTree, FindAncestorAndTheClassPropertiesFollowTheClassTree)
{
    CTunePage page;
    auto* area = Add<CAbbreviationArea>(page, {});
    auto* stave = static_cast<CStave*>(static_cast<CGraphObjContainer*>(area->ChildAt(0))->ChildAt(0));
    EXPECT_EQ(stave->FindAncestor<CStaveArea>(), area);
    EXPECT_EQ(stave->FindAncestor<CTunePage>(), &page);
    EXPECT_EQ(stave->FindAncestor<CBarEx>(), nullptr);
    EXPECT_EQ(area->WrittenStave, stave);
    EXPECT_FLOAT_EQ(stave->GetPenWidth(), 0.004f);

    const CTextArea text;
    const CBarEx bar;
    const CNoteGroupEx beamed;
    EXPECT_TRUE(area->IsSelectable() && area->IsMusicHolder() && area->IsAreaItem() && !area->IsNoteItem());
    EXPECT_TRUE(text.IsAreaItem() && !text.IsMusicHolder());
    EXPECT_TRUE(bar.IsSelectable() && bar.IsMusicHolder() && !bar.IsAreaItem());
    EXPECT_TRUE(beamed.IsNoteItem() && beamed.IsMusicHolder());
    EXPECT_FALSE(page.IsSelectable() || stave->IsSelectable() || CTimeSig().IsSelectable());
}

} // namespace
} // namespace corrieval
