#include "formats/bww/BwwParser.h"

#include "formats/archive/CodePage1252.h"
#include "formats/bww/BwwPartWriter.h"
#include "formats/bww/BwwWords.h"
#include "formats/glenmarch/PipeDoc.h"

#include <array>

namespace corrieval::bww {

namespace {

constexpr std::int32_t kLowGPosition = 19;
constexpr std::int32_t kGracenoteCode = CNote::GracenoteCode;

// The older stave position at which a movement is written, or 0 for a word that the older
// model has no movement for (those are passed over).
std::int32_t MovementPosition(std::int32_t token)
{
    struct Range {
        std::int32_t First, Last, Position;
    };
    static constexpr Range kRanges[] = {
        {40, 42, 19},   {80, 80, 19},   {82, 88, 19},   {91, 92, 19}, {96, 102, 19}, {105, 112, 19},
        {115, 120, 19}, {162, 163, 19}, {43, 45, 20},   {46, 48, 21}, {49, 51, 22},  {81, 81, 22},
        {95, 95, 22},   {104, 104, 22}, {113, 114, 22}, {52, 54, 23}, {55, 57, 24},  {58, 62, 25},
        {164, 164, 25}, {63, 63, 26},   {165, 165, 26},
    };
    for (const Range& r : kRanges) {
        if (token >= r.First && token <= r.Last)
            return r.Position;
    }
    return 0;
}

// Lengths as written (2 minim, 4 crotchet, ...) to the older codes. A beamed note reads one
// place further along, the older code counting beams.
std::int32_t PlainDuration(std::int32_t length)
{
    switch (length) {
    case 2:
        return 1;
    case 8:
        return 3;
    case 16:
    case 32:
        return 4;
    default:
        return 2;
    }
}

std::int32_t BeamedDuration(std::int32_t length)
{
    switch (length) {
    case 2:
    case 4:
        return 1;
    case 16:
        return 3;
    case 32:
        return 4;
    default:
        return 2;
    }
}

// The music font's character for each time signature token, 2_2 to C_.
QString TimeSigGlyph(std::int32_t token)
{
    static constexpr std::array<char, 13> kGlyphs{'!', '+', '"',  '#', '$', '%', ')',
                                                  '*', '&', '\'', '(', '.', '-'};
    return QString(QChar(kGlyphs[static_cast<std::size_t>(token - Token::FirstTimeSig)]));
}

CBar::Edge StartEdge(std::int32_t token)
{
    return token == Token::RepeatStartDots ? CBar::Edge::Repeat : CBar::Edge::Heavy;
}

// The two sharps of the chanter's scale, which a tune may write after each clef.
bool IsKeySigWord(const std::string& word)
{
    return word == "sharpf" || word == "sharpc";
}

bool IsTimeSig(std::int32_t token)
{
    return token >= Token::FirstTimeSig && token <= Token::CutTime;
}

// Texts are taken as UTF-8 where they are that, and otherwise as the Windows code page that the
// older writers used.
QString Decode(const std::string& bytes)
{
    const QString utf8 = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    if (!utf8.contains(QChar::ReplacementCharacter))
        return utf8;
    QString text;
    for (const char c : bytes)
        text.append(QChar(DecodeCodePage1252(static_cast<std::uint8_t>(c))));
    return text;
}

} // namespace

Parser::Parser(const QByteArray& text, CPipeDoc& doc, ImportLog& log)
    : m_lexer(text, log), m_firstTune(doc), m_doc(&doc), m_log(log), m_grid(log.Mode == Reading::Strict)
{
}

void Parser::Match(std::int32_t token)
{
    if (m_lookahead != token) {
        m_lexer.Error(ProblemCode::TokenMismatch);
        return;
    }
    m_lastToken = token;
    m_lookahead = m_lexer.Next();
}

bool Parser::Parse()
{
    m_doc->ReadStrictly = !Full();
    m_lookahead = m_lexer.Next();
    if (!Header())
        return false;
    while (m_lookahead != Token::EndOfFile && !m_log.ErrorFlag) {
        while (m_lookahead != Token::Clef && m_lookahead != Token::EndOfFile && !ContinuesStave()) {
            if (AtFurtherTune())
                StartFurtherTune();
            else
                m_lookahead = m_lexer.Next();
        }
        if (m_lookahead == Token::EndOfFile)
            break;
        if (m_lookahead == Token::Clef)
            Clef();
        TimeSignature();
        Music();
    }
    // A last part that ends with the file, without a repeat sign and short of its size, is kept.
    // A bar line just before the end opened a bar with nothing in it, which is no bar of the
    // tune: kept, it would make the count odd and the first bar an upbeat.
    m_grid.DropEmptyLast();
    if (m_grid.RowCount() > 0 && !m_log.ErrorFlag)
        FinishPart();
    return !m_log.ErrorFlag;
}

bool Parser::Header()
{
    // A text with a kind of its own is a BWW header whatever stands before it; the positional
    // texts of a BMW file have none.
    if (m_lookahead == Token::Title && !(Full() && m_lexer.TitleKind() != 'X'))
        return BmwHeader();
    if (!Full())
        return BwwHeader();
    // A file of texts alone is a tune without music.
    FullHeader();
    return true;
}

bool Parser::BmwHeader()
{
    // Positional: title, type, composer, and one more text that is not used.
    std::array<QString, 3> texts;
    for (QString& text : texts) {
        text = Decode(m_lexer.Lexeme);
        Match(Token::Title);
        if (m_lookahead != Token::Title && Full()) {
            StoreTexts(texts[0], texts[1], texts[2]);
            return true;
        }
        if (m_lookahead != Token::Title) {
            m_log.Warning(ProblemCode::InvalidBmw, m_lexer.TextLine(), ProblemText(ProblemCode::InvalidBmw));
            return false;
        }
    }
    Match(Token::Title);
    StoreTexts(texts[0], texts[1], texts[2]);
    return true;
}

bool Parser::BwwHeader()
{
    QString title;
    QString type;
    QString composer;
    const auto invalid = [this] {
        m_log.Warning(ProblemCode::InvalidBww, m_lexer.TextLine(), ProblemText(ProblemCode::InvalidBww));
        return false;
    };
    for (int named = 0; named < 3;) {
        while (m_lookahead != Token::Title && m_lookahead != Token::EndOfFile && !m_log.ErrorFlag)
            m_lookahead = m_lexer.Next();
        if (m_lookahead != Token::Title)
            return invalid();
        const QString text = Decode(m_lexer.Lexeme);
        const char kind = m_lexer.TitleKind();
        Match(Token::Title);
        // Files that other programs converted say so in a text of their own.
        if (text.contains(QLatin1String("Converted")))
            continue;
        QString* target = kind == 'M' ? &composer : kind == 'T' ? &type : kind == 'Y' ? &title : nullptr;
        if (target != nullptr) {
            *target = text;
            ++named;
        }
    }
    while (m_lookahead != Token::Clef && m_lookahead != Token::EndOfFile)
        m_lookahead = m_lexer.Next();
    if (m_lookahead == Token::EndOfFile)
        return invalid();
    StoreTexts(title, type, composer);
    return true;
}

bool Parser::FullHeader()
{
    QString title;
    QString type;
    QString composer;
    while (m_lookahead != Token::Clef && m_lookahead != Token::EndOfFile) {
        if (m_lookahead == Token::Title) {
            const QString text = Decode(m_lexer.Lexeme);
            // The files pipers have mark the title T and the type Y, the other way round from
            // the strict reading's rule.
            const char kind = m_lexer.TitleKind();
            QString* target = kind == 'M' ? &composer : kind == 'T' ? &title : kind == 'Y' ? &type : nullptr;
            if (target != nullptr && !text.contains(QLatin1String("Converted")))
                *target = text;
        } else if (m_lookahead == Token::Unknown && m_lexer.Lexeme == "TuneTempo") {
            m_lookahead = m_lexer.Next();
            if (m_lookahead == Token::Number)
                m_doc->WrittenTempo = m_lexer.Lexeme.size() < 4 ? std::stoi(m_lexer.Lexeme) : 0;
            continue;
        }
        m_lookahead = m_lexer.Next();
    }
    StoreTexts(title, type, composer);
    return m_lookahead == Token::Clef;
}

// Music after a line end with no clef of its own: the full reading takes it as the stave going on.
bool Parser::ContinuesStave() const
{
    const std::int32_t t = m_lookahead;
    return Full() && ((t >= 0 && t < Token::Clef) || t == Token::BarLine ||
                      (t >= Token::LowG && t <= Token::RepeatEndDots) || t == Token::FirstTime ||
                      t == Token::SecondTime);
}

// A named text after music has been read begins the next tune of a set.
bool Parser::AtFurtherTune() const
{
    return Full() && m_lookahead == Token::Title && m_lexer.TitleKind() != 'X' &&
           (m_grid.RowCount() > 0 || !m_doc->Parts.empty());
}

void Parser::StartFurtherTune()
{
    m_grid.DropEmptyLast();
    if (m_grid.RowCount() > 0)
        FinishPart();
    auto tune = std::make_unique<CPipeDoc>();
    tune->BeatDoubling = 0;
    m_doc = tune.get();
    m_firstTune.FollowingTunes.push_back(std::move(tune));
    m_partNumber = 1;
    m_barCount = 0;
    m_anacrusis = 2;
    m_tieOpen = false;
    // The tune's own header, up to its first clef. Texts that end the file begin no tune.
    if (!FullHeader()) {
        m_firstTune.FollowingTunes.pop_back();
        m_doc = m_firstTune.FollowingTunes.empty() ? &m_firstTune : m_firstTune.FollowingTunes.back().get();
    }
}

void Parser::StoreTexts(const QString& title, const QString& type, const QString& composer)
{
    const auto clean = [](QString text) { return text.replace(QLatin1String("\r\n"), QLatin1String(" - ")); };
    m_doc->CentreText.Text = clean(title.isEmpty() ? QStringLiteral("Unknown") : title);
    m_doc->LeftText.Text = clean(type);
    m_doc->RightText.Text = clean(composer);
}

void Parser::Clef()
{
    // Each stave line of the tune opens with its clef; the layout follows those lines.
    m_grid.MarkLineStart();
    Match(Token::Clef);
}

void Parser::TimeSignature()
{
    if (!IsTimeSig(m_lookahead))
        return;
    const std::int32_t token = m_lookahead;
    if (Full()) {
        ReadFullTimeSig(token);
        Match(token);
        return;
    }
    m_doc->TimeSigText = TimeSigGlyph(token);
    // The older program matched 6_4 against 5_4, so that a tune in 6_4 never imported; users'
    // files were written against that, and it stays.
    Match(token == Token::SixFour ? Token::SixFour - 1 : token);
}

void Parser::Music()
{
    while (m_lookahead != Token::EndOfFile && !AtFurtherTune()) {
        const std::int32_t bar = BarLineStep();
        if (bar == Token::RepeatEnd || bar == Token::RepeatEndDots || bar == Token::LineEnd)
            return;
        EndingStep();
        NotesStep();
    }
}

std::int32_t Parser::BarLineStep()
{
    const std::int32_t token = m_lookahead;
    const std::int32_t before = m_lastToken;
    switch (token) {
    case Token::RepeatStart:
    case Token::RepeatStartDots:
        m_nextStart = StartEdge(token);
        Match(token);
        break;
    case Token::RepeatEnd:
    case Token::RepeatEndDots:
        Match(token);
        m_grid.SetEnd(token == Token::RepeatEndDots ? CBar::Edge::Repeat : CBar::Edge::Heavy);
        ++m_barCount;
        // The repeat sign that closes a first-time ending does not close the part: the second
        // time follows.
        if (m_firstTimeSeen && before == Token::EndingEnd && m_lastEndingKind == 1 && !m_secondTimeSeen)
            break;
        if (m_barCount >= 2)
            FinishPart();
        break;
    case Token::LineEnd: {
        Match(token);
        ++m_barCount;
        if (m_barCount % 2 == 1 && m_anacrusis == CPart::NoUpbeat)
            m_anacrusis = CPart::Upbeat;
        // A part without repeat signs ends by its size: 8 bars, 9 with an upbeat bar.
        const bool full = m_anacrusis == CPart::Upbeat ? m_barCount >= 9 : m_barCount >= 8;
        if (full)
            FinishPart();
        break;
    }
    case Token::BarLine:
        if (before != Token::Clef)
            ++m_barCount;
        Match(token);
        break;
    default:
        break;
    }
    return token;
}

void Parser::EndingStep()
{
    if (m_lookahead != Token::FirstTime && m_lookahead != Token::SecondTime)
        return;
    OpenEnding(m_lookahead);
    Match(m_lookahead);
}

// Endings open at the start of a bar or within one; the notes up to the next "_'" are in it.
void Parser::OpenEnding(std::int32_t token)
{
    m_lastEndingKind = token == Token::FirstTime ? 1 : 2;
    (m_lastEndingKind == 1 ? m_firstTimeSeen : m_secondTimeSeen) = true;
    m_ending = static_cast<std::uint8_t>(m_lastEndingKind);
}

void Parser::NotesStep()
{
    m_rowRefused = !m_grid.NewRow(m_nextStart);
    m_tripletStart = 0;
    m_nextStart = CBar::Edge::Plain;
    if (m_rowRefused && !m_partTooLongShown) {
        m_partTooLongShown = true;
        m_log.Warning(ProblemCode::PartTooLong, m_lexer.TextLine(), ProblemText(ProblemCode::PartTooLong));
    }
    m_barTooLongShown = false;
    const auto endsBar = [this] {
        return m_lookahead == Token::RepeatEnd || m_lookahead == Token::RepeatEndDots ||
               m_lookahead == Token::LineEnd || m_lookahead == Token::BarLine ||
               m_lookahead == Token::EndOfFile || AtFurtherTune();
    };
    while (!endsBar()) {
        ReadItem();
        if (m_lookahead >= Token::FirstTimeSig && m_lookahead <= Token::LastNumberedTimeSig)
            TimeSignature();
    }
}

void Parser::AddSlot(NoteGrid::Slot slot)
{
    slot.Ending = m_ending;
    if (m_tieOpen && slot.Code < kGracenoteCode && !m_tieMarked) {
        slot.Tied = true;
        m_tieMarked = true;
    }
    if (m_grid.Add(slot) || m_rowRefused || m_barTooLongShown)
        return;
    m_barTooLongShown = true;
    m_log.Warning(ProblemCode::BarTooLong, m_lexer.TextLine(), ProblemText(ProblemCode::BarTooLong));
}

void Parser::ReadItem()
{
    const std::int32_t token = m_lookahead;
    const std::int32_t length = m_lexer.Value;
    if (Full() && ReadFullItem(token))
        return;
    if (const std::int32_t position = MovementPosition(token); position != 0) {
        AddSlot({.Code = token, .Pitch = position});
    } else if (token >= Token::LowG && token <= Token::HighALeft) {
        const std::int32_t pitch = kLowGPosition + (token - Token::LowG) / 3;
        const std::int32_t form = (token - Token::LowG) % 3; // plain, r, l
        if (form == 0)
            AddSlot({.Code = PlainDuration(length), .Pitch = pitch});
        else
            AddSlot(
                {.Code = BeamedDuration(length), .Pitch = pitch, .Beamed = true, .BeamGoesOn = form == 1});
    } else if (token >= Token::FirstGracenote && token <= Token::LastGracenote) {
        static constexpr std::array<std::int32_t, 4> kPositions{26, 23, 24, 27};
        AddSlot({.Code = kGracenoteCode,
                 .Pitch = kPositions[static_cast<std::size_t>(token - Token::FirstGracenote)]});
    } else if (token >= Token::FirstDot && token <= Token::LastDot) {
        if (NoteGrid::Slot* previous = m_grid.Previous(1))
            previous->Dotted = true;
    } else if (token == Token::Tie) {
        if (NoteGrid::Slot* previous = m_grid.Previous(1))
            previous->Tied = true;
    } else if (token == Token::Triplet) {
        if (m_grid.Previous(3) != nullptr) {
            for (std::size_t back = 1; back <= 3; ++back)
                m_grid.Previous(back)->Tied = true;
        }
    } else if (token == Token::FirstTime || token == Token::SecondTime) {
        OpenEnding(token);
    } else if (token == Token::EndingEnd) {
        m_ending = 0;
    } else if (token == Token::RepeatStart || token == Token::RepeatStartDots) {
        // A repeat sign after the clef and signatures, before the bar's first note.
        if (m_grid.Previous(1) == nullptr)
            m_grid.SetStart(StartEdge(token));
    } else if (token == Token::Unknown && IsKeySigWord(m_lexer.Lexeme)) {
        m_doc->ShowKeySig = true;
    } else if (!m_lexer.Lexeme.empty()) {
        m_log.PassOver(m_lexer.TextLine(), Decode(m_lexer.Lexeme));
    }
    Match(token);
}

// The words that the full reading takes otherwise than the older program did; false for the
// others, which are read as it read them.
bool Parser::ReadFullItem(std::int32_t token)
{
    const std::string word = m_lexer.Lexeme;
    if (IsTimeSig(token) || (token == Token::Number && word.find('_') != std::string::npos)) {
        ReadFullTimeSig(token);
    } else if (token == Token::Triplet) {
        if (word == "^3s")
            m_tripletStart = m_grid.OpenRowSize();
        else
            MarkTriplet();
    } else if (token == Token::Tie && (word == "^ts" || m_tieOpen)) {
        // "^ts" ties the next melody note to the one after it; its "^te" closes it.
        m_tieOpen = word == "^ts";
        m_tieMarked = false;
    } else if (word.starts_with("fermat")) {
        // A pause over no note of this bar is listed instead.
        if (!PauseLastNote())
            return false;
    } else if (word == "space") {
        // Spacing of the older program's page, which the score lays out itself.
    } else if (word == "REST_") {
        // A score has no rest: it is listed with its length.
        const std::int32_t line = m_lexer.TextLine();
        Match(token);
        QString rest = QString::fromStdString(word);
        if (m_lookahead == Token::Number) {
            rest += QString::fromStdString(m_lexer.Lexeme);
            Match(Token::Number);
        }
        m_log.PassOver(line, rest);
        return true;
    } else if (const auto movement = token < Token::LowG ? LookUpMovementWord(word) : std::nullopt) {
        if (movement->Code != 0) {
            const std::int32_t position = MovementPosition(movement->Code);
            AddSlot({.Code = movement->Code, .Pitch = position != 0 ? position : kLowGPosition});
        } else {
            for (const char digit : movement->Gracenotes)
                AddSlot({.Code = kGracenoteCode, .Pitch = GracenotePosition(digit)});
        }
    } else {
        return false;
    }
    Match(token);
    return true;
}

// Marks the last melody note of the bar as held; false when the bar has none.
bool Parser::PauseLastNote()
{
    for (std::size_t back = 1; NoteGrid::Slot* slot = m_grid.Previous(back); ++back) {
        if (slot->Code < kGracenoteCode) {
            slot->Paused = true;
            return true;
        }
    }
    return false;
}

// The first signature of a tune is its signature; one that the font has no glyph for ("3_8",
// "2_16") is a custom one.
void Parser::ReadFullTimeSig(std::int32_t token)
{
    if (!m_doc->TimeSigText.isEmpty() || m_doc->CustomBeats > 0)
        return;
    if (token != Token::Number) {
        m_doc->TimeSigText = TimeSigGlyph(token);
        return;
    }
    const std::string& word = m_lexer.Lexeme;
    const std::size_t split = word.find('_');
    const int beats = split >= 1 && split <= 2 ? std::atoi(word.substr(0, split).c_str()) : 0;
    const int unit = std::atoi(word.substr(split + 1, 2).c_str());
    if (beats < 1 || (unit != 2 && unit != 4 && unit != 8 && unit != 16))
        return;
    m_doc->CustomBeats = beats;
    m_doc->CustomUnit = unit;
}

// The last three melody notes of the bar, from the "^3s" that opened the triplet when there was
// one, are played as a triplet.
void Parser::MarkTriplet()
{
    std::array<NoteGrid::Slot*, 3> notes{};
    std::size_t found = 0;
    const std::size_t size = m_grid.OpenRowSize();
    for (std::size_t back = 1; back + m_tripletStart <= size && found < notes.size(); ++back) {
        NoteGrid::Slot* slot = m_grid.Previous(back);
        if (slot != nullptr && slot->Code < kGracenoteCode)
            notes[found++] = slot;
    }
    m_tripletStart = 0;
    if (found < notes.size())
        return;
    for (NoteGrid::Slot* note : notes)
        note->Triplet = true;
}

void Parser::FinishPart()
{
    // An odd number of bars means an upbeat bar opened the part.
    if (m_grid.RowCount() % 2 == 1)
        m_anacrusis = CPart::Upbeat;
    WritePart(*m_doc, m_grid,
              {.Number = m_partNumber, .Anacrusis = m_anacrusis, .FirstTime = m_firstTimeSeen});
    ++m_partNumber;
    m_barCount = 0;
    m_anacrusis = CPart::NoUpbeat;
    m_firstTimeSeen = false;
    m_secondTimeSeen = false;
    m_lastEndingKind = 0;
    m_ending = 0;
    m_partTooLongShown = false;
    m_grid.Clear();
}

} // namespace corrieval::bww
