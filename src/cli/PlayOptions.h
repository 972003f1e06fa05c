#pragma once

#include "playback/PullSource.h"
#include "playback/SampleBank.h"
#include "playback/SampleMixer.h"
#include "playback/TuneSequence.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QString>
#include <QTextStream>

#include <memory>
#include <optional>
#include <variant>

namespace corrieval {
class CCorrievalDoc;
}
namespace corrieval::bww {
class ImportLog;
}

namespace corrieval::cli {

// What play and a conversion to .wav are asked for.
struct PlaySettings {
    std::optional<std::int32_t> Tempo; // the score's own when not given
    std::int32_t Part = 0;             // 0 every part, else 1 to 4 alone
    Instrument Sound = Instrument::Bagpipes;
    QString SamplesFolder;
};

// The options that give those settings: --tempo, --part, --instrument, --samples.
class PlayOptions {
public:
    QList<QCommandLineOption> Options() const { return {m_tempo, m_part, m_instrument, m_samples}; }
    bool AnySet(const QCommandLineParser& parser) const;
    // The settings, or what is wrong with the options as a line for the user.
    std::variant<PlaySettings, QString> Read(const QCommandLineParser& parser) const;

private:
    QCommandLineOption m_tempo{QStringLiteral("tempo"),
                               QStringLiteral("beats a minute, 1 to 999 (default: the tune's own)"),
                               QStringLiteral("BPM")};
    QCommandLineOption m_part{
        QStringLiteral("part"),
        QStringLiteral("all, or one part from 1 to 4 alone at full level (default all)"),
        QStringLiteral("PART"), QStringLiteral("all")};
    QCommandLineOption m_instrument{
        QStringLiteral("instrument"),
        QStringLiteral("bagpipes, chanter, smallpipes-bb, smallpipes-a, smallpipes-c "
                       "or smallpipes-d (default bagpipes)"),
        QStringLiteral("NAME"), QStringLiteral("bagpipes")};
    QCommandLineOption m_samples{
        QStringLiteral("samples"),
        QStringLiteral("the folder of the instrument's recordings (default: the data "
                       "folder's \"Instrument Samples\", which make-samples fills)"),
        QStringLiteral("DIR")};
};

// A score ready to be pulled from: its sequence, and the mixer over the instrument's recordings
// at the tempo and part asked for.
struct PreparedTune {
    explicit PreparedTune(std::unique_ptr<CCorrievalDoc> doc) : Doc(std::move(doc)) {}

    std::unique_ptr<CCorrievalDoc> Doc;
    CTuneSequence Sequence{Doc.get()};
    CSampleMixer Mixer;
    MixerSource Source{Mixer};
};

// Reads the score and loads the instrument into the sample bank. Throws FileError for a score
// with nothing to play or a recording that cannot be loaded, naming the folder and the file, and
// whatever reading the score throws. `log` is as for ReadInput.
std::unique_ptr<PreparedTune> PrepareTune(const QString& score, const PlaySettings& settings,
                                          bww::ImportLog* log = nullptr);

// The .wav side of convert: renders the score `in` into the WAV file `out`.
int ConvertToWav(const QString& in, const QString& out, const PlaySettings& settings, QTextStream& stdOut,
                 QTextStream& err, bww::ImportLog* log = nullptr);

} // namespace corrieval::cli
