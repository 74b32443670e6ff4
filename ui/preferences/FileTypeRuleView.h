// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaFileTypeRule.h"
#include "SettingBinding.h"

#include <QSet>
#include <QString>
#include <QWidget>

#include <cstdint>
#include <optional>

class QLineEdit;

namespace lapsa {

class DurationEditor;
class PushButton;
class TextLabel;
class Toggle;

/// One file type rule as a card. It finds the rule by its id, so it may outlive the rule.
class FileTypeRuleView final : public QWidget
{
    Q_OBJECT

public:
    FileTypeRuleView(LapsaStore& store, const QUuid& id, QWidget* parent = nullptr);

    [[nodiscard]] const QUuid& id() const { return m_id; }

    /// Shows the rule as it is now. It does not disturb a text that is being typed.
    void refresh();
    /// Puts the focus where a new rule is filled in.
    void focusExtensions();

signals:
    /// The user moves the card by so many places with the keyboard.
    void stepped(int places);
    /// So many listed items got the rule's time.
    void applied(qsizetype count);
    /// The user begins to drag the card.
    void dragStarted();
    /// The user drags the card; the pointer's height in the coordinates of the screen.
    void dragged(int height);
    /// The user wants the card back where the drag began.
    void dragCancelled();

protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void makeControls(QWidget* stack);
    void startDrag();
    void endDrag();
    void makeShortcut(Qt::Key key, int places);
    void refreshTaken();
    void makeOffer(QWidget* stack);
    void setShown(QWidget& line, bool shown);
    void refreshOffer();
    void apply();
    [[nodiscard]] QSet<QString> listedItems() const;

    LapsaStore& m_store;
    QUuid m_id;
    Binding<bool> m_enabled;
    Binding<QString> m_extensionsCSV;
    Binding<std::int64_t> m_minutes;
    Toggle* m_toggle = nullptr;
    QLineEdit* m_extensions = nullptr;
    /// Which extensions an earlier rule takes; hidden if none.
    TextLabel* m_taken = nullptr;
    DurationEditor* m_lifespan = nullptr;
    /// Gives a changed time to what is listed.
    PushButton* m_offer = nullptr;
    /// The time, in minutes, before it was changed here, until the change is applied or the card is hidden.
    std::optional<std::int64_t> m_formerMinutes;
    PushButton* m_remove = nullptr;
    /// Where the button was pressed on the card's ground, on the screen.
    std::optional<QPoint> m_pressed;
    bool m_dragging = false;
};

} // namespace lapsa
