#include "readers/CtestwinReader.h"

#include "failure/Failure.h"
#include "readers/OutputNames.h"
#include "readers/ZlogTextReader.h"
#include "settings/ProfileFile.h"
#include "text/Chars.h"
#include "text/LineFile.h"
#include "text/SjisText.h"

namespace vornhale::readers {

bool mnuOpen_Ctestwin_Click(const ReaderContext& ctx, CtestwinConverter& converter)
{
    InputState& run = ctx.run;
    ctx.trace.line("Private sub mnuOpen_Ctestwin_Click()");
    run.in_name = std::string(text::Cut_nul(run.in_name));
    ctx.trace.line("   in_name : " + run.in_name);
    if (text::upper(text::right(run.in_name, 4)) != ".LG8") {
        ctx.dialogs.message("Vornhale", kNotLg8Name, base::Dialogs::Icon::Exclamation);
        return false;
    }

    const std::filesystem::path exchangePath = ctx.strPath / kCtestwinExchangeFile;
    {
        settings::ProfileFile exchange(exchangePath);
        exchange.write(kCtestwinExchangeFile, kCtestwinInNameKey, run.in_name);
        exchange.write(kCtestwinExchangeFile, kCtestwinCountKey, run.ctestwin.ctestwin_qso_count);
        if (!exchange.save()) {
            throw failure::Failure(failure::PathFileAccess,
                                   "パス名が無効です。 " + exchangePath.string());
        }
    }

    // Unlike a fixed pause, the keys are read only once the converter has ended.
    converter.convert(ctx.strPath, ctx.trace);

    ctx.trace.line("   ini_read_ctestwin2zlog");
    const settings::ProfileFile exchange(exchangePath);
    run.ctestwin.lg8_name =
        std::string(text::Cut_nul(exchange.read(kCtestwinExchangeFile, kCtestwinInNameKey)));
    run.ctestwin.ctestwin_qso_count =
        std::string(text::Cut_nul(exchange.read(kCtestwinExchangeFile, kCtestwinCountKey)));

    run.ctestwin.ctestwin_all_name = replaceExtension(run.ctestwin.lg8_name, kCtestwinAllSuffix);
    run.setKind(InputKind::Lg8);
    ctx.options.set("Option2", "0");
    run.Label39 = run.ctestwin.ctestwin_qso_count + " 件";
    ctx.observer.label("Label39", run.Label39);
    FileOpen_ctestwin_lg8_sub(ctx);
    return true;
}

void FileOpen_ctestwin_lg8_sub(const ReaderContext& ctx)
{
    ctx.trace.line("Private sub FileOpen_ctestwin_lg8_sub()");
    ctx.trace.line("   chk_go");
}

OpenResult CtestwinReader::open(const ReaderContext& ctx, const std::filesystem::path&)
{
    const std::unique_ptr<CtestwinConverter> converter = configuredCtestwinConverter(ctx.strPath);
    return mnuOpen_Ctestwin_Click(ctx, *converter) ? OpenResult::Opened : OpenResult::Rejected;
}

long CtestwinReader::countOpened(const InputState& run) const
{
    return text::Count_lines(run.ctestwin.ctestwin_all_name);
}

void CtestwinReader::read(const ReaderContext& ctx)
{
    InputState& run = ctx.run;
    // The converted text is read; the letter is fixed, so its name does not matter, and
    // `a_2_t` gives `in_name` back the operator's `.lg8` when it is done.
    run.in_name = run.ctestwin.ctestwin_all_name;
    run.file_letter = "A";
    run.line_count = text::Count_lines(run.ctestwin.ctestwin_all_name);
    a_2_t(ctx);
}

} // namespace vornhale::readers
