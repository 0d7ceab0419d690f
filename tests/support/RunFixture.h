#pragma once

#include "base/ProgramFolder.h"
#include "base/Trace.h"
#include "engine/RunContext.h"
#include "reference/EntityLookup.h"
#include "settings/Options.h"
#include "support/RecordingFrontEnd.h"
#include "support/TestSupport.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/Record.h"

#include <memory>

namespace vornhale::test {

/// A program folder in a temporary folder and a run context over it, with default options,
/// a silent trace and recording front ends.
struct RunFixture
{
    TempDir dir;
    base::ProgramFolder folder = base::ProgramFolder::at(dir / "home");
    base::Trace trace;
    RecordingObserver observer;
    RecordingDialogs dialogs;
    engine::ProgramState program;
    reference::NoEntities noEntities;
    reference::EntityLookup* entities = &noEntities;
    std::unique_ptr<engine::RunContext> ctx;

    RunFixture() { folder.makeFolders(); }

    /// A fresh context over the program folder with these options.
    engine::RunContext& context(const settings::Options& options = settings::Options::defaults())
    {
        ctx = std::make_unique<engine::RunContext>(engine::RunContext{
            options, folder, trace, observer, dialogs, program, *entities, {}});
        return *ctx;
    }

    std::filesystem::path work(const char* name) const { return folder.drive_path / name; }

    /// The records of a working file, `fields` at a time.
    static std::vector<std::vector<std::string>> records(const std::filesystem::path& path,
                                                         std::size_t fields)
    {
        text::RecordReader reader(path);
        std::vector<std::vector<std::string>> out;
        while (!reader.atEnd()) {
            out.push_back(reader.fields(fields));
        }
        return out;
    }
};

/// Builds a fixed-column log line: each value placed at its byte column (from 1).
class ColumnLine
{
public:
    ColumnLine& at(std::size_t column, const std::string& value)
    {
        if (m_line.size() < column - 1 + value.size()) {
            m_line.resize(column - 1 + value.size(), ' ');
        }
        m_line.replace(column - 1, value.size(), value);
        return *this;
    }
    const std::string& str() const { return m_line; }

private:
    std::string m_line;
};

} // namespace vornhale::test
