#include "formats/glenmarch/PipeRecords.h"

#include <algorithm>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CNote, CObject);
CORRIEVAL_IMPLEMENT_CLASS(CNoteGroup, CObject);
CORRIEVAL_IMPLEMENT_CLASS(CBar, CObject);
CORRIEVAL_IMPLEMENT_CLASS(CPart, CObject);
CORRIEVAL_IMPLEMENT_CLASS(CTie, CObject);

namespace {

struct CodeRange {
    std::int32_t First;
    std::int32_t Last;
    std::int32_t Position;
};

// Where each movement is written on the older stave: on its melody note, or for gracenote
// patterns of their own (the piobaireachd abbreviations) below the stave.
constexpr CodeRange kMovementPositions[] = {
    {31, 31, 27},   {40, 42, 19},   {80, 80, 19},   {82, 92, 19},   {96, 102, 19},  {105, 112, 19},
    {115, 120, 19}, {162, 163, 19}, {43, 45, 20},   {94, 94, 20},   {139, 139, 20}, {143, 143, 20},
    {150, 150, 20}, {154, 154, 20}, {46, 48, 21},   {157, 157, 21}, {49, 51, 22},   {81, 81, 22},
    {95, 95, 22},   {104, 104, 22}, {113, 114, 22}, {159, 159, 22}, {52, 54, 23},   {135, 136, 23},
    {160, 160, 23}, {55, 57, 24},   {133, 134, 24}, {140, 141, 24}, {161, 161, 24}, {58, 62, 25},
    {164, 164, 25}, {63, 63, 26},   {165, 165, 26}, {168, 176, 17},
};

template <std::size_t N> void SyncInts(CArchive& ar, std::array<std::int32_t, N>& fields)
{
    for (std::int32_t& field : fields)
        ar.Sync(field);
}

void NoteRecord(CArchive& ar, CObject& obj)
{
    auto& note = static_cast<CNote&>(obj);
    for (std::int32_t* field :
         {&note.Id, &note.Index, &note.Pitch, &note.Code, &note.X, &note.Dot, &note.Version})
        ar.Sync(*field);
    SyncInts(ar, note.Extras);
    if (note.Version > 1)
        ar.Sync(note.Scale);
    else
        note.Scale = 1.0;
}

void NoteGroupRecord(CArchive& ar, CObject& obj)
{
    auto& group = static_cast<CNoteGroup&>(obj);
    auto count = static_cast<std::int32_t>(group.NoteIds.size());
    for (std::int32_t* field :
         {&count, &group.HighestPitch, &group.LowestPitch, &group.RightmostX, &group.LeftmostX, &group.Id,
          &group.PreviousId, &group.State, &group.Reserved})
        ar.Sync(*field);
    SyncInts(ar, group.Extras);
    if (ar.IsStoring()) {
        for (std::int32_t id : group.NoteIds)
            ar.Sync(id);
        return;
    }
    // No room is reserved from the count: a damaged count runs into the end of the file first.
    group.NoteIds.clear();
    for (std::int32_t i = 0; i < count; ++i) {
        std::int32_t id = 0;
        ar.Sync(id);
        group.NoteIds.push_back(id);
    }
}

void BarRecord(CArchive& ar, CObject& obj)
{
    auto& bar = static_cast<CBar&>(obj);
    for (std::int32_t* field : {&bar.Left, &bar.Top, &bar.Width, &bar.Height})
        ar.Sync(*field);
    ar.Sync(bar.StaveGap);
    ar.Sync(bar.Settings[0]);
    ar.Sync(bar.Settings[1]);
    ar.Sync(bar.BarKind);
    ar.Sync(bar.Settings[2]);
    for (std::int32_t* field : {&bar.Line, &bar.Column, &bar.HasNotes, &bar.Version})
        ar.Sync(*field);
    SyncInts(ar, bar.MoreSettings);
    if (bar.Version >= 2)
        ar.Sync(bar.Scale);
    else
        bar.Scale = 1.0;
    SyncRecordList(ar, bar.Notes);
    SyncRecordList(ar, bar.Groups);
    // The stored gap is not trusted; the document scales it once all bars are read.
    if (ar.IsLoading())
        bar.RecomputeStaveGap(1.0);
}

void PartRecord(CArchive& ar, CObject& obj)
{
    auto& part = static_cast<CPart&>(obj);
    for (std::int32_t* field :
         {&part.Number, &part.FirstReserved, &part.SecondReserved, &part.ThirdField, &part.BarCount,
          &part.Version, &part.AnacrusisState, &part.EndingKind, &part.FirstTimeBar})
        ar.Sync(*field);
    // Version 1 parts kept the upbeat and the ending as flags in fields of their own.
    if (ar.IsLoading() && part.Version < 2) {
        part.AnacrusisState = part.FirstReserved != 0 ? CPart::Upbeat : CPart::NoUpbeat;
        part.EndingKind = part.ThirdField != 0 ? CPart::FirstTime : CPart::NoEnding;
    }
}

void TieRecord(CArchive& ar, CObject& obj)
{
    auto& tie = static_cast<CTie&>(obj);
    for (std::int32_t* field : {&tie.First, &tie.Second, &tie.Third})
        ar.Sync(*field);
    SyncInts(ar, tie.Drawing);
}

} // namespace

CNote::CNote(std::int32_t id, std::int32_t index, std::int32_t position, std::int32_t code, std::int32_t x)
    : Id(id), Index(index), Pitch(PositionForCode(code, position)), Code(code), X(x)
{
}

std::int32_t CNote::PositionForCode(std::int32_t code, std::int32_t fallback)
{
    const auto* range =
        std::find_if(std::begin(kMovementPositions), std::end(kMovementPositions),
                     [code](const CodeRange& r) { return code >= r.First && code <= r.Last; });
    return range != std::end(kMovementPositions) ? range->Position : fallback;
}

bool CNoteGroup::Contains(std::int32_t noteId) const
{
    return std::find(NoteIds.begin(), NoteIds.end(), noteId) != NoteIds.end();
}

void CNoteGroup::Add(const CNote& note)
{
    NoteIds.push_back(note.Id);
    HighestPitch = std::max(HighestPitch, note.Pitch);
    LowestPitch = std::min(LowestPitch, note.Pitch);
    RightmostX = std::max(RightmostX, note.X);
    LeftmostX = std::min(LeftmostX, note.X);
}

bool CTie::Holds(std::int32_t noteId) const
{
    return noteId != 0 && (noteId == First || noteId == Second || noteId == Third);
}

const ArchiveClassTable& GlenmarchClasses()
{
    static const ArchiveClassTable table{
        {&CBar::Class, &BarRecord},   {&CNote::Class, &NoteRecord}, {&CNoteGroup::Class, &NoteGroupRecord},
        {&CPart::Class, &PartRecord}, {&CTie::Class, &TieRecord},
    };
    return table;
}

} // namespace corrieval
