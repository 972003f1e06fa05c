#include "playback/SampleBank.h"
#include "playback/WaveFile.h"

namespace corrieval {

QString SampleFileName(Instrument instrument, int number)
{
    // The Smallpipes in Bb were the first set and kept the bare "sp"; the other keys add theirs.
    static constexpr const char* Prefixes[] = {"bp", "ch", "sp", "spa", "spc", "spd"};
    return QStringLiteral("%1%2.wav").arg(QLatin1String(Prefixes[static_cast<int>(instrument)])).arg(number);
}

InstrumentLoad LoadInstrument(Instrument instrument, const QString& folder)
{
    InstrumentLoad load;
    for (std::size_t slot = 0; slot < SampleBank::SlotCount; ++slot) {
        const QString path = folder + SampleFileName(instrument, static_cast<int>(slot) + 1);
        CWaveFile file;
        std::uint32_t read = 0;
        QString problem;
        if (!Succeeded(file.Open(path)) || !Succeeded(file.ReadHeader()) || !Succeeded(file.ResetToData()))
            problem = file.ErrorString();
        else if (file.Format().BitsPerSample != 16)
            problem = QStringLiteral("the sound has %1-bit samples; the player needs 16-bit")
                          .arg(file.Format().BitsPerSample);
        else if (file.DataSize() < SampleBank::FilledBytes)
            problem = QStringLiteral("the sound is %1 bytes long; the player needs at least %2")
                          .arg(file.DataSize())
                          .arg(SampleBank::FilledBytes);
        else if (!Succeeded(file.Read(SampleBank::Slot(slot), SampleBank::FilledBytes, read)))
            problem = file.ErrorString();
        if (!problem.isEmpty()) {
            // The slots filled so far keep their new sound; the loaded flag keeps play off.
            load.Problem = path + QStringLiteral(": ") + problem;
            return load;
        }
        load.Channels = file.Format().Channels;
    }
    load.Loaded = true;
    return load;
}

} // namespace corrieval
