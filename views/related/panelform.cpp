#include "views/related/panelform.h"

namespace tarvel {

namespace {
bool isGrid(const QString& control) {
    return control.startsWith(QLatin1String("dgrid_"));
}
}  // namespace

QStringList PanelForm::controlItems(const QString& control) const {
    return isGrid(control) ? gridCaptions_.value(control) : WidgetForm::controlItems(control);
}

void PanelForm::setControlItems(const QString& control, const QStringList& items) {
    if (isGrid(control))
        gridCaptions_.insert(control, items);
    else
        WidgetForm::setControlItems(control, items);
}

}  // namespace tarvel
