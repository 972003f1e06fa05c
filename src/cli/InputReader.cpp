#include "cli/InputReader.h"

#include "cli/MessagePrefix.h"
#include "formats/bww/BwwFile.h"
#include "formats/glenmarch/GlenmarchConversion.h"
#include "formats/glenmarch/GlenmarchFile.h"
#include "formats/glenmarch/PipeDoc.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"
#include "model/Messages.h"
#include "platform/ImportSettings.h"
#include "platform/LocalePaper.h"
#include "platform/MovementDefinitions.h"

#include <QFileInfo>
#include <QSizeF>

namespace corrieval::cli {

namespace {

QString Kind(const QString& path)
{
    return QFileInfo(path).suffix().toLower();
}

// Movements are built from the definitions in the settings store, which the desktop app fills at
// its first start; a machine that never ran it gets them here.
void EnsureMovementDefinitions()
{
    if (const QString problem = InstallMovementDefinitions(); !problem.isEmpty())
        ShowMessage(problem);
}

std::unique_ptr<CCorrievalDoc> ReadGlenmarchTune(const QString& path)
{
    std::unique_ptr<CPipeDoc> tune = LoadGlenmarch(path);
    EnsureMovementDefinitions();
    return ConvertToNewDocument(*tune, false);
}

// A Bagpiper Music Writer tune. Its problems have been shown as they were met; a refused file is
// a file error, so that no half-read tune is written out.
std::unique_ptr<CCorrievalDoc> ReadMusicWriterTune(const QString& path, bww::ImportLog* keptLog)
{
    bww::ImportLog log;
    // Strict when the command line or the settings ask for it.
    if ((keptLog != nullptr && keptLog->Mode == bww::Reading::Strict) || StrictBwwSetting()) {
        log.Mode = bww::Reading::Strict;
        // The strict reading keeps the older program's square page too.
        platform::UsePaper(QPageSize(QSizeF(8, 8), QPageSize::Inch));
    }
    std::unique_ptr<CPipeDoc> tune = LoadBww(path, log);
    if (tune == nullptr)
        throw FileError(path, QStringLiteral("the tune could not be imported"));
    if (keptLog != nullptr)
        *keptLog = std::move(log);
    EnsureMovementDefinitions();
    return ConvertToNewDocument(*tune, true);
}

} // namespace

QString InputProblem(const QString& path)
{
    static const QStringList kinds{QStringLiteral("skb"), QStringLiteral("skt"), QStringLiteral("glm"),
                                   QStringLiteral("bww"), QStringLiteral("bmw")};
    if (kinds.contains(Kind(path)))
        return {};
    return QStringLiteral("cannot read '%1': give a .skb, .skt, .glm, .bww or .bmw file").arg(path);
}

std::unique_ptr<CCorrievalDoc> ReadInput(const QString& path, bww::ImportLog* log)
{
    const PrefixedMessages messages(path);
    if (Kind(path) == QLatin1String("glm"))
        return ReadGlenmarchTune(path);
    if (Kind(path) == QLatin1String("bww") || Kind(path) == QLatin1String("bmw"))
        return ReadMusicWriterTune(path, log);
    return LoadScore(path);
}

void PrintPassedWords(const QString& file, const bww::ImportLog& log, QTextStream& out)
{
    for (const bww::PassedWord& passed : log.PassedWords)
        out << file << ':' << passed.Line << ": passed over " << passed.Word << '\n';
    if (log.PassedWords.size() >= bww::ImportLog::MaxPassedWords)
        out << file << ": only the first " << bww::ImportLog::MaxPassedWords
            << " words passed over are listed\n";
    out.flush();
}

} // namespace corrieval::cli
