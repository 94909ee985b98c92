#pragma once

#include <QLabel>
#include <QString>

#include "views/page.h"

namespace tarvel {

// Page codes of the page-switching routine, as stored in the page history.
// Each module keeps a band of codes: its list, then its detail page.
namespace page {
inline constexpr qint16 Home = 1;
inline constexpr qint16 OpportunityList = 3;
inline constexpr qint16 OpportunityDetail = 4;
inline constexpr qint16 AccountList = 12;
inline constexpr qint16 AccountDetail = 13;
inline constexpr qint16 ContactList = 22;
inline constexpr qint16 ContactDetail = 23;
inline constexpr qint16 Schedule = 30;
inline constexpr qint16 Task = 31;
inline constexpr qint16 DocumentList = 40;
inline constexpr qint16 DocumentDetail = 41;
inline constexpr qint16 DataExchange = 42;
inline constexpr qint16 Email = 43;
inline constexpr qint16 Settings = 44;
}  // namespace page

// Where a page code lives: its window name and the toolbar key of its module.
struct PageInfo {
    qint16 code;
    const char* formName;
    const char* moduleKey;
    bool detail;
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
    PageRequest request() const { return request_; }

private:
    QLabel* caption_;
    QLabel* condition_;
    QLabel* details_;
    PageRequest request_;
};

}  // namespace tarvel
