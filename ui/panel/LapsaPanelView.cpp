// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaPanelView.h"

#include "Accessibility.h"
#include "AddMessage.h"
#include "AddResult.h"
#include "Announcer.h"
#include "Clock.h"
#include "DeletionUndo.h"
#include "DropZone.h"
#include "FileChooser.h"
#include "FileIconSource.h"
#include "FileListView.h"
#include "FocusRing.h"
#include "LapsaStore.h"
#include "LinkButton.h"
#include "ListFilterField.h"
#include "Localized.h"
#include "MainQueue.h"
#include "Material.h"
#include "PanelAccessibility.h"
#include "Sheet.h"
#include "SymbolButton.h"
#include "TextLabel.h"

#include <QHideEvent>
#include <QPainter>
#include <QShortcut>
#include <QShowEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int padding = 24;
constexpr int spacing = 18;
constexpr auto tickInterval = 1000ms;

} // namespace

LapsaPanelView::LapsaPanelView(const Environment& environment, std::function<void()> openPreferences, QWidget* parent)
    : QWidget(parent)
    , m_environment(environment)
    , m_openPreferences(std::move(openPreferences))
{
    installAccessibility();
    installPanelAccessibility();
    setFixedSize(extent);
    setWindowTitle(u"Lapsa"_s);
    m_undo = new DeletionUndo(environment.store, this);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(spacing);
    column->addWidget(makeHeader());
    column->addWidget(makeDropZone());
    column->addWidget(makeMessage());
    column->addWidget(makeCount());
    column->addWidget(makeList(), 1);
    auto* const filter = new ListFilterField(*m_list, this);
    column->insertWidget(column->indexOf(m_list), filter);
    m_announcer = new Announcer(this);
    connect(filter, &ListFilterField::filtered, m_announcer, &Announcer::announce);
    connect(m_list, &FileListView::selectionChanged, m_announcer, [this](qsizetype count) {
        m_announcer->announce(Localized::text(u"%1 selected"_s, u"%1 selezionati"_s).arg(Localized::number(count)));
    });
    new FocusRing(*this);

    connect(&m_environment.store, &LapsaStore::willChange, this, &LapsaPanelView::noteChange);
    connect(m_undoLink, &LinkButton::clicked, m_undo, &DeletionUndo::undo);
    connect(new QShortcut(QKeySequence::Undo, this), &QShortcut::activated, m_undo, &DeletionUndo::undo);
    connect(m_dropZone, &DropZone::clicked, this, &LapsaPanelView::showChooser);
    connect(m_dropZone, &DropZone::filesDropped, this, &LapsaPanelView::addDroppedFiles);
    connect(m_list, &FileListView::timeSheetRequested, this, &LapsaPanelView::showTimeSheet);
}

LapsaPanelView::~LapsaPanelView()
{
    // A list that is destroyed is hidden first, and says that nothing is selected any more.
    m_list->disconnect(m_announcer);
}

FileChooser* LapsaPanelView::chooser() const
{
    return m_chooser;
}

bool LapsaPanelView::showingSheet() const
{
    return m_sheet != nullptr;
}

void LapsaPanelView::reveal(const QStringList& ids)
{
    if (isVisible()) {
        refresh();
        layout()->activate(); // showing or hiding the message changes the list's height
        m_list->reveal(ids);
    }
}

void LapsaPanelView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const bool round = window()->testAttribute(Qt::WA_TranslucentBackground);
    material::paintWindow(painter, rect(), round ? material::panelRadius : 0, palette());
}

void LapsaPanelView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_environment.store.applyAppTheme(m_environment.store.settings().theme);
    m_appliedTheme = m_environment.store.settings().theme;
    refresh();
    tick();
    if (!event->spontaneous() && !showingSheet()) {
        m_list->setFocus(Qt::OtherFocusReason); // whichever widget had it when the panel was closed
    }
    m_clock = m_environment.mainQueue.repeatEvery(tickInterval, [this] { tick(); });
}

void LapsaPanelView::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    m_clock.reset();
    m_workClock.reset();
    m_due.clear();
    // The user has read it, and it may no longer be true when the panel opens again.
    if (!event->spontaneous() && !m_messageRow->isHidden()) {
        m_environment.store.setLastMessage({});
    }
}

QWidget* LapsaPanelView::makeHeader()
{
    auto* const header = new QWidget(this);
    auto* const row = new QHBoxLayout(header);
    row->setContentsMargins({});
    auto* const title = new TextLabel(u"Lapsa"_s, panelTitleText, ColorRole::Primary, header);
    auto* const gear = new SymbolButton({.symbol = u"gearshape"_s}, Localized::preferences(), header);
    row->addWidget(title, 1, Qt::AlignVCenter);
    row->addWidget(gear, 0, Qt::AlignVCenter);
    connect(gear, &SymbolButton::clicked, this, [this] { m_openPreferences(); });
    return header;
}

QWidget* LapsaPanelView::makeDropZone()
{
    m_dropZone = new DropZone(this);
    return m_dropZone;
}

QWidget* LapsaPanelView::makeCount()
{
    m_count = new TextLabel({}, countText, ColorRole::Primary, this);
    m_count->setTabular();
    return m_count;
}

QWidget* LapsaPanelView::makeList()
{
    m_list = new FileListView(
        {m_environment.store, m_environment.icons, m_environment.kinds, m_environment.work, *m_undo}, this);
    return m_list;
}

/// Called before a change: the new state is read once, on the next turn, however many changes there were.
void LapsaPanelView::noteChange()
{
    noteDueItems();
    if (std::exchange(m_changeNoted, true)) {
        return;
    }
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_changeNoted = false;
            applyTheme();
            if (isVisible()) {
                refresh();
            }
        },
        Qt::QueuedConnection);
}

void LapsaPanelView::refresh()
{
    const LapsaStore& store = m_environment.store;
    const qsizetype count = store.items().size();
    m_dropZone->setDefaultExpiry(store.settings().defaultExpirationMinutes);
    m_message->setText(store.lastMessage().value_or(QString()));
    m_messageRow->setVisible(store.lastMessage().has_value());
    showUndo();
    const QString present =
        u"%1 %2"_s.arg(count).arg(count == 1 ? Localized::filePresent() : Localized::filesPresent());
    m_count->setText(present);
    if (m_list->accessibleName() != present) {
        m_list->setAccessibleName(present);
    }
    m_list->setNow(m_environment.clock.now());
    m_list->refresh();
    followWork();
    announceGoneItems();
    dismissSheetOfVanishedItem();
}

void LapsaPanelView::tick()
{
    m_list->setNow(m_environment.clock.now());
    followWork();
}

void LapsaPanelView::applyTheme()
{
    const LapsaTheme theme = m_environment.store.settings().theme;
    if (isVisible() && std::exchange(m_appliedTheme, theme) != theme) {
        m_environment.store.applyAppTheme(theme);
    }
}

void LapsaPanelView::addDroppedFiles(const QList<QUrl>& urls)
{
    // One by one, but with one message for the whole drop.
    struct Drop
    {
        qsizetype waitingFor = 0;
        AddResult result;
    };

    const auto drop = std::make_shared<Drop>(Drop{.waitingFor = urls.size(), .result = {}});
    for (const QUrl& url : urls) {
        m_environment.store.addFiles({url}, {}, [drop, view = QPointer(this)](const AddResult& added) {
            drop->result.append(added);
            --drop->waitingFor;
            // Less than 0: a file of a slow disk came later.
            if (drop->waitingFor <= 0 && view) {
                view->showAdded(drop->waitingFor == 0 ? drop->result : added);
            }
        });
    }
}

void LapsaPanelView::addChosenFiles(const QList<QUrl>& urls)
{
    m_environment.store.addFiles(urls, {}, [view = QPointer(this)](const AddResult& added) {
        if (view) {
            view->showAdded(added);
        }
    });
}

void LapsaPanelView::showAdded(const AddResult& result)
{
    showAddMessage(m_environment.store, result);
    reveal(result.ids);
}

void LapsaPanelView::showChooser()
{
    if (m_chooser != nullptr) {
        m_chooser->raise();
        m_chooser->activateWindow();
        return;
    }
    m_chooser = new FileChooser({m_environment.store.lanes(), m_environment.mainQueue}, m_lastFolder, window());
    m_chooser->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_chooser, &QDialog::finished, this, [this] { m_lastFolder = m_chooser->folder(); });
    connect(m_chooser, &QDialog::accepted, this, [this] { addChosenFiles(m_chooser->chosen()); });
    m_chooser->open();
}

} // namespace lapsa
