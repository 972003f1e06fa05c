#include "shell/NoteFollower.h"

#include "model/ActiveView.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/TunePage.h"
#include "notation/NoteEx.h"

#include <QCoreApplication>

namespace corrieval {

const QEvent::Type NoteHighlightEvent::Kind = static_cast<QEvent::Type>(QEvent::registerEventType());
const QEvent::Type FollowingStoppedEvent::Kind = static_cast<QEvent::Type>(QEvent::registerEventType());

void PostingHighlightListener::NoteHighlight(CNoteEx* note, bool on)
{
    QCoreApplication::postEvent(&m_target, new NoteHighlightEvent(note, on));
}

void PostingHighlightListener::FollowingStopped()
{
    QCoreApplication::postEvent(&m_target, new FollowingStoppedEvent);
}

namespace {
bool SubtreeHolds(const CScoObj& root, const CScoObj* object)
{
    if (&root == object)
        return true;
    const auto* container = dynamic_cast<const CGraphObjContainer*>(&root);
    if (container == nullptr)
        return false;
    for (const auto& child : container->Children()) {
        if (SubtreeHolds(*child, object))
            return true;
    }
    return false;
}
} // namespace

bool DocumentHolds(const CCorrievalDoc& doc, const CScoObj* object)
{
    for (const auto& page : doc.Pages) {
        if (SubtreeHolds(*page, object))
            return true;
    }
    return false;
}

void NoteFollower::Follow(CNoteEx* note, bool on, CCorrievalDoc* activeDoc, ScoreView* activeView,
                          const ScrollTo& scrollTo)
{
    if (activeDoc == nullptr || note == nullptr || !FollowAllowed || !DocumentHolds(*activeDoc, note))
        return;
    if (activeView != nullptr) {
        if (CStave* stave = note->FindAncestor<CStave>()) {
            // Whole inches are fine enough: the view scrolls only when the stave leaves its band.
            const int y = static_cast<int>(stave->Bounds().Y + stave->TopMargin);
            if (y != LastFollowY) {
                scrollTo(y);
                LastFollowY = y;
            }
        }
    }
    if (on) {
        m_savedColours.try_emplace(note, note->Colour());
        note->SetColour(PlayColour);
    } else {
        const auto saved = m_savedColours.find(note);
        if (saved != m_savedColours.end()) {
            note->SetColour(saved->second);
            m_savedColours.erase(saved);
        }
    }
    if (activeView != nullptr)
        activeView->InvalidateObject(*note);
}

void NoteFollower::Forget(const CCorrievalDoc& doc)
{
    std::erase_if(m_savedColours, [&](const auto& entry) { return DocumentHolds(doc, entry.first); });
}

} // namespace corrieval
