#pragma once

#include "platform/CloseStepDialog.h"
#include "platform/Database.h"

#include <memory>
#include <QVariant>

class QCheckBox;
enum class Right;

namespace Ui {
class users;
}

namespace records {
class RecordForm;
}

namespace admin {

// The users editor: every user of felhasznalo with his name, login name, password, language,
// default lawyer and the twelve rights that make up his rights string. The list on the left
// chooses the user shown; new, change, save and delete work on him. A user's password can be
// changed only by himself, and the last user is never deleted. A change of rights takes effect
// at that user's next login.
//
// The hidden field hivo holds the edit mode: "" shown only, "1" a new user, "2" a change.
class users : public platform::CloseStepDialog
{
    Q_OBJECT
public:
    explicit users(platform::Database& db, QWidget* parent = nullptr);
    ~users() override;

    // The rights string the check boxes make: positions 1 to 12 from jog1 to jog12 ("1" ticked,
    // "0" not, "2" greyed), positions 13 to 20 always "1".
    QString rightsString() const;

public slots:
    void Activate();
    // Fills the user list and the choice boxes of languages and lawyers anew.
    void feltolt();
    void adatlst_Click();
    void g1_Click();
    void g2_Click();
    void g3_Click();
    void g4_Click();
    void g5_Click();
    void jelszo_GotFocus();
    void nyelve_LostFocus();

protected:
    void showEvent(QShowEvent* e) override;
    // Esc and the close box close as Bezár does.
    void closeStep() override { g5_Click(); }
    bool eventFilter(QObject* watched, QEvent* e) override;

private:
    QCheckBox* box(Right right) const;
    void showRights(const QString& felhjog);
    void showUser(const platform::Row& row);
    void empty();
    // Browse state (locked, list usable) or entry state (fields open but those listed).
    void lock(bool locked, const QStringList& except = {});
    QVariantMap columnValues() const;

    std::unique_ptr<Ui::users> m_ui;
    platform::Database& m_db;
    records::RecordForm* m_form = nullptr;
    QVariant m_shown; // the key of the user shown, invalid when none
    QString m_shownName; // his name as stored
};

} // namespace admin
