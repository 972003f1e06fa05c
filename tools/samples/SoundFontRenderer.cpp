#include "samples/SoundFontRenderer.h"

#include <fluidsynth.h>

#include <QFile>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace corrieval::samples {
namespace {

// FluidSynth renders in blocks of this many frames; rendering whole blocks keeps every note
// starting at the same place in a block, so a note sounds the same whatever came before it.
constexpr std::size_t BlockFrames = 64;
constexpr double OnsetSeconds = 0.35;
constexpr std::size_t SilenceFrames = 1024;
constexpr int Velocity = 127; // the default velocity modulators leave loudness and filter alone at 127
constexpr int BendCentre = 8192;
constexpr int BendPerSemitone = 4096;  // with the default bend range of two semitones
constexpr float ShortestTime = -12000; // timecents: about a millisecond

std::size_t WholeBlocks(std::size_t frames)
{
    return (frames + BlockFrames - 1) / BlockFrames * BlockFrames;
}

// Collects FluidSynth's error messages while a SoundFont loads, so that they can be reported in
// one line with the file name rather than printed on their own.
void CollectError(int, const char* message, void* data)
{
    QString& collected = *static_cast<QString*>(data);
    if (collected.isEmpty())
        collected = QString::fromLocal8Bit(message);
}

void MakeSteady(fluid_voice_t* voice, double lowPassHz)
{
    static constexpr std::array TakenOff = {GEN_MODLFOTOPITCH,    GEN_VIBLFOTOPITCH,   GEN_MODLFOTOFILTERFC,
                                            GEN_MODLFOTOVOL,      GEN_MODENVTOPITCH,   GEN_KEYTOMODENVHOLD,
                                            GEN_KEYTOMODENVDECAY, GEN_KEYTOVOLENVHOLD, GEN_KEYTOVOLENVDECAY};
    // The release too, so that the reset before the next note silences this one at once.
    static constexpr std::array Shortened = {GEN_VOLENVDELAY,  GEN_VOLENVATTACK,  GEN_VOLENVHOLD,
                                             GEN_VOLENVDECAY,  GEN_VOLENVRELEASE, GEN_MODENVDELAY,
                                             GEN_MODENVATTACK, GEN_MODENVHOLD,    GEN_MODENVDECAY};
    for (const int gen : TakenOff) {
        fluid_voice_gen_set(voice, gen, 0);
        fluid_voice_update_param(voice, gen);
    }
    for (const int gen : Shortened) {
        fluid_voice_gen_set(voice, gen, ShortestTime);
        fluid_voice_update_param(voice, gen);
    }
    if (lowPassHz > 0) {
        // Absolute cents above 8.176 Hz, the SoundFont unit of filter cutoff.
        fluid_voice_gen_set(voice, GEN_FILTERFC, static_cast<float>(1200 * std::log2(lowPassHz / 8.176)));
        fluid_voice_update_param(voice, GEN_FILTERFC);
    }
}

} // namespace

void SoundFontRenderer::SettingsDeleter::operator()(fluid_settings_t* settings) const
{
    delete_fluid_settings(settings);
}

void SoundFontRenderer::SynthDeleter::operator()(fluid_synth_t* synth) const
{
    delete_fluid_synth(synth);
}

SoundFontRenderer::SoundFontRenderer()
{
    // FluidSynth's warnings and notes (about presets of other banks, for one) mean nothing to
    // someone making samples; its errors are collected where they matter.
    fluid_set_log_function(FLUID_WARN, nullptr, nullptr);
    fluid_set_log_function(FLUID_INFO, nullptr, nullptr);
    fluid_set_log_function(FLUID_DBG, nullptr, nullptr);
    m_settings.reset(new_fluid_settings());
    fluid_settings_setnum(m_settings.get(), "synth.sample-rate", SampleRate);
    fluid_settings_setint(m_settings.get(), "synth.reverb.active", 0);
    fluid_settings_setint(m_settings.get(), "synth.chorus.active", 0);
    fluid_settings_setint(m_settings.get(), "synth.threadsafe-api", 0);
    // Decoding only the presets played takes a second instead of six for a compressed font.
    fluid_settings_setint(m_settings.get(), "synth.dynamic-sample-loading", 1);
    m_synth.reset(new_fluid_synth(m_settings.get()));
}

SoundFontRenderer::~SoundFontRenderer() = default;

QString SoundFontRenderer::Load(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    // Checked here because FluidSynth's loaders complain on the console about anything else.
    const QByteArray header = file.read(12);
    if (header.size() < 12 || !header.startsWith("RIFF") || header.mid(8) != "sfbk")
        return QStringLiteral("not a SoundFont (.sf2 or .sf3)");
    QString error;
    fluid_set_log_function(FLUID_ERR, CollectError, &error);
    const int id = fluid_synth_sfload(m_synth.get(), QFile::encodeName(path).constData(), 1);
    fluid_set_log_function(FLUID_ERR, fluid_default_log_function, nullptr);
    if (id != FLUID_FAILED)
        return {};
    return error.isEmpty() ? QStringLiteral("not a SoundFont FluidSynth can read") : error;
}

StereoSound SoundFontRenderer::Render(const VoiceRequest& request)
{
    fluid_synth_t* synth = m_synth.get();
    // The last note's voices are released by the reset and fade out over the next frames, which
    // are rendered and thrown away.
    fluid_synth_system_reset(synth);
    std::vector<float> silence(SilenceFrames);
    fluid_synth_write_float(synth, static_cast<int>(SilenceFrames), silence.data(), 0, 1, silence.data(), 0,
                            1);
    fluid_synth_program_change(synth, 0, request.Program);

    const double semitones = 69 + 12 * std::log2(request.Hz / 440);
    const int key = std::clamp(static_cast<int>(std::lround(semitones)), 0, 127);
    fluid_synth_pitch_bend(
        synth, 0,
        std::clamp(BendCentre + static_cast<int>(std::lround((semitones - key) * BendPerSemitone)), 0,
                   16383));
    fluid_synth_noteon(synth, 0, key, Velocity);
    std::array<fluid_voice_t*, 32> voices{};
    fluid_synth_get_voicelist(synth, voices.data(), static_cast<int>(voices.size()), -1);
    for (fluid_voice_t* voice : voices)
        if (voice != nullptr)
            MakeSteady(voice, request.LowPassHz);

    const std::size_t onset = WholeBlocks(static_cast<std::size_t>(OnsetSeconds * SampleRate));
    StereoSound sound;
    sound.Left.resize(WholeBlocks(onset + request.Frames));
    sound.Right.resize(sound.Left.size());
    fluid_synth_write_float(synth, static_cast<int>(sound.Frames()), sound.Left.data(), 0, 1,
                            sound.Right.data(), 0, 1);
    sound.Left.erase(sound.Left.begin(), sound.Left.begin() + static_cast<std::ptrdiff_t>(onset));
    sound.Right.erase(sound.Right.begin(), sound.Right.begin() + static_cast<std::ptrdiff_t>(onset));
    sound.Left.resize(request.Frames);
    sound.Right.resize(request.Frames);
    return sound;
}

} // namespace corrieval::samples
