#pragma once

#include "formats/bww/BwwLexer.h"
#include "formats/bww/BwwNoteGrid.h"

#include <QByteArray>
#include <QString>
#include <cstdint>

namespace corrieval {
class CPipeDoc;
}

namespace corrieval::bww {

// The driver over the lexer's tokens, with one token of lookahead: the header's texts, then stave
// by stave the bars, gathered a part at a time in a NoteGrid and written into the CPipeDoc when
// the part ends at a repeat sign or, for a plain part, by its size. Words it has no use for are
// passed over and logged. The full reading (the log's Mode) also reads the words the older
// program passed over, and starts a tune of its own, in the document's FollowingTunes, at each
// further title.
class Parser {
public:
    Parser(const QByteArray& text, CPipeDoc& doc, ImportLog& log);

    // True when the whole text was read without an error.
    bool Parse();

private:
    bool Header();
    bool BmwHeader();
    bool BwwHeader();
    // The full reading's header: whatever texts and tempo stand before the next clef. False when
    // the file ends first.
    bool FullHeader();
    bool Full() const { return m_log.Mode == Reading::Full; }
    bool ContinuesStave() const;
    bool AtFurtherTune() const;
    void StartFurtherTune();
    bool ReadFullItem(std::int32_t token);
    void ReadFullTimeSig(std::int32_t token);
    void MarkTriplet();
    bool PauseLastNote();
    void StoreTexts(const QString& title, const QString& type, const QString& composer);
    void Match(std::int32_t token);
    void Clef();
    void TimeSignature();
    void Music();
    std::int32_t BarLineStep();
    void EndingStep();
    void OpenEnding(std::int32_t token);
    void NotesStep();
    void ReadItem();
    void AddSlot(NoteGrid::Slot slot);
    void FinishPart();

    Lexer m_lexer;
    CPipeDoc& m_firstTune;
    CPipeDoc* m_doc; // the tune being read
    ImportLog& m_log;
    NoteGrid m_grid;
    std::int32_t m_lookahead = Token::Unknown;
    std::int32_t m_lastToken = Token::Unknown;

    // The part being read.
    std::int32_t m_partNumber = 1;
    std::int32_t m_barCount = 0;
    std::int32_t m_anacrusis = 2;
    bool m_firstTimeSeen = false;
    bool m_secondTimeSeen = false;
    std::int32_t m_lastEndingKind = 0;
    std::uint8_t m_ending = 0;                  // the section the notes being read are in
    CBar::Edge m_nextStart = CBar::Edge::Plain; // the line before the bar to come
    bool m_partTooLongShown = false;
    bool m_rowRefused = false; // the bar being read did not fit in the grid
    bool m_barTooLongShown = false;
    std::size_t m_tripletStart = 0; // the slot of the open bar where "^3s" stood
    bool m_tieOpen = false;         // between "^ts" and "^te"
    bool m_tieMarked = false;       // the note after "^ts" has been marked
};

} // namespace corrieval::bww
