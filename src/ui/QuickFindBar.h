// TQuickFindBar: the bar under the documents for incremental search and replace: the find
// field (searched as it is typed), toggles for case, whole word, regular expression and
// highlighting of all hits, and in replace mode a replace field with its buttons. It holds
// no search of its own: it tells its owner what the user did.
#pragma once

#include <QWidget>

#include <functional>

class QLineEdit;
class QToolButton;
class QPushButton;

namespace zv {

class TQuickFindBar : public QWidget {
    Q_OBJECT
public:
    explicit TQuickFindBar(QWidget* parent = nullptr);

    // Shows the bar with the find field focused and its text selected; `replace` shows the
    // replace field and buttons too. `text`, when not empty, becomes the find text.
    void Open(bool replace, const QString& text = {});
    QString FindText() const;
    QString ReplaceText() const;
    bool MatchCase() const;
    bool WholeWord() const;
    bool RegularExpression() const;
    bool HighlightAll() const;
    void SetHighlightAll(bool on);
    // The find field's background: the window colour, or the "not found" colour.
    void ShowFound(bool found);
    static const QColor kNotFoundBack; // RGB(255, 220, 200)

    QLineEdit* FindField() const { return FFind; }
    QLineEdit* ReplaceField() const { return FReplace; }

    // What the user did. The find text or an option changed (search again from the top);
    // Enter or the buttons (next, previous, replace, replace all, find all); Escape.
    std::function<void()> FOnChanged;
    std::function<void(bool backward)> FOnNext;
    std::function<void()> FOnReplace;
    std::function<void()> FOnReplaceAll;
    std::function<void()> FOnFindAll;
    std::function<void()> FOnClose;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QToolButton* Toggle(const QString& text, const QString& tip, const char* name);
    static void Call(const std::function<void()>& f) {
        if (f)
            f();
    }

    QLineEdit* FFind;
    QLineEdit* FReplace;
    QToolButton* FCase;
    QToolButton* FWord;
    QToolButton* FRegex;
    QToolButton* FHighlight;
    QWidget* FReplaceRow; // the replace field and its buttons, shown in replace mode
};

} // namespace zv
