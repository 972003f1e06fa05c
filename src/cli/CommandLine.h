#pragma once

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QStringList>
#include <QTextStream>

#include <functional>
#include <optional>

namespace corrieval {
class CCorrievalDoc;
}

namespace corrieval::cli {

// What a command's help says besides its options.
struct CommandHelp {
    const char* Name;     // the command word, "convert"
    const char* Synopsis; // each form after "corrieval-cli ", one a line
    const char* About;    // what the command does, in paragraphs separated by blank lines
};

// The command line of one command: its options, parsed, and the help it prints for --help or -h.
// Each option's help line is the description it is made with; the help lists the options in the
// order they were added, so an option added to the parser is in the help too.
class CommandLine {
public:
    explicit CommandLine(const CommandHelp& help);

    void Add(const QList<QCommandLineOption>& options);

    // Parses the arguments after the command word. Empty when the command is to run; otherwise
    // the help (on `out`) or the problem (on `err`) has been shown, and this is the exit status.
    std::optional<int> Parse(const QStringList& args, QTextStream& out, QTextStream& err);
    // Only parses, saying whether the arguments were understood.
    bool ParseSilently(const QStringList& args);

    const QCommandLineParser& Parser() const { return m_parser; }
    QStringList Files() const { return m_parser.positionalArguments(); }
    // The one tune the command reads, or nothing after saying what is wrong with the files given.
    std::optional<QString> OneTune(QTextStream& err) const;
    // Reports a problem found with the arguments: see ReportUsage.
    int Wrong(QTextStream& err, const QString& problem) const;

    QString Help() const;

private:
    const CommandHelp& m_help;
    QCommandLineParser m_parser;
    QList<QCommandLineOption> m_options;
    QCommandLineOption m_helpOption{{QStringLiteral("h"), QStringLiteral("help")},
                                    QStringLiteral("show this help and exit")};
};

// Runs a command that takes one tune and no options but --help, and prints what it finds in it:
// reads the tune and hands it to `print`, turning file problems into the one-line report.
int PrintFromTune(const CommandHelp& help, const QStringList& args, QTextStream& out, QTextStream& err,
                  const std::function<void(CCorrievalDoc&)>& print);

// What every command that reads a tune says about it.
extern const char* const TuneKinds;

// `text` wrapped at spaces into lines of at most 79 columns, each after `indent` spaces and ending
// in a line break.
QString Wrapped(const QString& text, int indent);

} // namespace corrieval::cli
