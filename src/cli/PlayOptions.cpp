#include "cli/PlayOptions.h"

#include "cli/InputReader.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"
#include "platform/DataFolder.h"

#include <QDir>

#include <algorithm>
#include <array>

namespace corrieval::cli {

namespace {

struct InstrumentName {
    const char* Option;
    const char* Label;
    Instrument Sound;
};
constexpr std::array<InstrumentName, 6> kInstruments{{
    {"bagpipes", "Bagpipes", Instrument::Bagpipes},
    {"chanter", "Chanter", Instrument::Chanter},
    {"smallpipes-bb", "Smallpipes Bb", Instrument::SmallpipesBb},
    {"smallpipes-a", "Smallpipes A", Instrument::SmallpipesA},
    {"smallpipes-c", "Smallpipes C", Instrument::SmallpipesC},
    {"smallpipes-d", "Smallpipes D", Instrument::SmallpipesD},
}};

// Beyond this a tempo is surely a slip of the keyboard; the app's slider stops at 200.
constexpr std::int32_t kMaxTempo = 999;

} // namespace

bool PlayOptions::AnySet(const QCommandLineParser& parser) const
{
    return parser.isSet(m_tempo) || parser.isSet(m_part) || parser.isSet(m_instrument) ||
           parser.isSet(m_samples);
}

std::variant<PlaySettings, QString> PlayOptions::Read(const QCommandLineParser& parser) const
{
    PlaySettings settings;
    if (parser.isSet(m_tempo)) {
        bool isNumber = false;
        settings.Tempo = parser.value(m_tempo).toInt(&isNumber);
        if (!isNumber || *settings.Tempo < 1 || *settings.Tempo > kMaxTempo)
            return QStringLiteral("--tempo takes beats per minute from 1 to %1").arg(kMaxTempo);
    }
    const QString part = parser.value(m_part);
    if (part != QLatin1String("all")) {
        bool isNumber = false;
        settings.Part = part.toInt(&isNumber);
        if (!isNumber || settings.Part < 1 || settings.Part > CTuneSequence::PartCount)
            return QStringLiteral("--part takes all, or a part from 1 to %1").arg(CTuneSequence::PartCount);
    }
    const QString instrument = parser.value(m_instrument);
    const auto named =
        std::find_if(kInstruments.begin(), kInstruments.end(),
                     [&](const InstrumentName& name) { return instrument == QLatin1String(name.Option); });
    if (named == kInstruments.end())
        return QStringLiteral("unknown instrument '%1'").arg(instrument);
    settings.Sound = named->Sound;
    settings.SamplesFolder = parser.isSet(m_samples)
                                 ? QDir(parser.value(m_samples)).absolutePath() + QLatin1Char('/')
                                 : DataSubfolder(QStringLiteral("Instrument Samples"));
    return settings;
}

std::unique_ptr<PreparedTune> PrepareTune(const QString& score, const PlaySettings& settings,
                                          bww::ImportLog* log)
{
    auto tune = std::make_unique<PreparedTune>(ReadInput(score, log));
    if (!tune->Doc->HasMusic())
        throw FileError(score, QStringLiteral("the tune has no music to play"));
    const std::int32_t tempo = settings.Tempo.value_or(tune->Doc->Tempo);
    if (tempo < 1)
        throw FileError(score, QStringLiteral("its tempo is %1 bpm; give one with --tempo").arg(tempo));

    const InstrumentLoad load = LoadInstrument(settings.Sound, settings.SamplesFolder);
    if (!load.Loaded) {
        const auto named =
            std::find_if(kInstruments.begin(), kInstruments.end(),
                         [&](const InstrumentName& name) { return name.Sound == settings.Sound; });
        QString problem = load.Problem;
        if (problem.startsWith(settings.SamplesFolder))
            problem.remove(0, settings.SamplesFolder.size());
        throw FileError(settings.SamplesFolder,
                        QStringLiteral("cannot load the %1 recordings: %2 (make-samples makes them, or give "
                                       "--samples DIR)")
                            .arg(QLatin1String(named->Label), problem));
    }
    tune->Mixer.SetInstrument(load);
    tune->Mixer.SetSequence(&tune->Sequence);
    tune->Mixer.SetTempo(tempo);
    tune->Mixer.SetPart(settings.Part);
    return tune;
}

} // namespace corrieval::cli
