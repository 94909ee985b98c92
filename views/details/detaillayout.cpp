#include "views/details/detaillayout.h"

#include <QDateEdit>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarvel {

QHBoxLayout* rowOf(std::initializer_list<QWidget*> widgets) {
    auto* r = new QHBoxLayout;
    r->setContentsMargins(0, 0, 0, 0);
    for (QWidget* w : widgets) r->addWidget(w, qobject_cast<QPushButton*>(w) ? 0 : 1);
    return r;
}

QWidget* lineOf(QWidget* parent, std::initializer_list<QWidget*> widgets) {
    auto* w = new QWidget(parent);
    w->setLayout(rowOf(widgets));
    return w;
}

QWidget* stackOf(QWidget* parent, QLayout* top, QWidget* below) {
    auto* w = new QWidget(parent);
    auto* layout = new QVBoxLayout(w);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(top);
    layout->addWidget(below);
    return w;
}

QGroupBox* sectionBox(QWidget* parent, const char* name, const QString& title, QLayout* layout) {
    auto* g = new QGroupBox(title, parent);
    g->setObjectName(QLatin1String(name));
    g->setLayout(layout);
    return g;
}

QGroupBox* memoSection(QWidget* parent, QPlainTextEdit* memo) {
    memo->setTabChangesFocus(true);
    memo->setMinimumHeight(80);
    memo->setAccessibleName(QStringLiteral("简介"));
    auto* layout = new QVBoxLayout;
    layout->addWidget(memo);
    return sectionBox(parent, "fra_memo", QStringLiteral("简介"), layout);
}

QDate noDate() {
    return QDate(1900, 1, 1);
}

void setUpDatePicker(QDateEdit* picker) {
    picker->setCalendarPopup(true);
    picker->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    picker->setMinimumDate(noDate());
    picker->setSpecialValueText(QStringLiteral("无"));
}

QString errorText(const QStringList& errors) {
    QStringList said;
    for (const QString& e : errors)
        if (!e.trimmed().isEmpty()) said << e.trimmed();
    return said.isEmpty() ? QStringLiteral("数据文件没有接受这次写入。")
                          : said.join(QLatin1Char('\n'));
}

}  // namespace tarvel
