#include "samples/GeneratorOptions.h"

#include <QCommandLineParser>

#include <algorithm>

namespace corrieval::samples {

const char* const GeneratorUsage =
    "  DIR                    the folder to fill\n"
    "  --instrument NAME      only this set: bp, ch, sp, spa, spc or spd (may be repeated)\n"
    "  --soundfont FILE       the General MIDI SoundFont to play (default: FluidR3 from Debian)\n"
    "  --pipe-low-a HZ        Low A of the Highland pipes and chanter (default 480)\n"
    "  --concert-a HZ         A of the smallpipes' keys (default 440)\n"
    "  --ratios R,R,...       the nine notes over Low A, Low G first (default\n"
    "                         8/9,1,9/8,5/4,4/3,3/2,5/3,7/4,2)\n"
    "  Files that exist are never overwritten.\n";

namespace {

constexpr double LowestA = 100;
constexpr double HighestA = 1000;

// "5/4" or "1.25"; 0 when it is neither.
double ParseRatio(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char('/'));
    bool numeratorOk = false;
    bool denominatorOk = true;
    const double numerator = parts.front().toDouble(&numeratorOk);
    const double denominator = parts.size() == 2 ? parts.back().toDouble(&denominatorOk) : 1;
    if (parts.size() > 2 || !numeratorOk || !denominatorOk || numerator <= 0 || denominator <= 0)
        return 0;
    return numerator / denominator;
}

QString ParseA(const QString& text, const QString& option, double& a)
{
    bool ok = false;
    a = text.toDouble(&ok);
    if (!ok || a < LowestA || a > HighestA)
        return QStringLiteral("%1 takes a frequency from %2 to %3 Hz, not '%4'")
            .arg(option)
            .arg(LowestA)
            .arg(HighestA)
            .arg(text);
    return {};
}

} // namespace

QString InstrumentName(Instrument instrument)
{
    return SampleFileName(instrument, 1).chopped(static_cast<qsizetype>(sizeof "1.wav" - 1));
}

QString ParseGeneratorArguments(const QStringList& args, GeneratorOptions& options)
{
    QCommandLineParser parser;
    const QCommandLineOption instrument(QStringLiteral("instrument"), {}, QStringLiteral("NAME"));
    const QCommandLineOption soundFont(QStringLiteral("soundfont"), {}, QStringLiteral("FILE"));
    const QCommandLineOption pipeLowA(QStringLiteral("pipe-low-a"), {}, QStringLiteral("HZ"));
    const QCommandLineOption concertA(QStringLiteral("concert-a"), {}, QStringLiteral("HZ"));
    const QCommandLineOption ratios(QStringLiteral("ratios"), {}, QStringLiteral("R,R,..."));
    parser.addOptions({instrument, soundFont, pipeLowA, concertA, ratios});
    if (!parser.parse(QStringList{QStringLiteral("make-samples")} + args))
        return parser.errorText();

    const QStringList folders = parser.positionalArguments();
    if (folders.size() > 1)
        return QStringLiteral("give one folder, not %1").arg(folders.size());
    options.Folder = folders.value(0);
    options.SoundFont = parser.value(soundFont);

    if (parser.isSet(instrument)) {
        options.Instruments.clear();
        for (const QString& name : parser.values(instrument)) {
            const auto all = GeneratorOptions().Instruments;
            const auto found = std::find_if(all.begin(), all.end(), [&](Instrument candidate) {
                return InstrumentName(candidate) == name;
            });
            if (found == all.end())
                return QStringLiteral("unknown instrument '%1' (bp, ch, sp, spa, spc or spd)").arg(name);
            if (std::find(options.Instruments.begin(), options.Instruments.end(), *found) ==
                options.Instruments.end())
                options.Instruments.push_back(*found);
        }
    }
    if (parser.isSet(pipeLowA)) {
        if (QString problem =
                ParseA(parser.value(pipeLowA), QStringLiteral("--pipe-low-a"), options.PipeLowA);
            !problem.isEmpty())
            return problem;
    }
    if (parser.isSet(concertA)) {
        if (QString problem = ParseA(parser.value(concertA), QStringLiteral("--concert-a"), options.ConcertA);
            !problem.isEmpty())
            return problem;
    }
    if (parser.isSet(ratios)) {
        const QStringList values = parser.value(ratios).split(QLatin1Char(','));
        if (values.size() != static_cast<qsizetype>(options.Ratios.size()))
            return QStringLiteral("--ratios takes nine ratios, Low G to High A, not %1").arg(values.size());
        for (std::size_t i = 0; i < options.Ratios.size(); ++i) {
            // Within two octaves of Low A either way, so that every note stays in the presets' range.
            options.Ratios[i] = ParseRatio(values[static_cast<qsizetype>(i)].trimmed());
            if (options.Ratios[i] < 0.25 || options.Ratios[i] > 4)
                return QStringLiteral("--ratios: '%1' is not a ratio from 1/4 to 4")
                    .arg(values[static_cast<qsizetype>(i)]);
        }
    }
    return {};
}

} // namespace corrieval::samples
