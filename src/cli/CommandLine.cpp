#include "cli/CommandLine.h"

#include "cli/Commands.h"
#include "cli/InputReader.h"
#include "model/CorrievalDoc.h"

namespace corrieval::cli {

namespace {

constexpr int kLineWidth = 79;
// Where an option's help line starts, after its names.
constexpr int kOptionColumn = 24;

// "-h, --help" or "--dpi N".
QString OptionLabel(const QCommandLineOption& option)
{
    QStringList names;
    for (const QString& name : option.names())
        names << (name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name;
    QString label = QStringLiteral("  ") + names.join(QStringLiteral(", "));
    if (!option.valueName().isEmpty())
        label += QLatin1Char(' ') + option.valueName();
    return label;
}

// Qt's "Unknown option 'colour'." as the tool's other problems read: "unknown option 'colour'".
QString AsProblem(QString text)
{
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    if (!text.isEmpty())
        text[0] = text[0].toLower();
    return text;
}

} // namespace

const char* const TuneKinds =
    "A tune is a score (.skb), a template (.skt), a Glenmarch tune (.glm) or a Bagpiper "
    "Music Writer tune (.bww, .bmw); the last three are imported into a new score "
    "first, their messages on standard error one a line after the file's name.";

QString Wrapped(const QString& text, int indent)
{
    const QString margin(indent, QLatin1Char(' '));
    QString wrapped;
    QString line;
    for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (!line.isEmpty() && indent + line.size() + 1 + word.size() > kLineWidth) {
            wrapped += margin + line + QLatin1Char('\n');
            line.clear();
        }
        line += (line.isEmpty() ? QString() : QStringLiteral(" ")) + word;
    }
    return wrapped + margin + line + QLatin1Char('\n');
}

CommandLine::CommandLine(const CommandHelp& help) : m_help(help)
{
    m_parser.addOption(m_helpOption);
}

void CommandLine::Add(const QList<QCommandLineOption>& options)
{
    m_parser.addOptions(options);
    m_options += options;
}

bool CommandLine::ParseSilently(const QStringList& args)
{
    // The parser takes the program's name first.
    return m_parser.parse(QStringList{QLatin1String(m_help.Name)} + args);
}

std::optional<int> CommandLine::Parse(const QStringList& args, QTextStream& out, QTextStream& err)
{
    const bool understood = ParseSilently(args);
    // Asked for, the help wins over whatever else is wrong with the line.
    if (m_parser.isSet(m_helpOption)) {
        out << Help() << Qt::flush;
        return Success;
    }
    if (!understood)
        return Wrong(err, AsProblem(m_parser.errorText()));
    return std::nullopt;
}

std::optional<QString> CommandLine::OneTune(QTextStream& err) const
{
    const QStringList files = Files();
    if (files.size() != 1) {
        Wrong(err, QStringLiteral("%1 takes one tune").arg(QLatin1String(m_help.Name)));
        return std::nullopt;
    }
    if (const QString problem = InputProblem(files.front()); !problem.isEmpty()) {
        Wrong(err, problem);
        return std::nullopt;
    }
    return files.front();
}

int CommandLine::Wrong(QTextStream& err, const QString& problem) const
{
    return ReportUsage(err, QLatin1String(m_help.Name), problem);
}

QString CommandLine::Help() const
{
    QString help;
    QString lead = QStringLiteral("usage: ");
    for (const QString& form : QString::fromUtf8(m_help.Synopsis).split(QLatin1Char('\n'))) {
        help += lead + QStringLiteral("corrieval-cli ") + form + QLatin1Char('\n');
        lead.fill(QLatin1Char(' '));
    }
    for (const QString& paragraph : QString::fromUtf8(m_help.About).split(QStringLiteral("\n\n")))
        help += QLatin1Char('\n') + Wrapped(paragraph, 0);
    help += QStringLiteral("\nOptions:\n");
    for (const QCommandLineOption& option : m_options + QList{m_helpOption}) {
        const QString label = OptionLabel(option);
        const QString description = Wrapped(option.description(), kOptionColumn);
        if (label.size() < kOptionColumn)
            help += label.leftJustified(kOptionColumn) + description.mid(kOptionColumn);
        else
            help += label + QLatin1Char('\n') + description;
    }
    return help;
}

int PrintFromTune(const CommandHelp& help, const QStringList& args, QTextStream& out, QTextStream& err,
                  const std::function<void(CCorrievalDoc&)>& print)
{
    CommandLine line(help);
    if (const auto status = line.Parse(args, out, err))
        return *status;
    const auto tune = line.OneTune(err);
    if (!tune)
        return BadCommandLine;
    return GuardFileErrors(err, [&] {
        print(*ReadInput(*tune));
        out.flush();
        return static_cast<int>(Success);
    });
}

} // namespace corrieval::cli
