#pragma once

#include "playback/SampleMixer.h"

#include <QEvent>

#include <cstdint>
#include <functional>
#include <unordered_map>

class QObject;

namespace corrieval {

class CCorrievalDoc;
class CNoteEx;
class CScoObj;
class ScoreView;

// A highlight from the mixer, carried to the main window as a queued event: the mixer may call
// from the audio worker, which must never touch the score or a window.
class NoteHighlightEvent final : public QEvent {
public:
    static const QEvent::Type Kind;
    NoteHighlightEvent(CNoteEx* note, bool on) : QEvent(Kind), Note(note), On(on) {}
    CNoteEx* const Note;
    const bool On;
};

// The stopping reset of a play ended: the follow timer is to stop.
class FollowingStoppedEvent final : public QEvent {
public:
    static const QEvent::Type Kind;
    FollowingStoppedEvent() : QEvent(Kind) {}
};

// Posts the mixer's highlights to `target` as the events above.
class PostingHighlightListener final : public HighlightListener {
public:
    explicit PostingHighlightListener(QObject& target) : m_target(target) {}
    void NoteHighlight(CNoteEx* note, bool on) override;
    void FollowingStopped() override;

private:
    QObject& m_target;
};

// Colours the playing note orange red and keeps its stave in view, on the user-interface thread.
class NoteFollower {
public:
    static constexpr std::uint32_t PlayColour = 0xFFFF4500;

    // Scrolls the active view so that a stave position (inches, truncated) is in its band.
    using ScrollTo = std::function<void(int y)>;

    // Acts on one highlight for the active tune. A note that is no longer in that tune (deleted
    // since, or of a tune that is not active) is passed over: the event may have waited in the
    // queue while the score changed.
    void Follow(CNoteEx* note, bool on, CCorrievalDoc* activeDoc, ScoreView* activeView, const ScrollTo& scrollTo);

    // Highlights are acted on; set again when a tune is imported.
    bool FollowAllowed = true;
    // The stave position last scrolled to; 0 at each start of play.
    int LastFollowY = 0;

    // A tune is closing: its notes are no longer to be coloured back.
    void Forget(const CCorrievalDoc& doc);

private:
    // The colour each highlighted note had before it was lit.
    std::unordered_map<CNoteEx*, std::uint32_t> m_savedColours;
};

// Whether `object` is in the tree of `doc`.
bool DocumentHolds(const CCorrievalDoc& doc, const CScoObj* object);

} // namespace corrieval
