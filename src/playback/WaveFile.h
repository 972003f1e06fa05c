#pragma once

#include "playback/PlayResult.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cstdint>

namespace corrieval {

// The "fmt " chunk of a WAVE file. Extra holds the bytes after the extra-size word of a
// non-PCM format (empty for PCM).
struct WaveFormat {
    static constexpr std::uint16_t PcmTag = 1;
    static constexpr std::uint16_t ExtensibleTag = 0xFFFE;

    std::uint16_t FormatTag = PcmTag;
    std::uint16_t Channels = 2;
    std::uint32_t SamplesPerSecond = 44100;
    std::uint32_t AverageBytesPerSecond = 176400;
    std::uint16_t BlockAlign = 4;
    std::uint16_t BitsPerSample = 16;
    QByteArray Extra;

    static WaveFormat Pcm(std::uint16_t channels, std::uint32_t samplesPerSecond,
                          std::uint16_t bitsPerSample);
};

// A small reader and writer of RIFF WAVE files, for the instrument samples and WAV export.
//
// Reading: Open, ReadHeader (RIFF form "WAVE" and its "fmt " chunk), ResetToData (finds "data"),
// then Read as often as needed. Chunks are searched at the top level of the RIFF chunk; unknown
// ones are skipped with their pad byte. Only PCM sound is accepted (plain or in the extensible
// format), since anything else would be played as noise. Every size is checked against the
// file before it is trusted, so a damaged file fails with a reason in ErrorString, never with a
// large allocation or a read past its end.
//
// Writing: Create, WriteHeader (RIFF "WAVE", "fmt ", and a "fact" chunk holding -1), StartData,
// Write as often as needed, Close. Close fills in the sizes of the RIFF and data chunks and sets
// the fact value to 0, so a file cut short by a crash shows its unfinished state.
class CWaveFile {
public:
    CWaveFile() = default;
    ~CWaveFile();
    CWaveFile(const CWaveFile&) = delete;
    CWaveFile& operator=(const CWaveFile&) = delete;

    PlayResult Open(const QString& path);
    PlayResult ReadHeader();
    PlayResult ResetToData();
    // Reads up to `size` bytes of sound, fewer only at the end of the data chunk; `read` gets
    // the count. Running out of file before the data chunk ends is a failure.
    PlayResult Read(void* destination, std::uint32_t size, std::uint32_t& read);

    // Creates (or empties) the file.
    PlayResult Create(const QString& path);
    PlayResult WriteHeader(const WaveFormat& format);
    PlayResult StartData();
    PlayResult Write(const void* source, std::uint32_t size, std::uint32_t& written);

    // Finishes a file being written; closing a closed file fails with PlayFileNotOpen.
    PlayResult Close();

    // Valid after ReadHeader, or after WriteHeader.
    const WaveFormat& Format() const { return m_format; }
    // Bytes in the data chunk: as the file says when reading, as written so far when writing.
    std::uint32_t DataSize() const { return m_dataSize; }
    // Why the last operation failed, in words for the user (without the file name).
    const QString& ErrorString() const { return m_error; }

private:
    enum class Mode { Closed, Reading, Writing };
    struct Chunk {
        char Id[4] = {};
        std::uint32_t Size = 0;
        qint64 DataStart = 0; // offset of the chunk's first data byte
    };

    PlayResult Fail(const QString& why, PlayResult result = PlayFailed);
    bool FindChunk(const char* id, Chunk& chunk);
    bool ReadFormat(const Chunk& chunk);
    bool WriteChunkHeader(const char* id, std::uint32_t size);
    bool WriteWord(qint64 at, std::uint32_t value);

    QFile m_file;
    Mode m_mode = Mode::Closed;
    WaveFormat m_format;
    qint64 m_riffEnd = 0;   // reading: where the RIFF chunk's data ends, within the file
    qint64 m_dataStart = 0; // first byte of sound
    std::uint32_t m_dataSize = 0;
    std::uint32_t m_dataLeft = 0; // reading: bytes of sound not yet read
    qint64 m_factValue = -1;      // writing: offset of the fact chunk's value, -1 before the header
    QString m_error;
};

} // namespace corrieval
