#pragma once

#include "formats/glenmarch/PipeDoc.h"
#include "formats/glenmarch/WrittenEndings.h"
#include "model/Geometry.h"
#include "notation/MovementFromCode.h"
#include "platform/MovementDefinitions.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

namespace corrieval {

class CBarEx;
class CCorrievalDoc;
class CNoteGroupEx;
class CScoObj;
class CStave;
class CStaveArea;
class CTieEx;
class CTimeSig;
class CTunePage;
class CText;

// One run of the conversion of an older tune into a score (see GlenmarchConversion.h). It walks
// the older lines page by page and, within a line, the columns and the notes, carrying along the
// open repeat section, tie and beam.
class PipeConversion {
public:
    // Where a tune goes: at the top of the score's last page, or, for a further tune of a set,
    // below the tune before it while that page has room for its headings and a line of music.
    enum class Placement { PageTop, BelowTuneBefore };

    PipeConversion(CPipeDoc& source, CCorrievalDoc& target, bool fromText);
    ~PipeConversion();
    void Run(Placement placement = Placement::PageTop);

private:
    // The older tunes had no more bars on a line than this; a larger count comes from a damaged
    // file.
    static constexpr std::int32_t MaxColumns = 64;

    // What one older line holds, column by column.
    struct LineReading {
        std::vector<const CBar*> Older;
        std::vector<double> Widths; // 0 where there is no bar
    };
    // Where the notes of one older bar go.
    struct BarPlacing {
        const CBar& Older;
        CBarEx& Bar;
        double ColumnWidth; // of the older column, thousandths
        bool UpbeatColumn;
        const CTimeSig& TimeSig; // the music area's
    };

    // The page a tune starts on, the top of its headings, and the lines of music that fit below
    // them.
    struct TuneStart {
        CTunePage& Page;
        float Top;
        std::int32_t Lines;
    };

    // Headings and the page.
    void CleanTexts();
    void ApplyOrientation();
    TuneStart FindStart(Placement placement);
    void AddHeadings(CTunePage& page, const RectF& box, float top, float unit);
    void AddHeading(CTunePage& page, const RectF& bounds, const CText& text, double sizeFactor,
                    std::int32_t alignment);
    void SetTempo();
    CStaveArea& AddStaveArea(CTunePage& page, const RectF& box, float y, std::int32_t lines,
                             bool showTimeSig);

    // Lines and columns.
    void CountColumns();
    std::int32_t LineCount() const;
    void PlacePages(CStaveArea& firstArea, std::int32_t lines, std::int32_t firstPageLines);
    std::vector<CTunePage*> AddLaterPages(std::int32_t lines);
    // Makes the system of an older line at y; false when the line placed no bar.
    bool PlaceLine(CStaveArea& area, std::int32_t line, float y);
    LineReading ReadLine(std::int32_t line, std::int32_t shift) const;
    bool ReadsShifted(const LineReading& reading) const;
    std::vector<std::size_t> KeptColumns(std::int32_t line, const LineReading& reading) const;
    void SizeBars(CStave& stave, const std::vector<std::size_t>& kept);

    // A BWW tune's lines follow what its bars hold (PipeConversionLines.cpp): lines break where
    // the tune breaks them or where they are full, and each bar takes the width it needs.
    bool FollowsContent() const;
    // The width each note of the bar takes, in its order; 0 for one that is not drawn.
    std::vector<float> NoteWidths(const CBar& bar);
    // A bar too wide for a line goes on in further bars, each as wide as a line can take.
    void SplitWideBars(float lineWidth);
    void FlowLines(float pageWidth);
    static void FitBarsToContent(CStaveArea& area);

    // Bars and notes (PipeConversionNotes.cpp).
    void NextEnding();
    void PlaceBar(const BarPlacing& placing, CStaveArea& area);
    void FollowTie(std::int32_t noteId);
    void HonourEnding(std::int32_t noteId, const BarPlacing& placing, CStaveArea& area);
    void OpenSection(CBarEx& bar);
    void AddWholeLineMarker(CStaveArea& area, CBarEx& bar);
    // Each returns what the note became in the bar, null when nothing was made.
    const CScoObj* PlaceBeamed(const CNote& note, const CNoteGroup& beam, const BarPlacing& placing, float x);
    const CScoObj* PlaceSingle(const CNote& note, const BarPlacing& placing, float& x);
    void CloseBeam(CBarEx& bar);
    CTieEx* TieFor(std::int32_t noteId) const;

    CPipeDoc& m_source;
    CCorrievalDoc& m_doc;
    bool m_fromText;
    std::int32_t m_timeSigType = 0;

    // Columns: their number, the upbeat column, and the older widths and starts seen so far.
    std::int32_t m_barsPerLine = 1;
    bool m_upbeatColumn = false;
    std::vector<double> m_columnWidths;
    std::vector<double> m_columnStarts;
    std::vector<double> m_previousLine;
    std::map<std::pair<std::int32_t, std::int32_t>, const CBar*> m_barAt;

    // Repeat endings: the next mark to honour and the section that is open.
    enum class EndingMode { None, FirstTimeNote, WholeLine, FirstTimeNoteWithMarker };
    std::size_t m_nextPart = 0;
    EndingMode m_mode = EndingMode::None;
    std::int32_t m_mark = 0;
    std::int64_t m_targetLine = -1; // the line whose first bar opens a whole-line ending
    std::int32_t m_barCounter = 0;
    std::int32_t m_repeatId = 0;
    std::int32_t m_timing = 0;
    bool m_sectionOpen = false;
    // A BWW tune marks its endings note by note instead.
    WrittenEndings m_written{0};

    // The tie being followed, and the beam being built.
    std::unordered_map<std::int32_t, const CTie*> m_tieByFirst;
    const CTie* m_olderTie = nullptr;
    CTieEx* m_tie = nullptr;
    std::unique_ptr<CNoteGroupEx> m_beam;
    const CNoteGroup* m_olderBeam = nullptr;
    MovementMade m_made;
    MovementDefinitionCache m_definitions;
};

} // namespace corrieval
