#pragma once

#include "playback/PlayResult.h"

#include <QString>

#include <cstdint>

namespace corrieval {

class PullSource;

// Words asked of the source at each pull of an export: 40,960 bytes. The file ends at the pull
// after the end of the tune, so up to this much silence (a quarter of a second) trails the music.
inline constexpr std::uint32_t WavExportBlockWords = 20480;

// Renders the tune into a WAV file by the same pulls as live play, as fast as the disk allows, so
// the file sounds as the speakers do at the tempo, part and selection set for play. The source
// is reset to the top first. The header always says stereo 16-bit at 44,100 Hz, the format of the
// recordings. PlayOk, or PlayFailed with the reason in `problem`; a partly written file stays.
PlayResult ExportWav(PullSource& source, const QString& path, QString& problem);

} // namespace corrieval
