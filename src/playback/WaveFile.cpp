#include "playback/WaveFile.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <limits>

namespace corrieval {
namespace {

constexpr qint64 RiffHeaderBytes = 12; // "RIFF", size, "WAVE"
constexpr qint64 ChunkHeaderBytes = 8; // id, size
constexpr std::uint32_t PcmFormatBytes = 16;
constexpr std::uint32_t FactValueWhileWriting = 0xFFFFFFFFu;

// The tail shared by every extensible-format sub-format GUID; PCM's starts with the word 1.
constexpr unsigned char ExtensibleGuidTail[14] = {0x00, 0x00, 0x00, 0x00, 0x10, 0x00, 0x80,
                                                  0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71};
constexpr int ExtensibleSubFormatAt = 6; // in the extra bytes: valid bits (2), channel mask (4)

std::uint16_t Word16(const char* p)
{
    return qFromLittleEndian<std::uint16_t>(p);
}
std::uint32_t Word32(const char* p)
{
    return qFromLittleEndian<std::uint32_t>(p);
}

// A chunk id for a message; a damaged file's ids may hold any bytes.
QString ChunkName(const char* id)
{
    QString name = QStringLiteral("\"");
    for (int i = 0; i < 4; ++i)
        name += (id[i] >= 0x20 && id[i] < 0x7F) ? QLatin1Char(id[i]) : QLatin1Char('?');
    return name + QLatin1Char('"');
}

bool IsPcm(const WaveFormat& format)
{
    if (format.FormatTag == WaveFormat::PcmTag)
        return true;
    if (format.FormatTag != WaveFormat::ExtensibleTag || format.Extra.size() < ExtensibleSubFormatAt + 16)
        return false;
    const char* guid = format.Extra.constData() + ExtensibleSubFormatAt;
    return Word16(guid) == WaveFormat::PcmTag && std::memcmp(guid + 2, ExtensibleGuidTail, 14) == 0;
}

} // namespace

WaveFormat WaveFormat::Pcm(std::uint16_t channels, std::uint32_t samplesPerSecond,
                           std::uint16_t bitsPerSample)
{
    WaveFormat format;
    format.FormatTag = PcmTag;
    format.Channels = channels;
    format.SamplesPerSecond = samplesPerSecond;
    format.BitsPerSample = bitsPerSample;
    format.BlockAlign = static_cast<std::uint16_t>(channels * ((bitsPerSample + 7) / 8));
    format.AverageBytesPerSecond = samplesPerSecond * format.BlockAlign;
    return format;
}

CWaveFile::~CWaveFile()
{
    if (m_mode != Mode::Closed)
        Close();
}

PlayResult CWaveFile::Fail(const QString& why, PlayResult result)
{
    m_error = why;
    return result;
}

PlayResult CWaveFile::Open(const QString& path)
{
    if (m_mode != Mode::Closed)
        Close();
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::ReadOnly))
        return Fail(m_file.errorString());
    m_mode = Mode::Reading;
    m_format = {};
    m_dataStart = 0;
    m_dataSize = m_dataLeft = 0;
    m_error.clear();
    return PlayOk;
}

PlayResult CWaveFile::ReadHeader()
{
    if (m_mode != Mode::Reading)
        return Fail(QStringLiteral("the file is not open for reading"), PlayFileNotOpen);
    char header[RiffHeaderBytes];
    if (!m_file.seek(0) || m_file.read(header, RiffHeaderBytes) != RiffHeaderBytes)
        return Fail(QStringLiteral("too short to be a WAVE file"));
    if (std::memcmp(header, "RIFF", 4) != 0)
        return Fail(QStringLiteral("not a RIFF file"));
    if (std::memcmp(header + 8, "WAVE", 4) != 0)
        return Fail(QStringLiteral("a RIFF file, but not WAVE sound"));
    const qint64 riffSize = Word32(header + 4);
    m_riffEnd = ChunkHeaderBytes + riffSize;
    if (riffSize < 4 || m_riffEnd > m_file.size())
        return Fail(QStringLiteral("truncated: the RIFF chunk claims %1 bytes, the file holds %2")
                        .arg(riffSize)
                        .arg(m_file.size() - ChunkHeaderBytes));
    Chunk chunk;
    if (!FindChunk("fmt ", chunk) || !ReadFormat(chunk))
        return PlayFailed;
    return PlayOk;
}

bool CWaveFile::FindChunk(const char* id, Chunk& chunk)
{
    qint64 at = RiffHeaderBytes;
    while (at + ChunkHeaderBytes <= m_riffEnd) {
        char header[ChunkHeaderBytes];
        if (!m_file.seek(at) || m_file.read(header, ChunkHeaderBytes) != ChunkHeaderBytes)
            break;
        std::memcpy(chunk.Id, header, 4);
        chunk.Size = Word32(header + 4);
        chunk.DataStart = at + ChunkHeaderBytes;
        if (chunk.DataStart + chunk.Size > m_riffEnd) {
            Fail(QStringLiteral("the %1 chunk is truncated: it claims %2 bytes, %3 remain")
                     .arg(ChunkName(chunk.Id))
                     .arg(chunk.Size)
                     .arg(m_riffEnd - chunk.DataStart));
            return false;
        }
        if (std::memcmp(chunk.Id, id, 4) == 0)
            return true;
        // Chunks are word-aligned: an odd-sized one is followed by a pad byte.
        at = chunk.DataStart + chunk.Size + (chunk.Size & 1u);
    }
    Fail(QStringLiteral("there is no %1 chunk").arg(ChunkName(id)));
    return false;
}

bool CWaveFile::ReadFormat(const Chunk& chunk)
{
    if (chunk.Size < PcmFormatBytes) {
        Fail(QStringLiteral("the \"fmt \" chunk is too short (%1 bytes)").arg(chunk.Size));
        return false;
    }
    char fields[PcmFormatBytes];
    if (m_file.read(fields, PcmFormatBytes) != PcmFormatBytes) {
        Fail(QStringLiteral("the \"fmt \" chunk could not be read"));
        return false;
    }
    WaveFormat format;
    format.FormatTag = Word16(fields);
    format.Channels = Word16(fields + 2);
    format.SamplesPerSecond = Word32(fields + 4);
    format.AverageBytesPerSecond = Word32(fields + 8);
    format.BlockAlign = Word16(fields + 12);
    format.BitsPerSample = Word16(fields + 14);
    if (format.FormatTag != WaveFormat::PcmTag) {
        // Other formats carry an extra-size word and that many bytes; the chunk must hold them.
        char extraSize[2];
        if (chunk.Size < PcmFormatBytes + 2 || m_file.read(extraSize, 2) != 2 ||
            PcmFormatBytes + 2 + Word16(extraSize) > chunk.Size) {
            Fail(QStringLiteral("the \"fmt \" chunk is too short for its extra format bytes"));
            return false;
        }
        format.Extra = m_file.read(Word16(extraSize));
    }
    if (!IsPcm(format)) {
        Fail(QStringLiteral("the sound is not PCM (format tag 0x%1)")
                 .arg(format.FormatTag, 4, 16, QLatin1Char('0')));
        return false;
    }
    if (format.Channels == 0) {
        Fail(QStringLiteral("the format has no channels"));
        return false;
    }
    m_format = std::move(format);
    return true;
}

PlayResult CWaveFile::ResetToData()
{
    if (m_mode != Mode::Reading)
        return Fail(QStringLiteral("the file is not open for reading"), PlayFileNotOpen);
    Chunk chunk;
    if (!FindChunk("data", chunk) || !m_file.seek(chunk.DataStart))
        return PlayFailed;
    m_dataStart = chunk.DataStart;
    m_dataSize = m_dataLeft = chunk.Size;
    return PlayOk;
}

PlayResult CWaveFile::Read(void* destination, std::uint32_t size, std::uint32_t& read)
{
    read = 0;
    if (destination == nullptr)
        return Fail(QStringLiteral("no place to read into"), PlayBadArgument);
    if (m_mode != Mode::Reading || m_dataStart == 0)
        return Fail(QStringLiteral("the file is not open for reading sound"), PlayFileNotOpen);
    const std::uint32_t count = std::min(size, m_dataLeft);
    if (m_file.read(static_cast<char*>(destination), count) != count)
        return Fail(QStringLiteral("the file ends inside its sound data"));
    m_dataLeft -= count;
    read = count;
    return PlayOk;
}

PlayResult CWaveFile::Create(const QString& path)
{
    if (m_mode != Mode::Closed)
        Close();
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return Fail(m_file.errorString());
    m_mode = Mode::Writing;
    m_format = {};
    m_dataStart = 0;
    m_dataSize = 0;
    m_factValue = -1;
    m_error.clear();
    return PlayOk;
}

bool CWaveFile::WriteChunkHeader(const char* id, std::uint32_t size)
{
    char header[ChunkHeaderBytes];
    std::memcpy(header, id, 4);
    qToLittleEndian(size, header + 4);
    return m_file.write(header, ChunkHeaderBytes) == ChunkHeaderBytes;
}

bool CWaveFile::WriteWord(qint64 at, std::uint32_t value)
{
    char bytes[4];
    qToLittleEndian(value, bytes);
    return m_file.seek(at) && m_file.write(bytes, 4) == 4;
}

PlayResult CWaveFile::WriteHeader(const WaveFormat& format)
{
    if (m_mode != Mode::Writing)
        return Fail(QStringLiteral("the file is not open for writing"), PlayFileNotOpen);
    const bool pcm = format.FormatTag == WaveFormat::PcmTag;
    if (!pcm && format.Extra.size() > std::numeric_limits<std::uint16_t>::max())
        return Fail(QStringLiteral("the extra format bytes are too many"), PlayBadArgument);
    const auto formatBytes =
        static_cast<std::uint32_t>(pcm ? PcmFormatBytes : PcmFormatBytes + 2 + format.Extra.size());

    QByteArray fields(static_cast<qsizetype>(formatBytes + (formatBytes & 1u)), '\0');
    char* p = fields.data();
    qToLittleEndian(format.FormatTag, p);
    qToLittleEndian(format.Channels, p + 2);
    qToLittleEndian(format.SamplesPerSecond, p + 4);
    qToLittleEndian(format.AverageBytesPerSecond, p + 8);
    qToLittleEndian(format.BlockAlign, p + 12);
    qToLittleEndian(format.BitsPerSample, p + 14);
    if (!pcm) {
        qToLittleEndian(static_cast<std::uint16_t>(format.Extra.size()), p + 16);
        std::memcpy(p + 18, format.Extra.constData(), static_cast<std::size_t>(format.Extra.size()));
    }

    const bool written = m_file.seek(0) && WriteChunkHeader("RIFF", 0) && m_file.write("WAVE", 4) == 4 &&
                         WriteChunkHeader("fmt ", formatBytes) && m_file.write(fields) == fields.size() &&
                         WriteChunkHeader("fact", 4);
    if (!written)
        return Fail(m_file.errorString());
    m_factValue = m_file.pos();
    if (!WriteWord(m_factValue, FactValueWhileWriting))
        return Fail(m_file.errorString());
    m_format = format;
    return PlayOk;
}

PlayResult CWaveFile::StartData()
{
    if (m_mode != Mode::Writing)
        return Fail(QStringLiteral("the file is not open for writing"), PlayFileNotOpen);
    if (m_factValue < 0)
        return Fail(QStringLiteral("the header has not been written"), PlayBadArgument);
    if (!WriteChunkHeader("data", 0))
        return Fail(m_file.errorString());
    m_dataStart = m_file.pos();
    m_dataSize = 0;
    return PlayOk;
}

PlayResult CWaveFile::Write(const void* source, std::uint32_t size, std::uint32_t& written)
{
    written = 0;
    if (source == nullptr)
        return Fail(QStringLiteral("nothing to write from"), PlayBadArgument);
    if (m_mode != Mode::Writing || m_dataStart == 0)
        return Fail(QStringLiteral("the file is not open for writing sound"), PlayFileNotOpen);
    // The RIFF size must still fit in 32 bits once the header and a pad byte are counted.
    if (size > std::numeric_limits<std::uint32_t>::max() - m_dataStart - 1 - m_dataSize)
        return Fail(QStringLiteral("the sound would be larger than a WAVE file can hold"));
    const qint64 count = m_file.write(static_cast<const char*>(source), size);
    if (count > 0) {
        written = static_cast<std::uint32_t>(count);
        m_dataSize += written;
    }
    if (count != size)
        return Fail(m_file.errorString());
    return PlayOk;
}

PlayResult CWaveFile::Close()
{
    if (m_mode == Mode::Closed)
        return Fail(QStringLiteral("the file is not open"), PlayFileNotOpen);
    bool finished = true;
    if (m_mode == Mode::Writing) {
        if (m_dataStart != 0) {
            if (m_dataSize & 1u)
                finished = m_file.write("", 1) == 1;
            finished = finished && WriteWord(m_dataStart - 4, m_dataSize);
        }
        if (finished)
            finished = WriteWord(4, static_cast<std::uint32_t>(m_file.size() - ChunkHeaderBytes));
        if (finished && m_factValue >= 0)
            finished = WriteWord(m_factValue, 0);
        finished = finished && m_file.flush();
    }
    const QString fileError = m_file.errorString();
    m_file.close();
    m_mode = Mode::Closed;
    return finished ? PlayOk : Fail(fileError);
}

} // namespace corrieval
