#pragma once

#include "base/QsoLine.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <string>
#include <vector>

namespace vornhale::engine {

using base::QsoLine;

/// The enriched line that `bak_sep1` writes to `zlog_2.txt`, nineteen fields.
struct EnrichedLine
{
    std::string q_entity, q_date6, q_time, q_call, q_rst_sent, q_rst_rcvd, base_call, call_ext,
        band_or_freq, q_mode, reserved, dx_mark, dx_code, dx_name, dx_state, q_call2, q_op, q_memo,
        q_rcvd;

    static constexpr std::size_t kFields = 19;

    std::array<std::string_view, kFields> fields() const
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

/// The sort record of `Sort-in.csv`, twenty-three fields.
struct SortRecord
{
    std::string call_key, call_ext, dx_code, reserved4, band_or_freq, mode, q_name, route, q_gl,
        reserved10, q_date6, q_time5, q_rst_sent, q_rst_rcvd, dx_name, rmks1, rmks2, mng_pad,
        rmks1_c, rmks2_c, rmks1_nomng, rmks2_nomng, q_call;

    static constexpr std::size_t kFields = 23;

    std::array<std::string_view, kFields> fields() const
    {
        return {call_key,   call_ext,   dx_code,  reserved4,  band_or_freq, mode,       q_name,
                route,      q_gl,       reserved10, q_date6,  q_time5,      q_rst_sent, q_rst_rcvd,
                dx_name,    rmks1,      rmks2,    mng_pad,    rmks1_c,      rmks2_c,    rmks1_nomng,
                rmks2_nomng, q_call};
    }
    static SortRecord from(std::vector<std::string> f)
    {
        f.resize(kFields);
        SortRecord r;
        std::string* out[] = {&r.call_key,   &r.call_ext,   &r.dx_code,    &r.reserved4,
                              &r.band_or_freq, &r.mode,     &r.q_name,     &r.route,
                              &r.q_gl,       &r.reserved10, &r.q_date6,    &r.q_time5,
                              &r.q_rst_sent, &r.q_rst_rcvd, &r.dx_name,    &r.rmks1,
                              &r.rmks2,      &r.mng_pad,    &r.rmks1_c,    &r.rmks2_c,
                              &r.rmks1_nomng, &r.rmks2_nomng, &r.q_call};
        for (std::size_t i = 0; i < kFields; ++i) {
            *out[i] = std::move(f[i]);
        }
        return r;
    }
};

/// The result record of `_h0.csv` and `_c0.csv`, twenty fields.
struct ResultRecord
{
    std::string call_key, call_ext, date8, time6, q_rst_sent, q_rst_rcvd, band_or_freq, mode,
        dx_code, q_gl, qsl3, q_name, dx_name, rmks1, rmks2, rmks1_c, rmks2_c, rmks1_nomng,
        rmks2_nomng, q_call;

    static constexpr std::size_t kFields = 20;

    std::array<std::string_view, kFields> fields() const
    {
        return {call_key, call_ext, date8,   time6,   q_rst_sent, q_rst_rcvd,  band_or_freq,
                mode,     dx_code,  q_gl,    qsl3,    q_name,     dx_name,     rmks1,
                rmks2,    rmks1_c,  rmks2_c, rmks1_nomng, rmks2_nomng, q_call};
    }
    static ResultRecord from(std::vector<std::string> f)
    {
        f.resize(kFields);
        ResultRecord r;
        std::string* out[] = {&r.call_key, &r.call_ext, &r.date8,   &r.time6,      &r.q_rst_sent,
                              &r.q_rst_rcvd, &r.band_or_freq, &r.mode, &r.dx_code, &r.q_gl,
                              &r.qsl3,     &r.q_name,   &r.dx_name, &r.rmks1,      &r.rmks2,
                              &r.rmks1_c,  &r.rmks2_c,  &r.rmks1_nomng, &r.rmks2_nomng, &r.q_call};
        for (std::size_t i = 0; i < kFields; ++i) {
            *out[i] = std::move(f[i]);
        }
        return r;
    }
};

/// The result record of a sort record, with the three values that the stages form for it.
inline ResultRecord resultOf(const SortRecord& r, std::string date8, std::string time6,
                             std::string qsl3)
{
    return ResultRecord{r.call_key,     r.call_ext,    std::move(date8), std::move(time6),
                        r.q_rst_sent,   r.q_rst_rcvd,  r.band_or_freq,   r.mode,
                        r.dx_code,      r.q_gl,        std::move(qsl3),  r.q_name,
                        r.dx_name,      r.rmks1,       r.rmks2,          r.rmks1_c,
                        r.rmks2_c,      r.rmks1_nomng, r.rmks2_nomng,    r.q_call};
}

/// "YY/MM/DD" from a six-digit date.
inline std::string date8Of(const std::string& q_date6)
{
    return q_date6.substr(0, 2) + "/" + q_date6.substr(std::min<std::size_t>(2, q_date6.size()), 2) +
           "/" + q_date6.substr(std::min<std::size_t>(4, q_date6.size()), 2);
}

} // namespace vornhale::engine
