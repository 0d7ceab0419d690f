#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace vornhale::base {

/// The common QSO line that every reader writes to `zlog_1.txt`, thirteen fields.
struct QsoLine
{
    std::string q_year, q_month, q_day, q_time, q_call, q_rst_sent, q_rst_rcvd, q_band, q_mode,
        q_op, q_memo, q_freq, q_rcvd;

    static constexpr std::size_t kFields = 13;

    std::array<std::string_view, kFields> fields() const
    {
        return {q_year, q_month,  q_day,   q_time, q_call, q_rst_sent, q_rst_rcvd,
                q_band, q_mode,   q_op,    q_memo, q_freq, q_rcvd};
    }
    static QsoLine from(std::vector<std::string> f)
    {
        f.resize(kFields);
        return {std::move(f[0]), std::move(f[1]), std::move(f[2]),  std::move(f[3]),  std::move(f[4]),
                std::move(f[5]), std::move(f[6]), std::move(f[7]),  std::move(f[8]),  std::move(f[9]),
                std::move(f[10]), std::move(f[11]), std::move(f[12])};
    }
};

} // namespace vornhale::base
