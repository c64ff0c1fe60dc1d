#pragma once

#include <memory>
#include <QDialog>

class QFileSystemModel;

namespace Ui {
class dataeler;
}

// The data-location screen: the user points at the folder that holds causora.mdb and the
// choice is written to jog.ini for the next start.
class dataeler : public QDialog
{
    Q_OBJECT
public:
    explicit dataeler(QWidget* parent = nullptr);
    ~dataeler() override;

    QString currentFolder() const;

public slots:
    void setFolder(const QString& folder);
    void Drive1_Change();
    void ok_Click();

private:
    std::unique_ptr<Ui::dataeler> m_ui;
    QFileSystemModel* m_folders;
    QFileSystemModel* m_files;
    QString m_folder;
};
