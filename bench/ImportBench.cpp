// Importing BWW tunes as the command-line tool does: the file's bytes read into the older model and
// converted into a new score. "items_per_second" is files imported a second. The bundled example
// tune alone, then every file of the BWW corpus (CORRIEVAL_BWW_CORPUS, else ../shared/corpus/bww
// beside the repository) when there is one: real files, damaged ones among them, which cost what
// they cost to refuse.

#include "formats/bww/BwwFile.h"
#include "formats/glenmarch/GlenmarchConversion.h"
#include "formats/glenmarch/PipeDoc.h"
#include "model/CorrievalDoc.h"
#include "model/Messages.h"
#include "platform/MovementDefinitions.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <benchmark/benchmark.h>
#include <vector>

namespace {

using namespace corrieval;

// A damaged file of the corpus would otherwise print its message on every iteration.
class SilentMessages : public MessageSink {
public:
    SilentMessages() : m_previous(SetMessageSink(this)) {}
    ~SilentMessages() override { SetMessageSink(m_previous); }
    SilentMessages(const SilentMessages&) = delete;
    SilentMessages& operator=(const SilentMessages&) = delete;

    MessageAnswer Show(const QString&, MessageKind kind) override
    {
        return kind == MessageKind::OkCancel ? MessageAnswer::Cancel
               : kind == MessageKind::YesNo  ? MessageAnswer::No
                                             : MessageAnswer::Ok;
    }

private:
    MessageSink* m_previous;
};

QString CorpusDir()
{
    if (const QString dir = qEnvironmentVariable("CORRIEVAL_BWW_CORPUS"); !dir.isEmpty())
        return dir;
    return QDir(QStringLiteral(CORRIEVAL_SOURCE_DIR)).filePath(QStringLiteral("../shared/corpus/bww"));
}

std::vector<QByteArray> ReadFiles(const QStringList& paths)
{
    std::vector<QByteArray> files;
    for (const QString& path : paths) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            files.push_back(file.readAll());
    }
    return files;
}

// Each iteration imports every file once, in the reading given.
void ImportFiles(benchmark::State& state, const std::vector<QByteArray>& files,
                 bww::Reading reading = bww::Reading::Full)
{
    const SilentMessages silent;
    // As the tool does before its first conversion, so that movements are built from definitions.
    InstallMovementDefinitions();
    std::size_t refused = 0;
    for (auto _ : state) {
        refused = 0;
        for (const QByteArray& bytes : files) {
            bww::ImportLog log;
            log.Mode = reading;
            if (const auto tune = ReadBww(bytes, log))
                benchmark::DoNotOptimize(ConvertToNewDocument(*tune, true));
            else
                ++refused;
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(files.size()));
    state.counters["files"] = static_cast<double>(files.size());
    state.counters["refused"] = static_cast<double>(refused);
}

void ImportExampleTune(benchmark::State& state)
{
    const auto files = ReadFiles({QStringLiteral(CORRIEVAL_EXAMPLE_BWW)});
    if (files.empty()) {
        state.SkipWithError("the bundled example tune could not be read");
        return;
    }
    ImportFiles(state, files);
}
BENCHMARK(ImportExampleTune)->Unit(benchmark::kMillisecond);

// The corpus read in full, and strictly, as the older program read it: the strict reading refuses
// about half the files after reading part of them, so its rate is no measure of the full one.
void ImportCorpus(benchmark::State& state, bww::Reading reading)
{
    QStringList paths;
    QDirIterator found(CorpusDir(), {QStringLiteral("*.bww"), QStringLiteral("*.bmw")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (found.hasNext())
        paths << found.next();
    if (paths.isEmpty()) {
        state.SkipWithError(qPrintable(QStringLiteral("no BWW corpus at %1").arg(CorpusDir())));
        return;
    }
    paths.sort(); // the same order on every run
    ImportFiles(state, ReadFiles(paths), reading);
}
BENCHMARK_CAPTURE(ImportCorpus, Full, bww::Reading::Full)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ImportCorpus, Strict, bww::Reading::Strict)->Unit(benchmark::kMillisecond);

} // namespace
