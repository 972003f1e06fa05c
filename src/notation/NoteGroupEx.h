#pragma once

#include "notation/NoteBase.h"

#include <QPainterPath>

#include <cstdint>
#include <memory>
#include <vector>

namespace corrieval {

class CNoteEx;

// Melody notes beamed together, in time order. All melody stems run down to the one beam line
// below the stave, so beaming is only a matter of which beam segments to draw: no slopes and no
// stem directions. The notes show bare heads; the group draws their stems and beams.
class CNoteGroupEx : public CNoteBase {
    CORRIEVAL_DECLARE_CLASS()

public:
    bool IsMusicHolder() const override { return true; }

    // The group's extent is always that of its notes; with no notes it is all zero.
    RectF GetBounds() const override;
    // On the drawn beams or on any note.
    bool HitTestNote(float x, float y) const override;
    // The beams as last drawn lie wholly inside; a group never drawn has nothing to select by.
    bool IsWithin(float x, float y, float width, float height) const override;
    // An empty group: whoever copies adds copies of the notes with shorten off.
    std::unique_ptr<CNoteBase> Clone() const override;
    void SetColour(std::uint32_t argb) override;
    float GetWidth() const override { return GetBounds().Width; }
    float GetDefaultWidth() const override { return GetWidth(); }

    // Spreads the notes evenly between the first and the last.
    void AutoOrganise() override;
    void RefitContent() override { AutoOrganise(); }
    // The notes keep their fractions of the width and take the new height.
    void BeforeBoundsChange(const RectF& newBounds) override;
    // A joining note loses its stem to the group; with `shorten` it also gains a beam.
    void OnChildAdded(CScoObj* object, bool shorten) override;
    // A leaving note gets its own stem back and loses a cut, which means nothing unbeamed.
    void OnChildRemoved(CScoObj* object) override;
    void Draw(Painter& painter, OutputMode mode) override;

    // The notes in time order.
    std::vector<CNoteEx*> Notes() const;
    // The first note, in list order, whose head is under the point.
    CNoteEx* NoteAtPoint(float x, float y) const;
    // One more beam: crotchet to quaver to semiquaver to demisemiquaver.
    void ShortenNote(CNoteEx& note);
    // One beam fewer. A quaver leaves the group as a crotchet, and a note left on its own leaves
    // with it; the notes go to the group's bar.
    void LengthenNote(CNoteEx& note);

    QPainterPath BeamPath; // the beams as last drawn, centre lines; the group's own hit shape

private:
    // Hands a note to the group's bar; outside a bar the group keeps it.
    void Release(CNoteEx& note);
};

} // namespace corrieval
