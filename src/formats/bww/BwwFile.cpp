#include "formats/bww/BwwFile.h"

#include "formats/bww/BwwParser.h"
#include "formats/glenmarch/GlenmarchFile.h"
#include "formats/glenmarch/PipeDoc.h"
#include "formats/score/ScoreFile.h"
#include "platform/ImportSettings.h"

namespace corrieval {

std::unique_ptr<CPipeDoc> ReadBww(const QByteArray& bytes, bww::ImportLog& log)
{
    auto doc = std::make_unique<CPipeDoc>();
    // Beamed values are written in full in these files; the older doubling does not apply.
    doc->BeatDoubling = 0;
    bww::Parser parser(bytes, *doc, log);
    if (!parser.Parse())
        return nullptr;
    return doc;
}

std::unique_ptr<CPipeDoc> LoadBww(const QString& path, bww::ImportLog& log)
{
    return ReadBww(ReadFileBytes(path), log);
}

bool ImportBww(const QString& path)
{
    return ImportIntoActiveView(
        [&path] {
            bww::ImportLog log;
            if (StrictBwwSetting())
                log.Mode = bww::Reading::Strict;
            return LoadBww(path, log);
        },
        true);
}

} // namespace corrieval
