#include "model/AbbreviationArea.h"

#include "model/BarEx.h"
#include "model/Stave.h"
#include "notation/NoteEx.h"

#include <algorithm>
#include <map>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CAbbreviationArea, CStaveArea);

namespace {
constexpr float kLabelColumnShare = 0.1f;
constexpr float kLabelTopMargin = 0.1f;
constexpr float kColumnsPerInch = 0.6f;
constexpr float kLabelPoints = 10.0f;
constexpr std::uint32_t kBlack = 0xFF000000;

// The marks in use, each with the "Played" bar that stood at its column when it was taken. The
// bars are kept for information only and never followed: they may be gone by now.
std::map<AbbreviationType, CBarEx*>& AbbreviationBars()
{
    static std::map<AbbreviationType, CBarEx*> bars;
    return bars;
}
} // namespace

CAbbreviationArea::CAbbreviationArea()
{
    auto* group = static_cast<CStaveGroup*>(AddChild(std::make_unique<CStaveGroup>(), true));
    auto makeStave = [group] {
        auto stave = std::make_unique<CStave>();
        stave->TopMargin = 0.1f;
        stave->BottomMargin = 0.1f;
        return static_cast<CStave*>(group->AddChild(std::move(stave), true));
    };
    WrittenStave = makeStave();
    PlayedStave = makeStave();
}

std::optional<AbbreviationType> CAbbreviationArea::FreeAbbreviation()
{
    const auto* free = std::find_if(std::begin(Marks), std::end(Marks),
                                    [](AbbreviationType code) { return !LookupAbbreviation(code); });
    return free != std::end(Marks) ? std::optional(*free) : std::nullopt;
}

bool CAbbreviationArea::LookupAbbreviation(AbbreviationType code)
{
    return AbbreviationBars().contains(code);
}

void CAbbreviationArea::ReleaseAbbreviation(AbbreviationType code)
{
    AbbreviationBars().erase(code);
}

void CAbbreviationArea::ReleaseWrittenBar(const CBarEx& bar)
{
    const auto* mark = bar.ChildCount() > 0 ? dynamic_cast<const CNoteEx*>(bar.ChildAt(0)) : nullptr;
    if (mark != nullptr)
        ReleaseAbbreviation(static_cast<AbbreviationType>(mark->AbbreviationCode));
}

CAbbreviationArea* CAbbreviationArea::OfWrittenRow(const CStave& stave)
{
    CGraphObjContainer* group = stave.Parent();
    if (group == nullptr || group->IndexOfChild(&stave) != 0)
        return nullptr;
    return dynamic_cast<CAbbreviationArea*>(group->Parent());
}

void CAbbreviationArea::RegisterAbbreviation(AbbreviationType code, const CBarEx& writtenBar)
{
    CBarEx* played = nullptr;
    const int column = WrittenStave != nullptr ? WrittenStave->IndexOfChild(&writtenBar) : -1;
    if (column >= 0 && PlayedStave != nullptr && static_cast<std::size_t>(column) < PlayedStave->ChildCount())
        played = static_cast<CBarEx*>(PlayedStave->ChildAt(static_cast<std::size_t>(column)));
    AbbreviationBars()[code] = played;
}

void CAbbreviationArea::FillWrittenBar(CBarEx& bar, AbbreviationType code)
{
    const RectF box = bar.ContentBox();
    auto note = CNoteEx::ForAbbreviation(code);
    note->SetBounds(box);
    auto* mark = static_cast<CNoteEx*>(bar.AddNoteSorted(std::move(note)));
    bar.PlaceItem(*mark, box.X + box.Width / 2, box.Y + box.Height / 2);
    bar.AutoOrganise();
    RegisterAbbreviation(code, bar);
}

void CAbbreviationArea::LayoutLabels()
{
    LeftMargin = Bounds().Width * kLabelColumnShare;
    RightMargin = 0;
    TopMargin = kLabelTopMargin;
    BottomMargin = 0;
    // Only the first group: in a loaded legend that is the empty one the constructor made.
    if (ChildCount() > 0)
        ChildAt(0)->SetBounds(ContentBox());
}

void CAbbreviationArea::FillDefaultColumns()
{
    if (ChildCount() == 0)
        return;
    auto& group = static_cast<CStaveGroup&>(*ChildAt(0));
    const auto columns =
        static_cast<std::size_t>(std::max(1, static_cast<int>(ContentBox().Width * kColumnsPerInch)));
    while (group.BarConfigs.size() < columns)
        group.InsertBarColumn(group.BarConfigs.size());
    group.LayoutStaves();
    LayoutLabels();
}

void CAbbreviationArea::AfterBoundsChange(const RectF&)
{
    LayoutLabels();
}

void CAbbreviationArea::Draw(Painter& painter, OutputMode mode)
{
    CPageArea::Draw(painter, mode);
    // The painter scales text with the zoom and the surface, so the labels keep one size in
    // document inches on the screen, in the preview and on paper.
    const TextFont font{QStringLiteral("Sans Serif"), kLabelPoints / 72.0f};
    const RectF b = Bounds();
    const float width = b.Width * kLabelColumnShare;
    const float half = b.Height / 2;
    painter.DrawText(QStringLiteral("Written"), font, {b.X, b.Y, width, half}, TextAlign::Centre,
                     TextAlign::Centre, kBlack);
    painter.DrawText(QStringLiteral("Played"), font, {b.X, b.Y + half, width, half}, TextAlign::Centre,
                     TextAlign::Centre, kBlack);
}

} // namespace corrieval
