// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaRecoveryItem.h"
#include "RecoveryModel.h"
#include "RecoveryOverview.h"
#include "RecoveryRowLayout.h"
#include "RecoveryWork.h"

#include <QList>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <memory>

class QLineEdit;
class QStackedWidget;

namespace lapsa {

class AlertDialog;
class Announcer;
class Clock;
class LapsaStore;
class MainQueue;
class RecoveryFoot;
class RecoveryListView;
class ScheduledTask;
class TextLabel;

/// The content of the Recovery window: what lies in Recovery, with the ways to put it back and to delete it. Looks at
/// the disk, and follows the time, only while it is shown.
class RecoveryView final : public QWidget
{
    Q_OBJECT

public:
    /// What the window needs. All of it outlives the window.
    struct Environment
    {
        LapsaStore& store;
        const Clock& clock;
        MainQueue& mainQueue;
        RecoveryModel::Icons icons;
    };

    explicit RecoveryView(const Environment& environment, QWidget* parent = nullptr);
    ~RecoveryView() override;

    /// The question before something is deleted; null if none is open.
    [[nodiscard]] AlertDialog* question() const;

    static constexpr QSize extent{520, 420};

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] QWidget* makeField();
    [[nodiscard]] QWidget* makeList();
    [[nodiscard]] QWidget* makeFoot();
    void makeShortcuts();
    void reload();
    void refresh();
    void refreshFoot();
    void followWork();
    void filter(const QString& text);
    void escape();
    void showMenu(const QPoint& place);

    // ---- What the user asks for: RecoveryView_acting.cpp

    [[nodiscard]] QList<LapsaRecoveryItem> recordsAt(const QList<int>& rows) const;
    void act(RecoveryRowLayout::Button button, const QList<int>& rows);
    void putBack(const QList<LapsaRecoveryItem>& records);
    void askToDelete(const QList<LapsaRecoveryItem>& records);
    void deleteForGood(const QList<LapsaRecoveryItem>& records);
    /// Empty while nobody knows where the copy is.
    [[nodiscard]] QString pathAt(int row) const;
    void say(const QString& text, bool failed);

    Environment m_environment;
    RecoveryOverview m_overview;
    RecoveryModel m_model;
    QLineEdit* m_field = nullptr;
    TextLabel* m_message = nullptr;
    QStackedWidget* m_pages = nullptr;
    RecoveryListView* m_list = nullptr;
    TextLabel* m_empty = nullptr;
    RecoveryFoot* m_foot = nullptr;
    Announcer* m_announcer = nullptr;
    QPointer<AlertDialog> m_question;
    /// Each exists while there is something to follow on the screen.
    std::unique_ptr<ScheduledTask> m_clock;
    std::unique_ptr<ScheduledTask> m_workClock;
};

} // namespace lapsa
