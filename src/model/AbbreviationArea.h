#pragma once

#include "model/StaveArea.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace corrieval {

class CBarEx;
class CStave;

// The glyph code of an abbreviation mark.
using AbbreviationType = std::uint16_t;

// The legend of piobaireachd abbreviation marks: a stave area of one group of two staves, the
// mark written above and what it stands for played below. It never sounds.
//
// Which marks are in use is known to the whole process, not to a document: each new column of
// any legend takes the first free mark, and removing the column frees it again. Nothing fills
// this from files, so after loading a tune the marks start again from the first.
class CAbbreviationArea : public CStaveArea {
    CORRIEVAL_DECLARE_CLASS()

public:
    // The marks in the order in which new columns take them.
    static constexpr AbbreviationType Marks[] = {0x178, 0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5,
                                                 0xA6,  0xA7, 0xA8, 0xA9, 0xAA, 0xAB};

    CAbbreviationArea();

    // The first mark in table order that no column uses; none when all are taken.
    static std::optional<AbbreviationType> FreeAbbreviation();
    static bool LookupAbbreviation(AbbreviationType code);
    static void ReleaseAbbreviation(AbbreviationType code);
    // Frees the mark of a bar of the "Written" row, which its first item carries.
    static void ReleaseWrittenBar(const CBarEx& bar);
    // The legend whose "Written" row `stave` is (the first stave of one of its groups), or null.
    static CAbbreviationArea* OfWrittenRow(const CStave& stave);

    // Marks `code` as used by the column of `writtenBar`.
    void RegisterAbbreviation(AbbreviationType code, const CBarEx& writtenBar);
    // Puts the mark into a new bar of the "Written" row and takes the code.
    void FillWrittenBar(CBarEx& bar, AbbreviationType code);
    // The first tenth of the width holds the row labels; the first group takes the rest.
    void LayoutLabels();
    // A new legend drawn with the mouse gets one column per 1.67 inches of its width.
    void FillDefaultColumns();

    // A legend cannot be copied.
    std::unique_ptr<CPageArea> Clone() const override { return nullptr; }
    void AfterBoundsChange(const RectF& oldBounds) override;
    // The page area with its groups and the row labels; no repeat markers.
    void Draw(Painter& painter, OutputMode mode) override;

    CStave* WrittenStave = nullptr;
    CStave* PlayedStave = nullptr;
};

} // namespace corrieval
