#include "samples/SampleGenerator.h"

#include "playback/WaveFile.h"
#include "samples/SoundFontRenderer.h"
#include "samples/VoiceLoop.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <optional>

namespace corrieval::samples {
namespace {

// The player reads the first 524,288 bytes of a file and plays a held note's first half of
// them over and over: 65,536 stereo frames. Each file holds that loop twice, so that it plays
// on without a join in any other player too.
constexpr std::size_t FileFrames = SampleBank::FilledBytes / 4;
constexpr std::size_t LoopFrames = FileFrames / 2;
// Levels as RMS against full scale, so that a full-scale square wave is 0 dBFS.
constexpr double TargetRmsDb = -15;
constexpr double PeakCeilingDb = -1;

// General MIDI programs, 0-based. The Clarinet holds steady within 0.1 dB, where the drones
// inside the SoundFonts' bagpipe presets beat badly.
constexpr int BagpipeProgram = 109;
constexpr int ShenaiProgram = 111;
constexpr int DroneProgram = 71;

const QStringList KnownSoundFonts = {QStringLiteral("/usr/share/sounds/sf3/FluidR3Mono_GM.sf3"),
                                     QStringLiteral("/usr/share/sounds/sf2/FluidR3_GM.sf2")};
const QString NoticeName = QStringLiteral("SOUNDFONT-NOTICE.txt");

const char* const NoteNames[SampleBank::SlotCount] = {"Low G", "Low A", "B",      "C",     "D",
                                                      "E",     "F",     "High G", "High A"};

// How an instrument's notes are made.
struct SetSound {
    int ChanterProgram = BagpipeProgram;
    double LowPassHz = 0; // 0 keeps the preset's filter
    bool Drones = true;
    double TenorDb = 0; // against the chanter's level; the two tenors sound as one voice 3 dB up
    double BassDb = 0;
};

SetSound SoundOf(Instrument instrument)
{
    switch (instrument) {
    case Instrument::Bagpipes:
        return {BagpipeProgram, 0, true, -9, -9};
    case Instrument::Chanter:
        return {ShenaiProgram, 0, false, 0, 0};
    default: // the smallpipes: a softer, darker chanter and quieter drones
        return {BagpipeProgram, 2000, true, -14, -14};
    }
}

double LowAOf(Instrument instrument, const GeneratorOptions& options)
{
    switch (instrument) {
    case Instrument::Bagpipes:
    case Instrument::Chanter:
        return options.PipeLowA;
    case Instrument::SmallpipesA:
        return options.ConcertA;
    case Instrument::SmallpipesBb:
        return options.ConcertA * std::exp2(1.0 / 12);
    case Instrument::SmallpipesC:
        return options.ConcertA * std::exp2(3.0 / 12);
    case Instrument::SmallpipesD:
        return options.ConcertA * std::exp2(5.0 / 12);
    }
    return options.PipeLowA;
}

double Rms(const StereoSound& sound)
{
    double sum = 0;
    for (std::size_t i = 0; i < sound.Frames(); ++i)
        sum += double(sound.Left[i]) * sound.Left[i] + double(sound.Right[i]) * sound.Right[i];
    return std::sqrt(sum / (2.0 * static_cast<double>(sound.Frames())));
}

void Scale(StereoSound& sound, double gain)
{
    for (std::size_t i = 0; i < sound.Frames(); ++i) {
        sound.Left[i] = static_cast<float>(sound.Left[i] * gain);
        sound.Right[i] = static_cast<float>(sound.Right[i] * gain);
    }
}

class SetMaker {
public:
    SetMaker(const GeneratorOptions& options, const std::function<void(const QString&)>& report)
        : m_options(options), m_report(report)
    {
    }

    GeneratorResult Make(Instrument instrument);
    GeneratorResult WriteNotice() const;

private:
    GeneratorResult LoadSoundFont();
    // A loop of a voice at an RMS level of `db`.
    std::optional<VoiceLoop> Voice(int program, double hz, double lowPassHz, double db, QString& problem);
    GeneratorResult Write(const QString& path, const StereoSound& loop, double gain) const;

    const GeneratorOptions& m_options;
    const std::function<void(const QString&)>& m_report;
    std::optional<SoundFontRenderer> m_renderer;
    QString m_soundFont;
    bool m_wroteAny = false;
};

GeneratorResult SetMaker::LoadSoundFont()
{
    if (m_renderer)
        return {};
    m_soundFont = m_options.SoundFont;
    if (m_soundFont.isEmpty()) {
        const auto found = std::find_if(KnownSoundFonts.begin(), KnownSoundFonts.end(),
                                        [](const QString& path) { return QFileInfo::exists(path); });
        if (found == KnownSoundFonts.end())
            return {KnownSoundFonts.front(),
                    QStringLiteral("no General MIDI SoundFont found: install "
                                   "fluidr3mono-gm-soundfont or give --soundfont FILE")};
        m_soundFont = *found;
    }
    m_renderer.emplace();
    if (const QString problem = m_renderer->Load(m_soundFont); !problem.isEmpty()) {
        m_renderer.reset();
        return {m_soundFont, problem};
    }
    return {};
}

std::optional<VoiceLoop> SetMaker::Voice(int program, double hz, double lowPassHz, double db,
                                         QString& problem)
{
    std::optional<VoiceLoop> voice =
        MakeVoiceLoop(*m_renderer, {program, hz, lowPassHz, 0}, LoopFrames, problem);
    if (voice)
        Scale(voice->Sound, std::pow(10, db / 20) / Rms(voice->Sound));
    return voice;
}

GeneratorResult SetMaker::Make(Instrument instrument)
{
    const QString name = InstrumentName(instrument);
    QStringList paths;
    for (int number = 1; number <= static_cast<int>(SampleBank::SlotCount); ++number)
        paths << QDir(m_options.Folder).filePath(SampleFileName(instrument, number));
    if (std::all_of(paths.begin(), paths.end(),
                    [](const QString& path) { return QFileInfo::exists(path); })) {
        m_report(QStringLiteral("%1: the nine files are there already; kept").arg(name));
        return {};
    }
    if (GeneratorResult loaded = LoadSoundFont(); !loaded.Ok())
        return loaded;

    const SetSound sound = SoundOf(instrument);
    const double lowA = LowAOf(instrument, m_options);
    QString problem;
    std::optional<VoiceLoop> tenor;
    std::optional<VoiceLoop> bass;
    if (sound.Drones) {
        tenor = Voice(DroneProgram, lowA / 2, 0, sound.TenorDb + 3, problem);
        bass = tenor ? Voice(DroneProgram, lowA / 4, 0, sound.BassDb, problem) : std::nullopt;
        if (!bass)
            return {paths.front(), problem};
    }

    std::vector<StereoSound> loops;
    std::vector<double> cents;
    double sumSquares = 0;
    double peak = 0;
    for (std::size_t i = 0; i < SampleBank::SlotCount; ++i) {
        std::optional<VoiceLoop> note =
            Voice(sound.ChanterProgram, lowA * m_options.Ratios[i], sound.LowPassHz, 0, problem);
        if (!note)
            return {paths[static_cast<qsizetype>(i)], problem};
        // Each voice repeats without a step, and so does their sum.
        StereoSound loop = std::move(note->Sound);
        if (sound.Drones) {
            for (std::size_t f = 0; f < LoopFrames; ++f) {
                loop.Left[f] += tenor->Sound.Left[f] + bass->Sound.Left[f];
                loop.Right[f] += tenor->Sound.Right[f] + bass->Sound.Right[f];
            }
        }
        for (std::size_t f = 0; f < LoopFrames; ++f) {
            sumSquares += double(loop.Left[f]) * loop.Left[f] + double(loop.Right[f]) * loop.Right[f];
            peak = std::max({peak, double(std::abs(loop.Left[f])), double(std::abs(loop.Right[f]))});
        }
        loops.push_back(std::move(loop));
        cents.push_back(note->Cents);
    }

    const double rms = std::sqrt(sumSquares / (2.0 * LoopFrames * SampleBank::SlotCount));
    const double gain =
        std::min(std::pow(10, TargetRmsDb / 20) / rms, std::pow(10, PeakCeilingDb / 20) / peak);
    for (std::size_t i = 0; i < SampleBank::SlotCount; ++i) {
        const QString& path = paths[static_cast<qsizetype>(i)];
        const QString line = QStringLiteral("%1: %2 %3 Hz (%4 cents)")
                                 .arg(QFileInfo(path).fileName(), QLatin1String(NoteNames[i]))
                                 .arg(lowA * m_options.Ratios[i], 0, 'f', 2)
                                 .arg(cents[i], 0, 'f', 3);
        if (QFileInfo::exists(path)) {
            m_report(line + QStringLiteral("; a file is there already, kept"));
            continue;
        }
        if (GeneratorResult written = Write(path, loops[i], gain); !written.Ok())
            return written;
        m_wroteAny = true;
        m_report(line);
    }
    return {};
}

GeneratorResult SetMaker::Write(const QString& path, const StereoSound& loop, double gain) const
{
    std::vector<std::int16_t> words(2 * FileFrames);
    for (std::size_t f = 0; f < FileFrames; ++f) {
        // The gain leaves the peaks at -1 dBFS at most, so nothing is clipped.
        words[2 * f] = static_cast<std::int16_t>(std::lround(loop.Left[f % LoopFrames] * gain * 32767));
        words[2 * f + 1] = static_cast<std::int16_t>(std::lround(loop.Right[f % LoopFrames] * gain * 32767));
    }
    qToLittleEndian<std::int16_t>(words.data(), static_cast<qsizetype>(words.size()), words.data());

    // Written beside its place and renamed into it when complete, so that an interrupted run
    // leaves no short file that a later run would keep.
    const QString part = path + QStringLiteral(".part");
    CWaveFile file;
    std::uint32_t written = 0;
    const bool ok =
        Succeeded(file.Create(part)) && Succeeded(file.WriteHeader(WaveFormat::Pcm(2, 44100, 16))) &&
        Succeeded(file.StartData()) &&
        Succeeded(file.Write(words.data(), static_cast<std::uint32_t>(2 * words.size()), written)) &&
        Succeeded(file.Close());
    if (!ok) {
        QFile::remove(part);
        return {part, file.ErrorString()};
    }
    if (!QFile::rename(part, path)) {
        QFile::remove(part);
        return {path, QStringLiteral("could not rename %1 to it").arg(QFileInfo(part).fileName())};
    }
    return {};
}

GeneratorResult SetMaker::WriteNotice() const
{
    if (!m_wroteAny)
        return {};
    if (!QFileInfo(m_soundFont).fileName().startsWith(QLatin1String("FluidR3"))) {
        m_report(
            QStringLiteral("The licence of %1 applies to the files made from it: keep its notice with them.")
                .arg(m_soundFont));
        return {};
    }
    const QString path = QDir(m_options.Folder).filePath(NoticeName);
    if (QFileInfo::exists(path))
        return {};
    QFile source(QStringLiteral(":/corrieval/samples/NOTICE.txt"));
    QFile notice(path);
    if (!source.open(QIODevice::ReadOnly) || !notice.open(QIODevice::WriteOnly) ||
        notice.write(source.readAll()) != source.size() || !notice.flush())
        return {path, notice.errorString()};
    return {};
}

} // namespace

GeneratorResult GenerateSamples(const GeneratorOptions& options,
                                const std::function<void(const QString&)>& report)
{
    if (!QDir().mkpath(options.Folder))
        return {options.Folder, QStringLiteral("the folder could not be made")};
    SetMaker maker(options, report);
    for (const Instrument instrument : options.Instruments) {
        if (GeneratorResult result = maker.Make(instrument); !result.Ok())
            return result;
    }
    return maker.WriteNotice();
}

} // namespace corrieval::samples
