// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaItem.h"

#include <QList>
#include <QWidget>

#include <cstdint>

namespace lapsa {

class Clock;
class DurationEditor;
class LapsaStore;
class TextLabel;

/// Sets the remaining time of items. The content of a sheet: it requests to be dismissed and stores only on "Save".
class ItemTimeView final : public QWidget
{
    Q_OBJECT

public:
    /// For one item or several, at least one.
    ItemTimeView(const QList<LapsaItem>& items, LapsaStore& store, const Clock& clock, QWidget* parent = nullptr);

    [[nodiscard]] const LapsaItem& item() const { return m_items.first(); }

    [[nodiscard]] QSize sizeHint() const override;

signals:
    void dismissRequested();

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    [[nodiscard]] QWidget* makeDuration();
    [[nodiscard]] QWidget* makeQuickButtons();
    [[nodiscard]] QWidget* makeActions();
    void setMinutes(std::int64_t minutes);
    void save();

    QList<LapsaItem> m_items;
    LapsaStore& m_store;
    const Clock& m_clock;
    /// Replaced as soon as the sheet is shown.
    std::int64_t m_minutes = 120;
    TextLabel* m_choice = nullptr;
    DurationEditor* m_editor = nullptr;
    QWidget* m_firstStop = nullptr;
};

} // namespace lapsa
