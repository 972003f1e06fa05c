#include "model/CorrievalDoc.h"

#include "model/ActiveView.h"
#include "model/SessionState.h"
#include "model/AbbreviationArea.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/TieEx.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace corrieval {

namespace {
const QString kUntitled = QStringLiteral("Untitled");
constexpr float kA4Short = 8.267f;
constexpr float kA4Long = 11.692f;
} // namespace

CCorrievalDoc::CCorrievalDoc()
    : PageWidth(Session().DefaultPaperWidth), PageHeight(Session().DefaultPaperHeight), m_title(kUntitled)
{
}

CCorrievalDoc::~CCorrievalDoc()
{
    while (!Ties.empty())
        Ties.pop_back();
    while (!Pages.empty())
        Pages.pop_back();
}

bool CCorrievalDoc::OnNewDocument() { return AddPage(Pages.size()) != nullptr; }

CTunePage* CCorrievalDoc::AddPage(std::size_t index)
{
    if (index > Pages.size())
        throw std::invalid_argument("AddPage: index past the end of the page list");
    const std::size_t position = std::min(index + 1, Pages.size());
    auto inserted = Pages.insert(Pages.begin() + static_cast<std::ptrdiff_t>(position),
                                 std::make_unique<CTunePage>());
    CTunePage* page = inserted->get();
    if (index == 0 && Session().ImportFileName.isEmpty())
        EditPageSetup();
    LayoutPages();
    SetModifiedFlag();
    return page;
}

void CCorrievalDoc::DeletePage(CTunePage* page)
{
    auto it = std::find_if(Pages.begin(), Pages.end(), [page](const auto& p) { return p.get() == page; });
    if (it == Pages.end())
        return;
    Pages.erase(it);
    LayoutPages();
    SetModifiedFlag();
}

void CCorrievalDoc::LayoutPages()
{
    float y = 0;
    for (const auto& page : Pages) {
        page->SetBounds(0, y, PageWidth, PageHeight);
        y += PageHeight;
    }
    if (ScoreView* view = ActiveView())
        view->PagesLaidOut();
}

void CCorrievalDoc::EditPageSetup()
{
    const std::uint32_t orientation = Session().TemplateOrientation;
    if (orientation == 1 || orientation == 2) {
        PageWidth = orientation == 2 ? kA4Short : kA4Long;
        PageHeight = orientation == 2 ? kA4Long : kA4Short;
        SetModifiedFlag();
        LayoutPages();
        const float m = CTunePage::DefaultMargin;
        ApplyPageMargins(m, m, m, m);
        return;
    }
    ScoreView* view = ActiveView();
    if (view == nullptr)
        return;
    PageSetup setup{PageWidth, PageHeight};
    if (!Pages.empty()) {
        const CTunePage& first = *Pages.front();
        setup.LeftMargin = first.LeftMargin;
        setup.RightMargin = first.RightMargin;
        setup.TopMargin = first.TopMargin;
        setup.BottomMargin = first.BottomMargin;
    }
    if (!view->EditPageSetup(setup))
        return;
    PageWidth = setup.Width;
    PageHeight = setup.Height;
    SetModifiedFlag();
    LayoutPages();
    ApplyPageMargins(setup.LeftMargin, setup.RightMargin, setup.TopMargin, setup.BottomMargin);
}

void CCorrievalDoc::ApplyPageMargins(float left, float right, float top, float bottom)
{
    for (const auto& page : Pages) {
        page->LeftMargin = left;
        page->RightMargin = right;
        page->TopMargin = top;
        page->BottomMargin = bottom;
    }
}

bool CCorrievalDoc::HasMusic() const
{
    const auto firstChild = [](const CScoObj* obj) -> const CScoObj* {
        const auto* container = dynamic_cast<const CGraphObjContainer*>(obj);
        return container != nullptr && container->ChildCount() > 0 ? container->ChildAt(0) : nullptr;
    };
    for (const auto& page : Pages) {
        for (const auto& area : page->Children()) {
            if (area->IsKindOf(CAbbreviationArea::Class))
                continue;
            const CScoObj* bar = firstChild(firstChild(firstChild(area.get())));
            if (firstChild(bar) != nullptr)
                return true;
        }
    }
    return false;
}

std::int32_t CCorrievalDoc::NextTieId() const
{
    std::int32_t highest = 0;
    for (const auto& tie : Ties)
        highest = std::max(highest, tie->Id);
    return highest + 1;
}

void CCorrievalDoc::SwapContent(CCorrievalDoc& other)
{
    std::swap(Locked, other.Locked);
    std::swap(Ties, other.Ties);
    std::swap(Pages, other.Pages);
    std::swap(Version, other.Version);
    std::swap(PageWidth, other.PageWidth);
    std::swap(PageHeight, other.PageHeight);
    std::swap(PrinterSettings, other.PrinterSettings);
    std::swap(Tempo, other.Tempo);
}

CTieEx* CCorrievalDoc::TieAt(float x, float y) const
{
    for (const auto& tie : Ties) {
        if (tie->FigureBounds().Contains(x, y))
            return tie.get();
    }
    return nullptr;
}

void CCorrievalDoc::SetPathName(const QString& path)
{
    m_pathName = path;
    m_title = path.isEmpty() ? kUntitled : path.section(QLatin1Char('/'), -1);
    if (path.right(3).toLower() == QLatin1String("skt")) {
        m_pathName.clear();
        m_title = kUntitled;
    }
}

} // namespace corrieval
