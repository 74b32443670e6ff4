// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ItemTimeView.h"

#include "Clock.h"
#include "DurationEditor.h"
#include "DurationFormatter.h"
#include "ElidedLabel.h"
#include "LapsaSettings.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "PushButton.h"
#include "Stepper.h"
#include "TextLabel.h"

#include <QKeyEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// As wide as the rows that it covers, so that nothing of them shows beside it.
constexpr int sheetWidth = 382;
constexpr int widestSheet = 406;
constexpr int padding = 24;
constexpr int sectionSpacing = 18;
constexpr int titleSpacing = 4;
constexpr int durationSpacing = 8;
constexpr int buttonSpacing = 8;
constexpr DurationEditor::Bounds bounds{.minTotalMinutes = minLifespanMinutes, .maxTotalMinutes = maxLifespanMinutes};

struct QuickChoice
{
    QStringView label;
    std::int64_t minutes = 0;
};

constexpr QuickChoice quickChoices[] = {{u"10m", 10}, {u"2h", 120}, {u"1d", 1440}, {u"7d", 10080}};

} // namespace

ItemTimeView::ItemTimeView(const QList<LapsaItem>& items, LapsaStore& store, const Clock& clock, QWidget* parent)
    : QWidget(parent)
    , m_items(items)
    , m_store(store)
    , m_clock(clock)
{
    const QString title = Localized::text(u"File timer"_s, u"Scadenza file"_s);
    setAccessibleName(title);

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(sectionSpacing);
    auto* const heading = new QVBoxLayout;
    heading->setSpacing(titleSpacing);
    heading->addWidget(new TextLabel(title, sheetTitleText, ColorRole::Primary, this));
    auto* const name = new ElidedLabel(bodyText, ColorRole::Secondary, this);
    name->setText(items.size() == 1
                      ? items.first().displayName
                      : Localized::text(u"%1 items"_s, u"%1 elementi"_s).arg(Localized::number(items.size())));
    heading->addWidget(name);
    column->addLayout(heading);
    column->addWidget(makeDuration());
    column->addWidget(makeQuickButtons());
    column->addWidget(makeActions());
}

QSize ItemTimeView::sizeHint() const
{
    const int width = std::clamp(layout()->sizeHint().width(), sheetWidth, widestSheet);
    return {width,
            layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width) : layout()->sizeHint().height()};
}

void ItemTimeView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    const TimePoint first = std::ranges::min_element(m_items, {}, &LapsaItem::expiresAt)->expiresAt;
    const double minutes = secondsBetween(m_clock.now(), first) / secondsPerMinute;
    setMinutes(std::max<std::int64_t>(static_cast<std::int64_t>(minutes), 1));
    m_firstStop->setFocus(Qt::OtherFocusReason);
}

void ItemTimeView::keyPressEvent(QKeyEvent* event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat()) {
        save();
        return;
    }
    QWidget::keyPressEvent(event);
}

QWidget* ItemTimeView::makeDuration()
{
    auto* const widget = new QWidget(this);
    auto* const column = new QVBoxLayout(widget);
    column->setContentsMargins({});
    column->setSpacing(durationSpacing);
    m_choice = new TextLabel({}, headlineText, ColorRole::Primary, widget);
    m_choice->setTabular();
    m_editor = new DurationEditor(
        {.read = [this] { return m_minutes; }, .write = [this](std::int64_t minutes) { setMinutes(minutes); }}, bounds,
        widget);
    m_editor->setAccessibleName(accessibleName());
    m_editor->spread();
    m_firstStop = m_editor->findChild<Stepper*>();
    column->addWidget(m_choice);
    column->addWidget(m_editor);
    return widget;
}

QWidget* ItemTimeView::makeQuickButtons()
{
    auto* const widget = new QWidget(this);
    auto* const row = new QHBoxLayout(widget);
    row->setContentsMargins({});
    row->setSpacing(buttonSpacing);
    for (const QuickChoice& choice : quickChoices) {
        auto* const button = new PushButton(choice.label.toString(), PushButton::Kind::Plain, widget);
        button->setReturnPresses(false); // Return saves
        connect(button, &PushButton::clicked, this, [this, minutes = choice.minutes] { setMinutes(minutes); });
        row->addWidget(button, 1);
    }
    return widget;
}

QWidget* ItemTimeView::makeActions()
{
    auto* const widget = new QWidget(this);
    auto* const row = new QHBoxLayout(widget);
    row->setContentsMargins({});
    row->setSpacing(buttonSpacing);
    auto* const cancel = new PushButton(Localized::text(u"Cancel"_s, u"Annulla"_s), PushButton::Kind::Plain, widget);
    auto* const save = new PushButton(Localized::text(u"Save"_s, u"Salva"_s), PushButton::Kind::Default, widget);
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(save);
    connect(cancel, &PushButton::clicked, this, &ItemTimeView::dismissRequested);
    connect(save, &PushButton::clicked, this, &ItemTimeView::save);
    return widget;
}

void ItemTimeView::setMinutes(std::int64_t minutes)
{
    m_minutes = minutes;
    m_choice->setText(DurationFormatter::compact(minutes));
    m_editor->refresh();
}

void ItemTimeView::save()
{
    if (m_items.size() == 1) {
        m_store.updateExpiration(m_items.first(), m_minutes);
    } else {
        QSet<QString> ids;
        for (const LapsaItem& item : std::as_const(m_items)) {
            ids.insert(item.id);
        }
        m_store.updateExpirations(ids, m_minutes);
    }
    emit dismissRequested();
}

} // namespace lapsa
