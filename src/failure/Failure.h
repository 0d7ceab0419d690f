#pragma once

#include <stdexcept>
#include <string>

namespace vornhale::failure {

/// The one failure of a run. Stages throw it where the failure happens; each front end
/// catches it once, writes it to the trace and ends. The numbers follow the familiar
/// BASIC run-time numbers so that a trace reads as operators expect.
class Failure : public std::runtime_error
{
public:
    Failure(int number, std::string description)
        : std::runtime_error(description), m_number(number), m_description(std::move(description))
    {
    }

    int number() const { return m_number; }
    const std::string& description() const { return m_description; }

    /// The procedure whose own handler reports the failure ("Public Sub Main2_bas()");
    /// empty for the handlers that name none.
    const std::string& handler() const { return m_handler; }
    Failure& withHandler(std::string handler)
    {
        m_handler = std::move(handler);
        return *this;
    }

private:
    int m_number;
    std::string m_description;
    std::string m_handler;
};

/// The program ends at once, on purpose and without a message: the operator cancelled a
/// question that has no way back, or the history database could not be opened. Nothing is
/// cleaned up; each front end ends where it catches it.
struct ProgramEnd
{
    std::string reason; ///< for the trace only
};

/// Run-time numbers used by the program.
inline constexpr int InvalidCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int TypeMismatch = 13;
inline constexpr int FileNotFound = 53;
inline constexpr int InputPastEnd = 62;
inline constexpr int PathNotFound = 76;
inline constexpr int PathFileAccess = 75;
inline constexpr int DeviceIo = 57;

} // namespace vornhale::failure
