#include "views/lists/addresslabels.h"

#include <QPagedPaintDevice>
#include <QPainter>

#include "store/tarveldatabase.h"

namespace tarvel::lists {

bool readTickedLabels(QList<AddressLabel>* labels, QString* error) {
    tarveldatabase db;
    RecordsetPtr rs = db.GetReadRs(QStringLiteral(
        "SELECT con_lastname, con_department_title, acc_name, acc_address, acc_postcode, "
        "con_address_family, con_postcode_family FROM que_contacts_accounts WHERE "
        "con_check=true ORDER BY con_lastname"));
    if (!rs || rs->State() != adStateOpen || !db.ErrMsg().isEmpty()) {
        *error = db.ErrMsg();
        return false;
    }
    for (; !rs->Eof(); rs->MoveNext()) {
        const auto text = [&](int c) { return rs->value(c).toString().trimmed(); };
        // The account's address first; a contact without one gets the home address.
        const bool work = !text(3).isEmpty();
        labels->append(
            {text(0), text(1), text(2), work ? text(3) : text(5), work ? text(4) : text(6)});
    }
    return true;
}

QStringList labelLines(const AddressLabel& label) {
    QStringList lines;
    for (const QString& part : {label.postcode, label.address, label.account})
        if (!part.isEmpty()) lines << part;
    lines << (label.department.isEmpty()
                  ? label.name + QStringLiteral(" 收")
                  : label.name + QStringLiteral("（") + label.department + QStringLiteral("） 收"));
    return lines;
}

void paintLabels(QPagedPaintDevice* device, const QList<AddressLabel>& labels) {
    QPainter painter(device);
    const QRectF page(0, 0, device->width(), device->height());
    const qreal width = page.width() / kLabelColumns;
    const qreal height = page.height() / kLabelRows;
    QFont font = painter.font();
    font.setPixelSize(qMax(8, int(height / 8)));
    painter.setFont(font);
    const int perSheet = kLabelColumns * kLabelRows;
    for (int i = 0; i < labels.size(); ++i) {
        if (i > 0 && i % perSheet == 0) device->newPage();
        const int place = i % perSheet;
        const QRectF cell(page.left() + (place % kLabelColumns) * width,
                          page.top() + (place / kLabelColumns) * height, width, height);
        painter.setPen(QPen(Qt::lightGray, 0, Qt::DashLine));
        painter.drawRect(cell);
        painter.setPen(Qt::black);
        painter.drawText(cell.adjusted(width * 0.06, height * 0.1, -width * 0.06, -height * 0.1),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap,
                         labelLines(labels[i]).join(QLatin1Char('\n')));
    }
}

}  // namespace tarvel::lists
