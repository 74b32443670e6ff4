// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PanelAccessibility.h"

#include "FileListView.h"
#include "FileRowView.h"

#include <QAccessibleWidget>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// The arrow keys reach a row even while it is not a Tab stop.
class RowAccessible final : public QAccessibleWidget
{
public:
    explicit RowAccessible(QWidget* row)
        : QAccessibleWidget(row, QAccessible::ListItem)
    {}

    [[nodiscard]] QString text(QAccessible::Text text) const override
    {
        return text == QAccessible::Description ? static_cast<FileRowView*>(widget())->stateText()
                                                : QAccessibleWidget::text(text);
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.focusable = true;
        state.selectable = true;
        state.selected = static_cast<FileRowView*>(widget())->isSelected();
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override { return {setFocusAction()}; }
};

QAccessibleInterface* accessibleFor(const QString& className, QObject* object)
{
    if (className == "lapsa::FileListView"_L1) {
        return static_cast<FileListView*>(object)->makeAccessible();
    }
    if (className == "lapsa::FileRowView"_L1) {
        return new RowAccessible(static_cast<QWidget*>(object));
    }
    return nullptr;
}

} // namespace

void installPanelAccessibility()
{
    [[maybe_unused]] static const bool once = [] {
        QAccessible::installFactory(accessibleFor);
        return true;
    }();
}

} // namespace lapsa
