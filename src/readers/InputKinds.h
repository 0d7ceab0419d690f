#pragma once

#include "readers/InputKind.h"
#include "readers/ReaderContext.h"

#include <filesystem>
#include <memory>
#include <span>
#include <vector>
#include <string>
#include <string_view>

namespace vornhale::readers {

/// What an open ends in.
enum class OpenResult {
    Opened,     ///< a usable input: the kind, the names and the counts are set
    Rejected,   ///< the file's test refused it: `in_name` and `lblIn_name` hold the message
    ProgramEnds ///< the operator cancelled a question that ends the program
};

/// One input format: its open action and its reader. A reader writes each contact of the
/// input as a common QSO line to `zlog_1.txt` in the working folder.
class LogReader
{
public:
    virtual ~LogReader() = default;

    /// The open action once a file is chosen and `in_name` holds its path: the test of the
    /// file, the kind, and what the open learns of the log (contest, exchange analysis).
    /// A rejection stores its message in `in_name` and `lblIn_name`. The kind stays None
    /// when the action cannot place the file.
    virtual OpenResult open(const ReaderContext& ctx, const std::filesystem::path& path) = 0;

    /// The count the window shows for the input, plus one (lines of a text log, records of
    /// a binary log).
    virtual long countForLabel(const std::filesystem::path& path) const;

    /// The count the window shows once the open has run, plus one. By default
    /// `countForLabel` of `run.in_name`; a kind whose open exports or converts the log counts
    /// the lines of what it made.
    virtual long countOpened(const InputState& run) const { return countForLabel(run.in_name); }

    /// Whether the driver counts the input's lines before the reader runs.
    virtual bool countsLines() const { return true; }

    /// What the start of a conversion does with the input before the settings are stored
    /// (a binary log's header is read again). Throws failure::ProgramEnd when the operator's
    /// answer ends the program.
    virtual void beforeConversion(const ReaderContext& /*ctx*/) {}

    /// Reads the input into `zlog_1.txt`. Throws Failure as the format's rules say.
    virtual void read(const ReaderContext& ctx) = 0;
};

/// One row of the table of input kinds.
struct InputKindRow
{
    InputKind kind;
    std::string_view typeWord;   ///< the command line's `--type` word
    std::string_view name;       ///< what the kind is called in messages and help
    std::string_view extensions; ///< file extensions, upper case, ";"-separated (".ZLO")
    bool byExtension;            ///< a file name with one of the extensions opens as this kind
    std::unique_ptr<LogReader> (*make)();
};

/// Every input kind, in the order of the window's open menus.
std::span<const InputKindRow> inputKinds();

/// The row of `kind`; throws std::out_of_range for None.
const InputKindRow& rowOf(InputKind kind);

/// The row whose `--type` word is `word`, compared without regard to case; null if none.
const InputKindRow* rowOfTypeWord(std::string_view word);

/// The row a file name alone opens as (by extension, case-blind); null when no row takes
/// the name by itself.
const InputKindRow* rowOfFileName(const std::filesystem::path& path);

/// The rows that list the extension of `path` among theirs, also those that a name alone
/// does not open: what to offer when a name cannot be placed.
std::vector<const InputKindRow*> rowsListingExtension(const std::filesystem::path& path);

/// Every `--type` word, separated by ", ".
std::string typeWords();

/// What to tell about a name that no open action places by itself: the `--type` words, and
/// the kinds whose extensions include that of `path` (".cbr" is offered Cabrillo).
std::string typeHint(const std::filesystem::path& path);

/// A new reader of `kind`.
std::unique_ptr<LogReader> makeReader(InputKind kind);

} // namespace vornhale::readers
