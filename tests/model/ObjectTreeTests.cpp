// The object tree: who owns whom, the order of the container hooks, and tearing a subtree down.

#include "model/GraphObjContainer.h"
#include "support/RecordingView.h"

#include <algorithm>
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

    static ProbeContainer* Add(CGraphObjContainer& parent, std::string name = {})
    {
        return static_cast<ProbeContainer*>(
            parent.AddChild(std::make_unique<ProbeContainer>(std::move(name)), false));
    }

    std::vector<std::string> log;
};

TEST_F(ObjectTree, ChildrenAreDirectWhileContainsDeepSearchesDown)
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
    EXPECT_EQ(root.AddChild(nullptr, true), nullptr);
}

TEST_F(ObjectTree, InsertChildAfterPutsTheObjectBehindTheIndexedChild)
{
    ProbeContainer empty;
    EXPECT_EQ(empty.IndexOfChild(empty.InsertChildAfter(0, std::make_unique<ProbeContainer>(), true)), 0);

    ProbeContainer two;
    Add(two);
    Add(two);
    EXPECT_EQ(two.IndexOfChild(two.InsertChildAfter(0, std::make_unique<ProbeContainer>(), true)), 1);
    EXPECT_EQ(two.IndexOfChild(two.InsertChildAfter(3, std::make_unique<ProbeContainer>(), true)), 3);
    EXPECT_THROW(two.InsertChildAfter(5, std::make_unique<ProbeContainer>(), true), std::invalid_argument);
    EXPECT_EQ(two.ChildCount(), 4u);
}

TEST_F(ObjectTree, HooksRunInOrderAndAChildMovesWithItsOwnership)
{
    ProbeContainer a("a");
    ProbeContainer b("b");
    auto* child = Add(a);
    child->SetBounds(1, 2, 3, 4);
    child->SetParent(&a); // the present parent: nothing happens
    child->SetParent(&b);
    EXPECT_EQ(b.IndexOfChild(child), 0);
    EXPECT_EQ(a.ChildCount(), 0u);
    EXPECT_EQ(log, (std::vector<std::string>{"added to a false", "before 1.000000", "after 0.000000",
                                             "removed from a", "added to b true"}));
}

TEST_F(ObjectTree, RemoveChildHandsOverOrDestroysAndLeavesTheSelection)
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
        auto* area = Add(root, "area");
        for (int i = 0; i < 3; ++i)
            Add(*Add(*area, "group"), "stave");
        log.clear();
    }
    EXPECT_TRUE(log.empty());
}

} // namespace
} // namespace corrieval
