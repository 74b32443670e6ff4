// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ChooserEnvironment.h"
#include "ChooserWay.h"

#include <QDialog>
#include <QList>
#include <QStringList>
#include <QUrl>

#include <optional>

class QHBoxLayout;
class QLineEdit;
class QTreeView;

namespace lapsa {

class ChooserModel;
class ChooserPathRow;
class ChooserPlaces;
class PathCompleter;
class PushButton;
class TypedPath;
class WaitingLine;

/// The dialog in which the user browses folders and chooses. It changes no file: it has no action that could. Return
/// opens a folder and never adds one; the button adds.
///
/// It accesses no disk: lanes do, and a slow or dead one leaves it usable.
class Chooser : public QDialog
{
    Q_OBJECT

public:
    /// The added files and folders, in the order shown; empty until then.
    [[nodiscard]] QList<QUrl> chosen() const { return m_chosen; }

    /// The absolute path of the folder that was read last; empty if none was.
    [[nodiscard]] QString folder() const { return m_readFolder; }

protected:
    /// Opens in `startFolder`, or in the home folder if that is empty or no longer exists.
    Chooser(const ChooserEnvironment& environment, const ChooserPurpose& purpose, const QString& startFolder,
            QWidget* parent);

    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    /// What the user asked for, to be done once it is known what is at the typed path.
    enum class Wish
    {
        None,
        Open,
        Add,
    };

    [[nodiscard]] QHBoxLayout* makeListRow();
    [[nodiscard]] QHBoxLayout* makeFieldRow(const QString& label);
    [[nodiscard]] QHBoxLayout* makeButtonRow();
    void setUpNames();
    void makeShortcuts();
    void connectParts();

    /// Shows a folder; returns from it if it turns out to be none.
    void showWay(const ChooserWay& way);
    /// The same, and returns to where the user was.
    void go(const ChooserWay& way);
    void goTo(const QString& folder);
    void goUp();
    void goBack();
    void goForward();
    /// Return or a double click on the selection.
    void enterSelected();
    /// Return in the field.
    void openTyped();
    /// The button.
    void addAsked();
    void add();
    void fillField();
    void refreshButtons();
    void noteGrowth();
    void leaveMissingFolder();
    void lookAtTyped();
    void noteTyped();
    void textChanged();

    /// The absolute paths that the button would add; may be empty.
    [[nodiscard]] QStringList choice() const;
    [[nodiscard]] QStringList selectedPaths() const;
    /// The absolute path that the field's text means; empty without a text.
    [[nodiscard]] QString typedPath() const;

    ChooserEnvironment m_environment;
    bool m_oneFolder;
    ChooserWay m_way;
    /// Where to return to if there is no such folder.
    std::optional<ChooserWay> m_wayBefore;
    QString m_readFolder;
    /// Where the keyboard continues after going up; empty if that is done.
    QString m_nameLeft;
    Wish m_wish = Wish::None;
    QList<QUrl> m_chosen;
    ChooserModel* m_model;
    TypedPath* m_typed;
    ChooserPathRow* m_path;
    ChooserPlaces* m_places = nullptr;
    QTreeView* m_names = nullptr;
    QLineEdit* m_field = nullptr;
    PathCompleter* m_completer = nullptr;
    WaitingLine* m_waiting = nullptr;
    PushButton* m_add = nullptr;
};

} // namespace lapsa
