#pragma once

#include "formats/glenmarch/PipeRecords.h"
#include "notation/Text.h"

#include <QString>
#include <cstdint>
#include <memory>
#include <vector>

namespace corrieval {

class CArchive;

// The document of the older Glenmarch program: a tune as a flat list of bars placed by line and
// column, its parts, its ties, three heading texts and a page set-up. It holds a tune that was
// read from a ".glm" file or gathered by the BWW and BMW import until the conversion turns it into
// a score, and is never shown. In its language a line is a row of bars and a part a run of lines.
//
// The import fills one like this: set the page and the texts, then for each part add a CPart
// (Parts), call LayOutPart to place its bars, and add notes, beams and ties to the bars through
// CBar's import operations and Ties.
class CPipeDoc {
public:
    // What a file has become once read: counts filled in and the stored flags settled.
    static constexpr std::int32_t LoadedSchema = 3;
    // The schema from which a file keeps its own beat doubling flag.
    static constexpr std::int32_t DoublingSchema = 4;
    static constexpr double DefaultMargin = 0.5;

    struct Margins {
        double Left = DefaultMargin;
        double Right = DefaultMargin;
        double Top = DefaultMargin;
        double Bottom = DefaultMargin;
    };

    CPipeDoc() = default;
    CPipeDoc(const CPipeDoc&) = delete;
    CPipeDoc& operator=(const CPipeDoc&) = delete;
    CPipeDoc(CPipeDoc&&) = default;
    CPipeDoc& operator=(CPipeDoc&&) = default;

    // The whole file, which is this record without a tag. Loading settles the fields as the
    // older program did (print margins, scale, counts, schema, doubling flag). Storing writes
    // the fields as they stand; the program never stores a tune in this form.
    void Serialize(CArchive& ar);

    // The first bar at (line, column), columns from 1; null when there is none.
    CBar* BarAt(std::int32_t line, std::int32_t column) const;
    // The bar at `number`, counting from 1 in list order; null past the end.
    CBar* BarByNumber(std::int32_t number) const;
    CPart* PartByNumber(std::int32_t number) const;
    // The first bar that holds a note of that id.
    CBar* BarHoldingNote(std::int32_t noteId) const;
    // The highest line that holds a bar, 0 with no bars.
    std::int32_t LastLine() const;

    // Import: places the bars of the part just added, on the lines below those in use, four to a
    // line over the printable width. A part with an upbeat opens with a narrow upbeat bar in
    // column 1, and its later lines take columns 2 to 5, so that their bars line up with the
    // bars after the upbeat.
    void LayOutPart(std::int32_t partNumber);

    // Page set-up, inches.
    double PageWidth = 9.6;
    double PageHeight = 13.8;
    Margins PageMargins;       // after loading always the defaults: the file's go to PrintMargins
    double HeadingSpace = 0.9; // kept free at the top of a page, over the margins
    std::int32_t BarsPerLine = 5;
    std::int32_t LinesPerPage = 12;
    std::int32_t FirstLineSetting = 1;  // the older program's own, unused here
    std::int32_t SecondLineSetting = 1; // the older program's own, unused here
    double Scale = -1.0;
    std::int32_t Orientation = 0; // 1 landscape
    QString TimeSigText;          // one character of the music font; see CTimeSig::TimeSigFromChar
    std::int32_t TotalBarCount = 0;
    std::int32_t TotalLineCount = 0;
    std::int32_t Schema = 1;
    std::int32_t BarLimit = 110;
    std::int32_t BeatDoubling = 1; // beamed notes are written at half their value
    std::int32_t Reserved = 0;

    CText LeftText;   // the tune's type: "March", "Strathspey", ...
    CText CentreText; // the title
    CText RightText;  // the composer

    std::vector<std::unique_ptr<CBar>> Bars;
    std::vector<std::unique_ptr<CPart>> Parts;
    std::vector<std::unique_ptr<CTie>> Ties;

    Margins PrintMargins;
    // Not stored: a BWW tune that writes the key signature (its "sharpf" and "sharpc") has it
    // shown.
    bool ShowKeySig = false;
    // Not stored either; what only the full reading of a BWW tune fills in. A signature that
    // the font has no glyph for ("3_8") is a custom one of these beats and unit; 0 beats: none.
    std::int32_t CustomBeats = 0;
    std::int32_t CustomUnit = 4;
    std::int32_t WrittenTempo = 0; // the tune's own "TuneTempo", 0 when it gives none
    bool ReadStrictly = false;     // read as the older program read BWW tunes, page and all
    // A BWW file may hold a set: the tunes after this one, each converted on a page of its own.
    std::vector<std::unique_ptr<CPipeDoc>> FollowingTunes;
    std::int32_t NextNoteId = 1;
    std::int32_t NextGroupId = 1;

private:
    void SyncFields(CArchive& ar);
    void AfterLoad(double fileScale);
};

} // namespace corrieval
