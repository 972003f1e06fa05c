#include "formats/glenmarch/PipeDoc.h"

#include "formats/archive/Archive.h"
#include "formats/score/OlderRecords.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>

namespace corrieval {

namespace {

// A line of the older layout holds four bars, and an upbeat bar before them takes this share of
// a bar's width.
constexpr std::int32_t kBarsPerPartLine = 4;
constexpr double kUpbeatShare = 0.4;
constexpr double kThousandths = 1000.0;

// Sums and counts of a damaged file may run past 32 bits; they stop at the largest value.
std::int32_t Saturate(std::int64_t v)
{
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(v, std::numeric_limits<std::int32_t>::min(),
                                                              std::numeric_limits<std::int32_t>::max()));
}

} // namespace

void CPipeDoc::SyncFields(CArchive& ar)
{
    for (double* field : {&PageWidth, &PageHeight, &PageMargins.Left, &PageMargins.Right, &PageMargins.Top,
                          &PageMargins.Bottom, &HeadingSpace})
        ar.Sync(*field);
    for (std::int32_t* field : {&BarsPerLine, &LinesPerPage, &FirstLineSetting, &SecondLineSetting})
        ar.Sync(*field);
    ar.Sync(Scale);
    ar.Sync(Orientation);
    ar.Sync(TimeSigText);
    for (std::int32_t* field : {&TotalBarCount, &TotalLineCount, &Schema})
        ar.Sync(*field);
    // Older schemas wrote a bar limit that meant nothing yet.
    std::int32_t barLimit = BarLimit;
    ar.Sync(barLimit);
    if (ar.IsStoring() || Schema > 2)
        BarLimit = barLimit;
    ar.Sync(BeatDoubling);
    ar.Sync(Reserved);
}

void CPipeDoc::Serialize(CArchive& ar)
{
    SyncFields(ar);
    const double fileScale = Scale;
    for (CText* text : {&LeftText, &CentreText, &RightText})
        SerializeText(ar, *text);
    SyncRecordList(ar, Bars);
    SyncRecordList(ar, Parts);
    SyncRecordList(ar, Ties);
    if (ar.IsLoading())
        AfterLoad(fileScale);
}

void CPipeDoc::AfterLoad(double fileScale)
{
    const double factor = fileScale > 0 && std::isfinite(fileScale) ? fileScale : 1.0;
    std::int64_t highestNote = 0;
    std::int64_t highestGroup = 0;
    // Parts look their first-time note up here, once for all of them.
    std::unordered_map<std::int32_t, const CBar*> barOfNote;
    for (const auto& bar : Bars) {
        bar->RecomputeStaveGap(factor);
        for (const auto& note : bar->Notes) {
            highestNote = std::max<std::int64_t>(highestNote, note->Id);
            barOfNote.emplace(note->Id, bar.get());
        }
        for (const auto& group : bar->Groups)
            highestGroup = std::max<std::int64_t>(highestGroup, group->Id);
    }
    NextNoteId = Saturate(highestNote + 1);
    NextGroupId = Saturate(highestGroup + 1);

    for (const auto& part : Parts) {
        const auto found = part->Version >= 2 && part->FirstTimeBar > 0 ? barOfNote.find(part->FirstTimeBar)
                                                                        : barOfNote.end();
        part->FirstTimeLine = found != barOfNote.end() ? found->second->Line : 0;
        part->FirstTimeColumn = found != barOfNote.end() ? found->second->Column : 0;
    }

    PrintMargins = PageMargins;
    PageMargins = Margins{};
    Scale = -1.0;
    // The first files left the totals out. As the older program did, the part's bars count
    // towards the line total and its lines towards the bar total, both doubled.
    if (Schema < 2 && (TotalBarCount == 0 || TotalLineCount == 0)) {
        std::int64_t bars = 0;
        std::int64_t lines = 0;
        for (const auto& part : Parts) {
            bars += part->BarCount;
            lines += part->SecondReserved;
        }
        TotalLineCount = Saturate(bars * 2);
        TotalBarCount = Saturate(lines * 2);
    }
    if (Schema < DoublingSchema)
        BeatDoubling = 1;
    Schema = LoadedSchema;
}

CBar* CPipeDoc::BarAt(std::int32_t line, std::int32_t column) const
{
    const auto it = std::find_if(Bars.begin(), Bars.end(),
                                 [&](const auto& bar) { return bar->Line == line && bar->Column == column; });
    return it != Bars.end() ? it->get() : nullptr;
}

CBar* CPipeDoc::BarByNumber(std::int32_t number) const
{
    return number >= 1 && static_cast<std::size_t>(number) <= Bars.size() ? Bars[number - 1].get() : nullptr;
}

CPart* CPipeDoc::PartByNumber(std::int32_t number) const
{
    const auto it =
        std::find_if(Parts.begin(), Parts.end(), [&](const auto& part) { return part->Number == number; });
    return it != Parts.end() ? it->get() : nullptr;
}

CBar* CPipeDoc::BarHoldingNote(std::int32_t noteId) const
{
    const auto it =
        std::find_if(Bars.begin(), Bars.end(), [&](const auto& bar) { return bar->HoldsNote(noteId); });
    return it != Bars.end() ? it->get() : nullptr;
}

std::int32_t CPipeDoc::LastLine() const
{
    std::int32_t last = 0;
    for (const auto& bar : Bars)
        last = std::max(last, bar->Line);
    return last;
}

void CPipeDoc::LayOutPart(std::int32_t partNumber)
{
    CPart* part = PartByNumber(partNumber);
    if (part == nullptr || part->BarCount <= 0)
        return;
    const bool upbeat = part->AnacrusisState == CPart::Upbeat;
    const double printable = (PageWidth - PageMargins.Left - PageMargins.Right) * kThousandths;
    const double barWidth = printable / (kBarsPerPartLine + (upbeat ? kUpbeatShare : 0.0));
    const double upbeatWidth = upbeat ? barWidth * kUpbeatShare : 0.0;
    const double left = PageMargins.Left * kThousandths;
    const double musicTop = (PageMargins.Top + HeadingSpace) * kThousandths;
    const double freeHeight =
        (PageHeight - PageMargins.Top - PageMargins.Bottom - HeadingSpace) * kThousandths;
    const double lineHeight = freeHeight / std::max(LinesPerPage, 1);

    const std::int32_t firstLine = LastLine() + 1;
    std::int32_t line = firstLine;
    std::int32_t onLine = 0;
    for (std::int32_t made = 0; made < part->BarCount; ++made) {
        auto bar = std::make_unique<CBar>();
        bar->Line = line;
        bar->Top = static_cast<std::int32_t>(std::lround(musicTop + (line - 0.5) * lineHeight));
        if (upbeat && made == 0) {
            bar->Column = 1;
            bar->Left = static_cast<std::int32_t>(std::lround(left));
            bar->Width = static_cast<std::int32_t>(std::lround(upbeatWidth));
        } else {
            const std::int32_t column = onLine + 1;
            bar->Column = upbeat ? column + 1 : column;
            bar->Left = static_cast<std::int32_t>(std::lround(left + upbeatWidth + onLine * barWidth));
            bar->Width = static_cast<std::int32_t>(std::lround(barWidth));
            if (++onLine == kBarsPerPartLine && made + 1 < part->BarCount) {
                onLine = 0;
                ++line;
            }
        }
        bar->RecomputeStaveGap(1.0);
        Bars.push_back(std::move(bar));
    }
    const std::int32_t lines = line - firstLine + 1;
    part->SecondReserved = lines;
    TotalBarCount = Saturate(std::int64_t{TotalBarCount} + part->BarCount);
    TotalLineCount = Saturate(std::int64_t{TotalLineCount} + lines);
}

} // namespace corrieval
