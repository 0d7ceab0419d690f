#include "manager/BatchManagerWalk.h"

#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/LineFile.h"

#include <cstdio>

namespace vornhale::manager {
namespace {

std::string rightAligned(long value, int width)
{
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%*ld", width, value);
    return buffer;
}

bool blank(std::string_view s)
{
    return text::trim(s).empty();
}

} // namespace

const std::array<WalkColumn, 6>& BatchManagerWalk::columns()
{
    static const std::array<WalkColumn, 6> kColumns{{{"   No", 600},
                                                     {" Calls", 2050},
                                                     {" search call", 2050},
                                                     {" Mng_Vornhale_full", 2500},
                                                     {" Web Saerch", 1650},
                                                     {" 転記 MNG", 1650}}};
    return kColumns;
}

BatchManagerWalk::BatchManagerWalk(const ManagerMaster& master, const WebManagerSearch* web,
                                   SharedManagerValues& shared, WalkOptions options,
                                   base::RunObserver& observer)
    : m_master(master), m_web(web), m_shared(shared), m_options(options), m_observer(observer)
{
}

void BatchManagerWalk::start(long total)
{
    m_rows.clear();
    m_number = 0;
    m_total = total;
    m_gridRows = kInitialGridRows;
}

std::string BatchManagerWalk::counterText(long number, long total)
{
    return rightAligned(number, 4) + " / " + rightAligned(total, 4);
}

void BatchManagerWalk::walkCall(std::string_view call)
{
    // The web's answer is the shared one, which this walk's search fills.
    std::string fileAnswer;
    m_shared.mng_web.clear();

    yieldToWindow();
    fileAnswer = m_master.MNG_lookup(call);
    std::string searched(call);
    if (m_options.Check1 && m_web != nullptr) {
        m_observer.label("Text2", call);
        yieldToWindow();
        WebSearchResult r = m_web->callDirectory(call, fileAnswer);
        m_shared.mng_web = r.mng_web;
        searched = r.Search_call;
        WebManagerSearch::show(r, m_observer);
    }

    ++m_number;
    if (m_number > kInitialGridRows - 1) {
        m_gridRows = m_number + 1;
    }
    WalkRow row;
    row.No = rightAligned(m_number, 6);
    row.Calls = " " + std::string(call);
    row.search_call = " " + searched;
    row.mng_file = " " + fileAnswer;
    row.mng_web = " " + m_shared.mng_web;
    row.transfer = " " + transferManager(fileAnswer);
    m_rows.push_back(std::move(row));
    if (m_rowWalked) {
        m_rowWalked(m_rows.back(), m_number, m_gridRows);
    }
    m_observer.label("Label2", counterText(m_number, m_total));
}

void BatchManagerWalk::yieldToWindow() const
{
    if (m_stopRequested && m_stopRequested()) {
        throw failure::ProgramEnd{"cmdStop during the manager walk"};
    }
}

std::string BatchManagerWalk::transferManager(const std::string& fileAnswer) const
{
    const std::string& web = m_shared.mng_web;
    if (!m_options.Check18) {
        return m_options.Check1 && !blank(web) ? web : fileAnswer;
    }
    // With the conversion's web search on, its order decides, over the values the
    // conversion shares: its last file answer and this walk's web answer.
    switch (m_options.Option10) {
    case 0:
        return web;
    case 1:
        return !m_shared.mng_file.empty() ? m_shared.mng_file : web;
    case 2:
        return !web.empty() ? web : m_shared.mng_file;
    default:
        return {};
    }
}

void BatchManagerWalk::read_zlog_all(const std::filesystem::path& in_name, std::string_view f_type)
{
    const std::vector<std::string> lines = text::readLines(in_name);
    if (lines.empty()) {
        throw failure::Failure(failure::InputPastEnd,
                               "ファイルの終わりを越えて入力しようとしました。");
    }
    start(static_cast<long>(lines.size()) - 1);
    for (std::size_t i = 1; i < lines.size(); ++i) {
        if (f_type == "all") {
            std::string line = lines[i];
            for (int k = 0; k < 11; ++k) {
                line = text::replaceAll(line, "  ", " ");
            }
            const std::vector<std::string> words = text::split(line, " ");
            if (words.size() < 3) {
                throw failure::Failure(failure::SubscriptOutOfRange,
                                       "インデックスが有効範囲にありません。 " + in_name.string() +
                                           " : " + lines[i]);
            }
            m_call = words[2];
        }
        walkCall(m_call);
    }
}

} // namespace vornhale::manager
