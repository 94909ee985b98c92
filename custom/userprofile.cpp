#include "custom/userprofile.h"

#include "custom/softwaresetting.h"

namespace tarvel {

namespace {
const QString kSection = QStringLiteral("personal");

QString read(const QString& key) {
    SoftwareSetting s;
    s.GetValue(kSection, key);
    return s.Set_Value().trimmed();
}

bool write(const QString& key, const QString& value) {
    // Every write overwrites all four columns: carry the others over as stored.
    SoftwareSetting s;
    s.GetValue(kSection, key);
    const auto kept = [](const QString& v) { return v == QLatin1String(" ") ? QString() : v; };
    return s.WriteValue(kSection, key, kept(s.Set_Name()), kept(s.Set_Visible()), value,
                        kept(s.Set_Description()));
}
}  // namespace

UserProfile UserProfile::load() {
    return {read(QStringLiteral("user_name")), read(QStringLiteral("user_account")),
            read(QStringLiteral("user_title")), read(QStringLiteral("user_email"))};
}

bool UserProfile::save() const {
    bool ok = write(QStringLiteral("user_name"), name);
    ok = write(QStringLiteral("user_account"), account) && ok;
    ok = write(QStringLiteral("user_title"), title) && ok;
    return write(QStringLiteral("user_email"), email) && ok;
}

bool UserProfile::isComplete() const {
    return !name.trimmed().isEmpty() && !account.trimmed().isEmpty() &&
           !title.trimmed().isEmpty() && !email.trimmed().isEmpty();
}

}  // namespace tarvel
