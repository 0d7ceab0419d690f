#pragma once

#include <string>
#include <string_view>

namespace vornhale::readers {

/// The names of a run's results, all derived from the input path.
struct OutputNames
{
    std::string out_name_ham0, out_name_con0, out_name_ham, out_name_con, out_name_ham_n,
        out_name_con_n, dup_name, Get_Mng_result_name;

    /// Each result name is `in_name` with every "." + extension replaced by its suffix;
    /// `dup_name` is `dupListName`, the file the duplicate list writes. Where that
    /// leaves the path unchanged (an extension written in another case), the replacement
    /// compares without regard to case. Throws Failure 5 when a result would still be the
    /// input itself, so that the operator's log is never overwritten.
    static OutputNames of(std::string_view in_name);
};

/// `in_name` with every "." + its extension replaced by `suffix`, as the output names are
/// formed (see OutputNames::of).
std::string replaceExtension(std::string_view in_name, std::string_view suffix);

/// The duplicate list's file: `in_name` up to and including its first point, then "dup"
/// (a point in a folder name cuts the name there); a path without a point gets ".dup".
std::string dupListName(std::string_view in_name);

/// Folder plus file name up to and including the point before the extension.
std::string stemWithPoint(std::string_view in_name);

} // namespace vornhale::readers
