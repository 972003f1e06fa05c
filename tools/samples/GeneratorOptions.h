#pragma once

#include "playback/SampleBank.h"

#include <QString>
#include <QStringList>

#include <array>
#include <vector>

namespace corrieval::samples {

// What the sample generator makes, and where.
struct GeneratorOptions {
    QString Folder;    // empty when not given
    QString SoundFont; // empty: the first General MIDI SoundFont found in Debian's places
    // Low A of the Highland pipes and the practice chanter.
    double PipeLowA = 480;
    // The A that the smallpipes' keys are taken from: the set in A has its Low A here, those in
    // Bb, C and D one, three and five equal-tempered semitones above.
    double ConcertA = 440;
    // The nine notes over Low A, Low G first: just intonation.
    std::array<double, SampleBank::SlotCount> Ratios = {8.0 / 9, 1,       9.0 / 8, 5.0 / 4, 4.0 / 3,
                                                        3.0 / 2, 5.0 / 3, 7.0 / 4, 2};
    std::vector<Instrument> Instruments = {Instrument::Bagpipes,     Instrument::Chanter,
                                           Instrument::SmallpipesBb, Instrument::SmallpipesA,
                                           Instrument::SmallpipesC,  Instrument::SmallpipesD};
};

// The options after the command word, as in GeneratorUsage. Gives the problem with them, or an
// empty string.
QString ParseGeneratorArguments(const QStringList& args, GeneratorOptions& options);

// "DIR", "--instrument NAME", "--soundfont FILE" ..., one a line with what it means.
extern const char* const GeneratorUsage;

// The instrument's name on the command line: the start of its file names ("bp", "spc").
QString InstrumentName(Instrument instrument);

} // namespace corrieval::samples
