#pragma once

#include "fixtures/ScoreFixtures.h"
#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/NoteEx.h"
#include "notation/TieEx.h"
#include "playback/TuneSequence.h"

#include <initializer_list>
#include <map>
#include <memory>
#include <vector>

namespace corrieval::testing {

// A tune built in code for play tests: one page with one music area of `groups` systems, each of
// `parts` staves of `columns` bars, in 4/4 unless told otherwise. Notes stand left to right in
// each bar in the order they are added, each over the bar's whole height.
class PlayTune {
public:
    static constexpr float NoteStep = 0.08f;

    explicit PlayTune(int groups = 1, int parts = 1, int columns = 1, std::int32_t timeSig = 8)
        : m_doc(fixtures::BuildTune({.Pages = 1,
                                     .Groups = groups,
                                     .Parts = parts,
                                     .Columns = columns,
                                     .NotesPerBar = 0,
                                     .Title = false,
                                     .Repeats = false})),
          m_sequence(m_doc.get())
    {
        Area().InitialTimeSig.SetType(timeSig);
    }

    CCorrievalDoc& Doc() { return *m_doc; }
    CStaveArea& Area() { return static_cast<CStaveArea&>(*m_doc->Pages.front()->ChildAt(0)); }
    CStaveGroup& Group(int group = 0) { return static_cast<CStaveGroup&>(*Area().ChildAt(Index(group))); }
    CBarEx& Bar(int column, int part = 0, int group = 0)
    {
        auto& stave = static_cast<CStave&>(*Group(group).ChildAt(Index(part)));
        return static_cast<CBarEx&>(*stave.ChildAt(Index(column)));
    }
    CBarConfig& Config(int column, int group = 0) { return *Group(group).BarConfigs.at(Index(column)); }

    // A note at the next place in `bar`, a child of `holder` (the bar itself, or a group in it).
    CNoteEx& AddTo(CGraphObjContainer& holder, CBarEx& bar, NoteDuration duration, NotePitch pitch = 10)
    {
        auto* note = static_cast<CNoteEx*>(holder.AddChild(std::make_unique<CNoteEx>(duration), false));
        note->Pitch = pitch;
        const RectF b = bar.Bounds();
        note->SetBounds(NextX(bar), b.Y, NoteStep / 2, b.Height);
        return *note;
    }
    CNoteEx& Add(CBarEx& bar, NoteDuration duration, NotePitch pitch = 10)
    {
        return AddTo(bar, bar, duration, pitch);
    }
    CNoteEx& Add(int column, NoteDuration duration, NotePitch pitch = 10)
    {
        return Add(Bar(column), duration, pitch);
    }
    // Adds `count` gracenotes to the first part's bar at `column`.
    void AddGracenotes(int column, int count)
    {
        for (int i = 0; i < count; ++i)
            Add(column, 64, 4);
    }

    CTieEx& Tie(std::initializer_list<CNoteEx*> notes)
    {
        auto tie = std::make_unique<CTieEx>();
        for (CNoteEx* note : notes)
            tie->AddNote(note);
        m_doc->Ties.push_back(std::move(tie));
        return *m_doc->Ties.back();
    }

    CTuneSequence& Build(const std::vector<CScoObj*>* selection = nullptr)
    {
        m_sequence.Build(selection);
        return m_sequence;
    }
    CTuneSequence& Sequence() { return m_sequence; }

private:
    static std::size_t Index(int i) { return static_cast<std::size_t>(i); }

    float NextX(const CBarEx& bar)
    {
        const int slot = m_used[&bar]++;
        return bar.ContentBox().X + NoteStep * (static_cast<float>(slot) + 0.5f);
    }

    std::unique_ptr<CCorrievalDoc> m_doc;
    CTuneSequence m_sequence;
    std::map<const CBarEx*, int> m_used;
};

} // namespace corrieval::testing
