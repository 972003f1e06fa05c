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

namespace corrieval::testing {

// A tune built in code for play tests: one page with one music area of `groups` systems, each of
// `parts` staves of `columns` bars, in 4/4 unless told otherwise. Notes stand left to right in
// each bar in the order they are added, each over the bar's whole height.
class PlayTune {
public:
    explicit PlayTune(int groups = 1, int parts = 1, int columns = 1, std::int32_t timeSig = 8)
        : m_doc(fixtures::BuildTune({.Groups = groups, .Parts = parts, .Columns = columns, .Title = false})),
          m_sequence(m_doc.get())
    {
        Area().InitialTimeSig.SetType(timeSig);
    }

    CStaveArea& Area() { return static_cast<CStaveArea&>(*m_doc->Pages.front()->ChildAt(0)); }
    CStaveGroup& Group(std::size_t group) { return static_cast<CStaveGroup&>(*Area().ChildAt(group)); }
    CBarEx& Bar(std::size_t column, std::size_t part = 0, std::size_t group = 0)
    {
        return static_cast<CBarEx&>(*static_cast<CStave&>(*Group(group).ChildAt(part)).ChildAt(column));
    }
    CBarConfig& Config(std::size_t column) { return *Group(0).BarConfigs.at(column); }

    // A note at the next place in `bar`, 0.08 inches on from the last.
    CNoteEx& Add(CBarEx& bar, NoteDuration duration, NotePitch pitch = 10)
    {
        auto* note = static_cast<CNoteEx*>(bar.AddChild(std::make_unique<CNoteEx>(duration), false));
        note->Pitch = pitch;
        const float x = bar.ContentBox().X + 0.08f * (static_cast<float>(m_used[&bar]++) + 0.5f);
        note->SetBounds(x, bar.Bounds().Y, 0.04f, bar.Bounds().Height);
        return *note;
    }
    CNoteEx& Add(std::size_t column, NoteDuration duration, NotePitch pitch = 10)
    {
        return Add(Bar(column), duration, pitch);
    }
    // Adds `count` gracenotes to the first part's bar at `column`.
    void AddGracenotes(std::size_t column, int count)
    {
        for (int i = 0; i < count; ++i)
            Add(column, 64, 4);
    }

    void Tie(std::initializer_list<CNoteEx*> notes)
    {
        m_doc->Ties.push_back(std::make_unique<CTieEx>());
        for (CNoteEx* note : notes)
            m_doc->Ties.back()->AddNote(note);
    }

    CTuneSequence& Build()
    {
        m_sequence.Build(nullptr);
        return m_sequence;
    }
    CTuneSequence& Sequence() { return m_sequence; }

private:
    std::unique_ptr<CCorrievalDoc> m_doc;
    CTuneSequence m_sequence;
    std::map<const CBarEx*, int> m_used;
};

} // namespace corrieval::testing
