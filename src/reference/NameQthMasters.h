#pragma once

#include "base/RunObserver.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vornhale::reference {

/// The folder value that switches a master off.
inline constexpr std::string_view kNotUsed = "使用しない";

/// `name_mas_ok` / `qth_mas_ok`: a master is switched on unless its folder is "使用しない".
inline bool masterFolderOn(std::string_view folder)
{
    return folder != kNotUsed;
}

/// One of the operator's call-sign masters, `name_mas.txt` or `qth_mas.txt`: Shift-JIS lines
/// of fixed byte columns behind two heading lines. Loaded once; the loaded flag stays set, so
/// replacing the file afterwards changes nothing.
class CallMaster
{
public:
    /// Which file: the columns behind the QTH differ.
    enum class Kind {
        Name, ///< `name_mas.txt`: remark in bytes 54 to 107
        Qth   ///< `qth_mas.txt`: grid locator in bytes 54 to 59
    };

    explicit CallMaster(Kind kind) : m_kind(kind) {}

    /// Reads the file: the first two lines are skipped (a file of fewer lines gives no
    /// records), then every line gives a record of byte columns 2-7 call, 8-19 name, 20-25
    /// code, 26-53 QTH and the last column, each trimmed. Sets the loaded flag.
    /// Throws Failure 53 when the file cannot be opened; the master is then unchanged.
    void load(const std::filesystem::path& file);

    /// The lookup: the call is trimmed and compared in upper case with the file's calls in
    /// upper case; the index of the first equal record from the top, -1 when none is. The call
    /// column holds 6 bytes, so a longer call finds nothing unless the file has its first 6
    /// bytes there.
    std::ptrdiff_t find(std::string_view call) const;

    bool loaded() const { return m_loaded; }
    /// `name_mas_kazu` / `qth_mas_kazu`: the number of records read.
    std::size_t kazu() const { return m_call.size(); }

    /// The arrays (`Name_call`, `Name_name`, `Name_code`, `Name_qth`, `Name_gl` or their
    /// `Qth_` counterparts), index 0 upward.
    const std::vector<std::string>& calls() const { return m_call; }
    const std::vector<std::string>& names() const { return m_name; }
    const std::vector<std::string>& codes() const { return m_code; }
    const std::vector<std::string>& qths() const { return m_qth; }
    const std::vector<std::string>& lasts() const { return m_last; }

private:
    Kind m_kind;
    bool m_loaded = false;
    std::vector<std::string> m_call, m_name, m_code, m_qth, m_last;
    // upper-case call -> first record holding it
    std::unordered_map<std::string, std::size_t> m_first;
};

/// The four texts a lookup gives, in the order of the procedures' arguments.
struct CallMasterHit
{
    std::string name, code, qth, last;
};

/// `read_name_mas_txt`: loads `name_mas.txt` into `master`, the status line reading
/// "　name_mas.txt を読込中 ．．．" meanwhile and cleared afterwards. Throws as `load`.
void read_name_mas_txt(CallMaster& master, const std::filesystem::path& file,
                       base::RunObserver& observer);
/// `read_qth_mas_txt`: the same for `qth_mas.txt` with "　qth_mas.txt を読込中 ．．．".
void read_qth_mas_txt(CallMaster& master, const std::filesystem::path& file,
                      base::RunObserver& observer);

/// `get_name_mas`: name, code, QTH and remark of `call`; all empty when it is not found.
void get_name_mas(const CallMaster& master, std::string_view call, std::string& name,
                  std::string& code, std::string& qth, std::string& remark);
/// `get_qth_mas`: name, code, QTH and grid locator of `call`, all empty when it is not
/// found; `qth_hit` becomes 1 on a hit and 0 otherwise.
void get_qth_mas(const CallMaster& master, std::string_view call, std::string& name,
                 std::string& code, std::string& qth, std::string& gl, int& qth_hit);

/// Whether the QTH master is passed over for a logged call: the call in upper case, without
/// "/QRPP" and then "/QRP", still holds a "/" (a portable station).
bool portableForQth(std::string_view q_call);

/// `cmdCount_Click`: shows "name_mas．txt の件数をカウント中 !!", then the line count of the
/// file (`Count_lines`, one above the number of lines when the last one ends in CR LF) less 2
/// followed by "　件", which it also returns.
std::string cmdCount_Click(const std::filesystem::path& file, base::RunObserver& observer);

} // namespace vornhale::reference
