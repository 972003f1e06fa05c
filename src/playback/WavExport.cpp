#include "playback/WavExport.h"

#include "playback/PullSource.h"
#include "playback/WaveFile.h"

#include <vector>

namespace corrieval {

PlayResult ExportWav(PullSource& source, const QString& path, QString& problem)
{
    CWaveFile file;
    if (!Succeeded(file.Create(path)) || !Succeeded(file.WriteHeader(WaveFormat::Pcm(2, 44100, 16))) ||
        !Succeeded(file.StartData())) {
        problem = file.ErrorString();
        return PlayFailed;
    }
    source.Reset(false);
    std::vector<std::int16_t> block(WavExportBlockWords);
    PlayResult pulled = PlayOk;
    // The pull that reaches the end fails but still brings the last notes, so it is written too.
    while (Succeeded(pulled)) {
        std::uint32_t count = WavExportBlockWords;
        pulled = source.Pull(block.data(), count);
        std::uint32_t written = 0;
        if (!Succeeded(file.Write(block.data(), count * 2, written))) {
            problem = file.ErrorString();
            return PlayFailed;
        }
    }
    if (!Succeeded(file.Close())) {
        problem = file.ErrorString();
        return PlayFailed;
    }
    return PlayOk;
}

} // namespace corrieval
