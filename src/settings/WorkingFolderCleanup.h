#pragma once

#include "base/Dialogs.h"
#include "base/ProgramFolder.h"
#include "base/Trace.h"
#include "settings/SettingsFiles.h"

namespace vornhale::settings {

/// Deletes the working files of a former run, each traced first, then stores the settings;
/// `exe_rec` grows by one, and every tenth time the operator is asked for a report.
/// With `deleteFiles` false only the settings part runs.
void tmp_file_Del(const base::ProgramFolder& folder, base::Trace& trace,
                  SettingsFiles* files, base::Dialogs& dialogs, bool deleteFiles = true);

} // namespace vornhale::settings
