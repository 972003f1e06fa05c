#include "model/TunePage.h"

#include "model/SessionState.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CTunePage, CGraphObjContainer);

namespace {
constexpr float kPaperInset = 0.1f; // pages show a 0.2-inch gap between them
constexpr float kShadowOffset = 0.03f;
constexpr std::uint32_t kBlack = 0xFF000000;
constexpr std::uint32_t kWhite = 0xFFFFFFFF;
constexpr std::uint32_t kMarginHatch = 0xFF778899;
} // namespace

CTunePage::CTunePage()
{
    SetMargins(DefaultMargin);
}

void CTunePage::AfterBoundsChange(const RectF& oldBounds)
{
    const float shift = oldBounds.Y - Bounds().Y;
    for (const auto& child : Children()) {
        const RectF r = child->Bounds();
        child->SetBounds(r.X, r.Y - shift, r.Width, r.Height);
    }
}

void CTunePage::Draw(Painter& painter, OutputMode mode)
{
    const RectF b = Bounds();
    const RectF paper{b.X + kPaperInset, b.Y + kPaperInset, b.Width - 2 * kPaperInset, b.Height - 2 * kPaperInset};
    if (mode == OutputMode::Screen) {
        // The outline stays one pixel wide at any zoom.
        const Pen outline{kBlack, painter.PixelsToInches(1), DashStyle::Solid, true};
        painter.FillRect({paper.X + kShadowOffset, paper.Y + kShadowOffset, paper.Width, paper.Height},
                         Brush::Solid(kBlack));
        painter.FillRect(paper, Brush::Solid(kWhite));
        painter.DrawRect(paper, outline);
        if (!Session().Locked && Session().ShowMargins) {
            // The margins are the paper less the content box of the page itself.
            QPainterPath margins;
            margins.setFillRule(Qt::OddEvenFill);
            margins.addRect(paper.X, paper.Y, paper.Width, paper.Height);
            const RectF content = ContentBox();
            margins.addRect(content.X, content.Y, content.Width, content.Height);
            painter.FillPath(margins, Brush::Hatch(kMarginHatch, kWhite));
        }
    }
    CGraphObjContainer::Draw(painter, mode);
}

} // namespace corrieval
