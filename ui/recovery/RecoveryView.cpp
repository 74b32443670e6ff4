// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryView.h"

#include "Accessibility.h"
#include "AlertDialog.h"
#include "Announcer.h"
#include "FocusRing.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "MainQueue.h"
#include "Material.h"
#include "RecoveryFoot.h"
#include "RecoveryListView.h"
#include "RecoveryTexts.h"
#include "TextLabel.h"

#include <QEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <chrono>
#include <optional>

namespace lapsa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr QSize leastExtent(400, 300);
constexpr int margin = RecoveryListView::margin;
constexpr int spacing = 12;
constexpr auto second = 1s;
/// Often enough for a bar that seems to move steadily.
constexpr auto workInterval = 250ms;

} // namespace

RecoveryView::RecoveryView(const Environment& environment, QWidget* parent)
    : QWidget(parent)
    , m_environment(environment)
    , m_overview(environment.store)
    , m_model(
          {.store = environment.store, .overview = m_overview, .clock = environment.clock, .icons = environment.icons})
{
    installAccessibility();
    setWindowTitle(Localized::recovery());
    setMinimumSize(leastExtent);
    resize(extent);
    m_message = new TextLabel({}, calloutText, ColorRole::Secondary, this);
    m_message->hide();
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, margin, 0, margin);
    column->setSpacing(spacing);
    const auto addInset = [column](QWidget* widget) {
        auto* const row = new QHBoxLayout;
        row->setContentsMargins(margin, 0, margin, 0);
        row->addWidget(widget);
        column->addLayout(row);
    };
    addInset(makeField());
    addInset(m_message);
    column->addWidget(makeList(), 1);
    addInset(makeFoot());
    m_announcer = new Announcer(this);
    makeShortcuts();
    new FocusRing(*this);
    m_list->setFocus();

    connect(&m_overview, &RecoveryOverview::changed, this, &RecoveryView::reload);
    connect(&m_overview, &RecoveryOverview::measured, this, &RecoveryView::refresh);
    connect(&environment.store, &LapsaStore::willChange, this, &RecoveryView::followWork, Qt::QueuedConnection);
}

RecoveryView::~RecoveryView()
{
    delete m_question;
}

AlertDialog* RecoveryView::question() const
{
    return m_question;
}

QWidget* RecoveryView::makeField()
{
    m_field = new QLineEdit(this);
    m_field->setFont(fontFor(bodyText));
    m_field->setPlaceholderText(Localized::text(u"Search by name"_s, u"Cerca per nome"_s));
    m_field->setAccessibleName(m_field->placeholderText());
    m_field->installEventFilter(this);
    connect(m_field, &QLineEdit::textChanged, this, &RecoveryView::filter);
    return m_field;
}

QWidget* RecoveryView::makeList()
{
    m_pages = new QStackedWidget(this);
    m_list = new RecoveryListView(m_model, m_pages);
    m_empty = new TextLabel({}, bodyText, ColorRole::Secondary, m_pages);
    m_empty->setAlignment(Qt::AlignCenter);
    m_pages->addWidget(m_list);
    m_pages->addWidget(m_empty);
    connect(m_list, &RecoveryListView::pressed, this, &RecoveryView::act);
    connect(m_list, &RecoveryListView::menuRequested, this, &RecoveryView::showMenu);
    connect(m_list, &RecoveryListView::selectionWasChanged, this, &RecoveryView::refreshFoot);
    connect(m_list, &RecoveryListView::typed, this, [this](const QString& text) {
        m_field->setFocus(Qt::ShortcutFocusReason);
        m_field->insert(text);
    });
    return m_pages;
}

QWidget* RecoveryView::makeFoot()
{
    m_foot = new RecoveryFoot(this);
    using enum RecoveryRowLayout::Button;
    connect(m_foot, &RecoveryFoot::putBackClicked, this, [this] { act(PutBack, m_list->selectedRows()); });
    connect(m_foot, &RecoveryFoot::deleteClicked, this, [this] { act(Delete, m_list->selectedRows()); });
    return m_foot;
}

void RecoveryView::makeShortcuts()
{
    const auto onKeys = [this](const QKeySequence& keys, auto action) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
    };
    onKeys(Qt::Key_Escape, [this] { escape(); });
    onKeys(Qt::CTRL | Qt::Key_W, [this] { window()->close(); });
    onKeys(Qt::CTRL | Qt::Key_F, [this] {
        m_field->setFocus(Qt::ShortcutFocusReason);
        m_field->selectAll();
    });
}

void RecoveryView::escape()
{
    if (m_field->text().isEmpty()) {
        window()->close();
    } else {
        m_field->clear();
    }
}

bool RecoveryView::eventFilter(QObject* watched, QEvent* event)
{
    // From the field into the list.
    if (watched == m_field && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter) {
            m_list->setFocus(Qt::TabFocusReason);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void RecoveryView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    // The window manager draws the window's edge: the ground's own hairline is moved outside.
    material::paintWindow(painter, rect().adjusted(-1, -1, 1, 1), 0, palette());
}

bool RecoveryView::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::WindowActivate:
        m_overview.lookAgain(); // the folder may have changed without Lapsa
        break;
    case QEvent::ApplicationFontChange:
        m_field->setFont(fontFor(bodyText));
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void RecoveryView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_overview.watch();
    reload();
    m_clock = m_environment.mainQueue.repeatEvery(second, [this] { m_list->showTime(); });
}

void RecoveryView::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (event->spontaneous()) {
        return; // on another workspace, or minimised
    }
    m_clock.reset();
    m_workClock.reset();
    m_overview.stopWatching();
    say({}, false);
    m_field->clear();
}

void RecoveryView::reload()
{
    m_model.reload();
    refresh();
}

void RecoveryView::refresh()
{
    const bool isEmpty = m_model.rowCount() == 0;
    m_empty->setText(m_model.unfilteredCount() == 0
                         ? Localized::text(u"Nothing is in Recovery."_s, u"Non c’è niente in Recupero."_s)
                         : Localized::text(u"No file has this name."_s, u"Nessun file ha questo nome."_s));
    m_field->setVisible(m_model.unfilteredCount() > 0);
    m_pages->setCurrentWidget(isEmpty ? static_cast<QWidget*>(m_empty) : m_list);
    m_list->viewport()->update();
    refreshFoot();
    followWork();
}

void RecoveryView::refreshFoot()
{
    const QList<int> rows = m_list->selectedRows();
    const qsizetype files = m_model.unfilteredCount();
    if (!rows.isEmpty()) {
        std::optional<std::int64_t> bytes = 0;
        for (const int row : rows) {
            const std::optional<RecoveryCopy> copy = m_model.copyAt(row);
            bytes = bytes && copy && copy->bytes ? std::optional(*bytes + *copy->bytes) : std::nullopt;
        }
        m_foot->setCount(recoveryTexts::selectionText(rows.size(), bytes));
    } else if (m_model.rowCount() != files) {
        m_foot->setCount(recoveryTexts::hitsText(m_model.rowCount(), files));
    } else {
        m_foot->setCount(files > 0 ? recoveryTexts::countText(files, m_overview.bytes()) : QString());
    }
    m_foot->setButtonsShown(!rows.isEmpty());
}

/// There is a timer only while there is something to see.
void RecoveryView::followWork()
{
    if (!isVisible() || !m_environment.store.recoveryActions().isWorking()) {
        m_workClock.reset();
    } else if (!m_workClock) {
        m_workClock = m_environment.mainQueue.repeatEvery(workInterval, [this] { m_list->showTime(); });
    }
}

void RecoveryView::filter(const QString& text)
{
    m_model.setFilter(text.trimmed());
    refresh();
}

} // namespace lapsa
