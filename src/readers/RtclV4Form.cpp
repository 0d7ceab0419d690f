#include "readers/RtclV4Form.h"

#include "failure/Failure.h"
#include "readers/RtclBinaryReader.h"
#include "readers/RtclZlogMakers.h"
#include "text/LineFile.h"

namespace vornhale::readers {

bool RtclV4Form::choose(const std::filesystem::path& path, InputKind kind)
{
    const bool before430 = kind == InputKind::LogV4;
    m_f_type = before430 ? "log_430mae" : "log_430ato";
    if (!rtclVersionProblem(text::readFileBytes(path), kind).empty()) {
        m_in_name.clear();
        m_kind = InputKind::None;
        m_lblIn_name = std::string(before430 ? kNotBefore430Label : kNotFrom430Label);
        return false;
    }
    m_in_name = path.string();
    m_kind = kind;
    m_lblIn_name = m_in_name;
    return true;
}

bool RtclV4Form::mnuVer_430mae(const std::filesystem::path& path)
{
    return choose(path, InputKind::LogV4);
}

bool RtclV4Form::mnuVer_430ato(const std::filesystem::path& path)
{
    return choose(path, InputKind::LogV430);
}

std::string RtclV4Form::make(bool all, base::Trace& trace) const
{
    if (m_kind == InputKind::None) {
        throw failure::Failure(failure::InvalidCall, "入力ファイルを指定して下さい");
    }
    return makeZlogFromBinary(m_in_name, m_kind, all ? ZlogForm::All : ZlogForm::Txt, trace);
}

std::string RtclV4Form::cmdMake_txt(base::Trace& trace) const
{
    return make(false, trace);
}

std::string RtclV4Form::cmdMake_all(base::Trace& trace) const
{
    return make(true, trace);
}

} // namespace vornhale::readers
