#include "views/settings/settingspage.h"

#include "custom/appsettings.h"
#include "records/kinds.h"
#include "schedule/labels.h"

namespace tarvel {

ModuleCaptions ModuleCaptions::load() {
    ModuleCaptions c;
    AppSettings names;
    names.GetToolbarName(0);
    for (const AppSetting& e : names) c.stored_.insert(e.ObjName(), e.ObjDesc());
    return c;
}

QString ModuleCaptions::caption(const QString& key) const {
    const QString caption = stored_.value(key).trimmed();
    return caption.isEmpty() ? defaultToolbarCaption(key) : caption;
}

const QStringList& ModuleCaptions::recordModules() {
    // In the order of the settings window's tabs.
    static const QStringList modules = [] {
        QStringList keys;
        for (qint16 code :
             {kind::Account, kind::Opportunity, kind::Contact, kind::Task, kind::Document})
            keys << QLatin1String(kindByCode(code)->moduleKey);
        return keys;
    }();
    return modules;
}

QString ModuleCaptions::moduleOf(const QString& word) {
    for (const QString& key : recordModules())
        if (key.startsWith(word)) return key;
    return QString();
}

namespace settingsui {

QLineEdit* lineEdit(QWidget* parent, const QString& name) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    e->setMinimumWidth(280);
    return e;
}

QFormLayout* formRows() {
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    form->setHorizontalSpacing(12);
    form->setVerticalSpacing(10);
    return form;
}

QLabel* hint(const QString& text, QWidget* parent) {
    auto* l = new QLabel(text, parent);
    l->setWordWrap(true);
    l->setStyleSheet(QStringLiteral("color: palette(dark);"));
    return l;
}

QVBoxLayout* moveButtons(QPushButton* up, QPushButton* down) {
    auto* column = new QVBoxLayout;
    column->addWidget(up);
    column->addWidget(down);
    column->addStretch(1);
    return column;
}

void enableMoves(QPushButton* up, QPushButton* down, int row, int count) {
    up->setEnabled(row > 0);
    down->setEnabled(row >= 0 && row < count - 1);
}

QVBoxLayout* pageLayout(QWidget* page, const QString& hintText) {
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(18, 16, 18, 16);
    layout->setSpacing(10);
    if (!hintText.isEmpty()) layout->addWidget(hint(hintText, page));
    return layout;
}

void formPage(QWidget* page, const QString& hintText, QFormLayout* form) {
    QVBoxLayout* layout = pageLayout(page, hintText);
    layout->addSpacing(6);
    layout->addLayout(form);
    layout->addStretch(1);
}

}  // namespace settingsui

}  // namespace tarvel
