#include "ui/ToolActions.h"

#include "engine/QsoBankMenu.h"
#include "engine/RunContext.h"
#include "failure/Failure.h"
#include "net/Http.h"
#include "session/Session.h"
#include "ui/WidgetLook.h"

#include <QDesktopServices>
#include <QUrl>

namespace vornhale::ui {
namespace {

ToolActions::UrlOpener& urlOpener()
{
    static ToolActions::UrlOpener opener = [](const QString& url) {
        return QDesktopServices::openUrl(QUrl(url));
    };
    return opener;
}

/// The key of `Vornhale_web.ini` [web] that holds the page of the manager list's keeper.
constexpr const char* kManagerListKey = "manager_list_page";

} // namespace

ToolActions::ToolActions(session::Session& session, base::Dialogs& dialogs,
                         base::RunObserver& observer,
                         std::function<void(const failure::Failure&)> fail)
    : m_session(session), m_dialogs(dialogs), m_observer(observer), m_fail(std::move(fail))
{
}

void ToolActions::setUrlOpener(UrlOpener opener)
{
    urlOpener() = std::move(opener);
}

std::filesystem::path ToolActions::mnuQSOBank_Click()
{
    engine::RunContext ctx{m_session.options(),
                           m_session.folder(),
                           m_session.trace(),
                           m_observer,
                           m_dialogs,
                           m_session.programState(),
                           m_session.reference().entities(),
                           {}};
    static_cast<readers::InputState&>(ctx.run) = m_session.input();
    try {
        return engine::mnuQSOBank_Click(ctx);
    } catch (const failure::Failure& f) {
        // The export's failures are noted and passed over: the program goes on.
        m_session.trace().line("エラー発生 ：　" + std::to_string(f.number()));
        m_session.trace().line("エラー内容 ：　" + f.description());
    }
    return {};
}

bool ToolActions::mnuGet_Entity_Click()
{
    engine::RunContext ctx{m_session.options(),
                           m_session.folder(),
                           m_session.trace(),
                           m_observer,
                           m_dialogs,
                           m_session.programState(),
                           m_session.reference().entities(),
                           {}};
    m_session.trace().line("Private Sub mnuGet_Entity_Click()");
    try {
        m_session.reference().prepareMasters(ctx);
    } catch (const failure::Failure& f) {
        if (m_fail) {
            m_fail(f);
        }
        return false;
    }
    return true;
}

QString ToolActions::mnuWeb_Manager_Click()
{
    const net::WebConfig web = net::WebConfig::load(m_session.folder().strPath);
    const QString url = qs(web.value(kManagerListKey));
    if (url.isEmpty()) {
        m_dialogs.message("",
                          std::string(kManagerListKey) +
                              " が Vornhale_web.ini の [web] に設定されていません。",
                          base::Dialogs::Icon::Information);
        return {};
    }
    urlOpener()(url);
    return url;
}

} // namespace vornhale::ui
