#pragma once

#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "notation/NoteBase.h"
#include "support/ScoreWalk.h"

#include <QString>
#include <QStringList>
#include <algorithm>

namespace corrieval::testing {

// Every place in the score where two items of a bar overlap, or an item reaches past its bar:
// the notes, gracenotes, movements and beamed notes as the layout left them, compared side by
// side in each bar of every music area. Empty when the engraving is clean.
inline QStringList BarOverlaps(const CCorrievalDoc& doc)
{
    // Edges that touch to within this, inches, do not overlap.
    constexpr float tolerance = 0.001f;
    QStringList found;
    const auto areas = MusicAreas(doc);
    for (std::size_t a = 0; a < areas.size(); ++a) {
        for (std::size_t s = 0; s < areas[a]->ChildCount(); ++s) {
            const CStave& stave = StaveOf(*areas[a], s);
            for (std::size_t b = 0; b < stave.ChildCount(); ++b) {
                const auto& bar = static_cast<const CBarEx&>(*stave.ChildAt(b));
                std::vector<CNoteBase*> items = bar.SpacedItems();
                std::sort(items.begin(), items.end(), [](const CNoteBase* l, const CNoteBase* r) {
                    return l->GetBounds().X < r->GetBounds().X;
                });
                const QString where = QStringLiteral("area %1 system %2 bar %3").arg(a).arg(s).arg(b);
                for (std::size_t i = 0; i < items.size(); ++i) {
                    const RectF r = items[i]->GetBounds();
                    if (r.X < bar.Bounds().X - tolerance || r.Right() > bar.Bounds().Right() + tolerance)
                        found << QStringLiteral("%1: item %2 outside its bar").arg(where).arg(i);
                    if (i + 1 < items.size() && r.Right() > items[i + 1]->GetBounds().X + tolerance)
                        found << QStringLiteral("%1: items %2 and %3 overlap").arg(where).arg(i).arg(i + 1);
                }
            }
        }
    }
    return found;
}

} // namespace corrieval::testing
