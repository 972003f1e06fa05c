#include "playback/SampleMixer.h"

#include "playback/TuneSequence.h"

#include <algorithm>
#include <limits>

namespace corrieval {

namespace {

// The word rate of the mixer's clock, whatever the channel count of the recordings.
constexpr double kWordRate = 44100.0;

// Truncates towards zero into an unsigned count. A rate of zero, or a length from a damaged
// score, can make a conversion infinite or negative; it saturates instead of overflowing.
std::uint32_t Truncate(double value)
{
    if (!(value > 0))
        return 0;
    if (value >= static_cast<double>(std::numeric_limits<std::uint32_t>::max()))
        return std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(value);
}

std::uint32_t WordsToMs(std::uint32_t words)
{
    return static_cast<std::uint32_t>(std::uint64_t{words} * 1000 / 44100);
}

std::uint32_t MsToTicks(double rate, double ms)
{
    return Truncate(rate * ms / 1000.0);
}

std::uint32_t TicksToWords(std::uint32_t ticks, double rate)
{
    return Truncate(ticks / rate * kWordRate);
}

// How many ticks of a note the words already read from its recording stand for.
std::uint32_t WordsReadToTicks(std::uint32_t words, double rate)
{
    return Truncate(words / kWordRate * 1000.0 * rate / 1000.0);
}

std::uint64_t EndOf(const CNoteSample& record)
{
    return std::uint64_t{record.Start} + record.Length;
}

// The next word of the record's recording. A recording is played from its start again once
// LoopWords of it are used, with no smoothing: the files have no loop points.
std::int16_t NextWord(CNoteSample& record)
{
    if (record.Note == nullptr)
        return 0;
    if (record.ReadPosition >= CSampleMixer::LoopWords)
        record.ReadPosition = 0;
    const std::int16_t word = record.SampleData != nullptr ? record.SampleData[record.ReadPosition] : 0;
    ++record.ReadPosition;
    return word;
}

} // namespace

CSampleMixer::CSampleMixer() = default;

CSampleMixer::~CSampleMixer() = default;

double CSampleMixer::TicksPerSecond() const
{
    return m_sequence != nullptr ? m_sequence->TicksPerSecond(m_tempo) : 0;
}

const CNoteSampleArray* CSampleMixer::PlayList(int part) const
{
    return m_sequence != nullptr ? &m_sequence->PlayList(part) : nullptr;
}

PlayResult CSampleMixer::Pull(std::int16_t* destination, std::uint32_t& count)
{
    if (destination == nullptr && count > 0) {
        count = 0;
        return PlayBadArgument;
    }
    const std::lock_guard lock(m_lock);
    const double rate = TicksPerSecond();
    // Without a clock (a tempo of 0) the tune could never move on: it is over at once.
    if (!(rate > 0))
        m_finished = true;
    const std::uint32_t advance = MsToTicks(rate, WordsToMs(count));
    if (m_finished) {
        std::fill_n(destination, count, std::int16_t{0});
        count = 0;
    } else {
        Refresh();
        Render(destination, count, rate);
        // The position is truncated at every pull, so it lags the words a little; it decides
        // only when records are let go, never where a note falls within a pull.
        m_position += advance;
    }
    // The pull that discovers the end has rendered in full, and already reports the end.
    return m_finished ? PlayFailed : PlayOk;
}

void CSampleMixer::Refresh()
{
    for (int part = 0; part < PartCount; ++part) {
        CNoteSampleArray& active = m_active[static_cast<std::size_t>(part)];
        std::erase_if(active, [this](const CNoteSample* record) { return EndOf(*record) < m_position; });
        const CNoteSampleArray* list = PlayList(part);
        std::size_t& next = m_next[static_cast<std::size_t>(part)];
        while (list != nullptr && next < list->size() && active.size() < ActiveLimit) {
            CNoteSample* record = (*list)[next++];
            record->ReadPosition = 0;
            active.push_back(record);
        }
    }
    // Only the first part ends the tune: longer parts are cut off with it, shorter ones fall
    // silent before it.
    const CNoteSampleArray* first = PlayList(0);
    if (m_active[0].empty() && (first == nullptr || m_next[0] >= first->size()))
        m_finished = true;
}

void CSampleMixer::Render(std::int16_t* destination, std::uint32_t count, double rate)
{
    std::fill_n(destination, count, std::int16_t{0});
    // One cursor for all parts: a part whose first record still lies ahead takes up where the
    // part before it stopped.
    std::uint32_t cursor = 0;
    for (int part = 0; part < PartCount; ++part)
        RenderPart(part, count, rate, cursor);

    if (m_part >= 0) {
        const std::vector<std::int16_t>& only = m_partBuffers[static_cast<std::size_t>(m_part)];
        std::copy_n(only.begin(), count, destination);
        return;
    }
    // Halved with truncation towards zero and summed with wrap-around: two parts at full scale
    // use the whole range, four can wrap. There is deliberately no clipping.
    for (std::uint32_t i = 0; i < count; ++i) {
        int sum = 0;
        for (const std::vector<std::int16_t>& buffer : m_partBuffers)
            sum += buffer[i] / 2;
        destination[i] = static_cast<std::int16_t>(static_cast<std::uint16_t>(sum));
    }
}

void CSampleMixer::RenderPart(int part, std::uint32_t count, double rate, std::uint32_t& cursor)
{
    std::vector<std::int16_t>& buffer = m_partBuffers[static_cast<std::size_t>(part)];
    buffer.assign(count, 0);
    std::uint32_t filled = 0;
    for (CNoteSample* record : m_active[static_cast<std::size_t>(part)]) {
        if (filled >= count)
            break;
        // The note under way starts the buffer; each later one follows exactly where the one
        // before ended, so notes are laid end to end by their lengths in words.
        std::uint32_t offset = record->Start <= m_position ? 0 : cursor;
        const std::uint32_t used = record->Note != nullptr ? WordsReadToTicks(record->ReadPosition, rate) : 0;
        const std::uint32_t remaining = TicksToWords(record->Length - used, rate);
        const std::uint32_t end = std::uint64_t{offset} + remaining >= count ? count : offset + remaining;
        for (; offset < end && filled < count; ++offset, ++filled)
            buffer[offset] = NextWord(*record);
        cursor = end;
    }
    if (part == 0)
        std::fill(buffer.begin() + filled, buffer.end(), std::int16_t{0});
}

void CSampleMixer::Reset(bool stopping)
{
    const std::lock_guard lock(m_lock);
    if (m_sequence == nullptr)
        return;
    for (CNoteSampleArray& active : m_active) {
        for (CNoteSample* record : active) {
            if (record->Highlighted && record->Note != nullptr)
                Highlight(*record, false);
        }
        active.clear();
    }
    const CNoteSampleArray& first = m_sequence->PlayList(0);
    if (m_highlightIndex != 0 && m_highlightIndex <= first.size()) {
        CNoteSample& shown = *first[m_highlightIndex - 1];
        if (shown.Highlighted && shown.Note != nullptr)
            Highlight(shown, false);
    }
    // Only now, with nothing of the old lists left in play, may they be rebuilt.
    if (!stopping)
        m_sequence->Build(m_selection);
    m_position = 0;
    m_next.fill(0);
    m_highlightIndex = 0;
    m_finished = false;
    if (stopping && m_listener != nullptr)
        m_listener->FollowingStopped();
}

void CSampleMixer::UpdateHighlight(double elapsedMs)
{
    // The screen never waits for the audio path: while a pull or a reset holds the lock this
    // tick is skipped, and the next one catches up.
    const std::unique_lock lock(m_lock, std::try_to_lock);
    if (!lock.owns_lock() || m_finished || m_sequence == nullptr)
        return;
    // Highlighting follows the first part, whichever part is heard.
    const CNoteSampleArray& list = m_sequence->PlayList(0);
    if (list.empty() || m_highlightIndex > list.size())
        return;
    if (m_highlightIndex == 0) {
        m_highlightIndex = 1;
        if (!list.front()->Highlighted && list.front()->Note != nullptr)
            Highlight(*list.front(), true);
        return;
    }
    CNoteSample* current = list[m_highlightIndex - 1];
    // Twice the ticks: the word clock runs at twice real time with stereo recordings.
    const std::uint64_t ticks = 2 * std::uint64_t{MsToTicks(TicksPerSecond(), elapsedMs)};
    if (ticks < EndOf(*current))
        return;
    if (current->Highlighted && current->Note != nullptr)
        Highlight(*current, false);
    const std::size_t from = m_highlightIndex;
    while (m_highlightIndex < list.size() && ticks >= EndOf(*current))
        current = list[m_highlightIndex++];
    if (m_highlightIndex != from && !current->Highlighted && current->Note != nullptr)
        Highlight(*current, true);
}

void CSampleMixer::Highlight(CNoteSample& record, bool on)
{
    record.Highlighted = on;
    if (m_listener != nullptr)
        m_listener->NoteHighlight(record.Note, on);
}

void CSampleMixer::SetTempo(std::int32_t bpm)
{
    const std::lock_guard lock(m_lock);
    m_tempo = bpm;
}

void CSampleMixer::SetLoop(bool loop)
{
    const std::lock_guard lock(m_lock);
    m_loop = loop;
}

void CSampleMixer::SetSequence(CTuneSequence* sequence)
{
    const std::lock_guard lock(m_lock);
    // Nothing of the lists of the sequence before may stay in play: its view may be closing.
    for (CNoteSampleArray& active : m_active)
        active.clear();
    m_next.fill(0);
    m_highlightIndex = 0;
    m_position = 0;
    m_sequence = sequence;
}

void CSampleMixer::SetSelection(const std::vector<CScoObj*>* selection)
{
    m_selection = selection;
}

void CSampleMixer::SetPart(std::int32_t part)
{
    m_part = part >= 1 && part <= PartCount ? part - 1 : -1;
}

void CSampleMixer::SetInstrument(const InstrumentLoad& load)
{
    m_loaded = load.Loaded;
    m_channels = load.Channels;
}

std::uint32_t CSampleMixer::Channels() const
{
    return m_channels;
}

bool CSampleMixer::Loaded() const
{
    return m_loaded;
}

void CSampleMixer::SetHighlightListener(HighlightListener* listener)
{
    m_listener = listener;
}

} // namespace corrieval
