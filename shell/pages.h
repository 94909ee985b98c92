#pragma once

#include <QLabel>
#include <QString>
#include <QVBoxLayout>
#include <functional>

#include "views/common/page.h"

namespace tarvel {

// Where a page code lives: its window name, the toolbar key of its module and
// what its caption adds to the module's (null for the page the module's
// toolbar button opens). The codes are in views/common/page.h.
struct PageInfo {
    qint16 code;
    const char* formName;
    const char* moduleKey;
    const char* captionSuffix;
};
// Null for an unknown code.
const PageInfo* pageInfo(qint16 code);
// The list page a module's toolbar key opens; 0 for keys that are not pages.
qint16 pageForKey(const QString& key);

// Stands in for a module screen until its list, detail or calendar screen
// exists: shows the module caption and what the page was asked to show.
class ModulePage : public PageWidget {
    Q_OBJECT
public:
    ModulePage(const QString& formName, const QString& caption, QWidget* parent = nullptr);
    void fill(const PageRequest& request) override;
    void refresh() override;
    void setCaption(const QString& caption);
    // A button below the caption that leads on from this page (the schedule
    // module's way to its statistics page).
    void addLink(const QString& name, const QString& text, std::function<void()> action);
    PageRequest request() const { return request_; }

private:
    QVBoxLayout* links_ = nullptr;
    QLabel* caption_;
    QLabel* condition_;
    QLabel* details_;
    PageRequest request_;
};

}  // namespace tarvel
