#include "reference/ProvinceMaster.h"

#include "failure/Failure.h"
#include "text/Chars.h"
#include "text/LineFile.h"

#include <algorithm>

namespace vornhale::reference {

namespace fs = std::filesystem;

namespace {

std::string pathText(const fs::path& p)
{
    return p.string();
}

} // namespace

void ProvinceMaster::read_prov_mas(const fs::path& mas_dat_name, base::Trace& trace)
{
    trace.line("mas_dat_name ： " + pathText(mas_dat_name));
    const std::vector<std::string> lines = text::readLines(mas_dat_name);

    std::vector<std::string> code, name;
    long lineNo = 0;
    for (const std::string& line : lines) {
        ++lineNo;
        if (text::startsWith(line, ";") || text::trim(line).empty()) {
            continue;
        }
        const std::size_t comma = line.find(',');
        if (comma == std::string::npos) {
            // A line with one text has no second part to take.
            throw failure::Failure(failure::SubscriptOutOfRange,
                               "インデックスが有効範囲にありません。 " + pathText(mas_dat_name) +
                                   " (" + std::to_string(lineNo) + " 行目: " + line + ")");
        }
        const std::size_t second = line.find(',', comma + 1);
        code.push_back(line.substr(0, comma));
        name.push_back(line.substr(comma + 1, second == std::string::npos ? std::string::npos
                                                                          : second - comma - 1));
    }

    m_kazu = code.size();
    code.resize(m_kazu + 1);
    name.resize(m_kazu + 1);
    m_code = std::move(code);
    m_name = std::move(name);
    m_loaded = true;
    index();
}

void ProvinceMaster::read_prov_dat_all(const fs::path& mas_dat_name, base::Trace& trace)
{
    trace.line("mas_dat_name ： " + pathText(mas_dat_name));
    const std::vector<std::string> lines = text::readLines(mas_dat_name);

    std::vector<std::string> code, name;
    std::size_t kazu = 0;
    for (const std::string& raw : lines) {
        if (text::startsWith(raw, ";")) {
            continue;
        }
        if (text::contains(raw, "end of file")) {
            break;
        }
        if (text::contains(text::upper(raw), ".DAT")) {
            continue;
        }
        kazu += 1 + static_cast<std::size_t>(std::count(raw.begin(), raw.end(), ','));

        std::string line = text::replaceAll(raw, "  ", " ");
        line = text::replaceAll(line, "　", " ");
        line = text::replaceAll(line, "\t", " ");
        const std::size_t blank = line.find(' ');
        const std::string codes(text::trim(line.substr(0, blank)));
        const std::string entryName(blank == std::string::npos
                                        ? std::string_view()
                                        : text::trim(std::string_view(line).substr(blank + 1)));
        for (const std::string& one : text::split(codes, ",")) {
            code.push_back(one);
            name.push_back(entryName);
        }
    }

    m_kazu = kazu;
    // The bound counts every comma of a data line, one in a name too; the places it leaves
    // over stay empty.
    code.resize(std::max(code.size(), m_kazu + 1));
    name.resize(code.size());
    m_code = std::move(code);
    m_name = std::move(name);
    m_loaded = true;
    index();
}

bool ProvinceMaster::read_prov_mas_dat(const fs::path& mas_dat_name, base::Trace& trace)
{
    const std::string ext = text::lower(mas_dat_name.extension().string());
    if (ext == ".mas") {
        read_prov_mas(mas_dat_name, trace);
        return true;
    }
    if (ext == ".dat") {
        read_prov_dat_all(mas_dat_name, trace);
        return true;
    }
    return false;
}

void ProvinceMaster::index()
{
    m_first.clear();
    m_first.reserve(m_code.size());
    // Only the places up to the bound take part, as in the walk; emplace keeps the first.
    const std::size_t last = std::min(m_kazu, m_code.size() - 1);
    for (std::size_t i = 0; i <= last; ++i) {
        m_first.emplace(m_code[i], i);
    }
}

std::string ProvinceMaster::get_prov_mas(std::string_view q_rcvd, bool keepDigits,
                                         std::string_view Prov_moji, int provinceForm) const
{
    std::string rcvd(q_rcvd);
    if (!keepDigits) {
        rcvd.erase(
            std::remove_if(rcvd.begin(), rcvd.end(), [](char c) { return text::isDigit(c); }),
            rcvd.end());
    }
    const std::string key(text::trim(rcvd));
    if (key.empty()) {
        return {};
    }
    const auto hit = m_first.find(key);
    if (hit == m_first.end()) {
        return {};
    }
    const std::string& found = m_name[hit->second];
    return provinceForm == 2 ? found : std::string(Prov_moji) + found;
}

void addProvinceText(std::string& rmks1, std::string& rmks2, std::string_view text,
                     int provinceRemark)
{
    if (text.empty()) {
        return;
    }
    if (provinceRemark == 0) {
        rmks1 = std::string(text::trim(rmks1 + " " + std::string(text)));
    } else if (provinceRemark == 1) {
        rmks2 = std::string(text::trim(rmks2 + " " + std::string(text)));
    }
}

ContNameChoice read_cont_name_zlo(std::string_view cont_name, const fs::path& strPath,
                                  std::string_view Prov_mas_dir, std::string_view Prov_mas_dat_dir,
                                  std::string_view current)
{
    ContNameChoice choice;
    choice.mas_dat_name = std::string(current);
    text::LineReader in(strPath / "cont_name_zlo.cfg");
    if (in.atEnd()) {
        return choice;
    }
    in.next(); // heading
    while (!in.atEnd()) {
        std::vector<std::string> items = text::split(in.next(), ",");
        items.resize(std::max<std::size_t>(items.size(), 4));
        if (items[0] != cont_name) {
            continue;
        }
        const std::string file = text::lower(items[1]);
        if (text::contains(file, ".mas")) {
            choice.mas_dat_name = std::string(Prov_mas_dir) + items[1];
        } else if (text::contains(file, ".dat")) {
            choice.mas_dat_name = std::string(Prov_mas_dat_dir) + items[1];
        }
        choice.Prov_auto_found = true;
        choice.thirdItem = items[2];
        choice.fourthItem = items[3];
        break;
    }
    return choice;
}

ProvMasterLabels provMasterLabels(bool zloInput, bool masterExists, bool Prov_auto_found)
{
    ProvMasterLabels labels;
    if (!zloInput) {
        labels.lblMas_dat_zlo = LabelText{};
        labels.read = true;
        return labels;
    }
    if (!masterExists) {
        labels.lblMas_dat_zlo =
            LabelText{"マスターファイル無し、Province 取得は不可能かも知れない", base::Colour::Red};
        labels.lblMas_dat = LabelText{"手動選択するか、レ点を消して下さい。", base::Colour::Red};
        labels.status = "マスター無し、手動選択するか、レ点を消して下さい。";
        return labels;
    }
    if (Prov_auto_found) {
        labels.lblMas_dat_zlo =
            LabelText{"cont_name_zlo.cfg より自動選択しました。", base::Colour::Green};
    }
    labels.read = true;
    return labels;
}

} // namespace vornhale::reference
