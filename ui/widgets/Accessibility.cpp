// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Accessibility.h"

#include "Announcer.h"
#include "PushButton.h"
#include "Sheet.h"

#include <QAccessibleWidget>
#include <QStackedWidget>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// Named after its content; nothing outside it can be reached.
class SheetAccessible final : public QAccessibleWidget
{
public:
    explicit SheetAccessible(Sheet& sheet)
        : QAccessibleWidget(&sheet, QAccessible::Dialog)
        , m_sheet(sheet)
    {}

    [[nodiscard]] QString text(QAccessible::Text text) const override
    {
        return text == QAccessible::Name ? m_sheet.content().accessibleName() : QAccessibleWidget::text(text);
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.modal = true;
        return state;
    }

private:
    Sheet& m_sheet;
};

/// The button that Return presses wherever the focus is.
class DefaultButtonAccessible final : public QAccessibleWidget
{
public:
    explicit DefaultButtonAccessible(PushButton& button)
        : QAccessibleWidget(&button, QAccessible::Button)
        , m_button(button)
    {}

    [[nodiscard]] QString text(QAccessible::Text text) const override
    {
        const QString given = QAccessibleWidget::text(text);
        return text == QAccessible::Name && given.isEmpty() ? m_button.text() : given;
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.defaultButton = true;
        state.pressed = m_button.isDown();
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override
    {
        QStringList names = QAccessibleWidget::actionNames();
        if (m_button.isEnabled()) {
            names.prepend(pressAction());
        }
        return names;
    }

    void doAction(const QString& action) override
    {
        if (action == pressAction()) {
            m_button.animateClick(); // queued: it may open a dialog, which would keep the screen reader waiting
        } else {
            QAccessibleWidget::doAction(action);
        }
    }

private:
    PushButton& m_button;
};

/// Exposes only the visible page, in a container that screen readers skip: the toolkit's own interface would add an
/// object without a name.
class StackAccessible final : public QAccessibleWidget
{
public:
    explicit StackAccessible(QStackedWidget& stack)
        : QAccessibleWidget(&stack, QAccessible::Client)
        , m_stack(stack)
    {}

    [[nodiscard]] int childCount() const override { return m_stack.currentWidget() != nullptr ? 1 : 0; }

    [[nodiscard]] QAccessibleInterface* child(int index) const override
    {
        return index == 0 ? QAccessible::queryAccessibleInterface(m_stack.currentWidget()) : nullptr;
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override
    {
        return child != nullptr && child->object() == m_stack.currentWidget() ? 0 : -1;
    }

private:
    QStackedWidget& m_stack;
};

/// A window is a frame, a container with a name is a group of that name, and other containers are skipped.
class ContainerAccessible final : public QAccessibleWidget
{
public:
    explicit ContainerAccessible(QWidget* container)
        : QAccessibleWidget(container)
    {}

    [[nodiscard]] QAccessible::Role role() const override
    {
        if (widget()->isWindow()) {
            return QAccessible::Window;
        }
        // A sheet already has its content's name.
        const bool inSheet = qobject_cast<const Sheet*>(widget()->parentWidget()) != nullptr;
        return widget()->accessibleName().isEmpty() || inSheet ? QAccessible::Client : QAccessible::Grouping;
    }
};

QAccessibleInterface* accessibleFor(const QString& className, QObject* object)
{
    if (className == "lapsa::Sheet"_L1) {
        return new SheetAccessible(*static_cast<Sheet*>(object));
    }
    if (className == "lapsa::Announcer"_L1) {
        return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Notification);
    }
    if (className == "lapsa::PushButton"_L1) {
        auto& button = *static_cast<PushButton*>(object);
        return button.kind() == PushButton::Kind::Default ? new DefaultButtonAccessible(button) : nullptr;
    }
    if (className == "QStackedWidget"_L1) {
        return new StackAccessible(*static_cast<QStackedWidget*>(object));
    }
    if (className == "QWidget"_L1) {
        return new ContainerAccessible(static_cast<QWidget*>(object));
    }
    return nullptr;
}

} // namespace

void installAccessibility()
{
    [[maybe_unused]] static const bool once = [] {
        QAccessible::installFactory(accessibleFor);
        return true;
    }();
}

} // namespace lapsa
