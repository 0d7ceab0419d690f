#include "readers/OutputNames.h"

#include "base/DupListName.h"
#include "failure/Failure.h"
#include "text/Chars.h"

#include <filesystem>

namespace vornhale::readers {
namespace {

std::string extensionOf(std::string_view in_name)
{
    const std::string name = std::filesystem::path(std::string(in_name)).filename().string();
    const auto dot = name.rfind('.');
    return dot == std::string::npos ? std::string() : name.substr(dot + 1);
}

} // namespace

std::string replaceExtension(std::string_view in_name, std::string_view suffix)
{
    const std::string ext = extensionOf(in_name);
    const std::string dotExt = "." + ext;
    std::string out = text::replaceAll(in_name, dotExt, suffix);
    if (out == in_name) {
        out = text::replaceAllNoCase(in_name, dotExt, suffix);
    }
    if (out == in_name) {
        throw failure::Failure(failure::InvalidCall,
                           "出力ファイル名が入力ファイルと同じになります。 " + std::string(in_name));
    }
    return out;
}

std::string stemWithPoint(std::string_view in_name)
{
    const std::string ext = extensionOf(in_name);
    std::string stem(in_name.substr(0, in_name.size() - ext.size()));
    if (stem.empty() || stem.back() != '.') {
        stem += '.';
    }
    return stem;
}

std::string dupListName(std::string_view in_name)
{
    return base::dupListName(in_name);
}

OutputNames OutputNames::of(std::string_view in_name)
{
    OutputNames n;
    n.out_name_con0 = replaceExtension(in_name, "_c0.csv");
    n.out_name_ham0 = replaceExtension(in_name, "_h0.csv");
    n.out_name_con = replaceExtension(in_name, "_c.csv");
    n.out_name_ham = replaceExtension(in_name, "_h.csv");
    n.out_name_con_n = replaceExtension(in_name, "_cn.csv");
    n.out_name_ham_n = replaceExtension(in_name, "_hn.csv");
    n.dup_name = dupListName(in_name);
    n.Get_Mng_result_name = stemWithPoint(in_name) + "mng_rslt";
    return n;
}

} // namespace vornhale::readers
