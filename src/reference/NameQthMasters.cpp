#include "reference/NameQthMasters.h"

#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisText.h"

#include <initializer_list>

namespace vornhale::reference {

namespace fs = std::filesystem;

namespace {

std::string column(std::string_view line, long start, long width)
{
    return std::string(text::trim(text::Mid_sjis(line, start, width)));
}

void loadWithStatus(CallMaster& master, const fs::path& file, base::RunObserver& observer,
                    std::string_view status)
{
    observer.status(status, base::Colour::Black);
    master.load(file);
    observer.status("", base::Colour::Black);
}

} // namespace

void CallMaster::load(const fs::path& file)
{
    text::LineReader in(file);
    for (int heading = 0; heading < 2 && !in.atEnd(); ++heading) {
        in.next();
    }
    std::vector<std::string> call, name, code, qth, last;
    const long lines = text::Count_lines(file);
    const std::size_t size = lines > 2 ? static_cast<std::size_t>(lines - 2) : 0;
    for (auto* v : {&call, &name, &code, &qth, &last}) {
        v->reserve(size);
    }
    const long lastWidth = m_kind == Kind::Name ? 54 : 6;
    while (!in.atEnd()) {
        const std::string line = in.next();
        call.push_back(column(line, 2, 6));
        name.push_back(column(line, 8, 12));
        code.push_back(column(line, 20, 6));
        qth.push_back(column(line, 26, 28));
        last.push_back(column(line, 54, lastWidth));
    }

    m_call = std::move(call);
    m_name = std::move(name);
    m_code = std::move(code);
    m_qth = std::move(qth);
    m_last = std::move(last);
    m_first.clear();
    m_first.reserve(m_call.size());
    for (std::size_t i = 0; i < m_call.size(); ++i) {
        m_first.emplace(text::upper(m_call[i]), i);
    }
    m_loaded = true;
}

std::ptrdiff_t CallMaster::find(std::string_view call) const
{
    const auto hit = m_first.find(text::upper(text::trim(call)));
    return hit == m_first.end() ? -1 : static_cast<std::ptrdiff_t>(hit->second);
}

void read_name_mas_txt(CallMaster& master, const fs::path& file, base::RunObserver& observer)
{
    loadWithStatus(master, file, observer, "　name_mas.txt を読込中 ．．．");
}

void read_qth_mas_txt(CallMaster& master, const fs::path& file, base::RunObserver& observer)
{
    loadWithStatus(master, file, observer, "　qth_mas.txt を読込中 ．．．");
}

namespace {

bool lookup(const CallMaster& master, std::string_view call, std::string& name, std::string& code,
            std::string& qth, std::string& last)
{
    const std::ptrdiff_t i = master.find(call);
    if (i < 0) {
        name.clear();
        code.clear();
        qth.clear();
        last.clear();
        return false;
    }
    const auto at = static_cast<std::size_t>(i);
    name = master.names()[at];
    code = master.codes()[at];
    qth = master.qths()[at];
    last = master.lasts()[at];
    return true;
}

} // namespace

void get_name_mas(const CallMaster& master, std::string_view call, std::string& name,
                  std::string& code, std::string& qth, std::string& remark)
{
    lookup(master, call, name, code, qth, remark);
}

void get_qth_mas(const CallMaster& master, std::string_view call, std::string& name,
                 std::string& code, std::string& qth, std::string& gl, int& qth_hit)
{
    qth_hit = lookup(master, call, name, code, qth, gl) ? 1 : 0;
}

bool portableForQth(std::string_view q_call)
{
    std::string call = text::upper(q_call);
    call = text::replaceAll(call, "/QRPP", "");
    call = text::replaceAll(call, "/QRP", "");
    return text::contains(call, "/");
}

std::string cmdCount_Click(const fs::path& file, base::RunObserver& observer)
{
    observer.status("name_mas．txt の件数をカウント中 !!", base::Colour::Black);
    const std::string count = std::to_string(text::Count_lines(file) - 2) + "　件";
    observer.status(count, base::Colour::Black);
    return count;
}

} // namespace vornhale::reference
