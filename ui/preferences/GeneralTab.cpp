// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "GeneralTab.h"

#include "Card.h"
#include "DurationEditor.h"
#include "DurationFormatter.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "PushButton.h"
#include "SegmentedControl.h"
#include "SettingBinding.h"
#include "Stepper.h"
#include "TextLabel.h"
#include "Toggle.h"

#include <QSignalBlocker>
#include <QVBoxLayout>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int stackSpacing = 8;
constexpr int controlSpacing = 16;
constexpr int explanationSpacing = 4;
constexpr DurationEditor::Bounds lifespanBounds{.minTotalMinutes = minLifespanMinutes,
                                                .maxTotalMinutes = maxLifespanMinutes};
/// Seven days, kept on purpose although the setting holds at most one hour: larger values are stored as one hour.
constexpr DurationEditor::Bounds leadTimeBounds{.minTotalMinutes = 1, .maxTotalMinutes = 10080};
constexpr int minRetentionHours = 1;

/// A duration as text, and its editor.
struct DurationControls
{
    TextLabel* text = nullptr;
    DurationEditor* editor = nullptr;

    void show(std::int64_t minutes) const
    {
        text->setText(DurationFormatter::compact(minutes));
        editor->refresh();
    }
};

DurationControls makeDuration(const Binding<std::int64_t>& minutes, const DurationEditor::Bounds& bounds,
                              ColorRole role, QWidget* parent)
{
    auto* const text = new TextLabel({}, bodyText, role, parent);
    text->setTabular(true);
    return {.text = text, .editor = new DurationEditor(minutes, bounds, parent)};
}

QString nameOf(LapsaTheme theme)
{
    switch (theme) {
    case LapsaTheme::System:
        return Localized::text(u"System"_s, u"Sistema"_s);
    // The same in both languages, on purpose.
    case LapsaTheme::Dark:
        return u"Dark"_s;
    case LapsaTheme::Light:
        return u"Light"_s;
    }
    return {};
}

FormSection* makeSection(const QString& heading, QWidget* page)
{
    auto* const section = new FormSection(heading, page);
    // Large texts wrap, so the height depends on the width.
    section->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    section->card().setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    return section;
}

QWidget* makeStack(QWidget* parent, int spacing)
{
    auto* const stack = new QWidget(parent);
    auto* const column = new QVBoxLayout(stack);
    column->setContentsMargins({});
    column->setSpacing(spacing);
    return stack;
}

} // namespace

GeneralTab::GeneralTab(LapsaStore& store, const QString& name, QWidget* parent)
    : ScrollPage(name, parent)
    , m_store(store)
    , m_recovery(store)
{
    sections().addWidget(makeGeneralSection(widget()));
    sections().addWidget(makeNotificationsSection(widget()));
    sections().addWidget(makeRecoverySection(widget()));
    sections().addStretch();
    connect(&m_recovery, &RecoveryOverview::changed, this, &GeneralTab::refreshRecoveryContent);
    connect(&m_recovery, &RecoveryOverview::measured, this, &GeneralTab::refreshRecoveryContent);
}

void GeneralTab::refresh()
{
    for (const auto& showSetting : m_refreshers) {
        showSetting();
    }
}

void GeneralTab::watchRecovery(bool watched)
{
    if (watched) {
        m_recovery.watch();
        refreshRecoveryContent();
    } else {
        m_recovery.stopWatching();
    }
}

FormSection* GeneralTab::makeGeneralSection(QWidget* page)
{
    FormSection* const section = makeSection(Localized::text(u"General"_s, u"Generale"_s), page);
    Card& card = section->card();

    const auto expiry = settingBinding(m_store, &LapsaSettings::defaultExpirationMinutes);
    auto* const row = new QWidget(&card);
    auto* const line = new QHBoxLayout(row);
    line->setContentsMargins({});
    line->setSpacing(controlSpacing);
    auto* const label = new TextLabel(Localized::defaultExpiry(), bodyText, ColorRole::Primary, row);
    const DurationControls controls = makeDuration(expiry, lifespanBounds, ColorRole::Secondary, row);
    controls.editor->setAccessibleName(Localized::defaultExpiry());
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(explanationSpacing);
    texts->addWidget(label);
    texts->addWidget(controls.text);
    line->addLayout(texts, 1);
    line->addWidget(controls.editor, 0, Qt::AlignVCenter);
    card.addRow(row);
    m_refreshers.push_back([controls, expiry] { controls.show(expiry.read()); });

    addToggle(card,
              Localized::text(u"Use Trash instead of permanent delete"_s,
                              u"Usa Cestino invece di eliminare definitivamente"_s),
              &LapsaSettings::useTrash);
    addToggle(card, Localized::pauseAll(), &LapsaSettings::pauseAllCountdowns);
    addToggle(card,
              Localized::text(u"Keep panel open until I click the icon again"_s,
                              u"Tieni aperto il pannello finché non clicco l'icona"_s),
              &LapsaSettings::keepPanelOpen);
    card.addRow(Localized::text(u"Theme"_s, u"Tema"_s), makeThemePicker());
    return section;
}

FormSection* GeneralTab::makeNotificationsSection(QWidget* page)
{
    FormSection* const section = makeSection(Localized::text(u"Notifications"_s, u"Notifiche"_s), page);
    Card& card = section->card();
    const QString title = Localized::text(u"Notify before expiry"_s, u"Avvisa prima della scadenza"_s);
    addToggle(card, title, &LapsaSettings::enableExpiryNotifications);

    // Kept on purpose: shown and editable whether or not the toggle is on.
    const auto leadTime = settingBinding(m_store, &LapsaSettings::notifyBeforeMinutes);
    QWidget* const stack = makeStack(&card, stackSpacing);
    const DurationControls controls = makeDuration(leadTime, leadTimeBounds, ColorRole::Secondary, stack);
    controls.editor->setAccessibleName(title);
    stack->layout()->addWidget(controls.text);
    stack->layout()->addWidget(controls.editor);
    stack->layout()->setAlignment(controls.editor, Qt::AlignLeading);
    card.addRow(stack);
    m_refreshers.push_back([controls, leadTime] { controls.show(leadTime.read()); });
    return section;
}

FormSection* GeneralTab::makeRecoverySection(QWidget* page)
{
    FormSection* const section = makeSection(Localized::recovery(), page);
    section->card().addRow(makeRecoveryToggle());
    section->card().addRow(makeRetention());
    section->card().addRow(makeRecoveryContent());
    return section;
}

void GeneralTab::addToggle(Card& card, const QString& text, bool LapsaSettings::*field)
{
    const Binding<bool> setting = settingBinding(m_store, field);
    auto* const toggle = new Toggle(text, &card);
    connect(toggle, &Toggle::switched, this, setting.write);
    card.addRow(toggle);
    m_refreshers.push_back([toggle, setting] { toggle->showChecked(setting.read()); });
}

QWidget* GeneralTab::makeThemePicker()
{
    QStringList names;
    for (const LapsaTheme theme : allLapsaThemes) {
        names.push_back(nameOf(theme));
    }
    const auto setting = settingBinding(m_store, &LapsaSettings::theme);
    auto* const picker = new SegmentedControl(Localized::text(u"Theme"_s, u"Tema"_s), names, this);
    connect(picker, &SegmentedControl::chosenByUser, this,
            [setting](int index) { setting.write(allLapsaThemes.at(static_cast<std::size_t>(index))); });
    m_refreshers.push_back([picker, setting] { picker->setChosen(static_cast<int>(setting.read())); });
    return picker;
}

QWidget* GeneralTab::makeRecoveryToggle()
{
    const auto setting = settingBinding(m_store, &LapsaSettings::useRecoveryWindow);
    QWidget* const stack = makeStack(this, explanationSpacing);
    auto* const toggle = new Toggle(Localized::useRecovery(), stack);
    auto* const explanation =
        new TextLabel(Localized::text(u"Expired files are moved to an internal Recovery folder and then purged after "
                                      u"the selected period."_s,
                                      u"I file scaduti vengono spostati in una cartella Recupero interna e poi "
                                      u"eliminati dopo il periodo scelto."_s),
                      captionText, ColorRole::Secondary, stack);
    toggle->setAccessibleDescription(explanation->text());
    stack->layout()->addWidget(toggle);
    stack->layout()->addWidget(explanation);
    connect(toggle, &Toggle::switched, this, setting.write);
    m_refreshers.push_back([toggle, setting] { toggle->showChecked(setting.read()); });
    return stack;
}

QWidget* GeneralTab::makeRetention()
{
    const auto setting = settingBinding(m_store, &LapsaSettings::recoveryRetentionHours);
    auto* const row = new QWidget(this);
    auto* const line = new QHBoxLayout(row);
    line->setContentsMargins({});
    line->setSpacing(controlSpacing);
    auto* const label = new TextLabel({}, bodyText, ColorRole::Primary, row);
    auto* const stepper = new Stepper(Localized::retention(), row);
    stepper->setRange(minRetentionHours, static_cast<int>(maxRecoveryRetentionHours));
    line->addWidget(label, 1, Qt::AlignVCenter);
    line->addWidget(stepper, 0, Qt::AlignVCenter);
    connect(stepper, &QSpinBox::valueChanged, this, setting.write);
    m_refreshers.push_back([label, stepper, setting] {
        const std::int64_t hours = setting.read();
        label->setText(u"%1: %2 h"_s.arg(Localized::retention()).arg(hours));
        const QSignalBlocker blocker(stepper);
        stepper->setValue(static_cast<int>(hours));
    });
    return row;
}

/// What lies in Recovery; only while there is something.
QWidget* GeneralTab::makeRecoveryContent()
{
    m_recoveryRow = new QWidget(this);
    auto* const line = new QHBoxLayout(m_recoveryRow);
    line->setContentsMargins({});
    line->setSpacing(controlSpacing);
    m_recoveryText = new TextLabel({}, bodyText, ColorRole::Primary, m_recoveryRow);
    auto* const show =
        new PushButton(Localized::text(u"Show…"_s, u"Mostra…"_s), PushButton::Kind::Plain, m_recoveryRow);
    line->addWidget(m_recoveryText, 1, Qt::AlignVCenter);
    line->addWidget(show, 0, Qt::AlignVCenter);
    connect(show, &PushButton::clicked, this, &GeneralTab::recoveryRequested);
    m_recoveryRow->hide();
    return m_recoveryRow;
}

void GeneralTab::refreshRecoveryContent()
{
    const qsizetype files = m_recovery.count();
    const std::optional<std::int64_t> bytes = m_recovery.bytes();
    const QString count = Localized::text(u"In Recovery: %1"_s, u"In Recupero: %1"_s).arg(Localized::fileCount(files));
    m_recoveryText->setText(bytes ? count + u", "_s + Localized::dataSize(*bytes) : count);
    m_recoveryRow->setVisible(files > 0);
}

} // namespace lapsa
