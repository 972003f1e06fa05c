#include "formats/bww/BwwFile.h"
#include "formats/glenmarch/GlenmarchConversion.h"
#include "formats/glenmarch/PipeDoc.h"
#include "model/CorrievalDoc.h"
#include "support/RecordingMessages.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::RecordingMessages;

// Real and made-up BWW files kept beside the repository, not in it: CORRIEVAL_BWW_CORPUS names
// the folder, else ../shared/corpus/bww from the repository root.
QString CorpusDir()
{
    if (const QString dir = qEnvironmentVariable("CORRIEVAL_BWW_CORPUS"); !dir.isEmpty())
        return dir;
    const QDir root = QFileInfo(QStringLiteral(__FILE__)).dir().filePath(QStringLiteral("../.."));
    return root.filePath(QStringLiteral("../shared/corpus/bww"));
}

bool IsImportMessage(const QString& text)
{
    static const QRegularExpression error(QStringLiteral(
        "^Error on line -?\\d+: (lexer error|title error|token misMatch) \\n tokenval = -?\\d+$"));
    for (const auto code : {bww::ProblemCode::InvalidBmw, bww::ProblemCode::InvalidBww,
                            bww::ProblemCode::BarTooLong, bww::ProblemCode::PartTooLong}) {
        if (text == bww::ProblemText(code))
            return true;
    }
    return error.match(text).hasMatch();
}

TEST(BwwCorpus, EveryFileImportsAndConvertsWithOnlyTheImportsMessages)
{
    const QString dir = CorpusDir();
    if (!QDir(dir).exists())
        GTEST_SKIP() << "no BWW corpus at " << dir.toStdString();
    QDirIterator files(dir, {QStringLiteral("*.bww"), QStringLiteral("*.bmw"), QStringLiteral("*.BWW")},
                       QDir::Files, QDirIterator::Subdirectories);
    int read = 0;
    int imported = 0;
    while (files.hasNext()) {
        const QString path = files.next();
        RecordingMessages messages;
        bww::ImportLog log;
        const auto doc = LoadBww(path, log);
        ++read;
        imported += doc != nullptr ? 1 : 0;
        for (const QString& text : messages.Texts)
            EXPECT_TRUE(IsImportMessage(text)) << path.toStdString() << ": " << text.toStdString();
        if (doc == nullptr)
            continue;
        EXPECT_FALSE(doc->CentreText.Text.isEmpty()) << path.toStdString();
        // What the parser accepts, the conversion lays out.
        const auto score = ConvertToNewDocument(*doc, true);
        ASSERT_NE(score, nullptr) << path.toStdString();
        EXPECT_FALSE(score->Pages.empty()) << path.toStdString();
    }
    EXPECT_GT(read, 100);
    RecordProperty("imported", imported);
}

} // namespace
} // namespace corrieval
