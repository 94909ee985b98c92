#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class QPagedPaintDevice;

namespace tarvel::lists {

// What an address label shows of a contact.
struct AddressLabel {
    QString name;
    QString department;  // department/title
    QString account;
    QString address;
    QString postcode;
};

// The ticked contacts as labels, by name; false with the reason when the
// data file could not be read.
bool readTickedLabels(QList<AddressLabel>* labels, QString* error);

// The lines of one label, top to bottom: postcode, address, account, then
// name with department; empty parts are left out.
QStringList labelLines(const AddressLabel& label);

// Labels per sheet: two columns of seven.
inline constexpr int kLabelColumns = 2;
inline constexpr int kLabelRows = 7;

// Draws the labels onto the device's pages, a new page every sheet.
void paintLabels(QPagedPaintDevice* device, const QList<AddressLabel>& labels);

}  // namespace tarvel::lists
