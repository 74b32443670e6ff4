// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"
#include "FileRowView.h"
#include "ItemWorkSource.h"
#include "LapsaStore.h"
#include "TextLabel.h"
#include "WorkTexts.h"

#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>
#include <QQueue>

#include <algorithm>

namespace lapsa {

namespace {

/// A screen reader that goes through the whole list needs one item after the other. Older ones are deleted, and made
/// again on demand.
constexpr qsizetype mostItems = 512;

} // namespace

/// An item without a row, identified by its id, so that it stays the same item when others are added or removed.
class FileListView::AccessibleItem final : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    AccessibleItem(FileListView& list, qsizetype index)
        : m_list(&list)
        , m_id(list.m_filter.items()[index].id)
        , m_index(index)
    {}

    [[nodiscard]] qsizetype index() const
    {
        m_index = m_list != nullptr
                      ? std::max<qsizetype>(m_list->m_filter.indexOf(m_id, std::max<qsizetype>(m_index, 0)), -1)
                      : -1;
        return m_index;
    }

    [[nodiscard]] bool isValid() const override { return index() >= 0; }

    [[nodiscard]] QObject* object() const override { return nullptr; }

    [[nodiscard]] QWindow* window() const override { return parent() != nullptr ? parent()->window() : nullptr; }

    [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }

    [[nodiscard]] QAccessibleInterface* parent() const override
    {
        return m_list != nullptr ? QAccessible::queryAccessibleInterface(m_list) : nullptr;
    }

    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }

    [[nodiscard]] int childCount() const override { return 0; }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }

    [[nodiscard]] QString text(QAccessible::Text text) const override
    {
        if (!isValid()) {
            return {};
        }
        const LapsaItem& item = m_list->m_filter.items()[m_index];
        switch (text) {
        case QAccessible::Name:
            return item.displayName;
        case QAccessible::Description:
            return m_list->stateOf(item);
        default:
            return {};
        }
    }

    void setText(QAccessible::Text, const QString&) override {}

    [[nodiscard]] QRect rect() const override
    {
        if (!isValid()) {
            return {};
        }
        const int top = static_cast<int>(m_index) * m_list->pitch() - m_list->m_bar->value();
        return {m_list->mapToGlobal(QPoint(0, top)), QSize(m_list->width(), FileRowView::rowHeight())};
    }

    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state;
        state.focusable = true;
        state.selectable = true;
        state.selected = m_list != nullptr && m_list->m_selection.ids().contains(m_id);
        state.offscreen = true;
        state.invalid = !isValid();
        return state;
    }

    [[nodiscard]] void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }

    [[nodiscard]] QStringList actionNames() const override { return {setFocusAction()}; }

    void doAction(const QString& action) override
    {
        if (action == setFocusAction() && isValid()) {
            m_list->moveCurrent(m_index, Qt::TabFocusReason);
        }
    }

    [[nodiscard]] QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QPointer<FileListView> m_list;
    QString m_id;
    /// Where it was last found; the search starts here.
    mutable qsizetype m_index;
};

/// The list with all its items in order. Items on screen are represented by their rows, others are created on demand;
/// the only child of an empty list is its text.
class FileListView::Accessible final : public QAccessibleWidget
{
public:
    explicit Accessible(FileListView& list)
        : QAccessibleWidget(&list, QAccessible::List)
        , m_list(list)
    {}

    Accessible(const Accessible&) = delete;
    Accessible& operator=(const Accessible&) = delete;

    ~Accessible() override
    {
        for (const auto& [item, id] : std::as_const(m_order)) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }

    [[nodiscard]] int childCount() const override { return std::max(static_cast<int>(m_list.count()), 1); }

    [[nodiscard]] QAccessibleInterface* child(int index) const override
    {
        if (m_list.count() == 0 && index == 0) {
            return QAccessible::queryAccessibleInterface(m_list.m_empty);
        }
        if (index < 0 || index >= m_list.count()) {
            return nullptr;
        }
        const auto row = std::ranges::find(m_list.m_rows, index, &Row::index);
        return row != m_list.m_rows.end() ? QAccessible::queryAccessibleInterface(row->view) : item(index);
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override
    {
        if (child == nullptr) {
            return -1;
        }
        if (const auto* const item = dynamic_cast<const AccessibleItem*>(child)) {
            return static_cast<int>(item->index());
        }
        if (child->object() == m_list.m_empty) {
            return m_list.count() == 0 ? 0 : -1;
        }
        const auto row = std::ranges::find(m_list.m_rows, child->object(), &Row::view);
        return row != m_list.m_rows.end() ? static_cast<int>(row->index) : -1;
    }

    [[nodiscard]] QString text(QAccessible::Text text) const override
    {
        const bool explains = text == QAccessible::Description && m_list.count() == 0;
        return explains ? m_list.m_empty->text() : QAccessibleWidget::text(text);
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.focusable = true;
        return state;
    }

private:
    [[nodiscard]] QAccessibleInterface* item(int index) const
    {
        const QString& id = m_list.m_filter.items()[index].id;
        for (const auto& [known, interface] : std::as_const(m_order)) {
            if (known == id) {
                return QAccessible::accessibleInterface(interface);
            }
        }
        if (m_order.size() >= mostItems) {
            QAccessible::deleteAccessibleInterface(m_order.dequeue().second);
        }
        auto* const made = new AccessibleItem(m_list, index);
        m_order.enqueue({id, QAccessible::registerAccessibleInterface(made)});
        return made;
    }

    FileListView& m_list;
    /// The most recently requested items, oldest first.
    mutable QQueue<std::pair<QString, QAccessible::Id>> m_order;
};

QString FileListView::stateOf(const LapsaItem& item) const
{
    const std::optional<ItemWork> work = m_rowEnvironment.work.workOn(item.id);
    return work ? workTexts::textFor(*work) : FileRowView::remainingText(item, m_now);
}

QAccessibleInterface* FileListView::makeAccessible()
{
    return new Accessible(*this);
}

} // namespace lapsa
