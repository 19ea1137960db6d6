// TSearchDialog: the modeless search dialog with a Find and a Replace page: history lists of
// find and replace texts and the options of each page, remembered in the settings between
// runs, turned into requests that the window's search carries out.
#pragma once

#include "ui/WindowSearch.h"

#include <QDialog>
#include <QStringList>

class QCheckBox;
class QComboBox;
class QPushButton;
class QTabBar;

namespace zv {

// A text as a history list keeps it in the settings: each item followed by U+000C, the
// field's pictures of a line break (U+001F U+00BB) and a tab (U+001F U+00A6) stored as
// U+200B and U+200C. At most `max` items are written.
std::u16string JoinHistory(const QStringList& items, int max);
QStringList SplitHistory(std::u16string_view value);
// A text as a one-line field shows it (line breaks and tabs as their pictures), and back.
QString ToFieldText(const QString& text);
QString FromFieldText(const QString& field);

class TSearchDialog : public QDialog {
    Q_OBJECT
public:
    TSearchDialog(TWindowSearch& search, QWidget* parent);

    // Shows the Replace or the Find page with its remembered state. `text`, when not empty,
    // becomes the find text; `multiRow` (a selection of several rows) chooses the scope
    // "selected text" when "Search" "IncludeMultiLineSelection" is on (the default).
    void Open(bool replace, const QString& text, bool multiRow);
    bool ReplacePage() const;
    // The request the controls describe.
    TSearchRequest Request() const;
    // Writes the page's options, the history lists and the current texts to the settings.
    void SaveState();
    QComboBox* FindCombo() const { return FFind; }
    QComboBox* ReplaceCombo() const { return FReplace; }

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void LoadState();
    // Puts the find (and replace) text at the top of its list when new, then runs `action`.
    void Run(const std::function<void(const TSearchRequest&)>& action);
    void ShowPage();
    QCheckBox* Check(const QString& caption, const char* key);
    const char* Section() const { return ReplacePage() ? "Replace" : "Find"; }

    TWindowSearch& FSearch;
    QTabBar* FPages;
    QComboBox* FFind;
    QComboBox* FReplace;
    QComboBox* FScope;
    // The option boxes by their settings key; PreserveCase only on the Replace page.
    std::vector<std::pair<const char*, QCheckBox*>> FChecks;
    QCheckBox* FPreserveCase;
    QPushButton* FFindAllButton;
    QPushButton* FReplaceButton;
    QPushButton* FReplaceAllButton;
    int FLoadedPage = -1; // the page whose state the controls show
};

} // namespace zv
