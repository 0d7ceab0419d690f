#include "ui/OptionBinder.h"

#include "session/OptionCatalog.h"
#include "session/OptionModel.h"
#include "ui/WidgetLook.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

namespace vornhale::ui {

OptionBinder::OptionBinder(session::OptionModel& model, QObject* parent)
    : QObject(parent), m_model(model)
{
    m_subscription = m_model.subscribe([this](std::string_view name) { refresh(name); });
}

OptionBinder::~OptionBinder()
{
    m_model.unsubscribe(m_subscription);
}

void OptionBinder::bind(std::string_view name, Kind kind, QObject* target)
{
    const auto it = m_bindings.emplace(std::string(name), Binding{kind, target});
    if (auto* widget = qobject_cast<QWidget*>(target); widget && widget->objectName().isEmpty()) {
        widget->setObjectName(objectNameOf(name));
    }
    if (auto* action = qobject_cast<QAction*>(target); action && action->objectName().isEmpty()) {
        action->setObjectName(objectNameOf(name));
    }
    show(it->first, it->second);
}

void OptionBinder::afterUserAction(std::string_view name)
{
    refresh(name);
    refresh("lblShori");
    Q_EMIT userAction(qs(name));
}

void OptionBinder::tick(QAbstractButton* box, std::string_view name)
{
    box->setCheckable(true);
    bind(name, Kind::Tick, box);
    const std::string n(name);
    connect(box, &QAbstractButton::clicked, this, [this, n] {
        m_model.clickTick(n);
        afterUserAction(n);
    });
}

void OptionBinder::member(QRadioButton* button, std::string_view group, int index)
{
    // The model keeps the members exclusive; the buttons only show what it holds.
    button->setAutoExclusive(false);
    const std::string name = std::string(group) + "(" + std::to_string(index) + ")";
    bind(name, Kind::Member, button);
    const std::string g(group);
    connect(button, &QAbstractButton::clicked, this, [this, g, index] {
        m_model.chooseMember(g, index);
        for (const session::OptionEntry* e : session::OptionCatalog::members(g)) {
            refresh(e->controlName());
        }
        afterUserAction(g + "(" + std::to_string(index) + ")");
    });
}

void OptionBinder::text(QLineEdit* box, std::string_view name)
{
    bind(name, Kind::Text, box);
    const std::string n(name);
    connect(box, &QLineEdit::textEdited, this, [this, n](const QString& t) {
        m_model.editText(n, utf8(t));
        afterUserAction(n);
    });
}

void OptionBinder::combo(QComboBox* box, std::string_view name)
{
    bind(name, Kind::Combo, box);
    const std::string n(name);
    connect(box, &QComboBox::textActivated, this, [this, n](const QString& t) {
        m_model.editText(n, utf8(t));
        afterUserAction(n);
    });
}

void OptionBinder::label(QLabel* label, std::string_view name)
{
    bind(name, Kind::Label, label);
}

void OptionBinder::button(QAbstractButton* button, std::string_view name,
                          std::function<void()> extra)
{
    bind(name, Kind::Button, button);
    const std::string n(name);
    connect(button, &QAbstractButton::clicked, this, [this, n, extra] {
        m_model.clickButton(n);
        if (extra) {
            extra();
        }
        afterUserAction(n);
    });
}

void OptionBinder::frame(QGroupBox* frame, std::string_view name)
{
    bind(name, Kind::Frame, frame);
}

void OptionBinder::action(QAction* action, std::string_view name, std::function<void()> handler)
{
    const session::OptionEntry* e = session::OptionCatalog::find(name);
    const bool menuTick = e != nullptr && e->kind == session::OptionKind::MenuTick;
    action->setCheckable(menuTick);
    bind(name, Kind::Action, action);
    const std::string n(name);
    connect(action, &QAction::triggered, this, [this, n, menuTick, handler] {
        if (menuTick) {
            m_model.clickButton(n);
        }
        if (handler) {
            handler();
        }
        afterUserAction(n);
    });
}

void OptionBinder::state(QWidget* widget, std::string_view name)
{
    bind(name, Kind::State, widget);
}

void OptionBinder::refreshAll()
{
    // The status line is left alone: a run's last text stands until the next change.
    for (const auto& [name, binding] : m_bindings) {
        if (name != "lblShori") {
            show(name, binding);
        }
    }
}

void OptionBinder::refresh(std::string_view name)
{
    const auto [first, last] = m_bindings.equal_range(name);
    for (auto it = first; it != last; ++it) {
        show(it->first, it->second);
    }
}

void OptionBinder::show(const std::string& name, const Binding& binding)
{
    QObject* target = binding.target.data();
    if (target == nullptr) {
        return;
    }
    const session::ControlState& c = m_model.control(name);
    if (auto* action = qobject_cast<QAction*>(target)) {
        action->setEnabled(c.enabled);
        if (action->isCheckable()) {
            action->setChecked(c.on);
        }
        return;
    }
    auto* widget = qobject_cast<QWidget*>(target);
    if (widget == nullptr) {
        return;
    }
    widget->setEnabled(c.enabled);
    if (!c.toolTip.empty()) {
        widget->setToolTip(qs(c.toolTip));
    }
    switch (binding.kind) {
    case Kind::Tick:
    case Kind::Member: {
        auto* b = static_cast<QAbstractButton*>(widget);
        b->setChecked(c.on);
        if (!c.caption.empty()) {
            b->setText(qs(c.caption));
        }
        setCaptionColour(b, c.colour);
        break;
    }
    case Kind::Text: {
        auto* box = static_cast<QLineEdit*>(widget);
        const QString t = qs(c.text);
        if (box->text() != t) {
            const int cursor = box->cursorPosition();
            box->setText(t);
            box->setCursorPosition(std::min(cursor, static_cast<int>(t.size())));
        }
        setCaptionColour(box, c.colour);
        break;
    }
    case Kind::Combo: {
        auto* box = static_cast<QComboBox*>(widget);
        const QString t = qs(c.text);
        if (box->findText(t) < 0 && !t.isEmpty()) {
            box->addItem(t);
        }
        box->setCurrentIndex(box->findText(t));
        break;
    }
    case Kind::Label: {
        auto* l = static_cast<QLabel*>(widget);
        l->setText(qs(c.caption));
        setCaptionColour(l, c.colour);
        break;
    }
    case Kind::Button:
        if (!c.caption.empty()) {
            static_cast<QAbstractButton*>(widget)->setText(qs(c.caption));
        }
        break;
    case Kind::Frame:
        if (!c.caption.empty()) {
            static_cast<QGroupBox*>(widget)->setTitle(qs(c.caption));
        }
        break;
    case Kind::Action:
    case Kind::State:
        break;
    }
}

} // namespace vornhale::ui
