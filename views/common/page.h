#pragma once

#include <QDate>
#include <QLocale>
#include <QString>
#include <QWidget>
#include <functional>

#include "records/kinds.h"

namespace tarvel {

// A date as the pages and the status bar show it: "2024年5月1日 星期三".
inline QString longDate(const QDate& date) {
    return QLocale(QLocale::Chinese, QLocale::China)
        .toString(date, QStringLiteral("yyyy年M月d日 dddd"));
}

// Bold and `scale` times the size: the title line of a page or window.
inline void setHeadingFont(QWidget* widget, qreal scale) {
    QFont font = widget->font();
    font.setPointSizeF(font.pointSizeF() * scale);
    font.setBold(true);
    widget->setFont(font);
}

// What a page is asked to show.
struct PageRequest {
    qint16 page = 0;
    QString condition;
    qint32 recordId = 0;
    QDate date;
    qint16 pageNo = -1;
};

// How a screen asks the main window for another page: the page-switching
// routine in normal mode (recorded in the history), after the unsaved-changes
// question.
using PageSwitch = std::function<void(qint16 page, const QString& condition, qint32 recordId)>;

// A module screen inside the main window.
class PageWidget : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;
    // Shows the condition, record, date and page number of a request.
    virtual void fill(const PageRequest& request) = 0;
    // The day changed, or the page should re-read what it shows.
    virtual void refresh() {}
    // The stored layout changed (captions, panels, list columns): rebuild
    // whatever was built from it.
    virtual void rebuildLayout() {}
};

}  // namespace tarvel
