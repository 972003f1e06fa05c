#pragma once

#include "model/PageArea.h"
#include "notation/LogFont.h"

#include <QString>
#include <cstdint>
#include <memory>

namespace corrieval {

// A page area of free text: titles, composer, notes to the player. The text lives here; the
// desktop app shows an editor over the area only while it is selected.
class CTextArea : public CPageArea {
    CORRIEVAL_DECLARE_CLASS()

public:
    enum Alignment : std::int32_t { Left = 0, Centre = 1, Right = 2 };

    CTextArea();

    std::unique_ptr<CPageArea> Clone() const override;
    // The font as drawn: the stored height is the height in document inches at every zoom and on
    // paper, since the painter scales text with everything else.
    TextFont DrawingFont() const;
    // Alignment as the text is laid out across the content box.
    TextAlign HorizontalAlignment() const;
    // The text in the file's colour word, fully opaque.
    std::uint32_t TextArgb() const;
    void Draw(Painter& painter, OutputMode mode) override;
    // Redraws the area where it now stands, which takes an open editor along with it.
    void AfterBoundsChange(const RectF& oldBounds) override;

    LogFont Font;             // height in hundredths of an inch at 100% zoom, negative
    std::uint32_t Colour = 0; // Windows colour value 0x00BBGGRR
    QString Text;
    std::int32_t Alignment = Centre;
    // Set while the desktop app's editor shows the text over the area: the screen leaves the
    // text to the editor rather than show it twice. Never stored or copied.
    bool EditorShown = false;

protected:
    // Font, colour, alignment, text and rectangle; the margins of a new area.
    CTextArea(const CTextArea& other);
};

} // namespace corrieval
