#include "formats/glenmarch/PipeConversion.h"

#include "formats/glenmarch/ConversionRules.h"
#include "formats/glenmarch/GlenmarchConversion.h"
#include "model/ActiveView.h"
#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/NoteGroupEx.h"
#include "notation/TextArea.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace corrieval {

namespace {

// A system of the older layout, its room above and below, and the room a music area keeps
// beyond its systems, inches.
constexpr float kLineHeight = 0.78f;
constexpr float kLineMargin = 0.15f;
constexpr float kAreaSlack = 0.3f;
constexpr float kAreaGap = 0.015f;
// Headings: the page box is divided in this many units; the title takes the top 0.6 of one,
// the type and composer 0.3 of one below it.
constexpr float kPageUnits = 11.0f;
constexpr float kTitleUnits = 0.6f;
constexpr float kHeadingGapUnits = 0.05f;
constexpr float kSubheadingUnits = 0.3f;
constexpr float kTypeShare = 0.3f;
constexpr float kComposerShare = 0.65f;
constexpr double kTitleSize = 1.5;
constexpr double kSubheadingSize = 1.3;
constexpr double kUpbeatShare = 0.4;
// A further tune of a set starts this far below the music before it, inches.
constexpr float kTuneGap = 0.25f;

// Lines that fit in a height, never fewer than one.
std::int32_t LinesIn(float height)
{
    return std::max(1, static_cast<std::int32_t>(height / kLineHeight));
}

// Lines of a music area that starts at y and must end within the page box; 0 when none fits.
std::int32_t LinesBetween(float y, const RectF& box)
{
    return std::max(0, static_cast<std::int32_t>((box.Bottom() - y - kAreaSlack) / kLineHeight));
}

// The lowest edge of what a page holds.
float UsedBottom(const CTunePage& page)
{
    float bottom = page.ContentBox().Y;
    for (const auto& child : page.Children())
        bottom = std::max(bottom, child->Bounds().Bottom());
    return bottom;
}

} // namespace

PipeConversion::PipeConversion(CPipeDoc& source, CCorrievalDoc& target, bool fromText)
    : m_source(source), m_doc(target), m_fromText(fromText)
{
    for (const auto& bar : m_source.Bars)
        m_barAt.emplace(std::make_pair(bar->Line, bar->Column), bar.get());
    for (const auto& tie : m_source.Ties) {
        if (tie->First != 0)
            m_tieByFirst.emplace(tie->First, tie.get());
    }
}

PipeConversion::~PipeConversion() = default;

void PipeConversion::Run(Placement placement)
{
    CleanTexts();
    ApplyOrientation();
    if (m_doc.Pages.empty())
        m_doc.AddPage(0);
    const TuneStart start = FindStart(placement);
    CTunePage& page = start.Page;
    const RectF box = page.ContentBox();
    const float unit = box.Height / kPageUnits;
    AddHeadings(page, box, start.Top, unit);

    if (FollowsContent())
        FlowLines(box.Width);
    CountColumns();
    const std::int32_t lines = LineCount();
    const std::int32_t firstPageLines = start.Lines;
    m_timeSigType = m_source.TimeSigText.isEmpty()
                        ? CTimeSig::None
                        : CTimeSig::TimeSigFromChar(m_source.TimeSigText[0].unicode());
    if (m_source.CustomBeats > 0)
        m_timeSigType = CTimeSig::Custom;
    CStaveArea& area =
        AddStaveArea(page, box, start.Top + unit + kAreaGap, std::min(lines, firstPageLines), true);
    SetTempo();
    if (m_fromText)
        m_source.BeatDoubling = 0;
    else
        NextEnding();
    PlacePages(area, lines, firstPageLines);
    m_written.AddMarkers();
    m_doc.SetModifiedFlag();
}

void PipeConversion::CleanTexts()
{
    for (CText* text : {&m_source.LeftText, &m_source.CentreText, &m_source.RightText})
        text->Text.replace(QLatin1String("\r\n"), QLatin1String(" - "));
}

void PipeConversion::ApplyOrientation()
{
    if (m_source.Orientation != 1)
        return;
    std::swap(m_doc.PageWidth, m_doc.PageHeight);
    m_doc.SetModifiedFlag();
    m_doc.LayoutPages();
}

PipeConversion::TuneStart PipeConversion::FindStart(Placement placement)
{
    CTunePage& last = *m_doc.Pages.back();
    const RectF box = last.ContentBox();
    if (placement == Placement::BelowTuneBefore) {
        // As many lines as fit stay on this page; the rest go on to new pages, as a long tune's do.
        const float top = UsedBottom(last) + kTuneGap;
        if (const std::int32_t lines = LinesBetween(top + box.Height / kPageUnits + kAreaGap, box); lines > 0)
            return {last, top, lines};
        m_doc.AddPage(m_doc.Pages.size());
        return FindStart(Placement::PageTop);
    }
    return {last, box.Y, LinesIn(box.Height * 10 / kPageUnits)};
}

void PipeConversion::AddHeadings(CTunePage& page, const RectF& box, float top, float unit)
{
    AddHeading(page, {box.X, top, box.Width, unit * kTitleUnits}, m_source.CentreText, kTitleSize,
               CTextArea::Centre);
    const float y = top + unit * kTitleUnits + unit * kHeadingGapUnits;
    const float h = unit * kSubheadingUnits;
    AddHeading(page, {box.X, y, box.Width * kTypeShare, h}, m_source.LeftText, kSubheadingSize,
               CTextArea::Left);
    const float w = box.Width * kComposerShare;
    AddHeading(page, {box.X + box.Width - w, y, w, h}, m_source.RightText, kSubheadingSize, CTextArea::Right);
}

void PipeConversion::AddHeading(CTunePage& page, const RectF& bounds, const CText& text, double sizeFactor,
                                std::int32_t alignment)
{
    constexpr std::int32_t boldWeight = 700;
    constexpr std::int32_t normalWeight = 400;
    // The font height, in hundredths of an inch, follows the older point size; a size beyond
    // reason (a damaged file) is held to a page-sized letter.
    constexpr double largestHeight = 1000.0;
    auto area = std::make_unique<CTextArea>();
    area->SetBounds(bounds);
    area->Text = text.Text;
    const double height = std::isfinite(text.PointSize)
                              ? std::clamp(std::trunc(text.PointSize * sizeFactor), 0.0, largestHeight)
                              : 0.0;
    area->Font.SetHeight(-static_cast<std::int32_t>(height));
    area->Font.SetFaceName(text.Face);
    area->Font.SetWeight((text.Style & CText::Bold) != 0 ? boldWeight : normalWeight);
    area->Font.SetItalic((text.Style & CText::Italic) != 0);
    area->Font.SetUnderline((text.Style & CText::Underline) != 0);
    area->Alignment = alignment;
    page.AddChild(std::move(area), true);
}

void PipeConversion::SetTempo()
{
    CText& type = m_source.LeftText;
    type.Text = type.Text.toLower();
    const std::int32_t tempo =
        m_source.WrittenTempo > 0 ? m_source.WrittenTempo : TempoForTune(m_timeSigType, type.Text);
    if (tempo != m_doc.Tempo) {
        m_doc.Tempo = tempo;
        m_doc.SetModifiedFlag();
    }
}

CStaveArea& PipeConversion::AddStaveArea(CTunePage& page, const RectF& box, float y, std::int32_t lines,
                                         bool showTimeSig)
{
    auto area = std::make_unique<CStaveArea>();
    area->SetBounds(box.X, y, box.Width, static_cast<float>(lines) * kLineHeight + kAreaSlack);
    area->InitialTimeSig.CustomBeats = m_source.CustomBeats;
    area->InitialTimeSig.CustomUnit = m_source.CustomUnit;
    area->InitialTimeSig.SetType(m_timeSigType);
    area->ShowTimeSig = showTimeSig;
    area->ShowKeySig = m_source.ShowKeySig;
    area->SetPartCount(1);
    return static_cast<CStaveArea&>(*page.AddChild(std::move(area), true));
}

void PipeConversion::CountColumns()
{
    std::int32_t onFirstLine = 0;
    while (onFirstLine < MaxColumns && m_barAt.count({1, onFirstLine + 1}) != 0)
        ++onFirstLine;
    m_barsPerLine = std::clamp(m_source.BarsPerLine, 1, MaxColumns);
    // A first line with a bar more than the others has an upbeat bar at its head.
    if (onFirstLine > m_barsPerLine) {
        m_barsPerLine = onFirstLine;
        m_upbeatColumn = true;
    }
    m_columnWidths.assign(static_cast<std::size_t>(m_barsPerLine), 0.0);
    m_columnStarts.assign(static_cast<std::size_t>(m_barsPerLine), 0.0);
}

std::int32_t PipeConversion::LineCount() const
{
    // The stored totals are only a hint, doubled in the first files; the lines that hold bars
    // decide, and a damaged file cannot ask for more lines than it has bars.
    const auto bars = static_cast<std::int32_t>(
        std::min<std::size_t>(m_source.Bars.size(), std::numeric_limits<std::int32_t>::max()));
    return std::clamp(m_source.LastLine(), 0, bars);
}

std::vector<CTunePage*> PipeConversion::AddLaterPages(std::int32_t lines)
{
    // All pages are added before any is filled: adding a page lays out every page again, which
    // costs nothing while they are empty.
    std::vector<CTunePage*> pages;
    if (lines <= 0)
        return pages;
    pages.push_back(m_doc.AddPage(m_doc.Pages.size()));
    const std::int32_t perPage = LinesIn(pages.front()->ContentBox().Height);
    const std::int32_t count = (lines + perPage - 1) / perPage;
    while (static_cast<std::int32_t>(pages.size()) < count)
        pages.push_back(m_doc.AddPage(m_doc.Pages.size()));
    return pages;
}

void PipeConversion::PlacePages(CStaveArea& firstArea, std::int32_t lines, std::int32_t firstPageLines)
{
    std::int32_t linesLeft = lines - std::min(lines, firstPageLines);
    const std::vector<CTunePage*> laterPages = AddLaterPages(linesLeft);

    // The first page, with a system first for an upbeat line of the older layout, line 0, which
    // stays only when it has bars.
    float y = firstArea.ContentBox().Y;
    if (PlaceLine(firstArea, 0, y))
        y += kLineHeight;
    else
        firstArea.RemoveChild(firstArea.ChildAt(firstArea.ChildCount() - 1), true);
    std::int32_t olderLine = 1;
    for (; olderLine <= std::min(lines, firstPageLines); ++olderLine, y += kLineHeight)
        PlaceLine(firstArea, olderLine, y);
    // The systems share the area and take the standard spacing, as on every page.
    firstArea.Relayout();
    if (FollowsContent())
        FitBarsToContent(firstArea);

    for (CTunePage* page : laterPages) {
        const RectF box = page->ContentBox();
        const std::int32_t count = std::min(linesLeft, LinesIn(box.Height));
        linesLeft -= count;
        CStaveArea& area = AddStaveArea(*page, box, box.Y + kAreaGap, count, false);
        y = area.ContentBox().Y;
        for (std::int32_t i = 0; i < count; ++i, ++olderLine, y += kLineHeight)
            PlaceLine(area, olderLine, y);
        area.Relayout();
        if (FollowsContent())
            FitBarsToContent(area);
    }
}

PipeConversion::LineReading PipeConversion::ReadLine(std::int32_t line, std::int32_t shift) const
{
    LineReading reading;
    for (std::int32_t c = 0; c < m_barsPerLine; ++c) {
        const auto found = m_barAt.find({line, c + 1 + shift});
        const CBar* bar = found != m_barAt.end() ? found->second : nullptr;
        double width = 0;
        if (bar != nullptr) {
            // A bar that is skipped measures from where its column started before.
            const double start = bar->HasNotes != 0 ? bar->Left : m_columnStarts[static_cast<std::size_t>(c)];
            width = static_cast<double>(bar->Left) + bar->Width - start;
        }
        reading.Older.push_back(bar);
        reading.Widths.push_back(width);
    }
    return reading;
}

bool PipeConversion::ReadsShifted(const LineReading& reading) const
{
    // A first bar as wide as the first two of the line before, and an empty last column: the
    // first bar starts the line where the line before had an upbeat bar.
    if (m_previousLine.size() < 2)
        return false;
    return reading.Widths.front() == m_previousLine[0] + m_previousLine[1] && reading.Widths.back() == 0;
}

std::vector<std::size_t> PipeConversion::KeptColumns(std::int32_t line, const LineReading& reading) const
{
    const bool placesBars = std::any_of(reading.Older.begin(), reading.Older.end(),
                                        [](const CBar* bar) { return bar != nullptr && bar->HasNotes != 0; });
    std::vector<std::size_t> kept;
    for (std::size_t c = 0; c < reading.Older.size(); ++c) {
        if (line == 0 || reading.Older[c] != nullptr)
            kept.push_back(c);
    }
    // A system keeps one column even when its line placed nothing.
    if (!placesBars || kept.empty())
        kept.assign(1, 0);
    return kept;
}

void PipeConversion::SizeBars(CStave& stave, const std::vector<std::size_t>& kept)
{
    std::vector<double> widths;
    for (std::size_t c : kept) {
        const bool upbeat = m_upbeatColumn && c == 0 && m_columnWidths.size() > 1;
        widths.push_back(upbeat ? m_columnWidths[1] * kUpbeatShare : m_columnWidths[c]);
    }
    const std::vector<float> fitted = FitWidths(widths, stave.ContentBox().Width);
    auto* group = static_cast<CStaveGroup*>(stave.Parent());
    // From the last bar down: each keeps its right edge and the bar before takes up the rest.
    for (std::size_t k = fitted.size(); k-- > 1;)
        group->SetBarWidth(k, fitted[k]);
}

bool PipeConversion::PlaceLine(CStaveArea& area, std::int32_t line, float y)
{
    const RectF box = area.ContentBox();
    auto* group = static_cast<CStaveGroup*>(area.AddChild(std::make_unique<CStaveGroup>(), true));
    group->SetBounds(box.X, y, box.Width, kLineHeight);
    group->TopMargin = group->BottomMargin = kLineMargin;
    auto* stave = static_cast<CStave*>(group->AddChild(std::make_unique<CStave>(), true));
    stave->SetBounds(box.X, y + kLineMargin, box.Width, kLineHeight - 2 * kLineMargin);

    LineReading reading = ReadLine(line, 0);
    bool any = false;
    for (std::size_t c = 0; c < reading.Older.size(); ++c) {
        const CBar* bar = reading.Older[c];
        if (bar == nullptr)
            continue;
        any = true;
        if (bar->HasNotes != 0)
            m_columnStarts[c] = bar->Left;
        m_columnWidths[c] = std::max(m_columnWidths[c], reading.Widths[c]);
    }
    if (!FollowsContent() && ReadsShifted(reading))
        reading = ReadLine(line, -1);
    // The next line is compared with this one as it was read, so a run of lines that each start
    // with a bar over two columns is read alike.
    if (any)
        m_previousLine = reading.Widths;

    const std::vector<std::size_t> kept = KeptColumns(line, reading);
    for (std::size_t k = 0; k < kept.size(); ++k)
        group->InsertBarColumn(k);
    SizeBars(*stave, kept);

    bool placed = false;
    for (std::size_t k = 0; k < kept.size(); ++k) {
        auto& bar = static_cast<CBarEx&>(*stave->ChildAt(k));
        if (m_timing == 2)
            bar.Config->RepeatEnding = CBarConfig::SecondTime;
        const CBar* older = reading.Older[kept[k]];
        if (older == nullptr || older->HasNotes == 0)
            continue;
        placed = true;
        const bool upbeat = m_upbeatColumn && kept[k] == 0;
        PlaceBar({*older, bar, m_columnWidths[kept[k]], upbeat, area.InitialTimeSig}, area);
    }
    return placed;
}

void ConvertPipeDoc(CPipeDoc& source, CCorrievalDoc& target, bool fromText)
{
    PipeConversion(source, target, fromText).Run();
    // A score plays at one tempo: the first tune's.
    const std::int32_t tempo = target.Tempo;
    for (const auto& tune : source.FollowingTunes)
        PipeConversion(*tune, target, fromText).Run(PipeConversion::Placement::BelowTuneBefore);
    target.Tempo = tempo;
}

void ConvertIntoActiveView(std::unique_ptr<CPipeDoc> source, bool fromText)
{
    ScoreView* view = ActiveView();
    CCorrievalDoc* doc = view != nullptr ? view->Document() : nullptr;
    if (doc == nullptr)
        return;
    ConvertPipeDoc(*source, *doc, fromText);
    for (const auto& page : doc->Pages)
        view->InvalidateObject(*page);
    view->TuneImported(doc->Tempo);
}

std::unique_ptr<CCorrievalDoc> ConvertToNewDocument(CPipeDoc& source, bool fromText)
{
    auto doc = std::make_unique<CCorrievalDoc>();
    doc->OnNewDocument();
    ConvertPipeDoc(source, *doc, fromText);
    return doc;
}

} // namespace corrieval
