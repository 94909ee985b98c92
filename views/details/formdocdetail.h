#pragma once

#include "views/details/formdetail.h"
#include "views/details/recordfields.h"

namespace tarvel {

class FileDialogs;

// form_doc_detail: a document record (a file on disk with a name, a tag and
// a description); the file opens in its own program.
class FormDocDetail : public FormDetail {
    Q_OBJECT
public:
    explicit FormDocDetail(QWidget* parent = nullptr);
    void setFileDialogs(std::shared_ptr<FileDialogs> files) { files_ = std::move(files); }

    // Opens the file of txt_path (img_open, a double-click on the name or path).
    void openFile();

protected:
    bool showFields(int id, QString* error) override;
    bool saveFields(int* id, QString* error) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void browse();

    std::shared_ptr<FileDialogs> files_;
    std::vector<TextField> fields_;
    QLineEdit* txtName_;
    QLineEdit* txtPath_;
    QLabel* lblCreated_;
};

}  // namespace tarvel
