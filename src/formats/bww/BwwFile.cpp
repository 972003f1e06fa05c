#include "formats/bww/BwwFile.h"

#include "formats/bww/BwwParser.h"
#include "formats/glenmarch/GlenmarchConversion.h"
#include "formats/glenmarch/PipeDoc.h"
#include "formats/score/ScoreFile.h"
#include "model/Messages.h"

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
    bww::ImportLog log;
    std::unique_ptr<CPipeDoc> tune;
    try {
        tune = LoadBww(path, log);
    } catch (const FileError&) {
        ShowMessage(QStringLiteral("Error opening the file"), MessageKind::OkCancel);
        return false;
    }
    if (tune == nullptr)
        return false;
    ConvertIntoActiveView(std::move(tune), true);
    return true;
}

} // namespace corrieval
