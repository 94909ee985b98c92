#pragma once

#include <QHash>
#include <QStringList>

#include "views/common/widgetform.h"

namespace tarvel {

// The Form of a related panel: the widgets' Form, and the column captions
// the record classes give a grid (dgrid_con, ...), which a table view cannot
// hold as items; the panel reads them back for its headers.
class PanelForm : public WidgetForm {
public:
    using WidgetForm::WidgetForm;
    QStringList controlItems(const QString& control) const override;
    void setControlItems(const QString& control, const QStringList& items) override;

private:
    QHash<QString, QStringList> gridCaptions_;
};

}  // namespace tarvel
