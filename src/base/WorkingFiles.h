#pragma once

#include <filesystem>

namespace vornhale::base {

/// Names of the working files in the working folder (`drive_path`).
namespace working {
inline constexpr const char* zlog_1 = "zlog_1.txt";
inline constexpr const char* zlog_0 = "zlog_0.txt";
inline constexpr const char* zlog_01 = "zlog_01.txt";
inline constexpr const char* zlog_2 = "zlog_2.txt";
inline constexpr const char* sort_in = "Sort-in.csv";
inline constexpr const char* sort_out = "Sort-out.csv";
inline constexpr const char* semp_s = "semp_s.csv";
inline constexpr const char* semp_d = "semp_d.csv";
inline constexpr const char* temp_s = "temp_s.csv";
inline constexpr const char* temp_d = "temp_d.csv";
inline constexpr const char* uemp_s = "uemp_s.csv";
inline constexpr const char* uemp_d = "uemp_d.csv";
} // namespace working

} // namespace vornhale::base
