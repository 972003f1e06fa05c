#include "formats/score/ScoreRecords.h"

#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/SessionState.h"
#include "model/ActiveView.h"
#include "model/Stave.h"
#include "model/AbbreviationArea.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/FixedNoteGroup.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/RepeatTiming.h"
#include "notation/ImageArea.h"
#include "notation/TextArea.h"
#include "notation/TieEx.h"

#include <algorithm>
#include <array>

namespace corrieval {

namespace {

// The player file writes a few records in a scrambled order (see PlayerExport).
bool WritingPlayerFile(const CArchive& ar)
{
    return ar.IsStoring() && ar.Document() != nullptr && ar.Document()->PlayerExport != 0;
}

// A field that entered the format with `version`: always written, read only from such files.
bool HasField(const CArchive& ar, std::uint32_t version) { return ar.IsStoring() || ar.Version() >= version; }

void SyncGlyph(CArchive& ar, CScoChar& glyph)
{
    char16_t code = glyph.Code;
    ar.Sync(code);
    if (ar.IsLoading())
        glyph.SetCode(code);
}

void SyncScoObj(CArchive& ar, CScoObj& obj)
{
    RectF b = obj.Bounds();
    std::array<float*, 8> fields{&b.X, &b.Y, &b.Width, &b.Height,
                                 &obj.LeftMargin, &obj.TopMargin, &obj.RightMargin, &obj.BottomMargin};
    if (WritingPlayerFile(ar))
        fields = {&b.Width, &obj.RightMargin, &b.Y, &b.Height, &b.X, &obj.LeftMargin, &obj.BottomMargin, &obj.TopMargin};
    for (float* f : fields)
        ar.Sync(*f);
    if (ar.IsLoading())
        obj.RestoreStoredBounds(b);
}

void SyncContainer(CArchive& ar, CGraphObjContainer& container, const CRuntimeClass& childClass)
{
    SyncScoObj(ar, container);
    if (ar.IsStoring()) {
        ar.WriteList(container.Children());
        return;
    }
    CGraphObjContainer::ChildList children;
    ar.ReadOwnedList(children, childClass);
    container.AdoptLoadedChildren(std::move(children));
}

void SyncClef(CArchive& ar, CClef& clef)
{
    SyncScoObj(ar, clef);
    ar.Sync(clef.Type);
    if (ar.IsLoading())
        clef.Glyph.SetCode(CClef::GlyphFor(clef.Type, clef.Glyph.Code));
}

void SyncTimeSig(CArchive& ar, CTimeSig& sig)
{
    SyncScoObj(ar, sig);
    SyncGlyph(ar, sig.LowerGlyphs[0]);
    SyncGlyph(ar, sig.UpperGlyphs[0]);
    ar.Sync(sig.Type);
    if (!HasField(ar, 6))
        return;
    ar.Sync(sig.Symbol);
    SyncGlyph(ar, sig.UpperGlyphs[1]);
    SyncGlyph(ar, sig.LowerGlyphs[1]);
    ar.Sync(sig.CustomBeats);
    ar.Sync(sig.CustomUnit);
}

void TunePageRecord(CArchive& ar, CObject& obj) { SyncContainer(ar, static_cast<CTunePage&>(obj), CPageArea::Class); }

void StaveAreaRecord(CArchive& ar, CObject& obj)
{
    auto& area = static_cast<CStaveArea&>(obj);
    // Bars find their repeat markers through the document while they are read.
    if (CCorrievalDoc* doc = ar.Document())
        doc->CurrentStaveArea = &area;
    if (ar.IsStoring()) {
        ar.WriteList(area.RepeatMarkers);
    } else {
        ar.ReadOwnedList(area.RepeatMarkers);
        for (const auto& marker : area.RepeatMarkers)
            marker->Area = &area;
    }
    SyncTimeSig(ar, area.InitialTimeSig);
    SyncContainer(ar, area, CStaveGroup::Class);
    ar.Sync(area.StaveSpacing);
    ar.Sync(area.PartCount);
    if (HasField(ar, 4)) {
        ar.Sync(area.ShowTimeSig);
        ar.Sync(area.ShowBarLines);
    }
    if (HasField(ar, 5))
        ar.Sync(area.ShowKeySig);
    if (HasField(ar, 7)) {
        std::uint32_t argb = area.Background;
        for (int shift : {24, 16, 8, 0}) {
            auto channel = static_cast<std::uint8_t>((argb >> shift) & 0xFF);
            ar.Sync(channel);
            argb = (argb & ~(0xFFu << shift)) | (std::uint32_t{channel} << shift);
        }
        area.Background = argb;
    }
}

// Every bar must point at a configuration of its own group. A file that leaves a bar's
// configuration out of the group's list has the group take it over; one that shares it with
// another group, which owns it already, is refused.
void AdoptBarConfigs(CArchive& ar, CStaveGroup& group)
{
    auto& configs = group.BarConfigs;
    for (const auto& staveObj : group.Children()) {
        for (const auto& barObj : static_cast<CStave&>(*staveObj).Children()) {
            auto& bar = static_cast<CBarEx&>(*barObj);
            if (bar.Config == nullptr) {
                configs.push_back(std::make_unique<CBarConfig>());
                bar.Config = configs.back().get();
                continue;
            }
            if (std::any_of(configs.begin(), configs.end(), [&](const auto& c) { return c.get() == bar.Config; }))
                continue;
            std::unique_ptr<CObject> claimed = ar.Claim(bar.Config);
            if (!claimed)
                ar.Fail(ArchiveCause::BadIndex, ar.Position());
            configs.emplace_back(static_cast<CBarConfig*>(claimed.release()));
        }
    }
}

void StaveGroupRecord(CArchive& ar, CObject& obj)
{
    auto& group = static_cast<CStaveGroup&>(obj);
    SyncContainer(ar, group, CStave::Class);
    if (ar.IsStoring()) {
        ar.WriteList(group.BarConfigs);
        return;
    }
    ar.ReadOwnedList(group.BarConfigs);
    AdoptBarConfigs(ar, group);
}

void StaveRecord(CArchive& ar, CObject& obj)
{
    auto& stave = static_cast<CStave&>(obj);
    SyncContainer(ar, stave, CBarEx::Class);
    SyncClef(ar, stave.Clef);
    SyncTimeSig(ar, stave.TimeSig);
}

void BarRecord(CArchive& ar, CObject& obj)
{
    auto& bar = static_cast<CBarEx&>(obj);
    SyncContainer(ar, bar, CNoteBase::Class);
    std::int32_t markerId = bar.RepeatTiming != nullptr ? bar.RepeatTiming->RepeatId : 0;
    if (ar.IsStoring()) {
        ar.WriteObject(bar.Config);
        ar.Sync(markerId);
        return;
    }
    bar.Config = ar.ReadReference<CBarConfig>();
    ar.Sync(markerId);
    const CCorrievalDoc* doc = ar.Document();
    if (markerId > 0 && doc != nullptr && doc->CurrentStaveArea != nullptr)
        bar.RepeatTiming = doc->CurrentStaveArea->FindRepeatMarker(markerId);
}

void BarConfigRecord(CArchive& ar, CObject& obj)
{
    auto& config = static_cast<CBarConfig&>(obj);
    SyncTimeSig(ar, config.TimeSig);
    if (WritingPlayerFile(ar)) {
        ar.Sync(config.StartBarLine);
        ar.Sync(config.EndRepeat);
        ar.Sync(config.RepeatEnding);
        ar.Sync(config.StartRepeat);
        ar.Sync(config.EndBarLine);
        return;
    }
    ar.Sync(config.EndBarLine);
    ar.Sync(config.EndRepeat);
    ar.Sync(config.StartBarLine);
    ar.Sync(config.StartRepeat);
    ar.Sync(config.RepeatEnding);
}

void LinkTie(CArchive& ar, CNoteEx& note, std::int32_t tieId)
{
    CCorrievalDoc* doc = ar.Document();
    if (tieId <= 0 || doc == nullptr)
        return;
    auto it = std::find_if(doc->Ties.begin(), doc->Ties.end(), [tieId](const auto& t) { return t->Id == tieId; });
    if (it == doc->Ties.end())
        return;
    note.Tie = it->get();
    (*it)->AddNote(&note);
}

void NoteRecord(CArchive& ar, CObject& obj)
{
    auto& note = static_cast<CNoteEx&>(obj);
    SyncScoObj(ar, note);
    SyncGlyph(ar, note.HeadChar);
    ar.Sync(note.Stemmed);
    ar.Sync(note.GraceHead);
    ar.Sync(note.Duration);
    std::uint32_t abbreviation = note.AbbreviationChar.Code;
    ar.Sync(abbreviation);
    if (ar.IsLoading()) {
        note.AbbreviationChar.SetCode(static_cast<char16_t>(abbreviation & 0xFFFF));
        note.AbbreviationCode = abbreviation;
    }
    ar.Sync(note.Pitch);
    std::int32_t tieId = note.Tie != nullptr ? note.Tie->Id : 0;
    ar.Sync(tieId);
    ar.Sync(note.DotCut);
    ar.Sync(note.RepeatKind);
    ar.Sync(note.RepeatId);
    ar.Sync(note.Weight);
    if (ar.IsLoading())
        LinkTie(ar, note, tieId);
}

void NoteGroupRecord(CArchive& ar, CObject& obj)
{
    SyncContainer(ar, static_cast<CGraphObjContainer&>(obj), CNoteEx::Class);
}

void TieRecord(CArchive& ar, CObject& obj) { ar.Sync(static_cast<CTieEx&>(obj).Id); }

void RepeatTimingRecord(CArchive& ar, CObject& obj)
{
    auto& marker = static_cast<CRepeatTiming&>(obj);
    SyncScoObj(ar, marker);
    ar.Sync(marker.FirstMarker);
    ar.Sync(marker.SecondMarker);
    ar.Sync(marker.StartPosition);
    ar.Sync(marker.MiddlePosition);
    ar.Sync(marker.EndPosition);
    ar.Sync(marker.StartStave);
    ar.Sync(marker.MiddleStave);
    ar.Sync(marker.EndStave);
    ar.Sync(marker.RepeatId);
}

void TextAreaRecord(CArchive& ar, CObject& obj)
{
    auto& area = static_cast<CTextArea&>(obj);
    SyncContainer(ar, area, CScoObj::Class);
    ar.Sync(area.Text);
    ar.Sync(area.Colour);
    ar.SyncRaw(area.Font.Raw.data(), area.Font.Raw.size());
    ar.Sync(area.Alignment);
}

void ImageAreaRecord(CArchive& ar, CObject& obj)
{
    auto& area = static_cast<CImageArea&>(obj);
    SyncContainer(ar, area, CScoObj::Class);
    ar.Sync(area.ImageState);
    ar.Sync(area.Path);
}

// The marker that opens a player file, behind the version.
const QString kPlayerFileMarker = QStringLiteral("k_T-r");

} // namespace

const ArchiveClassTable& ScoreClasses()
{
    static const ArchiveClassTable table{
        {&CTunePage::Class, &TunePageRecord},
        {&CStaveArea::Class, &StaveAreaRecord},
        {&CAbbreviationArea::Class, &StaveAreaRecord},
        {&CTextArea::Class, &TextAreaRecord},
        {&CImageArea::Class, &ImageAreaRecord},
        {&CStaveGroup::Class, &StaveGroupRecord},
        {&CStave::Class, &StaveRecord},
        {&CBarEx::Class, &BarRecord},
        {&CBarConfig::Class, &BarConfigRecord},
        {&CNoteEx::Class, &NoteRecord},
        {&CNoteGroupEx::Class, &NoteGroupRecord},
        {&CFixedNoteGroup::Class, &NoteGroupRecord},
        {&CTieEx::Class, &TieRecord},
        {&CRepeatTiming::Class, &RepeatTimingRecord},
    };
    return table;
}

void SerializeDocument(CArchive& ar, CCorrievalDoc& doc)
{
    // Without a view the zoom written is the one that was read, so a conversion keeps it.
    float zoom = doc.LoadedZoom;
    if (ScoreView* view = ActiveView(); view != nullptr && ar.IsStoring())
        zoom = view->Zoom();
    doc.LoadedZoom = 1.0f;
    doc.ZoomPending = 0;

    if (ar.IsStoring())
        doc.Version = CCorrievalDoc::CurrentVersion;
    ar.Sync(doc.Version);
    if (WritingPlayerFile(ar))
        ar.WriteString(kPlayerFileMarker);
    if (ar.IsStoring()) {
        ar.WriteList(doc.Ties);
        ar.WriteList(doc.Pages);
    } else {
        ar.ReadOwnedList(doc.Ties);
        ar.ReadOwnedList(doc.Pages);
    }
    ar.Sync(doc.PageWidth);
    ar.Sync(doc.PageHeight);
    ar.SyncRaw(doc.PrinterSettings.data(), doc.PrinterSettings.size());
    ar.Sync(doc.Tempo);
    if (ar.IsStoring()) {
        ar.Sync(zoom);
        doc.LoadedZoom = zoom;
    } else if (ar.Version() >= 2) {
        ar.Sync(doc.LoadedZoom);
    }
    if (HasField(ar, 3))
        ar.Sync(doc.Locked);
    doc.CurrentStaveArea = nullptr;
    if (ar.IsLoading()) {
        doc.ZoomPending = 1;
        Session().Locked = doc.Locked != 0;
    }
    // Pictures are linked once the whole tree is there, after a save as after a load.
    for (const auto& page : doc.Pages) {
        for (const auto& area : page->Children()) {
            if (auto* image = dynamic_cast<CImageArea*>(area.get()))
                image->LoadImage(false);
        }
    }
}

} // namespace corrieval
