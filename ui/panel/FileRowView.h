// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ItemWork.h"
#include "LapsaItem.h"
#include "RowEnvironment.h"
#include "Time.h"

#include <QColor>
#include <QLinearGradient>
#include <QWidget>

#include <array>
#include <optional>

class QBoxLayout;
class QMenu;

namespace lapsa {

class ElidedLabel;
class FileIconView;
class RowIconButton;
class WorkBar;

/// One item of the list: icon, name, remaining time, four buttons and a context menu. It shows a copy of the item and
/// passes every action on to the store.
class FileRowView final : public QWidget
{
    Q_OBJECT

public:
    explicit FileRowView(const RowEnvironment& environment, QWidget* parent = nullptr);

    /// Shows an item, which may be a different one than before.
    void setItem(const LapsaItem& item);

    [[nodiscard]] const LapsaItem& item() const { return m_item; }

    /// The time from which the remaining time is counted, the same for every row.
    void setNow(TimePoint now);

    /// What a lane is doing with the item's file, if anything: it is shown in place of the remaining time.
    void setWork(const std::optional<ItemWork>& work);

    [[nodiscard]] const std::optional<ItemWork>& work() const { return m_work; }

    /// What the row says of the item's state at the moment.
    [[nodiscard]] QString stateText() const;
    /// The remaining time in whole minutes, rounded up and at least one, or a text that the item is locked.
    [[nodiscard]] static QString remainingText(const LapsaItem& item, TimePoint now);
    /// The height of every row at the current text size.
    [[nodiscard]] static int rowHeight();

    /// Fills `menu` with the actions for the item's file, as far as its kind is known.
    void fillContextMenu(QMenu& menu);

    /// Whether Tab stops here and at the buttons; true only for the list's current row. A click focuses none of them:
    /// the list moves the focus.
    void setTabStop(bool stop);

    /// How strongly a row is drawn while its disk does not answer, apart from its text and buttons.

    /// How strongly the row is lit, 0 to 1.
    void setLight(double strength);

    [[nodiscard]] double light() const { return m_light; }

    void setSelected(bool selected);

    [[nodiscard]] bool isSelected() const { return m_selected; }

signals:
    void timeSheetRequested();
    /// The row's menu is about to open; others may add to it.
    void menuFilled(QMenu& menu);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    void makeButtons();
    void deleteNow();
    void arrange();
    void refresh();
    void refreshRemaining();
    void showKind();
    void refreshWork();
    [[nodiscard]] bool isWorkedOn() const;
    [[nodiscard]] bool waitsForDisk() const;
    /// Moves the focus along the row and its buttons; false at either end.
    bool moveFocusAlong(int step);

    RowEnvironment m_environment;
    LapsaItem m_item;
    TimePoint m_now;
    std::optional<ItemWork> m_work;
    bool m_workTold = false;
    double m_light = 0;
    bool m_selected = false;
    FileIconView* m_icon;
    ElidedLabel* m_name;
    ElidedLabel* m_remaining;
    WorkBar* m_workBar;
    RowIconButton* m_timerButton = nullptr;
    RowIconButton* m_lockButton = nullptr;
    RowIconButton* m_removeButton = nullptr;
    RowIconButton* m_deleteButton = nullptr;
    std::array<QWidget*, 5> m_focusOrder{};
};

} // namespace lapsa
