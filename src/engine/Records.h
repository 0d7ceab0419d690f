#pragma once

#include <string>
#include <vector>

namespace vornhale::engine {

/// The common QSO line that every reader writes to `zlog_1.txt`, thirteen fields.
struct QsoLine
{
    std::string q_year, q_month, q_day, q_time, q_call, q_rst_sent, q_rst_rcvd, q_band, q_mode,
        q_op, q_memo, q_freq, q_rcvd;

    static constexpr std::size_t kFields = 13;

    std::vector<std::string> fields() const
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

/// The enriched line that `bak_sep1` writes to `zlog_2.txt`, nineteen fields.
struct EnrichedLine
{
    std::string q_entity, q_date6, q_time, q_call, q_rst_sent, q_rst_rcvd, base_call, call_ext,
        band_or_freq, q_mode, reserved, dx_mark, dx_code, dx_name, dx_state, q_call2, q_op, q_memo,
        q_rcvd;

    static constexpr std::size_t kFields = 19;

    std::vector<std::string> fields() const
    {
        return {q_entity, q_date6,  q_time,  q_call,  q_rst_sent,   q_rst_rcvd, base_call,
                call_ext, band_or_freq, q_mode, reserved, dx_mark, dx_code,  dx_name,
                dx_state, q_call2,  q_op,    q_memo,  q_rcvd};
    }
    static EnrichedLine from(std::vector<std::string> f)
    {
        f.resize(kFields);
        EnrichedLine e;
        std::string* out[] = {&e.q_entity, &e.q_date6,  &e.q_time,       &e.q_call,   &e.q_rst_sent,
                              &e.q_rst_rcvd, &e.base_call, &e.call_ext,  &e.band_or_freq,
                              &e.q_mode,   &e.reserved, &e.dx_mark,      &e.dx_code,  &e.dx_name,
                              &e.dx_state, &e.q_call2,  &e.q_op,         &e.q_memo,   &e.q_rcvd};
        for (std::size_t i = 0; i < kFields; ++i) {
            *out[i] = std::move(f[i]);
        }
        return e;
    }
};

} // namespace vornhale::engine
