#pragma once

#include <string_view>

namespace vornhale::readers {

/// The contest that the tags in an input file's name suggest ("REF" gives
/// "REFコンテスト(DX)", "IOTA" gives "IOTA Contest", ...), the first tag of the fixed order
/// that the upper-cased file name holds; empty when none does.
std::string_view contestOfFileName(std::string_view in_name);

} // namespace vornhale::readers
