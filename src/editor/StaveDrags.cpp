#include "editor/StaveDrags.h"

#include "model/Stave.h"
#include "notation/RepeatTiming.h"
#include "playback/TuneSequence.h"

#include <utility>

namespace corrieval {

void BarLineDrag::Move(PointF at)
{
    m_group.MoveBarLine(m_bar, at.X);
}

RepeatLegDrag::RepeatLegDrag(CCorrievalDoc& doc, CRepeatTiming& marker, int leg, BarAt barAt)
    : m_doc(doc), m_marker(marker), m_leg(leg), m_barAt(std::move(barAt))
{
}

void RepeatLegDrag::Move(PointF at)
{
    if (const CBarEx* bar = m_barAt(at))
        m_marker.MoveLeg(m_leg, *bar, at.X);
}

void RepeatLegDrag::Finish()
{
    // The notes are stamped in written order, which a sequence of their own works out without
    // touching the one that may be playing.
    CTuneSequence written(&m_doc);
    written.Build(nullptr);
    m_marker.Restamp(written);
}

} // namespace corrieval
