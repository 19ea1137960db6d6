// The search dialog's controls, remembered state and history lists.
#include "ui/SearchDialog.h"

#include "shell/Settings.h"
#include "shell/ZvIniFiles.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QVBoxLayout>

namespace zv {
namespace {

constexpr char16_t kItemEnd = 0x000C;
const QString kBreakPicture = QStringLiteral("\u001F\u00BB");
const QString kTabPicture = QStringLiteral("\u001F\u00A6");

std::u16string ToU16(const QString& s) {
    return std::u16string(reinterpret_cast<const char16_t*>(s.utf16()),
                          static_cast<std::size_t>(s.size()));
}

QString FromU16(std::u16string_view s) {
    return QString::fromUtf16(s.data(), static_cast<qsizetype>(s.size()));
}

QStringList Items(const QComboBox* combo) {
    QStringList items;
    for (int i = 0; i < combo->count(); ++i)
        items << combo->itemText(i);
    return items;
}

// `text` at the top of the combo's list unless it is there already.
void Remember(QComboBox* combo, const QString& text) {
    if (text.isEmpty() || combo->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive) >= 0)
        return;
    combo->insertItem(0, text);
    combo->setCurrentIndex(0);
}

int HistoryMax() {
    return std::max(SettingsIni().ReadInteger("Search", "FindHistoryMax", 20), 0);
}

} // namespace

// One text as the settings keep it (the field's pictures as U+200B, U+200C), and back.
QString ToStored(QString text) {
    return text.replace(kBreakPicture, QChar(0x200B)).replace(kTabPicture, QChar(0x200C));
}
QString FromStored(QString text) {
    return text.replace(QChar(0x200B), kBreakPicture).replace(QChar(0x200C), kTabPicture);
}

std::u16string JoinHistory(const QStringList& items, int max) {
    QString value;
    for (int i = 0; i < items.size() && i < max; ++i)
        value += ToStored(items[i]) + QChar(kItemEnd);
    return ToU16(value);
}

QStringList SplitHistory(std::u16string_view value) {
    QStringList items = FromU16(value).split(QChar(kItemEnd), Qt::SkipEmptyParts);
    for (QString& item : items)
        item = FromStored(item);
    return items;
}

QString ToFieldText(const QString& text) {
    QString field = text;
    field.replace(QStringLiteral("\r\n"), kBreakPicture)
        .replace(QChar(u'\n'), kBreakPicture)
        .replace(QChar(u'\r'), kBreakPicture)
        .replace(QChar(u'\t'), kTabPicture);
    return field;
}

QString FromFieldText(const QString& field) {
    QString text = field;
    return text.replace(kBreakPicture, QStringLiteral("\r\n"))
        .replace(kTabPicture, QStringLiteral("\t"));
}

TSearchDialog::TSearchDialog(TWindowSearch& search, QWidget* parent)
    : QDialog(parent), FSearch(search), FPages(new QTabBar(this)), FFind(new QComboBox(this)),
      FReplace(new QComboBox(this)), FScope(new QComboBox(this)) {
    setObjectName(QStringLiteral("SearchDialog"));
    setWindowTitle(tr("Find and replace"));
    setModal(false);
    FPages->addTab(tr("Find"));
    FPages->addTab(tr("Replace"));
    for (QComboBox* combo : {FFind, FReplace}) {
        combo->setEditable(true);
        combo->setInsertPolicy(QComboBox::NoInsert);
        combo->setMinimumContentsLength(30);
    }
    FFind->setObjectName(QStringLiteral("FindCombo"));
    FReplace->setObjectName(QStringLiteral("ReplaceCombo"));
    FScope->addItems({tr("Whole document"), tr("From cursor"), tr("Selected text")});
    FScope->setObjectName(QStringLiteral("ScopeCombo"));
    auto* fields = new QFormLayout;
    fields->addRow(tr("Find:"), FFind);
    fields->addRow(tr("Replace with:"), FReplace);
    fields->addRow(tr("Scope:"), FScope);
    auto* checks = new QVBoxLayout;
    for (const auto& [caption, key] : {std::pair{tr("Match &case"), "Case"},
                                       {tr("&Whole words"), "WholeWords"},
                                       {tr("Regular e&xpression"), "RegEx"},
                                       {tr("Search &up"), "Up"},
                                       {tr("Skip &tags"), "SkipTags"},
                                       {tr("Skip c&omments"), "SkipComments"},
                                       {tr("Skip &strings"), "SkipStrings"}})
        checks->addWidget(Check(caption, key));
    FPreserveCase = Check(tr("&Preserve case"), "PreserveCase");
    checks->addWidget(FPreserveCase);
    const auto button = [this](const QString& caption, const char* name) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(QString::fromLatin1(name));
        b->setAutoDefault(false);
        return b;
    };
    QPushButton* next = button(tr("Find &next"), "FindNextButton");
    next->setDefault(true);
    FFindAllButton = button(tr("Find &all"), "FindAllButton");
    FReplaceButton = button(tr("&Replace"), "ReplaceButton");
    FReplaceAllButton = button(tr("Replace a&ll"), "ReplaceAllButton");
    QPushButton* close = button(tr("Close"), "CloseButton");
    auto* buttons = new QVBoxLayout;
    for (QPushButton* b : {next, FFindAllButton, FReplaceButton, FReplaceAllButton, close})
        buttons->addWidget(b);
    buttons->addStretch();
    auto* body = new QHBoxLayout;
    auto* left = new QVBoxLayout;
    left->addLayout(fields);
    left->addLayout(checks);
    body->addLayout(left, 1);
    body->addLayout(buttons);
    auto* all = new QVBoxLayout(this);
    all->addWidget(FPages);
    all->addLayout(body);

    connect(next, &QPushButton::clicked, this,
            [this] { Run([this](const TSearchRequest& r) { FSearch.FindFirst(r); }); });
    connect(FFindAllButton, &QPushButton::clicked, this,
            [this] { Run([this](const TSearchRequest& r) { FSearch.FindAll(r); }); });
    connect(FReplaceButton, &QPushButton::clicked, this,
            [this] { Run([this](const TSearchRequest& r) { FSearch.ReplacePrompted(r); }); });
    connect(FReplaceAllButton, &QPushButton::clicked, this,
            [this] { Run([this](const TSearchRequest& r) { FSearch.ReplaceAll(r); }); });
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    connect(FPages, &QTabBar::currentChanged, this, [this] {
        SaveState(); // the state of the page left
        LoadState();
    });
}

QCheckBox* TSearchDialog::Check(const QString& caption, const char* key) {
    auto* box = new QCheckBox(caption, this);
    box->setObjectName(QString::fromLatin1(key));
    FChecks.emplace_back(key, box);
    return box;
}

bool TSearchDialog::ReplacePage() const {
    return FPages->currentIndex() == 1;
}

void TSearchDialog::Open(bool replace, const QString& text, bool multiRow) {
    {
        const QSignalBlocker quiet(FPages);
        FPages->setCurrentIndex(replace ? 1 : 0);
    }
    LoadState();
    if (multiRow && SettingsIni().ReadBool("Search", "IncludeMultiLineSelection", true))
        FScope->setCurrentIndex(TSearchRequest::scSelection);
    else if (!text.isEmpty())
        FFind->setEditText(ToFieldText(text));
    show();
    raise();
    activateWindow();
    FFind->setFocus();
    FFind->lineEdit()->selectAll();
}

void TSearchDialog::ShowPage() {
    const bool replace = ReplacePage();
    FReplace->setEnabled(replace);
    FPreserveCase->setVisible(replace);
    FFindAllButton->setVisible(!replace);
    FReplaceButton->setVisible(replace);
    FReplaceAllButton->setVisible(replace);
}

void TSearchDialog::LoadState() {
    const TMemIniFileW& ini = SettingsIni();
    const char* section = Section();
    for (const auto& [key, box] : FChecks)
        box->setChecked(ini.ReadBool(section, key, false));
    FScope->setCurrentIndex(std::clamp(ini.ReadInteger(section, "Scope", 0), 0, 2));
    const auto fill = [&](QComboBox* combo, const char* sectionOf, const char* list,
                          const char* current) {
        combo->clear();
        combo->addItems(SplitHistory(ini.ReadString(sectionOf, list, std::u16string_view())));
        combo->setEditText(
            FromStored(FromU16(ini.ReadString(sectionOf, current, std::u16string_view()))));
    };
    fill(FFind, "Find", "FindMRU", "FindString");
    fill(FReplace, "Replace", "ReplaceMRU", "ReplaceString");
    FLoadedPage = FPages->currentIndex();
    ShowPage();
}

void TSearchDialog::SaveState() {
    if (FLoadedPage < 0)
        return;
    TMemIniFileW& ini = SettingsIni();
    const char* section = FLoadedPage == 1 ? "Replace" : "Find";
    for (const auto& [key, box] : FChecks)
        if (box != FPreserveCase || FLoadedPage == 1)
            ini.WriteBool(section, key, box->isChecked());
    ini.WriteInteger(section, "Scope", FScope->currentIndex());
    const int max = HistoryMax();
    const auto save = [&](QComboBox* combo, const char* sectionOf, const char* list,
                          const char* current) {
        Remember(combo, combo->currentText());
        ini.WriteString(sectionOf, list, JoinHistory(Items(combo), max));
        ini.WriteString(sectionOf, current, ToU16(ToStored(combo->currentText())));
    };
    save(FFind, "Find", "FindMRU", "FindString");
    save(FReplace, "Replace", "ReplaceMRU", "ReplaceString");
}

TSearchRequest TSearchDialog::Request() const {
    TSearchRequest r;
    r.Find = FromFieldText(FFind->currentText());
    r.Replace = FromFieldText(FReplace->currentText());
    const auto on = [this](const char* key) {
        for (const auto& [k, box] : FChecks)
            if (std::string_view(k) == key)
                return box->isChecked();
        return false;
    };
    const std::pair<const char*, TZvFindOption> flags[] = {
        {"Case", frCase},         {"WholeWords", frWord},           {"RegEx", frRegExp},
        {"SkipTags", frSkipTags}, {"SkipComments", frSkipComments}, {"SkipStrings", frSkipStrings}};
    for (const auto& [key, flag] : flags)
        if (on(key))
            r.Options |= flag;
    r.PreserveCase = ReplacePage() && on("PreserveCase");
    r.Up = on("Up");
    r.Scope = static_cast<TSearchRequest::TScope>(FScope->currentIndex());
    return r;
}

void TSearchDialog::Run(const std::function<void(const TSearchRequest&)>& action) {
    Remember(FFind, FFind->currentText());
    if (ReplacePage())
        Remember(FReplace, FReplace->currentText());
    action(Request());
}

void TSearchDialog::hideEvent(QHideEvent* event) {
    SaveState();
    QDialog::hideEvent(event);
}

} // namespace zv
