#include "store/dataeler.h"

#include "platform/Display.h"
#include "store/DataLocation.h"
#include "ui_dataeler.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QStorageInfo>

dataeler::dataeler(QWidget* parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::dataeler>())
    , m_folders(new QFileSystemModel(this))
    , m_files(new QFileSystemModel(this))
{
    m_ui->setupUi(this);
    setObjectName(QStringLiteral("dataeler"));

    m_folders->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot | QDir::Drives);
    m_folders->setRootPath(QString());
    m_ui->Dir1->setModel(m_folders);
    for (int c = 1; c < m_folders->columnCount(); ++c)
        m_ui->Dir1->hideColumn(c);

    // The file list shows only the data file, whatever the letter case of its name.
    m_files->setFilter(QDir::Files);
    m_files->setNameFilters({QStringLiteral("causora.mdb")});
    m_files->setNameFilterDisables(false);
    m_ui->File1->setModel(m_files);

    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (volume.isValid() && volume.isReady())
            m_ui->Drive1->addItem(volume.rootPath());
    }

    connect(m_ui->Drive1, &QComboBox::currentTextChanged, this, &dataeler::Drive1_Change);
    connect(m_ui->Dir1, &QTreeView::clicked, this,
            [this](const QModelIndex& index) { setFolder(m_folders->filePath(index)); });
    connect(m_ui->ok, &QPushButton::clicked, this, &dataeler::ok_Click);

    setFolder(platform::programFolder());
}

dataeler::~dataeler() = default;

QString dataeler::currentFolder() const
{
    return m_folder;
}

void dataeler::setFolder(const QString& folder)
{
    m_folder = QDir::cleanPath(QDir(folder).absolutePath());
    const QModelIndex index = m_folders->index(m_folder);
    m_ui->Dir1->setCurrentIndex(index);
    m_ui->Dir1->scrollTo(index);
    m_ui->File1->setRootIndex(m_files->setRootPath(m_folder));
}

void dataeler::Drive1_Change()
{
    const QString drive = m_ui->Drive1->currentText();
    if (!drive.isEmpty() && !m_folder.startsWith(drive))
        setFolder(drive);
}

void dataeler::ok_Click()
{
    // Beside the program, or the user's own when the program's folder may not be written.
    const QString path = store::settingsFile();
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile settings(path);
    if (settings.open(QIODevice::WriteOnly | QIODevice::Truncate))
        settings.write(store::settingsLine(m_folder).toLocal8Bit());
    accept();
}
