#include "platform/Printer.h"

#include "platform/Dialogs.h"

#include <QAction>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSaveFile>
#include <QScreen>
#include <QToolBar>
#include <QtMath>

namespace platform {

namespace {

PrinterFactory& factorySlot()
{
    static PrinterFactory factory;
    return factory;
}

QSize printableTwips(const QPrinter& printer)
{
    const QRectF inches = printer.pageLayout().paintRect(QPageLayout::Inch);
    return QSize(qRound(inches.width() * 1440), qRound(inches.height() * 1440));
}

int lineHeightTwips(int points, bool bold)
{
    return qCeil(QFontMetricsF(printFont(points, bold)).height());
}

// Draws on a paged device (a printer or a PDF writer) as it is told, in twips from the top
// left corner of the device's printable area. end() finishes the painting; whoever owns the
// device sends it on.
class DevicePrinter : public Printer
{
public:
    DevicePrinter(QPagedPaintDevice* device, int resolution, QSize pageTwips)
        : m_device(device), m_resolution(resolution), m_page(pageTwips)
    {
    }

    bool begin(QString* error)
    {
        if (!m_painter.begin(m_device)) {
            if (error)
                *error = QStringLiteral("The printer could not be opened.");
            return false;
        }
        const double scale = m_resolution / 1440.0;
        m_painter.scale(scale, scale);
        return true;
    }

    QSize pageSize() const override { return m_page; }
    void setFontSize(int points) override { m_fontSize = points; }
    void setBold(bool bold) override { m_bold = bold; }
    int lineHeight() const override { return lineHeightTwips(m_fontSize, m_bold); }

    void text(int x, int y, const QString& text) override
    {
        // The painter's font changes only when the text's font does: most lines of a list
        // keep the font of the line before.
        if (m_fontSize != m_painterFontSize || m_bold != m_painterBold) {
            m_painterFontSize = m_fontSize;
            m_painterBold = m_bold;
            const QFont font = printFont(m_fontSize, m_bold);
            m_painter.setFont(font);
            m_ascent = QFontMetricsF(font).ascent();
        }
        m_painter.drawText(QPointF(x, y + m_ascent), text);
    }

    void line(int x1, int y1, int x2, int y2) override { m_painter.drawLine(x1, y1, x2, y2); }

    void newPage() override
    {
        if (!m_failed && !m_device->newPage())
            m_failed = true;
    }

    bool end(QString* error = nullptr) override
    {
        const bool ended = !m_painter.isActive() || m_painter.end();
        if (m_failed) {
            if (error)
                *error = QStringLiteral("The printer could not start a new page.");
            return false;
        }
        if (!ended && error)
            *error = QStringLiteral("The printer reported an error.");
        return ended;
    }

    void cancel() override
    {
        if (m_painter.isActive())
            m_painter.end();
    }

private:
    QPagedPaintDevice* m_device;
    int m_resolution;
    QSize m_page;
    QPainter m_painter;
    int m_fontSize = 10;
    bool m_bold = false;
    int m_painterFontSize = -1;
    bool m_painterBold = false;
    double m_ascent = 0;
    bool m_failed = false;
};

// Shows the finished document and prints it from there, or saves it as PDF.
class PreviewPrinter : public RecordingPrinter
{
public:
    PreviewPrinter(std::unique_ptr<QPrinter> printer, QWidget* parent)
        : RecordingPrinter(printableTwips(*printer))
        , m_printer(std::move(printer))
        , m_parent(parent)
    {
    }

protected:
    bool deliver(QString* error) override
    {
        QPrintPreviewDialog dialog(m_printer.get(), m_parent);
        QString paintError;
        QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog,
                         [&](QPrinter* p) { paintItems(*this, p, &paintError); });
        if (auto* bar = dialog.findChild<QToolBar*>()) {
            QAction* pdf = bar->addAction(QStringLiteral("PDF"));
            QObject::connect(pdf, &QAction::triggered, &dialog, [&] {
                const QString path = chooseFile(
                        {FileDialogKind::Save, QString(), QString(), QStringLiteral("PDF (*.pdf)")},
                        &dialog);
                if (path.isEmpty())
                    return;
                PdfPrinter file(path);
                replay(file);
                file.end(&paintError);
            });
        }
        dialog.exec();
        if (!paintError.isEmpty() && error)
            *error = paintError;
        return paintError.isEmpty();
    }

private:
    std::unique_ptr<QPrinter> m_printer;
    QWidget* m_parent;
};

} // namespace

RecordingPrinter::RecordingPrinter(QSize pageTwips) : m_page(pageTwips) { }

int RecordingPrinter::lineHeight() const
{
    return lineHeightTwips(m_fontSize, m_bold);
}

void RecordingPrinter::add(PrintItem::Kind kind, int x, int y, int a, int b)
{
    m_items.append(Stored{x, y, a, b, qint16(qBound(0, m_fontSize, 32767)), quint8(kind), m_bold});
}

void RecordingPrinter::text(int x, int y, const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    add(PrintItem::Text, x, y, int(m_texts.size()), int(utf8.size()));
    m_texts += utf8;
}

void RecordingPrinter::line(int x1, int y1, int x2, int y2)
{
    add(PrintItem::Line, x1, y1, x2, y2);
}

void RecordingPrinter::newPage()
{
    add(PrintItem::NewPage);
}

bool RecordingPrinter::end(QString* error)
{
    add(PrintItem::End);
    return deliver(error);
}

void RecordingPrinter::cancel()
{
    add(PrintItem::Cancel);
}

PrintItem RecordingPrinter::decoded(const Stored& s) const
{
    PrintItem item;
    item.kind = PrintItem::Kind(s.kind);
    item.x = s.x;
    item.y = s.y;
    if (item.kind == PrintItem::Text) {
        item.text = QString::fromUtf8(m_texts.constData() + s.a, s.b);
        item.fontSize = s.fontSize;
        item.bold = s.bold;
    } else if (item.kind == PrintItem::Line) {
        item.x2 = s.a;
        item.y2 = s.b;
    }
    return item;
}

QList<PrintItem> RecordingPrinter::items() const
{
    QList<PrintItem> result;
    result.reserve(m_items.size());
    for (const Stored& s : m_items)
        result << decoded(s);
    return result;
}

void RecordingPrinter::replay(Printer& target) const
{
    for (const Stored& s : m_items) {
        switch (s.kind) {
        case PrintItem::Text:
            target.setFontSize(s.fontSize);
            target.setBold(s.bold);
            target.text(s.x, s.y, QString::fromUtf8(m_texts.constData() + s.a, s.b));
            break;
        case PrintItem::Line:
            target.line(s.x, s.y, s.a, s.b);
            break;
        case PrintItem::NewPage:
            target.newPage();
            break;
        default:
            break;
        }
    }
}

qsizetype RecordingPrinter::memoryUsed() const
{
    return m_items.capacity() * qsizetype(sizeof(Stored)) + m_texts.capacity();
}

QSize RecordingPrinter::a4PageTwips()
{
    // 210 x 297 mm less a quarter inch on the left and the right. The lists keep their own top
    // and bottom margins, and 65 rows need nearly the whole height of the sheet.
    return QSize(qRound(210 / 25.4 * 1440) - 720, qRound(297 / 25.4 * 1440));
}

bool RecordingPrinter::deliver(QString*)
{
    return true;
}

QFont printFont(int points, bool bold)
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(points * 20);
    font.setBold(bold);
    return font;
}

int textWidthTwips(const QFont& screenFont, const QString& text)
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    const double dpi = screen ? screen->logicalDotsPerInch() : 96.0;
    return qRound(QFontMetricsF(screenFont).horizontalAdvance(text) * 1440.0 / dpi);
}

bool paintItems(const RecordingPrinter& document, QPrinter* printer, QString* error)
{
    DevicePrinter drawing(printer, printer->resolution(), printableTwips(*printer));
    if (!drawing.begin(error))
        return false;
    document.replay(drawing);
    if (!drawing.end(error))
        return false;
    if (printer->printerState() == QPrinter::Error) {
        if (error)
            *error = QStringLiteral("The printer reported an error.");
        return false;
    }
    return true;
}

// The temporary file, the PDF writer on it, and the drawing on the writer's pages. Dropped
// without commit, the temporary file is removed.
struct PdfPrinter::Output
{
    explicit Output(const QString& path)
        : file(path), writer(&file), drawing(&writer, 1200, RecordingPrinter::a4PageTwips())
    {
    }
    QSaveFile file;
    QPdfWriter writer;
    DevicePrinter drawing;
};

PdfPrinter::PdfPrinter(const QString& path) : m_path(path) { }

PdfPrinter::~PdfPrinter() = default;

bool PdfPrinter::open()
{
    if (m_out)
        return true;
    if (m_finished)
        return false;
    auto out = std::make_unique<Output>(m_path);
    if (!out->file.open(QIODevice::WriteOnly)) {
        m_error = QStringLiteral("The PDF file could not be written: ") + out->file.errorString();
        m_finished = true;
        return false;
    }
    out->writer.setResolution(1200);
    out->writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait,
                                          QMarginsF(0.25, 0, 0.25, 0), QPageLayout::Inch));
    if (!out->drawing.begin(&m_error)) {
        m_finished = true;
        return false;
    }
    m_out = std::move(out);
    return true;
}

QSize PdfPrinter::pageSize() const
{
    return RecordingPrinter::a4PageTwips();
}

int PdfPrinter::lineHeight() const
{
    return lineHeightTwips(m_fontSize, m_bold);
}

void PdfPrinter::text(int x, int y, const QString& text)
{
    if (!open())
        return;
    m_out->drawing.setFontSize(m_fontSize);
    m_out->drawing.setBold(m_bold);
    m_out->drawing.text(x, y, text);
}

void PdfPrinter::line(int x1, int y1, int x2, int y2)
{
    if (open())
        m_out->drawing.line(x1, y1, x2, y2);
}

void PdfPrinter::newPage()
{
    if (open())
        m_out->drawing.newPage();
}

bool PdfPrinter::end(QString* error)
{
    // A document with nothing drawn is still one blank page.
    open();
    std::unique_ptr<Output> out = std::move(m_out);
    m_finished = true;
    QString why = m_error;
    bool ok = out && out->drawing.end(&why);
    if (ok && !out->file.commit()) {
        ok = false;
        why = QStringLiteral("The PDF file could not be written: ") + out->file.errorString();
    }
    if (!ok && error)
        *error = why;
    return ok;
}

void PdfPrinter::cancel()
{
    m_out.reset();
    m_finished = true;
}

std::unique_ptr<Printer> openDefaultPrinter(QWidget* parent)
{
    if (factorySlot())
        return factorySlot()();
    const QPrinterInfo info = QPrinterInfo::defaultPrinter();
    if (info.isNull())
        return nullptr;
    auto printer = std::make_unique<QPrinter>(info, QPrinter::HighResolution);
    return std::make_unique<PreviewPrinter>(std::move(printer), parent);
}

void setPrinterFactory(PrinterFactory factory)
{
    factorySlot() = std::move(factory);
}

} // namespace platform
