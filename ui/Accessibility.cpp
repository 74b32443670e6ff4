// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Accessibility.h"

#include "FileListView.h"
#include "FileRowView.h"

#include <QAccessibleWidget>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// The list's children are the rows on screen, in the order in which they are seen.
class FileListAccessible final : public QAccessibleWidget
{
public:
    explicit FileListAccessible(FileListView& list)
        : QAccessibleWidget(&list, QAccessible::List)
        , m_list(list)
    {}

    [[nodiscard]] int childCount() const override { return static_cast<int>(m_list.visibleRows().size()); }

    [[nodiscard]] QAccessibleInterface* child(int index) const override
    {
        const QList<FileRowView*> rows = m_list.visibleRows();
        return index >= 0 && index < rows.size() ? QAccessible::queryAccessibleInterface(rows[index]) : nullptr;
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override
    {
        return child != nullptr
                   ? static_cast<int>(m_list.visibleRows().indexOf(qobject_cast<FileRowView*>(child->object())))
                   : -1;
    }

private:
    FileListView& m_list;
};

QAccessibleInterface* accessibleFor(const QString& className, QObject* object)
{
    if (className == "lapsa::FileListView"_L1) {
        return new FileListAccessible(*static_cast<FileListView*>(object));
    }
    if (className == "lapsa::FileRowView"_L1) {
        return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::ListItem);
    }
    if (className == "lapsa::Sheet"_L1) {
        return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Dialog);
    }
    // What is named as a whole and steered by its parts: "Days" alone would not say of what.
    if (className == "lapsa::DurationEditor"_L1 || className == "lapsa::SegmentedControl"_L1) {
        return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Grouping);
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
